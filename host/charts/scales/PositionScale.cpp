#include "charts/scales/PositionScale.h"

#include <cmath>
#include <numbers>

#include "charts/scales/GuideValues.h"

namespace ostrel::charts {
namespace {

// Pixels for one tick where the document does not say how many.
constexpr double kPixelsPerTick = 40;
constexpr double kLabelGapAlong = 6;
constexpr double kLabelGapAcross = 2;

double DefaultTickCount(Encoding const& encoding, AxisSpace const& space) {
  return encoding.axis.tickCount.value_or(std::ceil(space.length / kPixelsPerTick));
}

struct Range {
  double start;
  double end;
};

// Pixels run to the right and upwards, or the other way.
Range PixelRange(AxisSpace const& space, bool isReversed) {
  return space.isHorizontal != isReversed ? Range{0, space.length} : Range{space.length, 0};
}

// How far labels reach along the axis, turned by their angle.
NodeId LabelExtents(GraphBuilder& graph, PositionScale const& scale) {
  double const angle = scale.encoding->axis.labelAngle.value_or(0) * std::numbers::pi / 180;
  double const along = std::abs(scale.space.isHorizontal ? std::cos(angle) : std::sin(angle));
  double const across = std::abs(scale.space.isHorizontal ? std::sin(angle) : std::cos(angle));
  // Parallel slanted labels pass each other a line apart.
  if (scale.space.isHorizontal && across > 0.1 && along > 0.1) {
    NodeId const zero = graph.Zip(scale.name + " no widths", "multiply", scale.labelWidths, graph.Real(0));
    return graph.Zip(scale.name + " label extents", "add", zero,
                     graph.Real(scale.space.labelFontSize / across));
  }
  NodeId const widths =
      graph.Zip(scale.name + " widths along", "multiply", scale.labelWidths, graph.Real(along));
  return graph.Zip(scale.name + " label extents", "add", widths,
                   graph.Real(across * scale.space.labelFontSize));
}

void PlanLabels(GraphBuilder& graph, PositionScale& scale) {
  NodeId const widths = graph.Call(scale.name + " whole label widths", "measureTexts",
                                   {scale.tickLabels, MakeLabelFont(graph, scale.space.labelFontSize)});
  scale.labelWidths =
      graph.Map(scale.name + " label widths", "clampMax", widths, {graph.Real(scale.space.labelLimit)});
  double const gap = scale.space.isHorizontal ? kLabelGapAlong : kLabelGapAcross;
  char const* const strategy = scale.scaleType == ScaleType::Log ? "greedy" : "parity";
  scale.shownLabels =
      graph.Call(scale.name + " shown labels", "visibleLabels",
                 {scale.tickPositions, LabelExtents(graph, scale), graph.Real(gap), graph.Text(strategy)});
}

void PlanContinuous(Compilation& compilation, Encoding const& encoding, PositionScale& scale) {
  GraphBuilder& graph = compilation.graph;
  bool const isTime = scale.scaleType == ScaleType::Time;
  ScaledField const field =
      ScaleField(compilation, encoding, scale.name, {.includesZero = !isTime, .isNice = !isTime});
  Range const range = PixelRange(scale.space, IsReversed(encoding, field));
  bool const isClamped = encoding.scale.clamp.value_or(false);
  NodeId const fraction = ToFraction(graph, field, scale.name, field.scaled, isClamped);
  scale.positions = ToRange(graph, scale.name + " positions", fraction, range.start, range.end);
  scale.numbers = field.numbers;
  if (scale.scaleType == ScaleType::Log) scale.unscaled = field.numbers;

  std::string const tickName = scale.name + " tick";
  GuideValues const ticks =
      PlanGuideValues(compilation, encoding, field,
                      {.name = tickName,
                       .place = ".axis.values",
                       .values = encoding.axis.values,
                       .format = encoding.axis.format,
                       .count = DefaultTickCount(encoding, scale.space),
                       .length = scale.space.length,
                       .isHorizontal = scale.space.isHorizontal,
                       .font = MakeLabelFont(compilation.graph, scale.space.labelFontSize)});
  scale.tickLabels = ticks.labels;
  NodeId const tickFraction =
      ToFraction(graph, field, tickName, ToScaleSpace(graph, field, tickName, ticks.numbers), false);
  scale.tickPositions = ToRange(graph, tickName + " positions", tickFraction, range.start, range.end);
}

// Every value has a step of its own, with its place in the middle of it, from the left or the top.
void PlanDiscrete(Compilation& compilation, Encoding const& encoding, PositionScale& scale) {
  GraphBuilder& graph = compilation.graph;
  CategoryField const field = IndexCategories(compilation, encoding, scale.name);
  NodeId const count = graph.Map(scale.name + " steps", "asReal64", field.count);
  NodeId const step = graph.Zip(scale.name + " step", "divide", graph.Real(scale.space.length), count);
  bool const isReversed = encoding.scale.reverse.value_or(false);
  auto const place = [&](std::string const& name, NodeId index) {
    NodeId const middle =
        graph.Zip(name + " middle", "add", graph.Map(name + " number", "asReal64", index), graph.Real(0.5));
    NodeId const position = graph.Zip(name + " positions", "multiply", middle, step);
    if (!isReversed) return position;
    return graph.Zip(name + " reversed positions", "subtract", graph.Real(scale.space.length), position);
  };
  scale.positions = place(scale.name, field.indices);
  scale.numbers = graph.Map(scale.name + " order", "asReal64", field.indices);
  CategoryEntries const ticks = ListEntries(graph, field, encoding.axis.values);
  scale.tickLabels = ticks.labels;
  scale.tickPositions = place(scale.name + " tick", ticks.indices);
}

}  // namespace

PositionScale PlanPositionScale(Compilation& compilation, Encoding const& encoding, AxisSpace const& space) {
  PositionScale scale;
  scale.name = space.isHorizontal ? "x" : "y";
  scale.encoding = &encoding;
  scale.scaleType = ResolveScaleType(encoding);
  scale.space = space;
  if (scale.scaleType == ScaleType::Ordinal) {
    PlanDiscrete(compilation, encoding, scale);
  } else {
    PlanContinuous(compilation, encoding, scale);
  }
  PlanLabels(compilation.graph, scale);
  for (NodeId const node : {scale.positions, scale.numbers, scale.tickPositions, scale.tickLabels,
                            scale.labelWidths, scale.shownLabels}) {
    compilation.graph.Keep(node);
  }
  if (scale.unscaled >= 0) compilation.graph.Keep(scale.unscaled);
  return scale;
}

}  // namespace ostrel::charts
