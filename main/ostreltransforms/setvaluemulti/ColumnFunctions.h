#pragma once

#include "ostreltransforms/FunctorInputs.h"

// Functions of whole columns and of the values held in collections.
namespace OstrelTransforms {

// A column of the same length whose every row is the total of the column's ordinary rows, added in order;
// special of kind 1 where there are none. T is int64 (wraps) or double. Throws 55 for anything but a column
// of T.
template <class T>
Value Accumulate(Value const& column);

// True when the flag says so, or the column has a row.
bool ColumnNotEmpty(Value const& column, bool countsAsFilled);

// The value a fraction of the way from one to another, by StoreValueOperators::Interpolate.
Value InterpolateValues(double fraction, ort::core::StoreValue const& from, ort::core::StoreValue const& to);

// The least or greatest of the values that the first input holds, in the order in which the host lists them:
// the rows of a column, or the payloads of a key set (special keys last) or key map. Special values are
// passed over. Of equal values the first is taken; a NaN is taken only when it comes first. The result is
// converted to T: int64, double or OrtDateTime; special of kind 1 where the input holds no ordinary value,
// and T's zero without inputs. Throws 55 for another kind of input and values that are no numbers, or no
// dates.
template <class T, bool greatest>
Value FindExtremum(std::vector<Value> const& inputs);

}  // namespace OstrelTransforms
