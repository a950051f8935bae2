#pragma once

#include <vector>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostreltransforms/Export.h"

namespace OstrelTransforms {

// One entry a registration, in the order in which RegisterOstrelTransformFunctions makes them; made from the
// rows that it registers. Every example is a call request that runs.
OSTREL_API std::vector<ort::core::FunctionDocumentation> GetFunctionDocumentation();

}  // namespace OstrelTransforms
