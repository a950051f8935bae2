#include "charts/scales/LegendRooms.h"

#include <algorithm>
#include <cmath>

#include "charts/document/Readers.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {
namespace {

using namespace GuideStyle;

constexpr double kLeastSymbol = 10;
constexpr double kLineSample = 16;

NodeId MeasureSymbols(GraphBuilder& graph, StyleScale const& scale, std::string const& name, bool isOfLines,
                      NodeId count) {
  if (scale.channel != Channel::Size || isOfLines) {
    return graph.Call(
        name + " symbol widths", "repeat",
        {graph.Real(GetSymbolWidth(scale.encoding.legend.symbolSize.value_or(kLegendSampleSize), isOfLines)),
         count});
  }
  NodeId const sides = graph.Map(name + " symbol sides", "sqrt", scale.entries);
  return graph.Map(name + " symbol widths", "clampMin", sides, {graph.Real(kLeastSymbol)});
}

// One height for all, so that symbols stand on their lines' middles.
NodeId MeasureHeights(GraphBuilder& graph, std::string const& name, NodeId symbols, bool isOfLines,
                      NodeId count) {
  NodeId height = graph.Real(kLegendRowHeight + kLegendRowGap);
  if (!isOfLines) {
    NodeId const highest = graph.Call(name + " symbol height", "columnMax", {symbols});
    NodeId const held = graph.Zip(name + " entry height", "Max", graph.Real(kLegendRowHeight), highest);
    height = graph.Zip(name + " line height", "add", held, graph.Real(kLegendRowGap));
  }
  return graph.Call(name + " heights", "repeat", {height, count});
}

}  // namespace

double GetSymbolWidth(double size, bool isOfLines) {
  return isOfLines ? kLineSample : std::max(kLeastSymbol, std::sqrt(size));
}

NodeId PlanLegendRooms(GraphBuilder& graph, StyleScale const& scale, bool isOfLines, double width) {
  std::string const name = std::string(NameOf(scale.channel)) + " legend";
  NodeId const labels = graph.Call(name + " label widths", "member", {scale.entryTexts, graph.Text("width")});
  NodeId const count = graph.Call(name + " entries", "count", {labels});
  NodeId const symbols = MeasureSymbols(graph, scale, name, isOfLines, count);
  NodeId const parts = graph.Zip(name + " symbols and labels", "add", symbols, labels);
  NodeId widths =
      graph.Zip(name + " entry widths", "add", parts, graph.Real(kLegendLabelPadding + kLegendEntryGap));
  if (scale.shownEntries >= 0) {
    widths = graph.Call(name + " entry widths shown", "choose", {scale.shownEntries, widths, graph.Real(0)});
  }
  NodeId const one = graph.Int(1);
  // The gap behind a line's last entry may stand out.
  return graph.Keep(
      graph.Call(name + " rooms", "composeShapes",
                 {graph.Call(name + " first entry", "repeat", {graph.Int(0), one}),
                  graph.Call(name + " entry count", "repeat", {count, one}),
                  graph.Call(name + " entry rows", "sequence", {graph.Int(0), one, count}), widths,
                  MeasureHeights(graph, name, symbols, isOfLines, count), graph.Real(width + kLegendEntryGap),
                  graph.Real(kNoLimit), graph.Int(0), graph.Int(0)}));
}

}  // namespace ostrel::charts
