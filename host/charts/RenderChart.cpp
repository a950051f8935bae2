#include "charts/RenderChart.h"

#include <map>
#include <nlohmann/json.hpp>

#include "charts/data/ShapeSource.h"
#include "charts/graph/LeftOutRows.h"
#include "charts/marks/MarkTable.h"
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

using Tables = std::vector<std::shared_ptr<DataTable const>>;

// The table of each layer; one that several layers share is loaded once.
Tables LoadTables(ChartDocument const& document, DataRoots const& roots) {
  Tables tables;
  std::map<std::pair<nlohmann::json const*, bool>, std::shared_ptr<DataTable const>> loaded;
  for (LayerSpec const& layer : document.layers) {
    bool const hasOutlines = GetDefinition(layer.mark).isMap;
    auto& table = loaded[{layer.data.get(), hasOutlines}];
    auto const load = hasOutlines ? LoadShapes : LoadTable;
    if (!table) table = std::make_shared<DataTable>(load(*layer.data, layer.dataPath, roots));
    tables.push_back(table);
  }
  return tables;
}

ChartPlan Plan(Compilation& compilation, DataRoots const& roots, ChartOptions const& options) {
  return NameDocument(compilation.document, [&] {
    return PlanChart(compilation, LoadTables(compilation.document, roots), options);
  });
}

}  // namespace

DrawnChart DrawChart(ChartDocument const& document, DataRoots const& roots, ChartOptions const& options,
                     ChartEnvironment const& environment) {
  Compilation compilation{document, GraphBuilder(environment.registry), ImageFiles(roots)};
  ChartPlan const plan = Plan(compilation, roots, options);
  Results const results = compilation.graph.Evaluate();
  TextSetter const setter(environment.measurer, kFontFamily);
  return {BuildScene(document, plan, results, setter), DescribeLeftOutRows(plan, results)};
}

ort::core::FunctionGraph MakeChartGraph(ChartDocument const& document, DataRoots const& roots,
                                        ChartOptions const& options,
                                        ort::core::FunctionRegistry const& registry) {
  Compilation compilation{document, GraphBuilder(registry), ImageFiles(roots)};
  Plan(compilation, roots, options);
  return compilation.graph.GetGraph();
}

}  // namespace ostrel::charts
