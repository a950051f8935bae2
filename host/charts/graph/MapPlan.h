#pragma once

#include "charts/graph/PaneGrid.h"

namespace ostrel::charts {

/// A layer's rows as one of the channels of degrees has them.
struct MapRows {
  Encoding const* encoding = nullptr;
  NodeId degrees = -1;  ///< Real64 column, special where a row has no place
  int rowCount = 0;
};

/// The map that all panes show.
struct MapPlan {
  NodeId view = -1;        ///< KeyMap of function mapView
  NodeId projection = -1;  ///< Int32 scalar
  NodeId world = -1;       ///< Real64 scalars: pixels from a copy of the world to the next one,
  NodeId height = -1;      ///< from the projection's upper to its lower edge,
  NodeId shift = -1;       ///< and from its upper edge down to the pane's
  std::vector<MapRows> sources;
};

/// Fits the map to the points of all layers, or to images or else outlines where there are none, and makes
/// each layer's rows those of the copies of its points that a pane shows.
MapPlan PlanMap(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& layers, double width,
                double height, PaneGrid& grid);

}  // namespace ostrel::charts
