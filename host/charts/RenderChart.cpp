#include "charts/RenderChart.h"

#include <nlohmann/json.hpp>

#include "charts/graph/LeftOutRows.h"
#include "charts/scene/SceneBuilder.h"

namespace ostrel::charts {
namespace {

// A data file is named as the chart names it; the document is named here.
template <class Step>
auto NameDocument(ChartDocument const& document, Step const& step) {
  try {
    return step();
  } catch (DataError const& error) {
    throw DataError(document.path.string() + ": " + error.what());
  }
}

DataTable LoadChartData(ChartDocument const& document, DataRoots const& roots) {
  return NameDocument(document, [&] { return LoadTable(*document.data, "$.data", roots); });
}

ChartPlan Plan(Compilation& compilation, ChartOptions const& options) {
  return NameDocument(compilation.document, [&] { return PlanChart(compilation, options); });
}

}  // namespace

DrawnChart DrawChart(ChartDocument const& document, DataRoots const& roots, ChartOptions const& options,
                     ChartEnvironment const& environment) {
  DataTable const table = LoadChartData(document, roots);
  Compilation compilation{document, table, {}};
  ChartPlan const plan = Plan(compilation, options);
  Results const results = compilation.graph.Evaluate(environment.registry);
  TextSetter const setter(environment.measurer, kFontFamily);
  return {BuildScene(compilation, plan, results, setter), DescribeLeftOutRows(compilation, plan, results)};
}

ort::core::FunctionGraph MakeChartGraph(ChartDocument const& document, DataRoots const& roots,
                                        ChartOptions const& options) {
  DataTable const table = LoadChartData(document, roots);
  Compilation compilation{document, table, {}};
  Plan(compilation, options);
  return compilation.graph.GetGraph();
}

}  // namespace ostrel::charts
