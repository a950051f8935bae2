// Any bytes as an expression over a few rows: it is evaluated or refused, and the values that it gives are
// rows as other transforms take them.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "charts/data/LoadTable.h"
#include "charts/expressions/ExpressionCompiler.h"
#include "charts/functions/ChartFunctions.h"
#include "ostreltransforms/OstrelTransforms.h"
#include "services/InstallServices.h"

namespace {

using namespace ostrel::charts;

struct Fixture {
  Fixture() {
    OstrelTransforms::RegisterAllRuntimeFunctions(registry);
    RegisterChartFunctions(registry, services.ShareMeasurer());
  }

  ostrel::services::InstalledServices services{ostrel::services::MakeFixedMeasurer()};
  ort::core::FunctionRegistry registry;
  std::shared_ptr<DataTable const> table = std::make_shared<DataTable>(
      LoadText(R"([{"n": 1.5, "i": 7, "s": "a b", "d": "2020-03-01", "b": true, "o": {"p": 1}},
                   {"n": null, "i": -3, "s": null, "d": null, "b": null, "o": {"p": 2}},
                   {"n": 0, "i": 0, "s": "", "d": "1999-12-31T23:59:59", "b": false, "o": {"p": 3}}])",
               "rows.json"));
};

void Check(ort::core::StoreValue const& column, int rows) {
  if (column.AsColumn().GetCount() != rows) __builtin_trap();
  if (column.GetTypeInfo().GetElementType() != ort::core::StoreType::Real64) return;
  for (double const value : column.AsTypedArray<double>().GetValues()) {
    if (std::isnan(value)) __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static Fixture const fixture;
  try {
    auto const expression = ParseExpression({reinterpret_cast<char const*>(data), size});
    for (auto const compile : {CompileValue, CompileTest}) {
      GraphBuilder graph(fixture.registry);
      LayerRows rows(fixture.table, "");
      RowStep step(graph, rows, "$");
      Check(*graph.Peek(compile(step, *expression, "$")), fixture.table->rowCount);
    }
  } catch (ExpressionError const&) {
  } catch (DataError const&) {
  } catch (ort::core::EvaluationError const&) {
  }
  return 0;
}
