#include "charts/scales/DomainRange.h"

namespace ostrel::charts {
namespace {

using ort::core::StoreType;

// Codes of a range tuple's mode: which of its ends stay.
constexpr int kFree = 0;
constexpr int kFixed = 3;
constexpr int kFixedMinimum = 4;
constexpr int kFixedMaximum = 5;

int FindMode(ScaleSpec const& spec) {
  if (!spec.domain.empty() || (spec.domainMin && spec.domainMax)) return kFixed;
  return spec.domainMin ? kFixedMinimum : spec.domainMax ? kFixedMaximum : kFree;
}

NodeId MakeRange(GraphBuilder& graph, ScaledField const& field, int mode) {
  return graph.Call(
      field.name + " domain", "makeTuple",
      {field.minimum, field.maximum, graph.Int(mode), graph.Int(static_cast<int>(StoreType::Real64)),
       graph.Bool(field.scaleType == ScaleType::Log)});
}

}  // namespace

NodeId MakeDomainRange(GraphBuilder& graph, ScaledField const& field, ScaleSpec const& spec) {
  return MakeRange(graph, field, FindMode(spec));
}

NodeId MakeFreeRange(GraphBuilder& graph, ScaledField const& field) { return MakeRange(graph, field, kFree); }

void SetDomain(GraphBuilder& graph, ScaledField& field, std::string const& name, NodeId range) {
  field.minimum = graph.Call(name + " minimum", "member", {range, graph.Int(0)});
  field.maximum = graph.Call(name + " maximum", "member", {range, graph.Int(1)});
  field.lower = ToScaleSpace(graph, field, name + " minimum", field.minimum);
  field.upper = ToScaleSpace(graph, field, name + " maximum", field.maximum);
}

bool IsTurned(PositionScale const& scale) {
  return scale.space.isHorizontal ? scale.start > scale.end : scale.start < scale.end;
}

NodeId MakeColumn(GraphBuilder& graph, std::string const& name, NodeId value, NodeId count) {
  return graph.Call(name, "repeat", {value, count});
}

NodeId Concatenate(GraphBuilder& graph, std::string const& name, std::vector<NodeId> const& columns) {
  return columns.size() == 1 ? columns.front() : graph.Call(name, "concatenate", columns);
}

}  // namespace ostrel::charts
