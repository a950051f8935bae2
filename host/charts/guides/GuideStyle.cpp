#include "charts/guides/GuideStyle.h"

#include <unicode/ubidi.h>

#include <cmath>
#include <numbers>

#include "ostrelsys/OCType.h"

namespace ostrel::charts {
namespace {

// A text of more UTF-16 units is cut before it is measured.
constexpr int kLongestText = 4'096;

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

std::vector<std::string> SplitLines(std::string const& text) {
  std::vector<std::string> lines(1);
  for (char const byte : text) {
    if (byte == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += byte;
    }
  }
  return lines;
}

// How many lines stand before the one that the text's place is told of.
double LinesBefore(TextBaseline baseline, std::size_t count) {
  double const further = static_cast<double>(count) - 1;
  if (baseline == TextBaseline::Bottom) return further;
  return baseline == TextBaseline::Middle ? further / 2 : 0;
}

bool ReadsFromRight(std::string const& text) {
  OStringCore const wide = OStringCore::fromUtf8(text);
  auto const units = wide.view();
  return ubidi_getBaseDirection(units.data(), static_cast<int32_t>(units.size())) == UBIDI_RTL;
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

std::string TextSetter::Limit(std::string const& text, TextFont const& font, double limit) const {
  OStringCore const whole = OStringCore::fromUtf8(text);
  auto const request = MakeRequest(font);
  bool const isLong = whole.length() > kLongestText;
  if (!isLong && measurer_.MeasureTextWidth(whole.view(), request) <= limit) return text;
  OStringCore const start = isLong ? OStringCore(whole.view().substr(0, kLongestText)) : whole;
  std::vector<int> const boundaries = OCType::clusterBoundaries(start);
  auto const cut = [&](int length) {
    return std::u16string(start.view().substr(0, static_cast<std::size_t>(length))) + u"\u2026";
  };
  auto const fits = [&](int length) { return measurer_.MeasureTextWidth(cut(length), request) <= limit; };
  auto const end = std::ranges::partition_point(boundaries, fits);
  return OStringCore(cut(end == boundaries.begin() ? 0 : *std::prev(end))).toUtf8();
}

Rect TextSetter::Add(Group& group, TextMark const& text, Extent& extent, double limit) const {
  std::vector<std::string> const lines = SplitLines(text.text);
  double const step = measurer_.GetMetrics(MakeRequest(text.font)).height + GuideStyle::kTitleLineGap;
  double const angle = text.angle * std::numbers::pi / 180;
  double down = -LinesBefore(text.baseline, lines.size()) * step;
  Extent own(Rect{text.at.x, text.at.y, 0, 0});
  for (std::string const& line : lines) {
    TextMark mark = text;
    mark.text = Limit(line, text.font, limit);
    mark.isRightToLeft = ReadsFromRight(line);
    mark.at = {text.at.x - down * std::sin(angle), text.at.y + down * std::cos(angle)};
    own.Add(MeasureRect(mark));
    if (!line.empty()) group.nodes.emplace_back(std::move(mark));
    down += step;
  }
  Rect const room = own.GetRect();
  extent.Add({room.x + group.origin.x, room.y + group.origin.y, room.width, room.height});
  return room;
}

}  // namespace ostrel::charts
