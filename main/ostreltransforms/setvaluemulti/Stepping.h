#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// The domain and the steps of a palette that shows numbers in steps of equal width. The inputs, by position:
//
//   0  minimum: of the numbers or dates (a scalar of any numeric or temporal type)
//   1  maximum: of them
//   2  centre: the number at which the two halves of a diverging palette meet; special: 0 where the numbers
//      straddle 0, as isDivergingAuto has it, and otherwise none
//   3  steps (Int32): how many steps the palette has in all; 1 or more
//
// Around a centre the palette has nStepsLeft steps below and nStepsRight above, together all of them, both
// whole numbers or both with a half: then the middle step lies to both sides of the centre, and
// applySteppingForDivergingPalette takes its halves together. Of all such splits the one with the narrowest
// step w is taken for which
//   nStepsLeft * w >= centre - minimum  and  nStepsRight * w >= maximum - centre,
// and the domain becomes colorMin = centre - nStepsLeft * w to colorMax = centre + nStepsRight * w: every
// step is as wide as any other, no number is outside, and no narrower step would do. (Of two splits with one
// width the one with more steps on the right is taken.) Numbers that lie to one side of the centre have all
// steps there, and the domain ends at the centre. Without a centre all steps are on the right, from the
// minimum to the maximum.
//
// A key map of the Real64 numbers "colorMin", "colorMax" (dates as day numbers), "nStepsLeft" and
// "nStepsRight". Ends in the wrong order are exchanged. Where an end or a given centre is special or not
// finite, the colours' ends are special values of kind 1 and all steps are on the right. Fewer than 1 step
// throw 2, ends of another type 178.
Value AdjustDomainForStepping(Value const& minimum, Value const& maximum, Value const& centre, int steps);

// The two ends of a domain as values of one type that holds both. The inputs, by position:
//
//   0  minimum: a scalar of any numeric or temporal type, or special
//   1  maximum: the same
//   2  fieldType (Int32): the code of the field's store type
//
// Ends of one type stay as they are. Int32 and Int64 become Int64; a real and any other number Real64; Date
// and DateTime become DateTime. Of a date and a number the field decides: both become DateTimes (a number is
// a day number) for a temporal field, and Real64 otherwise. A special end takes the other's type and keeps
// its kind. An Int64 that Real64 does not hold becomes the next Real64 outside the domain: the next below for
// the minimum, above for the maximum.
//
// A tuple (minimum, maximum). Other types throw 178.
Value ResolveMinMaxDataTypeMismatch(Value const& minimum, Value const& maximum, int fieldType);

}  // namespace OstrelTransforms
