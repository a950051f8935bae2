#pragma once

#include "charts/marks/MarkSpan.h"

namespace ostrel::charts {

/// One rectangle a row that every scale can place, in the layer's colours and opacities.
std::unique_ptr<MarkPlan> PlanRects(MarkContext& context, MarkSpan const& x, MarkSpan const& y);

}  // namespace ostrel::charts
