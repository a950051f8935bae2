#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Which marks of a chart stay when entries of its legends, or marks one by one, are hidden: a Bool column, a
// row a mark, to filter the marks with before they are stacked and scaled. The inputs, by position:
//
//   0, 1  the colour legend: an Int32 column with each mark's entry, and a Bool column that tells of each
//         entry, from 0 on, whether it is hidden
//   2, 3  the shape legend, likewise
//   4, 5  the size legend, likewise
//   6     hidden marks: a Bool column, a row a mark; special rows are not hidden
//   7     whether marks stay that stand for no entry of a legend (Bool): whose row is special, negative,
//         or at or past the entries
//
// A mark stays when none of these hides it. A legend's entries that are special are not hidden. A chart
// without one of the legends, or without marks hidden one by one, gives a column without rows in the place of
// 0, 2, 4 or 6, which hides nothing; all four without rows give no rows.
//
// Throws 219 for another number of inputs, 259 when the columns of marks that have rows differ in length, and
// 55 for inputs of another kind.
Value ExcludeHiddenMarks(Value const& colors, Value const& hiddenColors, Value const& shapes,
                         Value const& hiddenShapes, Value const& sizes, Value const& hiddenSizes,
                         Value const& hiddenMarks, bool keepsUnlisted);

}  // namespace OstrelTransforms
