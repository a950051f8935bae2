#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/graph/LayerUses.h"

namespace ostrel::charts {

/// Plans the scales of colours, sizes, opacities and shapes, once positions are planned, and gives each
/// layer's rows their styles.
void PlanStyleScales(Compilation& compilation, LayerRowList const& rows, ChartPlan& plan);

}  // namespace ostrel::charts
