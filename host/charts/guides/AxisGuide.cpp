#include "charts/guides/AxisGuide.h"

#include <algorithm>
#include <iterator>

#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

struct Tick {
  int row;
  double position;
  bool isShown;
};

std::vector<Tick> ReadTicks(PositionScale const& scale, Results const& results) {
  auto const& positions = results[scale.tickPositions]->AsTypedArray<double>();
  auto const& shown = results[scale.labels.shown]->AsTypedArray<bool>();
  std::vector<Tick> ticks;
  for (int row = 0; row < positions.GetCount(); ++row) {
    if (positions.IsSpecial(row)) continue;
    double const position = positions.GetElement(row);
    // A given tick may lie outside of the domain; a half pixel is rounding.
    if (!(position >= -0.5 && position <= scale.space.length + 0.5)) continue;
    ticks.push_back({row, position, !shown.IsSpecial(row) && shown.GetElement(row)});
  }
  return ticks;
}

// One of the four sides of the plotting area. Along it runs the axis, away from it stand ticks and labels.
class Side {
 public:
  Side(PositionScale const& scale, double width, double height, double offset = 0)
      : isHorizontal_(scale.space.isHorizontal),
        width_(width),
        height_(height),
        offset_(offset),
        isFar_(IsFarAxis(scale)) {}

  bool IsHorizontal() const { return isHorizontal_; }
  // To the right or downwards, away from the plotting area.
  double Outwards() const { return isFar_ ? 1 : -1; }
  double GetLength() const { return isHorizontal_ ? width_ : height_; }
  // At the axis and away from it.
  Point At(double along, double outwards) const { return FromEdge(along, outwards + offset_); }
  Point Edge(double along) const { return FromEdge(along, 0); }
  Point Opposite(double along) const { return FromEdge(along, -(isHorizontal_ ? height_ : width_)); }

 private:
  Point FromEdge(double along, double outwards) const {
    double const across = (isFar_ ? (isHorizontal_ ? height_ : width_) : 0) + Outwards() * outwards;
    return isHorizontal_ ? Point{along, across} : Point{across, along};
  }

  bool isHorizontal_;
  double width_;
  double height_;
  double offset_;
  bool isFar_;
};

// Where bands end that are a step wide around their middles, each once.
std::vector<double> FindBandEnds(std::vector<double> const& middles, double step) {
  constexpr double kSamePlace = 1e-6;  // pixels; ends of neighbours may differ by rounding
  std::vector<double> ends;
  for (double const middle : middles) ends.insert(ends.end(), {middle - step / 2, middle + step / 2});
  std::ranges::sort(ends);
  auto const isSame = [](double first, double second) { return second - first < kSamePlace; };
  ends.erase(std::unique(ends.begin(), ends.end(), isSame), ends.end());
  return ends;
}

double GetTickSize(GuideSpec const& spec) { return spec.tickSize.value_or(GuideStyle::kTickSize); }

void AddLines(std::vector<RuleMarks::Rule> rules, Stroke stroke, Group& group) {
  if (!rules.empty()) group.nodes.emplace_back(RuleMarks{std::move(rules), std::move(stroke)});
}

struct AxisLines {
  std::vector<RuleMarks::Rule> grid;
  std::vector<RuleMarks::Rule> domain;
  std::vector<RuleMarks::Rule> ticks;
};

Stroke GridStroke(GuideSpec const& spec) {
  return {Fade(spec.gridColor.value_or(GuideStyle::GridColor()), spec.gridOpacity.value_or(1)),
          spec.gridWidth.value_or(1), spec.gridDash};
}

// The line along the axis, and the ticks with it where they look the same.
void AddAxisLines(GuideSpec const& spec, AxisLines lines, Group& axis) {
  Stroke const domain{spec.domainColor.value_or(GuideStyle::AxisColor()), spec.domainWidth.value_or(1), {}};
  Stroke const ticks{spec.tickColor.value_or(GuideStyle::AxisColor()), spec.tickWidth.value_or(1), {}};
  if (domain.color == ticks.color && domain.width == ticks.width) {
    std::ranges::move(lines.ticks, std::back_inserter(lines.domain));
    lines.ticks.clear();
  }
  AddLines(std::move(lines.domain), domain, axis);
  AddLines(std::move(lines.ticks), ticks, axis);
}

