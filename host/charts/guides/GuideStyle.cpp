#include "charts/guides/GuideStyle.h"

#include <cmath>
#include <numbers>

namespace ostrel::charts {
namespace {

// The parts of a font's size that stand above and below the baseline, as guides reckon with them.
constexpr double kAscent = 0.93;
constexpr double kDescent = 0.24;

struct Span {
  double low;
  double high;
};

Span HorizontalSpan(TextAnchor anchor, double width) {
  switch (anchor) {
    case TextAnchor::Start:
      return {0, width};
    case TextAnchor::Middle:
      return {-width / 2, width / 2};
    case TextAnchor::End:
      break;
  }
  return {-width, 0};
}

Span VerticalSpan(TextBaseline baseline, double size) {
  double const height = (kAscent + kDescent) * size;
  switch (baseline) {
    case TextBaseline::Alphabetic:
      return {-kAscent * size, kDescent * size};
    case TextBaseline::Top:
      return {0, height};
    case TextBaseline::Middle:
      return {-height / 2, height / 2};
    case TextBaseline::Bottom:
      break;
  }
  return {-height, 0};
}

}  // namespace

double TextSetter::MeasureWidth(std::string const& text, TextFont const& font) const {
  services::FontRequest const request{OStringCore::fromUtf8(font.family), font.size, font.weight,
                                      font.isItalic ? 1 : 0};
  return measurer_.MeasureTextWidth(OStringCore::fromUtf8(text).view(), request);
}

Rect TextSetter::MeasureRect(TextMark const& text) const {
  Span const along = HorizontalSpan(text.anchor, MeasureWidth(text.text, text.font));
  Span const across = VerticalSpan(text.baseline, text.font.size);
  double const angle = text.angle * std::numbers::pi / 180;
  auto const turn = [&](double x, double y) {
    return Rect{text.at.x + x * std::cos(angle) - y * std::sin(angle),
                text.at.y + x * std::sin(angle) + y * std::cos(angle), 0, 0};
  };
  Extent extent(turn(along.low, across.low));
  extent.Add(turn(along.high, across.low));
  extent.Add(turn(along.low, across.high));
  extent.Add(turn(along.high, across.high));
  return extent.GetRect();
}

void TextSetter::Add(Group& group, TextMark text, Extent& extent) const {
  Rect rect = MeasureRect(text);
  rect.x += group.origin.x;
  rect.y += group.origin.y;
  extent.Add(rect);
  group.nodes.emplace_back(std::move(text));
}

}  // namespace ostrel::charts
