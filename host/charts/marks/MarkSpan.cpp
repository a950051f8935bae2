#include "charts/marks/MarkSpan.h"

namespace ostrel::charts {
namespace {

// A gap never takes more than this share of an interval on either side.
constexpr double kLargestGapShare = 0.25;

Channel SecondOf(Channel channel) { return channel == Channel::X ? Channel::X2 : Channel::Y2; }

char const* NameOfDirection(Channel channel) { return channel == Channel::X ? "x" : "y"; }

MarkSpan SpanAround(GraphBuilder& graph, Channel channel, NodeId middle, NodeId pixels) {
  std::string const name = NameOfDirection(channel);
  NodeId const half = graph.Zip(name + " half width", "multiply", pixels, graph.Real(0.5));
  return {graph.Zip(name + " from", "subtract", middle, half), graph.Zip(name + " to", "add", middle, half)};
}

NodeId Middle(GraphBuilder& graph, MarkSpan const& span) {
  return graph.Zip("middles", "multiply", graph.Zip("ends", "add", span.from, span.to), graph.Real(0.5));
}

// A share of each interval, around its middle.
MarkSpan Shrink(GraphBuilder& graph, Channel channel, MarkSpan const& span, double share) {
  NodeId const length = graph.Zip("interval", "subtract", span.to, span.from);
  NodeId const part = graph.Zip("share of interval", "multiply", length, graph.Real(share));
  return SpanAround(graph, channel, Middle(graph, span), part);
}

// Whether a bin or a unit of time tells the second end.
bool IsInterval(MarkContext& context, Channel channel) {
  Encoding const* const encoding = context.GetSpec().Find(channel);
  return encoding != nullptr && (encoding->bin || !encoding->timeUnit.empty());
}

MarkSpan LeaveGap(MarkContext& context, Channel channel, MarkSpan const& span, double gap) {
  GraphBuilder& graph = context.GetGraph();
  std::string const name = NameOfDirection(channel);
  NodeId const low = graph.Zip(name + " low", "Min", span.from, span.to);
  NodeId const high = graph.Zip(name + " high", "Max", span.from, span.to);
  NodeId const length = graph.Zip(name + " interval", "subtract", high, low);
  NodeId const most = graph.Zip(name + " share", "multiply", length, graph.Real(kLargestGapShare));
  NodeId const inset = graph.Map(name + " gap", "clampMax", most, {graph.Real(gap / 2)});
  return {graph.Zip(name + " from", "add", low, inset), graph.Zip(name + " to", "subtract", high, inset)};
}

// A domain without 0 has its base line where it begins, in the order that the document gives its ends in.
NodeId BaseLine(MarkContext& context, Channel channel, PositionScale const& scale) {
  GraphBuilder& graph = context.GetGraph();
  std::string const name = NameOfDirection(channel) + std::string(" base");
  bool const canHaveZero = scale.scaleType == ScaleType::Linear || scale.scaleType == ScaleType::Sqrt;
  bool const hasZero = canHaveZero && graph.Peek(scale.field.minimum)->GetReal64() <= 0 &&
                       graph.Peek(scale.field.maximum)->GetReal64() >= 0;
  NodeId const begin = graph.Real(scale.field.isReversed ? scale.end : scale.start);
  return context.Repeat(name + " line", hasZero ? PlaceNumbers(graph, scale, name, graph.Real(0)) : begin);
}

}  // namespace

MarkSpan SpanOfPane(MarkContext& context, Channel channel) {
  GraphBuilder& graph = context.GetGraph();
  double const length = channel == Channel::X ? context.GetWidth() : context.GetHeight();
  std::string const name = NameOfDirection(channel);
  return {context.Repeat(name + " start of pane", graph.Real(0)),
          context.Repeat(name + " end of pane", graph.Real(length))};
}

MarkSpan SpanOfMeasure(MarkContext& context, Channel channel) {
  PlacedChannel const* const placed = context.Find(channel);
  if (context.GetSpec().Find(SecondOf(channel)) != nullptr)
    return {context.GetPosition(SecondOf(channel)), context.GetPosition(channel)};
  if (NodeId const bandwidth = context.GetBandwidth(channel); bandwidth >= 0)
    return SpanAround(context.GetGraph(), channel, context.GetPosition(channel), bandwidth);
  if (placed == nullptr) return SpanOfPlace(context, channel, {});
  return {BaseLine(context, channel, *placed->position), context.GetPosition(channel)};
}

MarkSpan SpanOfPlace(MarkContext& context, Channel channel, PlaceRules const& rules) {
  GraphBuilder& graph = context.GetGraph();
  auto const& [pixels, band] = rules.breadth;
  if (context.GetSpec().Find(SecondOf(channel)) != nullptr) {
    MarkSpan span{context.GetPosition(channel), context.GetPosition(SecondOf(channel))};
    if (pixels && IsInterval(context, channel))
      return SpanAround(graph, channel, Middle(graph, span), graph.Real(*pixels));
    if (rules.gap > 0 && IsInterval(context, channel)) span = LeaveGap(context, channel, span, rules.gap);
    return band ? Shrink(graph, channel, span, *band) : span;
  }
  NodeId breadth = context.GetBandwidth(channel);
  if (pixels || breadth < 0) {
    breadth = graph.Real(pixels.value_or(rules.defaultThickness));
  } else if (band) {
    breadth = graph.Zip(NameOfDirection(channel) + std::string(" share of band"), "multiply", breadth,
                        graph.Real(*band));
  }
  return SpanAround(graph, channel, context.GetPosition(channel), breadth);
}

}  // namespace ostrel::charts
