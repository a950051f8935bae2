#include "render/TextComposer.h"

#include <iterator>
#include <utility>

#include "ostreltransforms/CallbackAccess.h"

namespace runtime {

TextComposer::TextComposer(std::shared_ptr<ort::core::StoreValue> styleTable)
    : Composer(true, kTolerance), styles_(styleTable), styleKeys_(std::move(styleTable)) {}

TextComposer::~TextComposer() = default;

std::uint32_t TextComposer::GetOrientation() const { return styles_.GetOrientation(currentStyle_); }
std::uint32_t TextComposer::GetHorizontalAlignment() const {
  return styles_.GetHorizontalAlignment(currentStyle_);
}
std::uint32_t TextComposer::GetVerticalAlignment() const {
  return styles_.GetVerticalAlignment(currentStyle_);
}

void TextComposer::compose(FormattedText const& text, Size const& size, ComposedText& result) {
  result = ComposedText();
  auto& runs = ComposeRuns(text, size, result);
  // As many as there are, while the composer keeps its memory.
  result.runs_.assign(std::move_iterator(runs.begin()), std::move_iterator(runs.end()));
}

void TextComposer::BeginComposition(std::uint32_t firstStyle) {
  currentStyle_ = firstStyle;
  measurer_ = OstrelTransforms::CurrentTextWidthMeasurer();
}

void TextComposer::EndComposition() noexcept { measurer_ = nullptr; }

float TextComposer::Measure(std::uint32_t style, OStringCore const& text) {
  return measurer_(text, styles_.GetFont(style));
}

Composer::LineMetrics TextComposer::GetMetrics(std::uint32_t style) const {
  return {styles_.GetAscent(style), styles_.GetFontHeight(style), styles_.GetLeading(style)};
}

}  // namespace runtime
