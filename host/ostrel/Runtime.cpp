#include "ostrel/Runtime.h"

#include <iterator>

#include "charts/functions/ChartFunctions.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace ostrel::program {

void RegisterAllFunctions(ort::core::FunctionRegistry& registry,
                          std::shared_ptr<services::TextMeasurer const> measurer) {
  OstrelTransforms::RegisterAllRuntimeFunctions(registry);
  charts::RegisterChartFunctions(registry, std::move(measurer));
}

std::vector<ort::core::FunctionDocumentation> GetAllDocumentation() {
  auto all = ort::core::GetBuiltinDocumentation();
  auto transforms = OstrelTransforms::GetFunctionDocumentation();
  std::move(transforms.begin(), transforms.end(), std::back_inserter(all));
  auto const& chart = charts::GetChartFunctionDocumentation();
  all.insert(all.end(), chart.begin(), chart.end());
  return all;
}

}  // namespace ostrel::program
