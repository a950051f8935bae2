#pragma once

#include "charts/graph/Compilation.h"
#include "charts/graph/LayerRows.h"
#include "charts/texts/TextNodes.h"

namespace ostrel::charts {

/// What a channel of panes shows beside or above them.
struct PaneHeader {
  Encoding const* encoding = nullptr;
  std::vector<std::string> labels;  ///< one for each row, column or pane
  /// How they are set; -1 where they are not shown.
  TitleText composedLabels = {};
  TitleText title = {};
};

/// Where a layer's rows stand on a map: Real64 columns of pixels, -1 for others.
struct MapPlaces {
  NodeId x = -1;
  NodeId y = -1;
};

/// A place in the grid and the rows that each layer has there.
struct PaneCell {
  int row = 0;
  int column = 0;
  std::vector<std::shared_ptr<LayerRows>> layers;
  std::vector<MapPlaces> places;  ///< of a map one for each layer
};

/// The panes of a chart; without channels of panes a single one with all rows.
struct PaneGrid {
  int rowCount = 1;
  int columnCount = 1;
  std::optional<PaneHeader> rows;     ///< left of the grid
  std::optional<PaneHeader> columns;  ///< above the grid
  std::optional<PaneHeader> panes;    ///< above each pane
  std::vector<PaneCell> cells;
  PaneSpacing spacing;

  bool IsSingle() const { return !rows && !columns && !panes; }
};

/// Layers whose table lacks a pane's field have all their rows in every pane. Throws DocumentError.
PaneGrid PlanPanes(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& layers);

}  // namespace ostrel::charts
