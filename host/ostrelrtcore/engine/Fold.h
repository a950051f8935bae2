#pragma once

#include "ostrelrtcore/engine/ElementSlot.h"
#include "ostrelrtcore/engine/FunctionLookup.h"

namespace ort::core::engine {

/// Scan, scanBackward and fold: a binary function folded over one column, by the rules of Engine.
Value ApplyFold(FoundFunction const& function, CallView const& call);

}  // namespace ort::core::engine
