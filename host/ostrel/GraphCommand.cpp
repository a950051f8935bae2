#include "charts/RenderChart.h"
#include "ostrel/CommandLine.h"
#include "ostrel/GraphText.h"
#include "ostrel/Runtime.h"
#include "services/InstallServices.h"

namespace ostrel::program {

int RunGraph(GraphOptions const& options) {
  std::filesystem::path const chart = options.chart;
  auto const document = charts::ReadChartDocument(chart);
  auto const folder = chart.has_parent_path() ? chart.parent_path() : ".";
  // A plan may depend on what its texts measure.
  auto const installed = services::InstallServices();
  ort::core::FunctionRegistry registry;
  RegisterAllFunctions(registry, installed.ShareMeasurer());
  auto const graph = charts::MakeChartGraph(document, {folder, options.dataRoot}, {}, registry);
  StandardOutput output;
  output.Write(options.makesDot ? MakeGraphDot(graph) : MakeGraphText(graph));
  output.Flush();
  return ExitCode_Done;
}

}  // namespace ostrel::program
