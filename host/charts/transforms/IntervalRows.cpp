#include <fmt/format.h>

#include "charts/graph/PeriodNodes.h"
#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {

namespace {

// What rounding may have taken from a number that stands on a bin's end, in bins.
constexpr double kRounding = 1e-9;
constexpr double kDefaultMaxBins = 10;

NodeId Member(GraphBuilder& graph, std::string const& name, NodeId tuple, int place) {
  return graph.Call(name, "member", {tuple, graph.Int(place)});
}

// Numbers outside of bins that the document gives the ends of belong to none.
NodeId LeaveOutside(GraphBuilder& graph, std::string const& name, NodeId numbers, NodeId start, NodeId stop) {
  NodeId const none = graph.Constant(
      "none",
      ort::core::factory::MakeSpecial(ort::core::StoreTypeInfo::Real64, ort::core::SpecialKind::Missing));
  NodeId const isOutside =
      graph.Zip(name + " is outside", "or", graph.Zip(name + " is below", "less", numbers, start),
                graph.Zip(name + " is above", "greater", numbers, stop));
  return graph.Call(name + " inside", "choose", {isOutside, none, numbers});
}

}  // namespace

std::shared_ptr<LayerRows> BinRows(GraphBuilder& graph, BinTransform const& bin, LayerRows& rows) {
  RowStep step(graph, rows, bin.path);
  std::string const& name = bin.start;
  NodeId numbers = step.Numbers(bin.field);
  BinSpec const& spec = bin.bin;
  NodeId const low =
      spec.extentStart ? graph.Real(*spec.extentStart) : graph.Call(name + " lowest", "columnMin", {numbers});
  NodeId const high =
      spec.extentEnd ? graph.Real(*spec.extentEnd) : graph.Call(name + " highest", "columnMax", {numbers});
  NodeId const range = graph.Call(name + " range", "binRange",
                                  {low, high, graph.Real(spec.maxBins.value_or(kDefaultMaxBins)),
                                   graph.Real(spec.step.value_or(0)), graph.Real(spec.minStep.value_or(0))});
  NodeId const start = Member(graph, name + " start", range, 0);
  NodeId const stop = Member(graph, name + " stop", range, 1);
  NodeId const width = Member(graph, name + " step", range, 2);
  NodeId const first = graph.Zip(name + " first end", "add", start, width);
  NodeId const last = graph.Zip(name + " last start", "subtract", stop, width);

  if (spec.extentStart || spec.extentEnd) numbers = LeaveOutside(graph, name, numbers, start, stop);
  NodeId const place = graph.Map(name + " place", "invlerp", numbers, {start, first});
  NodeId const index = graph.Map(name + " index", "floor",
                                 graph.Zip(name + " near place", "add", place, graph.Real(kRounding)));
  NodeId const begin =
      graph.Zip(name + " beginning", "add", graph.Zip(name + " distance", "multiply", index, width), start);
  // The largest number belongs to the last bin, although it stands on that bin's end.
  NodeId const held = graph.Map(name + " held", "clampMax", begin, {last});
  NodeId const bins = graph.Map(name, "clampMin", held, {start});
  step.Set(bin.start, bins);
  step.Set(bin.end, graph.Zip(bin.end, "add", bins, width));
  return step.Extend();
}

std::shared_ptr<LayerRows> FloorRowsToTimeUnit(GraphBuilder& graph, TimeUnitTransform const& unit,
                                               LayerRows& rows) {
  RowStep step(graph, rows, unit.path);
  NodeId const start = FloorDates(graph, unit.start, unit.unit, step.Instants(unit.field));
  step.Set(unit.start, start);
  step.Set(unit.end, FollowDates(graph, unit.end, unit.unit, start));
  return step.Extend();
}

}  // namespace ostrel::charts
