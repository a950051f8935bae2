#include "charts/guides/StepLegend.h"

#include "charts/functions/LabelVisibility.h"
#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

using namespace GuideStyle;
using ort::core::OrtColor;

constexpr double kTick = 3;

void AddBoxes(StyleScale const& scale, Results const& results, double top, Group& group, Extent& extent) {
  auto const& colors = results[scale.steps]->AsTypedArray<OrtColor>();
  double const height = kGradientLength / colors.GetCount();
  for (int step = 0; step < colors.GetCount(); ++step) {
    double const bottom = top + kGradientLength - step * height;
    group.nodes.emplace_back(
        RectMark{{0, bottom - height, kGradientThickness, height}, colors.GetElement(step)});
  }
  extent.Add({group.origin.x, group.origin.y + top, kGradientThickness, kGradientLength});
}

}  // namespace

double AddStepLegend(StyleScale const& scale, Results const& results, double top, Group& group,
                     Extent& extent) {
  top += kLabelFontSize / 2;  // the labels of the ends reach beyond the strip
  AddBoxes(scale, results, top, group, extent);
  auto const& places = results[scale.entryPlaces]->AsTypedArray<double>();
  ComposedTexts const labels(results[scale.entryTexts]);
  std::vector<double> heights;
  for (double const place : places.GetValues()) heights.push_back(top + kGradientLength * (1 - place));
  std::vector<double> const sizes(heights.size(), kLabelFontSize);
  auto const shown = VisibleLabels(heights, sizes, kLegendRowGap, LabelStrategy::Greedy);
  for (std::size_t i = 0; i < heights.size(); ++i) {
    if (shown[i] == 0) continue;
    double const right = kGradientThickness + kTick;
    group.nodes.emplace_back(
        RuleMarks{{{{kGradientThickness, heights[i]}, {right, heights[i]}}}, {AxisColor(), 1, {}}});
    TextMark look;
    look.at = {right + kTick, heights[i]};
    look.color = FaintTextColor();
    labels.Add(group, static_cast<int>(i), kLegendLabelStyle, look, extent);
  }
  return top + kGradientLength + kLabelFontSize / 2;
}

}  // namespace ostrel::charts
