#pragma once

#include <cstdint>
#include <memory>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/Callbacks.h"
#include "render/Composer.h"
#include "render/StyleKeys.h"
#include "render/TextStyles.h"

namespace runtime {

// Composes text whose styles are rows of a text style table. It measures with the host's text-width callback,
// has a tolerance of 0.8 pixels and allows finer breaks.
//
// A line is as high as the largest "font_height" of its runs, their common baseline lies the largest "ascent"
// below its top, and the largest "leading" separates it from the next line. Orientation and alignments of a
// text are those of its first run's style. Of the style table, "text_font" is looked up when the composer is
// made, the others when they are first needed: a missing column throws 219 with its name, one of another kind
// 55, and a style index that the table does not have 55.
class OSTREL_API TextComposer final : public Composer {
 public:
  static constexpr float kTolerance = 0.8F;

  explicit TextComposer(std::shared_ptr<ort::core::StoreValue> styleTable);
  ~TextComposer() override;

  std::uint32_t GetOrientation() const override;
  std::uint32_t GetHorizontalAlignment() const override;
  std::uint32_t GetVerticalAlignment() const override;
  float GetVerticalDirection() const override { return 1.0F; }

  // Lays a text out in a box of this size; when a side is 0, the box is unbounded on both. What the callback
  // throws passes through, std::bad_function_call when there is none; the result then has no runs.
  void compose(FormattedText const& text, Size const& size, ComposedText& result);

  TextStyles const& GetStyles() const noexcept { return styles_; }
  // What the styles contribute to the keys of compositions.
  StyleKeys& GetStyleKeys() noexcept { return styleKeys_; }

 private:
  void BeginComposition(std::uint32_t firstStyle) override;
  void EndComposition() noexcept override;
  float Measure(std::uint32_t style, OStringCore const& text) override;
  LineMetrics GetMetrics(std::uint32_t style) const override;

  TextStyles styles_;
  StyleKeys styleKeys_;
  std::uint32_t currentStyle_ = 0;
  // The host's, for the time of a composition.
  OstrelTransforms::TextWidthMeasurer measurer_;
};

}  // namespace runtime
