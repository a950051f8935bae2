#include "charts/guides/GuideStyle.h"

#include <cmath>
#include <numbers>

#include "charts/texts/TextDirection.h"

namespace ostrel::charts {
namespace {

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

Span VerticalSpan(TextBaseline baseline, services::FontMetrics const& metrics) {
  switch (baseline) {
    case TextBaseline::Alphabetic:
      return {-metrics.ascent, metrics.height - metrics.ascent};
    case TextBaseline::Top:
      return {0, metrics.height};
    case TextBaseline::Middle:
      return {-metrics.height / 2, metrics.height / 2};
    case TextBaseline::Bottom:
      break;
  }
  return {-metrics.height, 0};
}

services::FontRequest MakeRequest(TextFont const& font) {
  return {OStringCore::fromUtf8(font.family), font.size, font.weight, font.isItalic ? 1 : 0};
}

}  // namespace

double TextSetter::MeasureWidth(std::string const& text, TextFont const& font) const {
  return measurer_.MeasureTextWidth(OStringCore::fromUtf8(text).view(), MakeRequest(font));
}

Rect TextSetter::MeasureRect(TextMark const& text) const {
  Span const along = HorizontalSpan(text.anchor, MeasureWidth(text.text, text.font));
  Span const across = VerticalSpan(text.baseline, measurer_.GetMetrics(MakeRequest(text.font)));
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

Rect TextSetter::Add(Group& group, TextMark const& text, Extent& extent) const {
  Rect const room = MeasureRect(text);
  extent.Add({room.x + group.origin.x, room.y + group.origin.y, room.width, room.height});
  if (text.text.empty()) return room;
  group.nodes.emplace_back(text);
  std::get<TextMark>(group.nodes.back()).isRightToLeft = ReadsFromRight(text.text);
  return room;
}

}  // namespace ostrel::charts
