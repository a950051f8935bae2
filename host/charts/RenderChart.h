#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/scene/Scene.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

/// A drawn chart and what its reader should know: rows that were left out and why.
struct DrawnChart {
  Scene scene;
  std::vector<std::string> warnings;
};

/// Everything that a chart is drawn with. The registry holds the plug-in's, the built-in and the chart
/// functions.
struct ChartEnvironment {
  ort::core::FunctionRegistry const& registry;
  services::TextMeasurer const& measurer;
};

/// Throws DocumentError, DataError and the engine's errors, each with the file and the place in it.
DrawnChart DrawChart(ChartDocument const& document, DataRoots const& roots, ChartOptions const& options,
                     ChartEnvironment const& environment);

/// The chart's function graph.
ort::core::FunctionGraph MakeChartGraph(ChartDocument const& document, DataRoots const& roots,
                                        ChartOptions const& options,
                                        ort::core::FunctionRegistry const& registry);

}  // namespace ostrel::charts
