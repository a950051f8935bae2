#include "charts/scales/OffsetScale.h"

namespace ostrel::charts {

OffsetScale PlanOffsetScale(Compilation& compilation, ScaleSource const& source) {
  return {source.name, IndexCategories(compilation, source), source.encoding.scale.reverse.value_or(false)};
}

NodeId OffsetBandwidth(GraphBuilder& graph, OffsetScale const& scale, NodeId bandwidth) {
  NodeId const count = graph.Map(scale.name + " places", "asReal64", scale.field.count);
  return graph.Zip(scale.name + " width", "divide", bandwidth, count);
}

NodeId PlaceOffsets(GraphBuilder& graph, OffsetScale const& scale, std::size_t use, NodeId bandwidth) {
  std::string const& name = scale.name;
  NodeId const number = graph.Map(name + " number", "asReal64", scale.field.indices[use]);
  NodeId const middle = graph.Zip(name + " middle", "add", number, graph.Real(0.5));
  NodeId const distance =
      graph.Zip(name + " distance", "multiply", middle, OffsetBandwidth(graph, scale, bandwidth));
  NodeId const half = graph.Zip(name + " half band", "multiply", bandwidth, graph.Real(0.5));
  return scale.isReversed ? graph.Zip(name + " shift", "subtract", half, distance)
                          : graph.Zip(name + " shift", "subtract", distance, half);
}

}  // namespace ostrel::charts
