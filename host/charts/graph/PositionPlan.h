#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/graph/LayerUses.h"

namespace ostrel::charts {

/// How long an axis is asked to be: so many pixels, or so many for each step of discrete values.
struct LengthRequest {
  std::optional<double> length;
  std::optional<double> step;
  LengthSpec defaults;

  /// Of an axis that no field stands on, which is one value wide.
  double GetDiscrete() const;
  double GetContinuous() const;
};

/// Plans the scales of x and y and places each layer's rows on them. Sets the pane's width and height: as
/// asked for, or what the steps of discrete values need.
void PlanPositionScales(Compilation& compilation, LayerRowList const& rows, LengthRequest const& width,
                        LengthRequest const& height, ChartPlan& plan);

}  // namespace ostrel::charts
