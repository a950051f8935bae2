#include "render/ShapeComposer.h"

namespace runtime {

ShapeComposer::ShapeComposer(std::uint32_t orientation, std::uint32_t hAlign, bool allowFinerBreaks) noexcept
    : Composer(allowFinerBreaks, 0.0F), orientation_(orientation), hAlign_(hAlign) {}

ShapeComposer::~ShapeComposer() = default;

void ShapeComposer::SetWrapMode(std::uint32_t mode) {
  Composer::SetWrapMode(mode);
  if (GetWrapMode() == Clip) Composer::SetWrapMode(NoWrap);
}

void ShapeComposer::compose(std::span<Shape const> shapes, Size const& size, ComposedShapes& result) {
  result = ComposedShapes();
  shapes_ = shapes;
  // Each shape is a character of a style of its own, one that is neither a blank nor punctuation.
  static constexpr char16_t character = u'x';
  FormattedText text;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    text.append({static_cast<std::uint32_t>(i), OStringCore(&character, 1)});
  }
  auto const& runs = ComposeRuns(text, size, result);
  result.runs_.reserve(runs.size());
  for (ComposedTextRun const& run : runs) {
    if (!run.text.isEmpty()) result.runs_.push_back({run, shapes[run.styleIndex].id});
  }
}

void ShapeComposer::BeginComposition(std::uint32_t) {}
void ShapeComposer::EndComposition() noexcept { shapes_ = {}; }

float ShapeComposer::Measure(std::uint32_t style, OStringCore const&) { return shapes_[style].width; }

Composer::LineMetrics ShapeComposer::GetMetrics(std::uint32_t style) const {
  return {shapes_[style].height, shapes_[style].height, 0};
}

}  // namespace runtime
