#pragma once

#include "ostrelrtcore/StoreValue.h"

namespace ort::core {

// The host's ordering of a number or instant against another value. Throws 220 where there is none.
bool IsScalarLess(StoreType type, uint64 bits, StoreValue const& other);

// A total order in which key sets list their entries: numbers by value with NaN last, instants, strings by
// code unit; values of different types by type, special values after all others, containers member by member.
// Negative, 0 or positive.
int CompareForListing(StoreValue const& a, StoreValue const& b);
int CompareForListing(StoreType type, uint64 a, uint64 b);

}  // namespace ort::core
