#include "charts/scales/DomainExtension.h"

#include <fmt/format.h>

#include <cmath>

#include "charts/document/Readers.h"
#include "charts/scales/DomainRange.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

using ort::core::OrtDateTime;
using ort::core::StoreType;

NodeId FirstOf(GraphBuilder& graph, std::string const& name, NodeId column) {
  return graph.Call(name, "element", {column, graph.Int(0)});
}

// How much of the scale's space a pixel shows where the domain has the pixels between the padding.
NodeId FindUnits(GraphBuilder& graph, ScaledField const& field, NodeId lower, NodeId upper, double pixels,
                 bool isHorizontal) {
  auto const makeColumn = [&](char const* what, NodeId value) {
    return MakeColumn(graph, field.name + what, value, graph.Int(1));
  };
  NodeId const range = graph.Call(
      field.name + " range to pad", "makeTuple",
      {lower, upper, graph.Int(0), graph.Int(static_cast<int>(StoreType::Real64)), graph.Bool(false)});
  NodeId const length = makeColumn(" pixels between padding", graph.Real(pixels));
  NodeId const units =
      graph.Call(field.name + " all units per pixel", "rangeUnitsPerPixel",
                 {makeColumn(" ranges to pad", range), makeColumn(" directions", graph.Bool(isHorizontal)),
                  length, length, graph.Real(1)});
  return FirstOf(graph, field.name + " units per pixel", units);
}

// From the scale's own space.
NodeId ToDataNumber(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId scaled) {
  switch (field.scaleType) {
    case ScaleType::Log:
      return graph.Map(name, "exp", scaled);
    case ScaleType::Sqrt:
      return graph.Zip(name, "multiply", scaled, graph.Map(name + " size", "abs", scaled));
    default:
      return scaled;
  }
}

bool IsHeld(ScaledField const& field, double end) {
  if (field.scaleType == ScaleType::Time) return std::abs(OrtDateTime::FromDouble(end).ToDouble() - end) < 1;
  bool const isPlaced = field.scaleType != ScaleType::Log || end >= 1 / kLargestNumber;
  return isPlaced && std::abs(end) <= kLargestNumber;
}

}  // namespace

NumberExtent ReadUnion(Compilation const& compilation, Encoding const& encoding) {
  NumberExtent extent;
  for (std::size_t i = 0; i < encoding.scale.unionWith.size(); ++i) {
    std::string const place = fmt::format(".scale.domain.unionWith[{}]", i);
    double const number = ReadFieldNumber(compilation, encoding, encoding.scale.unionWith[i], place);
    extent.Add({number, number});
  }
  return extent;
}

NodeId HoldExtent(GraphBuilder& graph, std::string const& name, NodeId range, NumberExtent const& extent) {
  NodeId const one = graph.Int(1);
  auto const makeColumn = [&](char const* what, NodeId value) {
    return MakeColumn(graph, name + what, value, one);
  };
  NodeId const none = graph.Real(0);
  NodeId const extended =
      graph.Call(name + " all extended ranges", "extendRangeColumn",
                 {makeColumn(" ranges", range), makeColumn(" least given", graph.Real(extent.lowest)),
                  makeColumn(" greatest given", graph.Real(extent.highest)), none, none, graph.Bool(false),
                  graph.Bool(false)});
  return FirstOf(graph, name + " extended range", extended);
}

void PadDomain(Compilation& compilation, ScaleSource const& source, DomainRules const& rules,
               ScaledField& field) {
  double const padding = source.encoding.scale.padding.value_or(rules.padding);
  if (padding == 0) return;
  // Padding that no document asks for is left out where there is no room for it.
  auto const refuse = [&](std::string const& cause) {
    auto const givesPadding = [](FieldUse const& use) { return use.encoding->scale.padding.has_value(); };
    auto const use = std::ranges::find_if(source.uses, givesPadding);
    if (use == source.uses.end()) return;
    ThrowDocumentError(compilation.document, use->encoding->path + ".scale.padding", cause);
  };
  double const pixels = rules.length - 2 * padding;
  if (!(pixels > 0)) {
    return refuse(fmt::format("expects a number below {}, half of the axis' {} pixels, not {}",
                              rules.length / 2, rules.length, padding));
  }
  GraphBuilder& graph = compilation.graph;
  NodeId const lower = ToScaleSpace(graph, field, field.name + " unpadded minimum", field.minimum);
  NodeId const upper = ToScaleSpace(graph, field, field.name + " unpadded maximum", field.maximum);
  NodeId const units = FindUnits(graph, field, lower, upper, pixels, rules.isHorizontal);
  NodeId const room = graph.Zip(field.name + " padding", "multiply", units, graph.Real(padding));
  auto const move = [&](char const* end, char const* function, NodeId scaled) {
    std::string const name = field.name + " padded " + end;
    return ToDataNumber(graph, field, name, graph.Zip(name + " in scale", function, scaled, room));
  };
  NodeId const minimum = move("minimum", "subtract", lower);
  NodeId const maximum = move("maximum", "add", upper);
  for (NodeId const end : {minimum, maximum}) {
    if (IsHeld(field, graph.Peek(end)->GetReal64())) continue;
    return refuse(fmt::format("{} of {} pixels at each end leave no domain that {} hold; use fewer", padding,
                              rules.length, field.scaleType == ScaleType::Time ? "dates" : "numbers"));
  }
  field.minimum = minimum;
  field.maximum = maximum;
}

}  // namespace ostrel::charts
