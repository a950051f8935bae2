#pragma once

#include "charts/scales/StyleScale.h"

namespace ostrel::charts {

/// A scale that gives the numbers of an interval one colour: intervals of equal width, those between the
/// thresholds of the domain, or bins. A number between two intervals belongs to the upper one, and one
/// outside of all to the nearest. With a middle, a diverging palette parts there: in whole steps where the
/// middle lies between two intervals, and else the one around it has the palette's middle colour.
StyleScale PlanStepScale(Compilation& compilation, ScaleSource const& source);

}  // namespace ostrel::charts
