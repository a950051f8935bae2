#include "charts/scales/DomainRoom.h"

#include "charts/scales/DomainRange.h"

namespace ostrel::charts {
namespace {

// What is drawn may take this share of a pane.
constexpr double kLargestShare = 0.5;

/// A reach as columns, a row a row of the layer.
struct ReachColumns {
  NodeId thickness = -1;
  NodeId labels = -1;
  NodeId sides = -1;
};

ReachColumns MakeColumns(GraphBuilder& graph, std::string const& name, RowReach const& reach) {
  NodeId const count = graph.Call(name + " rows", "count", {reach.numbers});
  return {MakeColumn(graph, name + " thicknesses", graph.Real(reach.thickness), count),
          reach.labels >= 0 ? reach.labels : MakeColumn(graph, name + " no labels", graph.Real(0), count),
          MakeColumn(graph, name + " label sides", graph.Int(reach.side), count)};
}

}  // namespace

void FitMarks(Compilation& compilation, PositionScale& scale, std::span<RowReach const> reaches) {
  if (reaches.empty()) return;
  GraphBuilder& graph = compilation.graph;
  std::vector<NodeId> numbers, thicknesses, labels, sides;
  for (RowReach const& reach : reaches) {
    ReachColumns const columns = MakeColumns(graph, scale.name, reach);
    numbers.push_back(reach.numbers);
    thicknesses.push_back(columns.thickness);
    labels.push_back(columns.labels);
    sides.push_back(columns.sides);
  }
  auto const join = [&](char const* what, std::vector<NodeId> const& columns) {
    return Concatenate(graph, scale.name + what, columns);
  };
  NodeId const domain = MakeFreeRange(graph, scale.field);
  NodeId const length = graph.Real(scale.space.length);
  NodeId const overflow =
      graph.Call(scale.name + " overflow", "calcReflineOverflow",
                 {join(" values", numbers), join(" all thicknesses", thicknesses),
                  join(" all labels", labels), join(" all label sides", sides), graph.Real(0),
                  graph.Bool(false), domain, length, graph.Bool(IsTurned(scale))});
  auto const getEnd = [&](char const* end) {
    return graph.Call(scale.name + " " + end + " overflow", "member", {overflow, graph.Text(end)});
  };
  SetDomain(graph, scale.field, scale.name + " fitted",
            graph.Call(scale.name + " fitted domain", "extendRangeWithOverflow",
                       {domain, getEnd("lower"), getEnd("upper"), length, graph.Real(kLargestShare)}));
}

NodeId FindOverflow(Compilation& compilation, PositionScale const& scale, RowReach const& reach) {
  GraphBuilder& graph = compilation.graph;
  ReachColumns const columns = MakeColumns(graph, scale.name, reach);
  NodeId const halves = graph.Zip(scale.name + " half sizes", "multiply", columns.thickness, graph.Real(0.5));
  return graph.Call(
      scale.name + " label overflow", "calcPixelOverflow",
      {reach.numbers, halves, columns.labels, graph.Int(reach.side), graph.Real(0),
       MakeFreeRange(graph, scale.field), graph.Real(scale.space.length), graph.Bool(IsTurned(scale))});
}

}  // namespace ostrel::charts
