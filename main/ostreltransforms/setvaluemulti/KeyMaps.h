#pragma once

#include <vector>

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// The first input as a key map, so that functions that look values up by name can read it; further inputs are
// not read. The input is one of these:
//
//   - a table: a member for each column, the column itself
//   - a key map: the same members
//   - a tuple of pairs, or a column of them: a pair is a tuple of a name (String) and a value of any kind; of
//     pairs with one name the later holds. Special rows of a column are no pairs and are passed over.
//
// A table without columns, an empty tuple and an empty column give a key map without members. Special values
// keep their kind.
//
// Throws std::out_of_range "invalid vector<T> subscript" without inputs, and 55 for any other input, a member
// that is not a pair, and a name that is no text or is special.
Value ToKeyMap(std::vector<Value> const& inputs);

}  // namespace OstrelTransforms
