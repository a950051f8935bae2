#pragma once

#include <memory>
#include <vector>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostrelrtcore/FunctionRegistry.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

/// Registers what charts need beyond the plug-in and the built-in functions: domains and ticks, labels,
/// palettes and calendar units. "measureTexts" measures with the measurer; without one it can't be made (55).
void RegisterChartFunctions(ort::core::FunctionRegistry& registry,
                            std::shared_ptr<services::TextMeasurer const> const& measurer);

/// The functions that RegisterChartFunctions registers, in order of registration.
std::vector<ort::core::FunctionDocumentation> const& GetChartFunctionDocumentation();

}  // namespace ostrel::charts
