#include "charts/scales/PositionScale.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "charts/functions/TimeUnits.h"
#include "charts/guides/GuideStyle.h"
#include "charts/scales/GuideValues.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

// Pixels for one tick where the document does not say how many.
constexpr double kPixelsPerTick = 40;

// No tick stands between two units of time.
double MostUnits(GraphBuilder& graph, PositionScale const& scale) {
  constexpr ort::core::OrtDateTime kUsualStart(2001, 1, 1);
  auto const unit = TimeUnit::FromName(scale.encoding.timeUnit.name);
  bool const isCounted = scale.encoding.timeUnit.IsPeriod() || scale.encoding.axis.tickInterval;
  if (!unit || isCounted || scale.scaleType != ScaleType::Time)
    return std::numeric_limits<double>::infinity();
  auto const start = unit->Floor(kUsualStart);
  double const days = unit->After(start).ToDouble() - start.ToDouble();
  double const span =
      graph.Peek(scale.field.maximum)->GetReal64() - graph.Peek(scale.field.minimum)->GetReal64();
  return std::max(std::floor(span / days), 1.0);
}

// Ticks of numbers are no closer to one another than the document says.
double MostSteps(GraphBuilder& graph, PositionScale const& scale) {
  auto const step = scale.encoding.axis.tickMinStep;
  bool const isEven = scale.scaleType == ScaleType::Linear;
  if (!step || !isEven) return std::numeric_limits<double>::infinity();
  double const span =
      graph.Peek(scale.field.maximum)->GetReal64() - graph.Peek(scale.field.minimum)->GetReal64();
  return std::max(std::floor(span / *step), 1.0);
}

double FindTickCount(GraphBuilder& graph, PositionScale const& scale) {
  double const count = scale.encoding.axis.tickCount.value_or(std::ceil(scale.space.length / kPixelsPerTick));
  return std::min({count, MostUnits(graph, scale), MostSteps(graph, scale)});
}

struct Range {
  double start;
  double end;
};

// Pixels run to the right and upwards, or the other way.
Range PixelRange(AxisSpace const& space, bool isReversed) {
  return space.isHorizontal != isReversed ? Range{0, space.length} : Range{space.length, 0};
}

void PlanLabels(GraphBuilder& graph, PositionScale& scale) {
  GuideSpec const& axis = scale.encoding.axis;
  double const limit = axis.labelLimit.value_or(scale.space.labelLimit);
  AxisLabelRequest request{.name = scale.name,
                           .isHorizontal = scale.space.isHorizontal,
                           .isFar = IsFarAxis(scale),
                           .texts = scale.tickLabels,
                           .positions = scale.tickPositions,
                           .step = std::nullopt,
                           .angle = axis.labelAngle,
                           .limit = limit > 0 ? limit : GuideStyle::kNoLimit,
                           .fontSize = axis.labelFontSize.value_or(scale.space.labelFontSize),
                           .isLog = scale.scaleType == ScaleType::Log,
                           .areWhole = scale.encoding.bin && scale.scaleType == ScaleType::Ordinal};
  if (scale.step >= 0) request.step = graph.Peek(scale.step)->GetReal64();
  scale.labels = PlanAxisLabels(graph, request);
}

void PlanTitle(GraphBuilder& graph, PositionScale& scale) {
  AxisSpace const& space = scale.space;
  GuideSpec const& axis = scale.encoding.axis;
  TextStyle const style{.fontSize = axis.titleFontSize.value_or(GuideStyle::kTitleFontSize),
                        .isBold = axis.isTitleBold.value_or(true),
                        .turn = space.isHorizontal ? TextTurn::None : TextTurn::Anticlockwise,
                        .along = TextAnchor::Middle,
                        .across = IsFarAxis(scale) ? TextAnchor::Start : TextAnchor::End};
  double const room = std::max(space.length * space.paneCount, GuideStyle::kLeastTitleLength);
  double const limit = axis.titleLimit.value_or(0);
  scale.title = ComposeTitle(graph, scale.name + " title", axis.title.text, style, limit > 0 ? limit : room);
}

NodeId PlaceScaled(GraphBuilder& graph, PositionScale const& scale, std::string const& name, NodeId scaled,
                   bool isClamped) {
  NodeId const fraction = ToFraction(graph, scale.field, name, scaled, isClamped);
  return ToRange(graph, name + " positions", fraction, scale.start, scale.end);
}

