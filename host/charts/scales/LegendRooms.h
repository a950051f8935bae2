#pragma once

#include "charts/scales/StyleScale.h"

namespace ostrel::charts {

/// Where the entries of a legend that runs along the chart's width stand, in lines of the given width in
/// pixels: a node of composeShapes over one list, of which each entry is a shape with room for its symbol,
/// its label and the gaps behind them. Entries that are not shown are 0 wide. Kept.
NodeId PlanLegendRooms(GraphBuilder& graph, StyleScale const& scale, bool isOfLines, double width);

/// How wide an entry's symbol of a size in square pixels is.
double GetSymbolWidth(double size, bool isOfLines);

}  // namespace ostrel::charts