void AddLabels(PositionScale const& scale, Results const& results, Side const& side,
               std::vector<Tick> const& ticks, Group& axis, Extent& extent) {
  using namespace GuideStyle;
  TextMark look;
  GuideSpec const& spec = scale.encoding.axis;
  look.color = spec.labelColor.value_or(FaintTextColor());
  look.angle = scale.labels.slant;
  double const distance = GetTickSize(spec) + spec.labelPadding.value_or(kLabelPadding);
  for (NodeId const node : scale.labels.composed) {
    ComposedTexts const labels(results[node]);
    for (Tick const& tick : ticks) {
      if (!tick.isShown || !labels.HasText(tick.row)) continue;
      look.at = side.At(tick.position, distance);
      labels.Add(axis, tick.row, scale.labels.style, look, extent);
    }
  }
}

}  // namespace

AxisGuide BuildAxis(PositionScale const& scale, Results const& results, double width, double height,
                    AxisParts const& parts, Extent& extent) {
  using namespace GuideStyle;
  AxisGuide guide;
  guide.grid.role = "grid " + scale.name;
  guide.axis.role = "axis " + scale.name;
  GuideSpec const& spec = scale.encoding.axis;
  if (spec.isHidden) return guide;

  Side const side(scale, width, height, parts.offset + spec.offset.value_or(0));
  AxisLines lines;
  if (spec.domain.value_or(true)) lines.domain.push_back({side.At(0, 0), side.At(side.GetLength(), 0)});
  Extent own(Rect{side.At(0, 0).x, side.At(0, 0).y, 0, 0});
  auto const ticks = ReadTicks(scale, results);
  // Ticks that would run together mark the shown labels alone.
  bool const isCrowded = static_cast<double>(ticks.size()) * kLeastTickGap > side.GetLength();
  std::vector<double> marked;
  for (Tick const& tick : ticks) {
    if (isCrowded && !tick.isShown) continue;
    marked.push_back(tick.position);
  }
  if (spec.marksBandEnds.value_or(false) && scale.step >= 0)
    marked = FindBandEnds(marked, results[scale.step]->GetReal64());
  for (double const position : marked) {
    lines.grid.push_back({side.Edge(position), side.Opposite(position)});
    if (!spec.ticks.value_or(true)) continue;
    Point const tip = side.At(position, GetTickSize(spec));
    lines.ticks.push_back({side.At(position, 0), tip});
    own.Add({tip.x, tip.y, 0, 0});
  }
  if (spec.grid.value_or(scale.scaleType != ScaleType::Ordinal && !scale.encoding.bin))
    AddLines(std::move(lines.grid), GridStroke(spec), guide.grid);
  if (!parts.hasLabels) return guide;
  AddAxisLines(spec, std::move(lines), guide.axis);
  if (spec.labels.value_or(true)) AddLabels(scale, results, side, ticks, guide.axis, own);
  extent.Add(own.GetRect());
  if (parts.hasTitle) AddAxisTitle(scale, results, width, height, own.GetRect(), guide.axis, extent);
  return guide;
}

void AddAxisTitle(PositionScale const& scale, Results const& results, double width, double height,
                  Rect const& inner, Group& axis, Extent& extent) {
  using namespace GuideStyle;
  GuideSpec const& spec = scale.encoding.axis;
  double const padding = spec.titlePadding.value_or(kTitlePadding);
  double const middle = Side(scale, width, height).GetLength() / 2;
  bool const isFar = IsFarAxis(scale);
  Point const at = scale.space.isHorizontal
                       ? Point{middle, isFar ? inner.Bottom() + padding : inner.y - padding}
                       : Point{isFar ? inner.Right() + padding : inner.x - padding, middle};
  AddTitle(axis, results, scale.title, at, spec.titleColor.value_or(TextColor()), extent);
}

}  // namespace ostrel::charts
