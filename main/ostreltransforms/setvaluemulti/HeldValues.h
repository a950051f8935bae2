#pragma once

#include <functional>

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Calls a function with each value that a key set or key map holds, by ascending key or name, a key set's
// special keys after the others. Throws 55 for anything else, and for payloads that are kept as bits of a
// type that is neither a 64-bit number nor temporal.
void ForEachHeldValue(ort::core::StoreValue const& collection,
                      std::function<void(Value const&)> const& visit);

}  // namespace OstrelTransforms
