#include "charts/functions/ChartFunctions.h"

#include "charts/functions/ChartFamilies.h"

namespace ostrel::charts {
namespace {

using namespace ort::core;

std::vector<BuiltinFamily> MakeFamilies(std::shared_ptr<services::TextMeasurer const> const& measurer) {
  return {TickFamily(), LabelFamily(measurer), TextBoxFamily(measurer), PaletteFamily(), CalendarFamily(),
          BinFamily(),  MapFamily(),           PeriodFamily(),          GapFamily(),     MathFamily(),
          TextFamily(), DatePartFamily()};
}

}  // namespace

void RegisterChartFunctions(FunctionRegistry& registry,
                            std::shared_ptr<services::TextMeasurer const> const& measurer) {
  for (auto const& family : MakeFamilies(measurer)) builtins::RegisterFamily(registry, family);
}

std::vector<FunctionDocumentation> const& GetChartFunctionDocumentation() {
  static auto const documentation = [] {
    std::vector<FunctionDocumentation> all;
    for (auto const& family : MakeFamilies(nullptr)) builtins::AppendDocumentation(family, all);
    return all;
  }();
  return documentation;
}

}  // namespace ostrel::charts
