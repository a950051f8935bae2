#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// One symbol a row that every scale can place. All channels but x and y count that the layer has.
std::unique_ptr<MarkPlan> PlanSymbols(MarkContext& context, NodeId x, NodeId y, MarkLook const& look);

}  // namespace ostrel::charts
