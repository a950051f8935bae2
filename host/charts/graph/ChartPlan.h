#pragma once

#include <optional>

#include "charts/graph/LayerPlan.h"

namespace ostrel::charts {

/// What the command line says beside the document.
struct ChartOptions {
  std::optional<double> width;
  std::optional<double> height;
};

/// A scale of styles, and the layer whose mark its legend shows.
struct StylePlan {
  StyleScale scale;
  std::size_t layer = 0;
};

/// A plotting area with its axes and layers.
struct PanePlan {
  std::vector<PositionScale const*> axes;
  std::vector<LayerPlan> layers;
};

/// A chart as a function graph, and which of its nodes the picture is made of.
struct ChartPlan {
  double width = 0;  ///< of a pane, pixels
  double height = 0;
  std::vector<std::unique_ptr<PositionScale>> positions;
  std::vector<StylePlan> styles;
  std::vector<PanePlan> panes;
};

/// Turns a document and its data, the table of each layer, into nodes of `compilation.graph`. Throws
/// DocumentError and DataError.
ChartPlan PlanChart(Compilation& compilation, std::vector<std::shared_ptr<DataTable const>> const& tables,
                    ChartOptions const& options);

}  // namespace ostrel::charts