void PlanContinuousDomain(Compilation& compilation, ScaleSource const& source, PositionScale& scale) {
  bool const isTime = scale.scaleType == ScaleType::Time;
  scale.field = ScaleField(compilation, source,
                           {.includesZero = !isTime && scale.space.includesZero,
                            .isNice = !isTime,
                            .padding = scale.space.margin,
                            .length = scale.space.length,
                            .isHorizontal = scale.space.isHorizontal});
  Range const range = PixelRange(scale.space, IsReversed(source.encoding, scale.field));
  scale.start = range.start;
  scale.end = range.end;
}

// Whether the domain does not begin where the first bin does.
bool IsMoved(ChartDocument const& document, Encoding const& encoding) {
  ScaleSpec const& scale = encoding.scale;
  if (!scale.domain.empty() || scale.domainMin || scale.domainMax || scale.fit.value_or(false)) return true;
  auto const moves = [&](ResolveSpec const& resolve) {
    Channel const channel = encoding.channel;
    return resolve.SharesZero(channel) || resolve.SharesDomain(channel) || resolve.SharesUnit(channel);
  };
  return moves(document.resolveLayers) || moves(document.resolvePanes);
}

// Real64 scalar: how wide the bins are that stand on the scale, -1 where no ticks follow them.
NodeId FindBinStep(Compilation& compilation, ScaleSource const& source) {
  GraphBuilder& graph = compilation.graph;
  FieldUse const& use = source.uses.front();
  Encoding const& encoding = *use.encoding;
  if (!encoding.bin || encoding.endField.empty()) return -1;
  if (encoding.bin->isDone) return encoding.bin->step ? graph.Real(*encoding.bin->step) : -1;
  if (IsMoved(compilation.document, source.encoding)) return -1;
  std::string const& start = encoding.startField.empty() ? encoding.field : encoding.startField;
  NodeId const widths =
      graph.Zip(source.name + " bin widths", "subtract", use.rows->GetNumbers(graph, encoding.endField).node,
                use.rows->GetNumbers(graph, start).node);
  return graph.Call(source.name + " bin width", "columnMin", {widths});
}

void PlanContinuous(Compilation& compilation, ScaleSource const& source, PositionScale& scale) {
  Encoding const& encoding = source.encoding;
  GraphBuilder& graph = compilation.graph;
  for (std::size_t i = 0; i < source.uses.size(); ++i) {
    ScaledRows const& rows = scale.field.rows[i];
    NodeId const positions = PlaceScaled(graph, scale, scale.name + source.uses[i].label, rows.scaled,
                                         encoding.scale.clamp.value_or(false));
    scale.rows.push_back({positions, rows.numbers, scale.scaleType == ScaleType::Log ? rows.numbers : -1});
  }

  std::string const tickName = scale.name + " tick";
  NodeId const binStep = FindBinStep(compilation, source);
  GuideValues const ticks = PlanGuideValues(
      compilation, encoding, scale.field,
      {.name = tickName,
       .place = ".axis.values",
       .values = encoding.axis.values,
       .format = encoding.axis.format,
       .count = FindTickCount(graph, scale),
       .step = encoding.axis.tickCount ? -1 : binStep,
       .length = scale.space.length,
       .isHorizontal = scale.space.isHorizontal,
       .font = MakeLabelFont(graph, encoding.axis.labelFontSize.value_or(scale.space.labelFontSize))});
  scale.tickLabels = ticks.labels;
  scale.tickPositions = PlaceNumbers(graph, scale, tickName, ticks.numbers);
}

// The shares of a step that are left free between two values, and before the first one.
struct BandGaps {
  double inner = 0;
  double outer = 0;
};

BandGaps FindGaps(ScaleSpec const& scale, AxisSpace const& space) {
  constexpr double kDefaultGap = 0.1;
  bool const isBand = scale.isBand.value_or(space.bandGap.has_value());
  double const inner =
      isBand ? scale.paddingInner.value_or(scale.padding.value_or(space.bandGap.value_or(kDefaultGap))) : 1;
  double const outer =
      scale.paddingOuter.value_or(scale.padding.value_or(space.outerGap.value_or(inner / 2)));
  // Without any room a step would have no end.
  return {inner, inner == 1 && outer == 0 ? 0.5 : outer};
}

