#include "charts/scales/PositionScale.h"

#include <cmath>
#include <numbers>

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;

// Pixels for one tick where the document does not say how many.
constexpr double kPixelsPerTick = 40;
constexpr double kLabelGapAlong = 6;
constexpr double kLabelGapAcross = 2;
constexpr int kLogLabelGap = 8;

NodeId MakeFont(GraphBuilder& graph, AxisSpace const& space) {
  return graph.Constant("label font",
                        factory::MakeTuple({factory::MakeString(OStringCore::fromUtf8(space.fontFamily)),
                                            factory::MakeReal64(space.labelFontSize), factory::MakeInt32(400),
                                            factory::MakeInt32(0)}));
}

double DefaultTickCount(Encoding const& encoding, AxisSpace const& space) {
  return encoding.axis.tickCount.value_or(std::ceil(space.length / kPixelsPerTick));
}

struct Range {
  double start;
  double end;
};

// Pixels run to the right and upwards, or the other way where the document reverses the scale.
Range PixelRange(Encoding const& encoding, AxisSpace const& space) {
  Range range = space.isHorizontal ? Range{0, space.length} : Range{space.length, 0};
  if (encoding.scale.reverse.value_or(encoding.isDescending.value_or(false)))
    std::swap(range.start, range.end);
  return range;
}

NodeId GivenTicks(Compilation& compilation, Encoding const& encoding) {
  auto values = std::make_unique<std::vector<double>>();
  for (Literal const& literal : encoding.axis.values) {
    auto const* number = std::get_if<double>(&literal);
    if (number == nullptr) {
      ThrowDocumentError(compilation.document, encoding.path + ".axis.values", "expects numbers");
    }
    values->push_back(*number);
  }
  return compilation.graph.Constant(
      "given ticks", factory::MakeArray<double>(ort::core::StoreTypeInfo::Real64, std::move(values)));
}

// A logarithmic axis takes the densest ticks whose labels fit.
NodeId LogTicks(GraphBuilder& graph, Encoding const& encoding, ScaledField const& field,
                AxisSpace const& space) {
  NodeId const format = graph.Constant(
      "label format", factory::MakeTuple({factory::MakeString(OStringCore::fromUtf8(encoding.axis.format))}));
  NodeId const positions =
      graph.Call(field.name + " log ticks", "calcLogTicks",
                 {field.minimum, field.maximum, graph.Int(static_cast<int>(space.length)),
                  graph.Bool(space.isHorizontal), graph.Int(kLogLabelGap), format, MakeFont(graph, space),
                  graph.Real(1), graph.Real(encoding.scale.base.value_or(10))});
  return graph.Call(field.name + " ticks", "logTickValues",
                    {positions, field.minimum, field.maximum, graph.Real(DefaultTickCount(encoding, space))});
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
  scale.labelWidths = graph.Call(scale.name + " label widths", "measureTexts",
                                 {scale.tickLabels, MakeFont(graph, scale.space)});
  double const gap = scale.space.isHorizontal ? kLabelGapAlong : kLabelGapAcross;
  char const* const strategy = scale.scaleType == ScaleType::Log ? "greedy" : "parity";
  scale.shownLabels =
      graph.Call(scale.name + " shown labels", "visibleLabels",
                 {scale.tickPositions, LabelExtents(graph, scale), graph.Real(gap), graph.Text(strategy)});
}

// Ticks as numbers on the axis, and what they say.
NodeId PlanTicks(Compilation& compilation, Encoding const& encoding, ScaledField const& field,
                 PositionScale& scale) {
  GraphBuilder& graph = compilation.graph;
  NodeId const count = graph.Real(DefaultTickCount(encoding, scale.space));
  if (field.scaleType == ScaleType::Time) {
    NodeId const dates =
        graph.Call(field.name + " tick dates", "timeTicks", {field.minimum, field.maximum, count});
    scale.tickLabels =
        graph.Call(field.name + " tick labels", "formatDates", {dates, graph.Text(encoding.axis.format)});
    return graph.Map(field.name + " ticks", "toReal64", dates);
  }
  NodeId ticks = -1;
  if (!encoding.axis.values.empty()) {
    ticks = GivenTicks(compilation, encoding);
  } else if (field.scaleType == ScaleType::Log) {
    ticks = LogTicks(graph, encoding, field, scale.space);
  } else {
    ticks = graph.Call(field.name + " ticks", "linearTicks", {field.minimum, field.maximum, count});
  }
  scale.tickLabels =
      graph.Call(field.name + " tick labels", "formatTicks", {ticks, graph.Text(encoding.axis.format)});
  return ticks;
}

void PlanContinuous(Compilation& compilation, Encoding const& encoding, PositionScale& scale) {
  GraphBuilder& graph = compilation.graph;
  bool const isTime = scale.scaleType == ScaleType::Time;
  ScaledField const field =
      ScaleField(compilation, encoding, scale.name, {.includesZero = !isTime, .isNice = !isTime});
  Range const range = PixelRange(encoding, scale.space);
  bool const isClamped = encoding.scale.clamp.value_or(false);
  NodeId const fraction = ToFraction(graph, field, scale.name, field.scaled, isClamped);
  scale.positions = ToRange(graph, scale.name + " positions", fraction, range.start, range.end);
  scale.numbers = field.numbers;
  if (scale.scaleType == ScaleType::Log) scale.unscaled = field.numbers;

  NodeId const ticks = PlanTicks(compilation, encoding, field, scale);
  std::string const tickName = scale.name + " tick";
  NodeId const tickFraction =
      ToFraction(graph, field, tickName, ToScaleSpace(graph, field, tickName, ticks), false);
  scale.tickPositions = ToRange(graph, tickName + " positions", tickFraction, range.start, range.end);
}

// Every value has a step of its own, with its place in the middle of it.
void PlanDiscrete(Compilation& compilation, Encoding const& encoding, PositionScale& scale) {
  GraphBuilder& graph = compilation.graph;
  CategoryField const field = IndexCategories(compilation, encoding, scale.name);
  NodeId const count = graph.Map(scale.name + " steps", "asReal64", field.count);
  NodeId const step = graph.Zip(scale.name + " step", "divide", graph.Real(scale.space.length), count);
  auto const place = [&](std::string const& name, NodeId index) {
    NodeId const middle =
        graph.Zip(name + " middle", "add", graph.Map(name + " number", "asReal64", index), graph.Real(0.5));
    return graph.Zip(name + " positions", "multiply", middle, step);
  };
  scale.positions = place(scale.name, field.indices);
  scale.numbers = graph.Map(scale.name + " order", "asReal64", field.indices);
  scale.tickLabels = field.domain;
  scale.tickPositions = place(scale.name + " tick", graph.Call(scale.name + " tick indices", "sequence",
                                                               {graph.Int(0), graph.Int(1), field.count}));
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
