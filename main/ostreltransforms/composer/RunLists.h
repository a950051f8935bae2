#pragma once

#include <vector>

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// The runs of one text: `count` rows of the run columns from `first` on.
struct RunList {
  int first = 0;
  int count = 0;
};

// Reads the Int32 columns of first runs and of counts, where a special row stands for no runs. Throws 259 for
// columns of unequal length, and 55 for a negative number, for a list that is not within the `runCount` rows,
// and when all lists together are longer than a column can be.
std::vector<RunList> ReadRunLists(Value const& firstRuns, Value const& runCounts, int runCount);

// Throws 259 unless the column has `count` rows, and 55 unless it is of the element type.
void RequireRows(Value const& column, ort::core::StoreType elementType, int count, wchar_t const* name);

// A length in pixels as layout has it. Throws 2 with the name as message for one that is negative, not a
// number, or beyond the range of a float.
float ReadLength(double length, wchar_t const* name);

// Throws 2 with the name as message for a number outside of [least, most].
void RequireWithin(int number, int least, int most, wchar_t const* name);

}  // namespace OstrelTransforms
