#include "charts/scales/DomainRoom.h"

namespace ostrel::charts {
namespace {

using ort::core::StoreType;
namespace factory = ort::core::factory;

// What is drawn may take this share of a pane.
constexpr double kLargestShare = 0.5;

// One column out of the columns or values of several scales.
NodeId Concatenate(GraphBuilder& graph, std::string const& name, std::vector<NodeId> const& columns) {
  return columns.size() == 1 ? columns.front() : graph.Call(name, "concatenate", columns);
}

NodeId MakeColumn(GraphBuilder& graph, std::string const& name, NodeId value, NodeId count) {
  return graph.Call(name, "repeat", {value, count});
}

NodeId MakeDomain(GraphBuilder& graph, ScaledField const& field) {
  return graph.Call(
      field.name + " domain", "makeTuple",
      {field.minimum, field.maximum, graph.Int(0), graph.Int(static_cast<int>(StoreType::Real64)),
       graph.Bool(field.scaleType == ScaleType::Log)});
}

void SetDomain(GraphBuilder& graph, ScaledField& field, std::string const& name, NodeId domain) {
  field.minimum = graph.Call(name + " minimum", "member", {domain, graph.Int(0)});
  field.maximum = graph.Call(name + " maximum", "member", {domain, graph.Int(1)});
  field.lower = ToScaleSpace(graph, field, name + " minimum", field.minimum);
  field.upper = ToScaleSpace(graph, field, name + " maximum", field.maximum);
}

// The end of the pane at which the minimum is: to the left, or below.
bool IsTurned(PositionScale const& scale) {
  return scale.space.isHorizontal ? scale.start > scale.end : scale.start < scale.end;
}

}  // namespace

void FitMarks(Compilation& compilation, PositionScale& scale, std::span<RowReach const> reaches) {
  if (reaches.empty()) return;
  GraphBuilder& graph = compilation.graph;
  std::vector<NodeId> numbers, thicknesses, labels, sides;
  for (RowReach const& reach : reaches) {
    NodeId const count = graph.Call(scale.name + " rows", "count", {reach.numbers});
    numbers.push_back(reach.numbers);
    thicknesses.push_back(MakeColumn(graph, scale.name + " thicknesses", graph.Real(reach.thickness), count));
    labels.push_back(reach.labels >= 0 ? reach.labels
                                       : MakeColumn(graph, scale.name + " no labels", graph.Real(0), count));
    sides.push_back(MakeColumn(graph, scale.name + " label sides", graph.Int(reach.side), count));
  }
  auto const join = [&](char const* what, std::vector<NodeId> const& columns) {
    return Concatenate(graph, scale.name + what, columns);
  };
  NodeId const domain = MakeDomain(graph, scale.field);
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

void AlignZeros(Compilation& compilation, std::span<PositionScale* const> scales) {
  GraphBuilder& graph = compilation.graph;
  std::vector<NodeId> domains, turned;
  for (PositionScale const* scale : scales) {
    if (scale->scaleType != ScaleType::Linear) {
      ThrowDocumentError(compilation.document, scale->encoding.path + ".scale.type",
                         "has no zero to align; use \"linear\", or leave resolve.zero out");
    }
    std::string const name = scale->name + " of " + scale->encoding.field;
    domains.push_back(MakeColumn(graph, name + " as column", MakeDomain(graph, scale->field), graph.Int(1)));
    turned.push_back(MakeColumn(graph, name + " is turned", graph.Bool(IsTurned(*scale)), graph.Int(1)));
  }
  NodeId const count = graph.Int(static_cast<int>(scales.size()));
  NodeId const aligned =
      graph.Call("aligned domains", "zeroAlignFoldedAxes",
                 {Concatenate(graph, "domains", domains), MakeColumn(graph, "one pane", graph.Int(0), count),
                  MakeColumn(graph, "all axes", graph.Bool(true), count),
                  Concatenate(graph, "turned axes", turned), graph.Bool(true)});
  for (std::size_t i = 0; i < scales.size(); ++i) {
    std::string const name = scales[i]->name + " of " + scales[i]->encoding.field + " aligned";
    SetDomain(graph, scales[i]->field, name,
              graph.Call(name, "element", {aligned, graph.Int(static_cast<int>(i))}));
  }
}

}  // namespace ostrel::charts