// Every value has a step of its own, with its place in the middle of its band, from the left or the top.
void PlanDiscrete(Compilation& compilation, ScaleSource const& source, PositionScale& scale) {
  Encoding const& encoding = source.encoding;
  GraphBuilder& graph = compilation.graph;
  CategoryField const field = IndexCategories(compilation, source);
  BandGaps const gaps = FindGaps(encoding.scale, scale.space);
  NodeId const count = graph.Map(scale.name + " steps", "asReal64", field.count);
  NodeId const steps = gaps.inner == 2 * gaps.outer ? count
                                                    : graph.Zip(scale.name + " steps with gaps", "add", count,
                                                                graph.Real(2 * gaps.outer - gaps.inner));
  if (scale.space.step) {
    NodeId const length = graph.Zip(scale.name + " length", "multiply", steps, graph.Real(*scale.space.step));
    scale.space.length = std::max(graph.Peek(length)->GetReal64(), *scale.space.step);
  }
  scale.step = graph.Zip(scale.name + " step", "divide", graph.Real(scale.space.length), steps);
  scale.bandwidth = graph.Zip(scale.name + " bandwidth", "multiply", scale.step, graph.Real(1 - gaps.inner));
  bool const isReversed = encoding.scale.reverse.value_or(false);
  NodeId const beforeMiddle = graph.Real(gaps.outer + (1 - gaps.inner) / 2);
  auto const place = [&](std::string const& name, NodeId index) {
    NodeId const middle =
        graph.Zip(name + " middle", "add", graph.Map(name + " number", "asReal64", index), beforeMiddle);
    NodeId const position = graph.Zip(name + " positions", "multiply", middle, scale.step);
    if (!isReversed) return position;
    return graph.Zip(name + " reversed positions", "subtract", graph.Real(scale.space.length), position);
  };
  for (std::size_t i = 0; i < source.uses.size(); ++i) {
    std::string const name = scale.name + source.uses[i].label;
    NodeId const indices = field.indices[i];
    scale.rows.push_back({place(name, indices), graph.Map(name + " order", "asReal64", indices), -1});
  }
  CategoryEntries const ticks = ListEntries(graph, field, encoding, encoding.axis.values);
  scale.tickLabels = ticks.labels;
  scale.tickPositions = place(scale.name + " tick", ticks.indices);
}

}  // namespace

bool IsFarAxis(PositionScale const& scale) {
  std::string const& orient = scale.encoding.axis.orient;
  return scale.space.isHorizontal ? orient != "top" : orient == "right";
}

NodeId PlaceNumbers(GraphBuilder& graph, PositionScale const& scale, std::string const& name,
                    NodeId numbers) {
  return PlaceScaled(graph, scale, name, ToScaleSpace(graph, scale.field, name, numbers), false);
}

PositionScale PlanPositionDomain(Compilation& compilation, ScaleSource const& source,
                                 AxisSpace const& space) {
  PositionScale scale;
  scale.name = source.name;
  scale.encoding = source.encoding;
  scale.scaleType = ResolveScaleType(source.encoding);
  scale.space = space;
  if (scale.scaleType != ScaleType::Ordinal) PlanContinuousDomain(compilation, source, scale);
  return scale;
}

void PlanPositions(Compilation& compilation, ScaleSource const& source, PositionScale& scale) {
  if (scale.scaleType == ScaleType::Ordinal) {
    PlanDiscrete(compilation, source, scale);
  } else {
    PlanContinuous(compilation, source, scale);
  }
  PlanLabels(compilation.graph, scale);
  PlanTitle(compilation.graph, scale);
  compilation.graph.Keep(scale.tickPositions);
  if (scale.step >= 0 && scale.encoding.axis.marksBandEnds.value_or(false))
    compilation.graph.Keep(scale.step);
  for (PositionRows const& rows : scale.rows) {
    for (NodeId const node : {rows.positions, rows.numbers, rows.unscaled}) {
      if (node >= 0) compilation.graph.Keep(node);
    }
  }
}

}  // namespace ostrel::charts
