#pragma once

#include "charts/graph/PaneGrid.h"

namespace ostrel::charts {

/// The map that all panes show.
struct MapPlan {
  NodeId view = -1;               ///< KeyMap of function mapView
  NodeId projection = -1;         ///< Int32 scalar
  NodeId world = -1;              ///< Real64 scalars: pixels from a copy of the world to the next one,
  NodeId height = -1;             ///< from the projection's upper to its lower edge,
  NodeId shift = -1;              ///< and from its upper edge down to the pane's
  std::vector<PaneRows> sources;  ///< the degrees of the layers, special where a row has no place
};

/// Fits the map to the points of all layers, or to images or else outlines where there are none, and makes
/// each layer's rows those of the copies of its points that a pane shows.
MapPlan PlanMap(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& layers, double width,
                double height, PaneGrid& grid);

}  // namespace ostrel::charts
