#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>

#include "ostrelrtcore/OrtColor.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "ostrelrtcore/RowLoop.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/map/ElementaryFunctions.h"

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
    Place const place = FindPlace(x, last_);
    int const* const from = palette_.GetData() + place.index;
    return {Blend(from[0], from[place.isInside], place.fraction)};
  }

  // Places and blends are computed with vector instructions; only the colours are fetched one by one.
  void ApplyToArray(std::span<double const> input, std::span<ort::core::OrtColor> output) const {
    constexpr std::size_t blockRows = 256;
    int from[blockRows];
    int to[blockRows];
    float fractions[blockRows];
    int const* const colors = palette_.GetData();
    for (std::size_t first = 0; first < input.size(); first += blockRows) {
      std::size_t const count = std::min(blockRows, input.size() - first);
      auto const findPlaces =
          [&, last = last_, in = input.data() + first ](std::size_t i) __attribute__((always_inline)) {
        Place const place = FindPlace(in[i], last);
        from[i] = place.index;
        to[i] = place.index + place.isInside;
        fractions[i] = place.fraction;
      };
      auto const blend = [&, out = output.data() + first ](std::size_t i) __attribute__((always_inline)) {
        std::construct_at(out + i, Blend(from[i], to[i], fractions[i]));
      };
      ort::core::RunRows(count, findPlaces);
      for (std::size_t i = 0; i < count; ++i) {
        from[i] = colors[from[i]];
        to[i] = colors[to[i]];
      }
      ort::core::RunRows(count, blend);
    }
  }

 private:
  // Between the colours at index and index + 1, or at the last colour, where isInside is 0.
  struct Place {
    int index;
    int isInside;
    float fraction;
  };

  [[gnu::always_inline]] static Place FindPlace(double x, int last) {
    auto const end = static_cast<float>(last);
    auto const position = static_cast<float>(last * x);
    float const inside = detail::FloatIf(position > 0.0F, position);  // 0 for NaN, too
    bool const isInside = inside < end;
    float const bounded = detail::FloatIf(isInside, inside);
    auto const floor = static_cast<int>(bounded);
    int const isInsideMask = -static_cast<int>(isInside);
    return {(floor & isInsideMask) | (last & ~isInsideMask), -isInsideMask,
            bounded - static_cast<float>(floor)};
  }

  [[gnu::always_inline]] static int Blend(int from, int to, float fraction) {
    return BlendChannel<0>(from, to, fraction) | BlendChannel<8>(from, to, fraction) |
           BlendChannel<16>(from, to, fraction) | BlendChannel<24>(from, to, fraction);
  }

  template <int shift>
  [[gnu::always_inline]] static int BlendChannel(int from, int to, float fraction) {
    int const start = (from >> shift) & 0xFF;
    int const difference = ((to >> shift) & 0xFF) - start;
    int const channel = static_cast<int>(static_cast<float>(difference) * fraction) + start;
    return static_cast<int>(static_cast<std::uint32_t>(channel) << shift);
  }

  ColumnParameter<int> palette_;
  int last_ = 0;
};

}  // namespace OstrelTransforms
