#pragma once

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/FunctorInputs.h"

// Range tuples, as all families read and make them. A range tuple has five members: the minimum and the
// maximum (scalars of any type, or special values), the range mode code (Int32), the code of the field's
// store type (Int32), and whether the scale is logarithmic (Bool). A tuple with fewer members throws 219, a
// member of another type 55.
namespace OstrelTransforms::RangeUtilities {

inline constexpr int kMinimum = 0;
inline constexpr int kMaximum = 1;
inline constexpr int kModeCode = 2;
inline constexpr int kFieldType = 3;
inline constexpr int kIsLog = 4;

// The tuple behind a row; throws 55 for a null pointer and for anything but a tuple.
ort::core::IStoreTuple const& GetTuple(Value const& range);

int GetModeCode(ort::core::IStoreTuple const& range);
ort::core::StoreType GetFieldType(ort::core::IStoreTuple const& range);
bool IsLog(ort::core::IStoreTuple const& range);

// Whether a mode takes an end as it is instead of from the data: 3 and 10 both, 4, 6 and 7 the minimum, 5, 8
// and 9 the maximum.
constexpr bool FixesBoth(int mode) { return mode == 3 || mode == 10; }
constexpr bool FixesMinimum(int mode) { return FixesBoth(mode) || mode == 4 || mode == 6 || mode == 7; }
constexpr bool FixesMaximum(int mode) { return FixesBoth(mode) || mode == 5 || mode == 8 || mode == 9; }

struct Ends {
  Value minimum;
  Value maximum;
};
Ends GetEnds(ort::core::IStoreTuple const& range);

// Both natural logarithms, by StoreValueOperators::Ln.
Ends TakeLogarithms(Ends const& ends);

// Opens a range of one point (its ends are equal) around it. Numbers: [0, 2v] above zero, [2v, 0] below,
// [v - 1, v + 1] at zero. Temporal: one day to either side, as DateTimes. A field of another type
// stays as it is; two special ends of one kind throw 55.
Ends WidenPoint(Ends ends, ort::core::StoreType fieldType);

// An end as a special value of kind 1 of its own type.
Value ClearEnd(Value const& end);

// An end moved by an amount in its own units (days for temporal types), in its own type. Integers move by the
// nearest whole number (halves away from zero) and saturate; temporal types move by the nearest tick. A
// special end, and an amount of zero, change nothing; an amount of NaN makes an integer end special of kind 1
// and leaves a temporal one. Types that are neither numeric nor temporal throw 178.
Value MoveEnd(Value const& end, double amount);

// A new range tuple with the mode, field type and scale of `source`. A further amount is taken off the
// minimum and put on the maximum, by MoveEnd.
Value MakeRange(Ends const& ends, ort::core::IStoreTuple const& source, double furtherAmount = 0.0);

}  // namespace OstrelTransforms::RangeUtilities
