#pragma once

#include <memory>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostrelrtcore/FunctionRegistry.h"
#include "services/TextMeasurer.h"

namespace ostrel::program {

/// Registers all that the program can evaluate: the runtime's own functions, the plug-in's and those of
/// charts. Without a measurer "measureTexts" can't be made.
void RegisterAllFunctions(ort::core::FunctionRegistry& registry,
                          std::shared_ptr<services::TextMeasurer const> measurer);

/// The help of all of these, in order of registration.
std::vector<ort::core::FunctionDocumentation> GetAllDocumentation();

}  // namespace ostrel::program
