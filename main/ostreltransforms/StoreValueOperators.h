#pragma once

#include <memory>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/Export.h"

// Arithmetic, comparison and conversion of single values of any numeric (Int32, Int64, Real32, Real64) or
// temporal (Date, DateTime) type.
//
// Operands must be of one type: there is no promotion. Two types throw 220 and a type that an operator does
// not serve 178, with the names of the types as message; a special operand throws 55, but for Ln. Integers
// wrap on overflow; reals follow the floating-point rules in their own precision.
namespace StoreValueOperators {

using ort::core::StoreType;
using ort::core::StoreValue;

// Numbers of one type; or a temporal value and a number of days, in either order, which gives a DateTime to
// the nearest tick (halves away from the date; sums saturate; a NaN is no days).
OSTREL_API std::shared_ptr<StoreValue> Add(StoreValue const& a, StoreValue const& b);
// Numbers of one type; a temporal value and a number of days, which gives a DateTime; or two temporal values,
// which give the days between them as Real64.
OSTREL_API std::shared_ptr<StoreValue> Subtract(StoreValue const& a, StoreValue const& b);
OSTREL_API std::shared_ptr<StoreValue> Multiply(StoreValue const& a, StoreValue const& b);
// Integers are truncated. An integer zero divisor, and the lowest integer divided by -1, fault like the
// machine's division: check before calling.
OSTREL_API std::shared_ptr<StoreValue> Divide(StoreValue const& a, StoreValue const& b);

// Numbers and DateTimes of one type, not Dates. On a tie, and when either is NaN, the result is b.
OSTREL_API std::shared_ptr<StoreValue> Min(StoreValue const& a, StoreValue const& b);
OSTREL_API std::shared_ptr<StoreValue> Max(StoreValue const& a, StoreValue const& b);

// A copy, or the value converted by the host's rules.
OSTREL_API std::shared_ptr<StoreValue> Cast(StoreValue const& value, StoreType type);
// A number, or the day number of a temporal value.
OSTREL_API double ConvertToDouble(StoreValue const& value);
// -1, 0 or 1 as a is below, equal to or above b; 1 when either is NaN.
OSTREL_API int CompareAsDoubles(StoreValue const& a, StoreValue const& b);

// The value a fraction of the way between two of one type, and back: where a value lies between two of its
// type, as Real64. Numbers more than a million apart are weighed instead of taken by their difference, which
// could overflow, unless linearOnly is true. Between equal values Interpolate gives a copy of `from`, and
// InverseInterpolate 0.
OSTREL_API std::shared_ptr<StoreValue> Interpolate(double fraction, StoreValue const& from,
                                                   StoreValue const& to, bool linearOnly);
OSTREL_API std::shared_ptr<StoreValue> InverseInterpolate(StoreValue const& value, StoreValue const& from,
                                                          StoreValue const& to, bool linearOnly);

// The natural logarithm of a number as Real64; 0 for everything that is not above zero, NaN included. A
// special value gives a special value of its type and kind.
OSTREL_API std::shared_ptr<StoreValue> Ln(StoreValue const& value);

OSTREL_API bool IsNumeric(StoreValue const& value);
OSTREL_API bool IsNumeric(StoreType type);
OSTREL_API bool IsTemporal(StoreValue const& value);
OSTREL_API bool IsTemporal(StoreType type);

}  // namespace StoreValueOperators
