#pragma once

#include "ostrelrtcore/FunctionRegistry.h"
#include "ostreltransforms/Export.h"

// How the functions of the library come into a host's registry. Nothing is registered by loading the library,
// and nothing remembers what was: registering twice gives two of everything. A registration that fails its
// checks throws OrtRuntimeException with the function's name as message (120 an input of another type than
// the function serves, 121 an empty output type, 128 and 130 another number of inputs than one and two); what
// was registered before it stays. Registering belongs to start-up, on one thread for one registry.
namespace OstrelTransforms {

// The host's own functions, then RegisterOstrelTransformFunctions.
OSTREL_API void RegisterAllRuntimeFunctions(ort::core::FunctionRegistry& registry);

// All families in their fixed order: reduce, map, zip-with, set-value-multi, when, bubble, composer, filter,
// wordle.
OSTREL_API void RegisterOstrelTransformFunctions(ort::core::FunctionRegistry& registry);

OSTREL_API void RegisterOstrelReduceFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelMapFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelZipWithFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelSetValueMultiFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelWhenFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelComposerFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelFilterFunctions(ort::core::FunctionRegistry& registry);
OSTREL_API void RegisterOstrelWordleFunctions(ort::core::FunctionRegistry& registry);

// RegisterOstrelTransformFunctions behind a pointer: true when done, false (and nothing registered) for null.
OSTREL_API bool RegisterFunctionsForTest(ort::core::FunctionRegistry* registry);

}  // namespace OstrelTransforms
