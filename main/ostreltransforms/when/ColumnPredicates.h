#pragma once

#include "ostreltransforms/FunctorInputs.h"

// Predicates on columns and tables. Anything but a column, a column of another element type, and anything
// without named columns throw 55.
namespace OstrelTransforms {

// Whether an ordinary row of an Int32 column holds the number.
bool ArrayContains(Value const& column, int value);

// True when a factor is not exactly 1; else whether a Real64 column of sizes holds different ones.
bool ShouldAdjustFontSize(double widthFactor, double heightFactor, Value const& sizes);

// Whether every row of a table differs from the row before it. Cells compare by value, NaN equal to NaN;
// special cells are equal when their kinds are. Columns of unequal length throw 259.
bool AreRowsDistinct(Value const& table);

}  // namespace OstrelTransforms
