#pragma once

#include <vector>

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// One legend: the scales that share it, of which the first one tells title, labels and side.
struct LegendContent {
  LayerPlan const* layer;
  std::vector<StyleScale const*> scales;
};

/// Draws a legend's entries below `top`: one below the other, or, of a legend across the chart, in lines. At
/// most 30, and how many more there are. Gives their bottom.
double AddEntryLegend(LegendContent const& legend, Results const& results, TextSetter const& setter,
                      double top, Group& group, Extent& extent);

}  // namespace ostrel::charts
