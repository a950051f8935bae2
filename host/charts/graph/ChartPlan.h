#pragma once

#include <optional>

#include "charts/graph/LayerPlan.h"
#include "charts/graph/PaneGrid.h"
#include "ostrelrtcore/OrtColor.h"

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
  std::optional<std::size_t> pane;  ///< that has the scale for itself, and the legend beside it
};

/// An axis of a pane.
struct AxisPlan {
  PositionScale const* scale = nullptr;
  bool hasLabels = true;  ///< else another pane's axis tells them, and only the grid is drawn
};

/// A plotting area with its axes and layers.
struct PanePlan {
  int row = 0;
  int column = 0;
  std::vector<AxisPlan> axes;
  std::vector<LayerPlan> layers;
};

/// A chart as a function graph, and which of its nodes the picture is made of.
struct ChartPlan {
  /// Of all panes without the gaps between them, pixels.
  double GetWidth() const { return width * grid.columnCount; }
  double GetHeight() const { return height * grid.rowCount; }

  double width = 0;  ///< of a pane, pixels
  double height = 0;
  ViewSpec view;
  std::vector<std::unique_ptr<PositionScale>> positions;
  std::vector<StylePlan> styles;
  PaneGrid grid;
  std::vector<std::string> leftOut;  ///< sentences on rows that no layer draws, and channels that mislead
  TitleText title;
  TitleText subtitle;
  std::optional<MapPlan> map;
  std::vector<PanePlan> panes;
};

/// Turns a document and its data, the table of each layer, into nodes of `compilation.graph`. The plan refers
/// to `compilation.document`, whose layers' channels it derives. Throws DocumentError and DataError.
ChartPlan PlanChart(Compilation& compilation, std::vector<std::shared_ptr<DataTable const>> const& tables,
                    ChartOptions const& options);

}  // namespace ostrel::charts
