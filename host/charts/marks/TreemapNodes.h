#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// Rectangles of a treemap that have an area: Real64 columns in pixels with a row a rectangle.
struct TreemapTiles {
  NodeId left = -1;
  NodeId top = -1;
  NodeId right = -1;
  NodeId bottom = -1;
  NodeId label = -1;  ///< String column; -1 without labels
};

/// The nodes that lay a layer's rows out as a treemap. Rows that agree in all fields of channel detail, the
/// outermost first, are one leaf, and their sizes are added up; without such a field each row is a leaf. Rows
/// without a size above 0 and those that a scale can't place are in no leaf.
struct TreemapNodes {
  TreemapTiles leaves;
  TreemapTiles groups;        ///< the inner nodes, outer ones first
  NodeId headerHeights = -1;  ///< of the groups, pixels
  NodeId tooltips = -1;       ///< of each leaf: its first row's, as String column; -1 without channel tooltip
  NodeId hasSize = -1;        ///< Bool column of all rows; -1 without channel size
  NodeId color = -1;          ///< of each leaf: its first row's; -1 where no field tells it
  NodeId opacity = -1;        ///< likewise
};

TreemapNodes PlanTreemapNodes(MarkContext& context);

}  // namespace ostrel::charts
