#include "charts/RenderChart.h"
#include "ostrel/CommandLine.h"
#include "ostrel/GraphText.h"
#include "ostrel/Runtime.h"

namespace ostrel::program {

int RunGraph(GraphOptions const& options) {
  std::filesystem::path const chart = options.chart;
  auto const document = charts::ReadChartDocument(chart);
  auto const folder = chart.has_parent_path() ? chart.parent_path() : ".";
  ort::core::FunctionRegistry registry;
  RegisterAllFunctions(registry, nullptr);
  auto const graph = charts::MakeChartGraph(document, {folder, options.dataRoot}, {}, registry);
  StandardOutput output;
  output.Write(options.makesDot ? MakeGraphDot(graph) : MakeGraphText(graph));
  output.Flush();
  return ExitCode_Done;
}

}  // namespace ostrel::program
