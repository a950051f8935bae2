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
  Side(PositionScale const& scale, double width, double height)
      : isHorizontal_(scale.space.isHorizontal), width_(width), height_(height) {
    std::string const& orient = scale.encoding.axis.orient;
    isFar_ = isHorizontal_ ? orient != "top" : orient == "right";
  }

  bool IsHorizontal() const { return isHorizontal_; }
  // To the right or downwards, away from the plotting area.
  double Outwards() const { return isFar_ ? 1 : -1; }
  double GetLength() const { return isHorizontal_ ? width_ : height_; }
  Point At(double along, double outwards) const {
    double const across = (isFar_ ? (isHorizontal_ ? height_ : width_) : 0) + Outwards() * outwards;
    return isHorizontal_ ? Point{along, across} : Point{across, along};
  }
  Point Opposite(double along) const { return At(along, -(isHorizontal_ ? height_ : width_)); }

 private:
  bool isHorizontal_;
  double width_;
  double height_;
  bool isFar_ = false;
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

// The title stands outside of everything that the axis has on its side so far.
void AddTitle(Side const& side, std::string const& text, Rect const& labels, TextSetter const& setter,
              Group& axis, Extent& extent) {
  using namespace GuideStyle;
  TextMark title;
  title.text = text;
  title.font = setter.MakeFont(kTitleFontSize, true);
  title.color = TextColor();
  title.anchor = TextAnchor::Middle;
  double const middle = side.GetLength() / 2;
  if (side.IsHorizontal()) {
    bool const isBelow = side.Outwards() > 0;
    title.at = {middle, isBelow ? labels.Bottom() + kTitlePadding : labels.y - kTitlePadding};
    title.baseline = isBelow ? TextBaseline::Top : TextBaseline::Bottom;
  } else {
    bool const isRight = side.Outwards() > 0;
    title.at = {isRight ? labels.Right() + kTitlePadding : labels.x - kTitlePadding, middle};
    title.angle = -90;
    title.baseline = isRight ? TextBaseline::Top : TextBaseline::Bottom;
  }
  setter.Add(axis, title, extent);
}

}  // namespace

AxisGuide BuildAxis(PositionScale const& scale, Results const& results, double width, double height,
                    TextSetter const& setter, Extent& extent) {
  using namespace GuideStyle;
  AxisGuide guide;
  guide.grid.role = "grid " + scale.name;
  guide.axis.role = "axis " + scale.name;
  AxisSpec const& spec = scale.encoding.axis;
  if (spec.isHidden) return guide;

  Side const side(scale, width, height);
  RuleMarks gridLines{{}, {GridColor(), 1, {}}};
  RuleMarks lines{{{side.At(0, 0), side.At(side.GetLength(), 0)}}, {AxisColor(), 1, {}}};
  Extent own(Rect{side.At(0, 0).x, side.At(0, 0).y, 0, 0});
  auto const ticks = ReadTicks(scale, results);
  // Ticks that would run together mark the shown labels alone.
  bool const isCrowded = static_cast<double>(ticks.size()) * kLeastTickGap > side.GetLength();
  for (Tick const& tick : ticks) {
    if (isCrowded && !tick.isShown) continue;
    gridLines.rules.push_back({side.At(tick.position, 0), side.Opposite(tick.position)});
    Point const tip = side.At(tick.position, kTickSize);
    lines.rules.push_back({side.At(tick.position, 0), tip});
    own.Add({tip.x, tip.y, 0, 0});
  }
  guide.axis.nodes.emplace_back(std::move(lines));
  if (spec.grid.value_or(scale.scaleType != ScaleType::Ordinal))
    guide.grid.nodes.emplace_back(std::move(gridLines));
  for (Tick const& tick : ticks) {
    if (tick.isShown)
      setter.Add(guide.axis, PlaceLabel(side, tick, spec.labelAngle.value_or(0), setter), own, kLabelLimit);
  }
  extent.Add(own.GetRect());
  if (auto const& title = spec.title.text; !title.empty()) {
    AddTitle(side, title, own.GetRect(), setter, guide.axis, extent);
  }
  return guide;
}

}  // namespace ostrel::charts
