#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Where each number of an Int32 column of n rows occurs: a key set from the different numbers to Int32
// columns of their rows, counted from 0, in ascending order. The rows of a special kind stand under that kind
// among the special entries. All lists of rows share one buffer. Throws 55 for anything but a column of
// Int32.
Value BuildIndexKeySet(Value const& numbers);

}  // namespace OstrelTransforms
