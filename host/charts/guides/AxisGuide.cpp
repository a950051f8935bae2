#include "charts/guides/AxisGuide.h"

#include <cmath>
#include <numbers>

namespace ostrel::charts {
namespace {

struct Tick {
  double position;
  std::string label;
  bool isShown;
};

std::vector<Tick> ReadTicks(PositionScale const& scale, Results const& results) {
  auto const& positions = results[scale.tickPositions]->AsTypedArray<double>();
  auto const& labels = results[scale.tickLabels]->AsTypedArray<ort::core::RIndirectString>();
  auto const& shown = results[scale.shownLabels]->AsTypedArray<bool>();
  std::vector<Tick> ticks;
  for (int row = 0; row < positions.GetCount(); ++row) {
    if (positions.IsSpecial(row)) continue;
    double const position = positions.GetElement(row);
    // A given tick may lie outside of the domain; a half pixel is rounding.
    if (!(position >= -0.5 && position <= scale.space.length + 0.5)) continue;
    bool const isShown = !labels.IsSpecial(row) && !shown.IsSpecial(row) && shown.GetElement(row);
    ticks.push_back({position, labels.GetElement(row).Get().toUtf8(), isShown});
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

TextMark PlaceLabel(Side const& side, Tick const& tick, double angle, TextSetter const& setter) {
  using namespace GuideStyle;
  TextMark label;
  label.text = tick.label;
  label.at = side.At(tick.position, kTickSize + kLabelPadding);
  label.font = setter.MakeFont(kLabelFontSize);
  label.color = FaintTextColor();
  label.angle = angle;
  if (!side.IsHorizontal()) {
    label.anchor = side.Outwards() < 0 ? TextAnchor::End : TextAnchor::Start;
    label.baseline = TextBaseline::Middle;
    return label;
  }
  double const lean = std::sin(angle * std::numbers::pi / 180) * side.Outwards();
  if (std::abs(lean) < 0.1) {
    label.anchor = TextAnchor::Middle;
    label.baseline = side.Outwards() > 0 ? TextBaseline::Top : TextBaseline::Bottom;
  } else {
    label.anchor = lean > 0 ? TextAnchor::Start : TextAnchor::End;
    label.baseline = TextBaseline::Middle;
  }
  return label;
}

}  // namespace

bool IsFarAxis(PositionScale const& scale) {
  std::string const& orient = scale.encoding.axis.orient;
  return scale.space.isHorizontal ? orient != "top" : orient == "right";
}

AxisGuide BuildAxis(PositionScale const& scale, Results const& results, double width, double height,
                    AxisParts const& parts, TextSetter const& setter, Extent& extent) {
  using namespace GuideStyle;
  AxisGuide guide;
  guide.grid.role = "grid " + scale.name;
  guide.axis.role = "axis " + scale.name;
  AxisSpec const& spec = scale.encoding.axis;
  if (spec.isHidden) return guide;

  Side const side(scale, width, height, parts.offset);
  RuleMarks gridLines{{}, {GridColor(), 1, {}}};
  RuleMarks lines{{{side.At(0, 0), side.At(side.GetLength(), 0)}}, {AxisColor(), 1, {}}};
  Extent own(Rect{side.At(0, 0).x, side.At(0, 0).y, 0, 0});
  auto const ticks = ReadTicks(scale, results);
  // Ticks that would run together mark the shown labels alone.
  bool const isCrowded = static_cast<double>(ticks.size()) * kLeastTickGap > side.GetLength();
  for (Tick const& tick : ticks) {
    if (isCrowded && !tick.isShown) continue;
    gridLines.rules.push_back({side.Edge(tick.position), side.Opposite(tick.position)});
    Point const tip = side.At(tick.position, kTickSize);
    lines.rules.push_back({side.At(tick.position, 0), tip});
    own.Add({tip.x, tip.y, 0, 0});
  }
  if (spec.grid.value_or(scale.scaleType != ScaleType::Ordinal))
    guide.grid.nodes.emplace_back(std::move(gridLines));
  if (!parts.hasLabels) return guide;
  guide.axis.nodes.emplace_back(std::move(lines));
  for (Tick const& tick : ticks) {
    if (tick.isShown)
      setter.Add(guide.axis, PlaceLabel(side, tick, spec.labelAngle.value_or(0), setter), own, kLabelLimit);
  }
  extent.Add(own.GetRect());
  if (parts.hasTitle) AddAxisTitle(scale, width, height, own.GetRect(), setter, guide.axis, extent);
  return guide;
}

void AddAxisTitle(PositionScale const& scale, double width, double height, Rect const& inner,
                  TextSetter const& setter, Group& axis, Extent& extent) {
  using namespace GuideStyle;
  Side const side(scale, width, height);
  TextMark title;
  title.text = scale.encoding.axis.title.text;
  if (title.text.empty()) return;
  title.font = setter.MakeFont(kTitleFontSize, true);
  title.color = TextColor();
  title.anchor = TextAnchor::Middle;
  double const middle = side.GetLength() / 2;
  bool const isFar = IsFarAxis(scale);
  if (side.IsHorizontal()) {
    title.at = {middle, isFar ? inner.Bottom() + kTitlePadding : inner.y - kTitlePadding};
  } else {
    title.at = {isFar ? inner.Right() + kTitlePadding : inner.x - kTitlePadding, middle};
    title.angle = -90;
  }
  title.baseline = isFar ? TextBaseline::Top : TextBaseline::Bottom;
  setter.Add(axis, title, extent);
}

}  // namespace ostrel::charts
