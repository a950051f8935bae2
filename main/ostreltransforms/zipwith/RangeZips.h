#pragma once

#include "ostreltransforms/FunctorInputs.h"

// Zip-withs of range tuples (see RangeUtilities).
namespace OstrelTransforms {

// Moves one end of a range of numbers to 0 where the flag says so and the range does not reach it: the upper
// end when the range lies below, else the lower one when it lies above. On a logarithmic scale the end is
// moved where its logarithm is 0, to 1. A special end counts as 0. The new ends are Real64. Ranges of dates
// and of the modes that fix both ends (3 and 10) are returned as they are.
Value ExtendRangesToIncludeZero(Value const& range, bool includesZero);

}  // namespace OstrelTransforms
