#pragma once

#include <vector>

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// The extents of the axis that each row names: a key map of the Real64 columns "minResult", "maxResult",
// "zeroResult", "minRangeResult" and "maxRangeResult" (see AxisExtents). The inputs, by position:
//
//   0  domains: a column of range tuples, one an axis (see RangeUtilities)
//   1  ranges: a column of tuples, one an axis, whose members 0 and 1 are the values of which the positions
//      are wanted
//   2  reversed flags: a Bool column, one row an axis
//   3  axes: an Int32 or Int64 column with the position of an axis for each row of the result
//   4  whether a row that names no axis goes from 0 to 1 (Bool); otherwise it goes from 1 to 0
//
// Special ends count as 0; a special row of the axes names none. Throws 219, without a message, for another
// number of inputs, and 55 for fewer ranges or flags than domains and for inputs of another kind.
Value ComputeAxisExtents(std::vector<Value> const& inputs);

}  // namespace OstrelTransforms
