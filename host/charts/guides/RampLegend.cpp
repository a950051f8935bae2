#include "charts/guides/RampLegend.h"

#include "charts/functions/LabelVisibility.h"
#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

using namespace GuideStyle;
using ort::core::OrtColor;

constexpr double kTick = 3;
constexpr double kTickToLabel = 3;

// Places along a ramp, 0 to 1, and distances across it, from its near side away to its labels.
class RampFrame {
 public:
  RampFrame(bool isHorizontal, double top) : isHorizontal_(isHorizontal), top_(top) {}

  Point At(double place, double across) const {
    double const along = place * kGradientLength;
    return isHorizontal_ ? Point{along, top_ + across} : Point{across, top_ + kGradientLength - along};
  }
  Rect Between(double from, double to) const {
    double const length = (to - from) * kGradientLength;
    return isHorizontal_ ? Rect{from * kGradientLength, top_, length, kGradientThickness}
                         : Rect{0, top_ + (1 - to) * kGradientLength, kGradientThickness, length};
  }

 private:
  bool isHorizontal_;
  double top_;
};

void AddSteps(StyleScale const& scale, Results const& results, RampFrame const& frame, Group& group) {
  auto const& colors = results[scale.steps]->AsTypedArray<OrtColor>();
  double const count = colors.GetCount();
  for (int step = 0; step < colors.GetCount(); ++step) {
    group.nodes.emplace_back(
        RectMark{frame.Between(step / count, (step + 1) / count), colors.GetElement(step)});
  }
}

void AddGradient(StyleScale const& scale, Results const& results, RampFrame const& frame, Group& group) {
  GradientMark gradient{frame.Between(0, 1), {}, scale.encoding.legend.RunsAcross()};
  for (int const color : results[scale.palette]->AsTypedArray<int>().GetValues())
    gradient.colors.emplace_back(color);
  group.nodes.emplace_back(std::move(gradient));
}

void AddLabels(StyleScale const& scale, Results const& results, RampFrame const& frame, Group& group,
               Extent& extent) {
  bool const isHorizontal = scale.encoding.legend.RunsAcross();
  TextStyle const style = scale.GetLabelStyle();
  auto const& places = results[scale.entryPlaces]->AsTypedArray<double>();
  ComposedTexts const labels(results[scale.entryTexts]);
  std::vector<int> rows;
  std::vector<double> positions;
  std::vector<double> sizes;
  for (int row = 0; row < places.GetCount(); ++row) {
    if (!IsEntryShown(scale, results, row)) continue;
    rows.push_back(row);
    Point const at = frame.At(places.GetElement(row), 0);
    positions.push_back(isHorizontal ? at.x : at.y);
    sizes.push_back(isHorizontal ? labels.GetWidth(row) : style.fontSize);
  }
  auto const shown = VisibleLabels(positions, sizes, kLegendRowGap, LabelStrategy::Greedy);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (shown[i] == 0) continue;
    double const place = places.GetElement(rows[i]);
    double const tickEnd = kGradientThickness + kTick;
    group.nodes.emplace_back(
        RuleMarks{{{frame.At(place, kGradientThickness), frame.At(place, tickEnd)}}, {AxisColor(), 1, {}}});
    TextMark look;
    look.at = frame.At(place, tickEnd + kTickToLabel);
    look.color = scale.encoding.legend.labelColor.value_or(FaintTextColor());
    labels.Add(group, rows[i], style, look, extent);
  }
}

}  // namespace

double AddRampLegend(StyleScale const& scale, Results const& results, double top, Group& group,
                     Extent& extent) {
  bool const isHorizontal = scale.encoding.legend.RunsAcross();
  // The labels of the lowest and highest step's ends reach beyond the strip.
  double const margin = scale.steps >= 0 && !isHorizontal ? scale.GetLabelStyle().fontSize / 2 : 0;
  RampFrame const frame(isHorizontal, top + margin);
  if (scale.steps >= 0) {
    AddSteps(scale, results, frame, group);
  } else {
    AddGradient(scale, results, frame, group);
  }
  Rect room = frame.Between(0, 1);
  double const bottom = room.Bottom() + margin;
  room.x += group.origin.x;
  room.y += group.origin.y;
  extent.Add(room);
  AddLabels(scale, results, frame, group, extent);
  return isHorizontal ? extent.GetRect().Bottom() - group.origin.y : bottom;
}

}  // namespace ostrel::charts
