#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// One symbol a row that every scale can place. All channels but x and y count that the layer has.
std::unique_ptr<MarkPlan> PlanSymbols(MarkContext& context, NodeId x, NodeId y, MarkLook const& look);

/// The symbols of the property point of lines and areas, filled, in the mark's own colour where they have
/// none; null without.
std::unique_ptr<MarkPlan> PlanPoints(MarkContext& context, NodeId x, NodeId y);

}  // namespace ostrel::charts
