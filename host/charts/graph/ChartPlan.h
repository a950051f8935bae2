#pragma once

#include <optional>

#include "charts/scales/PositionScale.h"
#include "charts/scales/StyleScale.h"

namespace ostrel::charts {

/// What the command line says beside the document.
struct ChartOptions {
  std::optional<double> width;
  std::optional<double> height;
};

/// One symbol a row that every scale can place.
struct SymbolPlan {
  NodeId x = -1;  ///< Real64 columns of the placed rows
  NodeId y = -1;
  NodeId color = -1;  ///< columns of the placed rows, -1 where the channel has no field
  NodeId size = -1;
  NodeId opacity = -1;
  NodeId shape = -1;
};

/// Lines through the rows of each group, in the order of x or of the order channel.
struct LinePlan {
  NodeId x = -1;  ///< Real64 columns in drawing order; special where a line breaks
  NodeId y = -1;
  NodeId group = -1;  ///< Int32 column in drawing order; -1 for a single line
  NodeId color = -1;  ///< Color column in drawing order; -1 where the channel has no field
};

/// A chart as a function graph, and which of its nodes the picture is made of.
struct ChartPlan {
  double width = 0;  ///< of the plotting area, pixels
  double height = 0;
  std::optional<PositionScale> x;
  std::optional<PositionScale> y;
  std::vector<StyleScale> styles;
  std::optional<SymbolPlan> symbols;
  std::optional<LinePlan> lines;

  StyleScale const* Find(Channel channel) const;
};

/// Turns a document and its data into nodes of `compilation.graph`. Throws DocumentError and DataError.
ChartPlan PlanChart(Compilation& compilation, ChartOptions const& options);

}  // namespace ostrel::charts
