#pragma once

#include <cstdint>

#include "ostrelrtcore/OrtColor.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {

// The low 32 bits.
inline ort::core::OrtColor ConvertInt64ToColor(ort::core::int64 value) {
  return {static_cast<int>(static_cast<std::uint32_t>(value))};
}

// A colour that is fully transparent stays so.
class CombineAlphaFunctor {
 public:
  explicit CombineAlphaFunctor(int alpha) : alpha_(alpha) {}

  ort::core::OrtColor Apply(ort::core::OrtColor color) const {
    ort::core::OrtColor combined = color;
    combined.SetA(alpha_);
    return color.GetA() != 0 ? combined : color;
  }

 private:
  int alpha_;
};

// A palette read as a continuous scale: 0 is its first colour and 1 its last, numbers outside count as the
// nearer of the two and NaN as 0. Positions are narrowed to float and channels truncated, on purpose.
class ColorInterpolateFunctor {
 public:
  // A palette of Int32 colours; one without colours throws 55.
  explicit ColorInterpolateFunctor(Value palette) : palette_(std::move(palette)) {
    if (palette_.GetCount() == 0)
      throw ort::core::OrtRuntimeException(ort::core::OrtError_WrongValueKind,
                                           OStringCore(L"an empty palette"));
    last_ = static_cast<int>(palette_.GetCount()) - 1;
  }

  ort::core::OrtColor Apply(double x) const {
    auto const end = static_cast<float>(last_);
    auto const position = static_cast<float>(last_ * x);
    float const inside = position > 0.0F ? position : 0.0F;  // 0 for NaN, too
    if (inside >= end) return {palette_.GetData()[last_]};
    auto const index = static_cast<int>(inside);
    float const fraction = inside - static_cast<float>(index);
    return {Blend(palette_.GetData()[index], palette_.GetData()[index + 1], fraction)};
  }

 private:
  static int Blend(int from, int to, float fraction) {
    std::uint32_t color = 0;
    for (int shift = 0; shift < 32; shift += 8) {
      int const start = (from >> shift) & 0xFF;
      int const difference = ((to >> shift) & 0xFF) - start;
      int const channel = static_cast<int>(static_cast<float>(difference) * fraction) + start;
      color |= static_cast<std::uint32_t>(channel) << shift;
    }
    return static_cast<int>(color);
  }

  ColumnParameter<int> palette_;
  int last_ = 0;
};

}  // namespace OstrelTransforms
