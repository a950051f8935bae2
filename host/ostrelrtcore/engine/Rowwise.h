#pragma once

#include "ostrelrtcore/engine/ElementSlot.h"
#include "ostrelrtcore/engine/FunctionLookup.h"

namespace ort::core::engine {

/// Map (one input) and zip (two): a unary or binary function applied to each row, by the rules of Engine.
Value ApplyRowwise(FoundFunction const& function, CallView const& call);

}  // namespace ort::core::engine
