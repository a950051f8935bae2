#include <fmt/format.h>

#include <cmath>

#include "charts/marks/BubbleOverlaps.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/Marks.h"
#include "charts/marks/TextColor.h"
#include "charts/texts/ComposedTexts.h"

// The mark packedBubbles: circles side by side whose areas are the values of a field, as large as the plot
// has room for, with what the channel text says inside them.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;
using ort::core::RIndirectString;

// Circles are packed in units of which the largest radius has this many: circles are kept apart to within an
// absolute tolerance, beside which their squares must be large.
constexpr double kLargestRadius = 1000;
// What reaches less into another circle can't be seen.
constexpr double kVisibleDepth = 0.1;
// Circles narrower than this have no label.
constexpr double kLeastLabelled = 18;
constexpr double kMargin = 2;        // between a label and its circle, pixels
constexpr double kFontShare = 0.16;  // of the diameter
constexpr int kMostLines = 4;

// A label's sizes, from the one that looks best to the smallest that can be read.
std::vector<TextStyle> ListStyles() {
  std::vector<TextStyle> styles;
  for (double const size : {13, 12, 11, 10, 9, 8})
    styles.push_back({.fontSize = size, .along = TextAnchor::Middle, .across = TextAnchor::Middle});
  return styles;
}

// Columns of the rows that are drawn, -1 where the channel has no field.
struct BubbleColumns {
  NodeId x = -1;  // pixels
  NodeId y = -1;
  NodeId diameter = -1;  // pixels
  NodeId area = -1;      // of the bounding square, as symbols have it
  NodeId color = -1;
  NodeId opacity = -1;
  NodeId text = -1;
  NodeId label = -1;  // the composed texts
  NodeId tooltip = -1;
};

// What is seen of a colour on white.
OrtColor OnWhite(OrtColor color, double opacity) {
  unsigned seen = 0xFF;
  for (int const shift : {16, 8, 0}) {
    unsigned const part = (static_cast<unsigned>(color.GetValue()) >> shift) & 0xFFU;
    seen = (seen << 8) + static_cast<unsigned>(std::lround(255 - (255 - part) * opacity));
  }
  return OrtColor(static_cast<int>(seen));
}

class BubblePlan final : public MarkPlan {
 public:
  BubblePlan(BubbleColumns const& columns, NodeId hasArea, Encoding const& size, MarkLook look)
      : columns_(columns), hasArea_(hasArea), field_(size.field), look_(std::move(look)) {}

  void Build(MarkScene const& scene) const override {
    Results const& results = scene.results;
    SymbolMarks marks;
    marks.x = results[columns_.x];
    marks.y = results[columns_.y];
    marks.size = {0, results[columns_.area]};
    marks.color = Varies(results, columns_.color, look_.color);
    marks.opacity = Varies(results, columns_.opacity, look_.opacity);
    if (columns_.tooltip >= 0) marks.tooltips = results[columns_.tooltip];
    if (columns_.text < 0) {
      scene.group.nodes.emplace_back(std::move(marks));
      return;
    }
    Group labels = BuildLabels(scene, marks);
    scene.group.nodes.emplace_back(std::move(marks));
    if (!labels.nodes.empty()) scene.group.nodes.emplace_back(std::make_unique<Group>(std::move(labels)));
  }

  void DescribeLeftOut(Results const& results, std::vector<std::string>& sentences) const override {
    auto const& hasArea = results[hasArea_]->AsTypedArray<bool>();
    int missing = 0;
    for (int row = 0; row < hasArea.GetCount(); ++row) {
      if (hasArea.IsSpecial(row) || !hasArea.GetElement(row)) ++missing;
    }
    if (missing > 0) {
      sentences.push_back(
          fmt::format("{} of {} rows have no number above 0 in '{}' for the bubbles; not drawn", missing,
                      hasArea.GetCount(), field_));
    }
    auto const read = [&](NodeId column) { return results[column]->AsTypedArray<double>().GetValues(); };
    CircleRows const circles{read(columns_.x), read(columns_.y), read(columns_.diameter)};
    if (int const count = CountOverlapping(circles, kVisibleDepth); count > 0) {
      sentences.push_back(fmt::format(
          "{} of {} bubbles overlap another, as the values of '{}' differ too much for one picture", count,
          circles.x.size(), field_));
    }
  }

 private:
  template <class T>
  static Varying<T> Varies(Results const& results, NodeId node, T constant) {
    return {constant, node < 0 ? nullptr : results[node]};
  }

  template <class T>
  static T Read(Varying<T> const& varying, int row) {
    if (varying.column == nullptr) return varying.constant;
    ort::core::StoreValue const& column = *varying.column;
    return column.AsTypedArray<T>().GetElement(row);
  }

  Group BuildLabels(MarkScene const& scene, SymbolMarks const& marks) const {
    Group labels;
    labels.role = "labels";
    Extent extent(Rect{});
    auto const& texts = scene.results[columns_.text]->AsTypedArray<RIndirectString>();
    ComposedTexts const composed(scene.results[columns_.label]);
    std::vector<TextStyle> const styles = ListStyles();
    TextMark look;
    for (int row = 0; row < texts.GetCount(); ++row) {
      if (texts.IsSpecial(row) || !composed.IsTelling(row, texts.GetElement(row).Get())) continue;
      look.at = {marks.x->AsTypedArray<double>().GetElement(row),
                 marks.y->AsTypedArray<double>().GetElement(row)};
      look.color = ChooseTextColor(OnWhite(Read(marks.color, row), Read(marks.opacity, row)));
      composed.Add(labels, row, styles[composed.GetStyle(row)], look, extent);
    }
    return labels;
  }

  BubbleColumns columns_;
  NodeId hasArea_;  // of all rows
  std::string field_;
  MarkLook look_;
};

Encoding const& RequireSize(MarkContext& context) {
  ChartDocument const& document = context.GetCompilation().document;
  LayerSpec const& spec = context.GetSpec();
  Encoding const* const size = spec.Find(Channel::Size);
  if (size == nullptr || size->field.empty()) {
    ThrowDocumentError(document, size == nullptr ? spec.path + ".encoding" : size->path,
                       "packedBubbles need a quantitative field in the channel size");
  }
  if (size->type != FieldType::Quantitative)
    ThrowDocumentError(document, size->path + ".type", "a bubble's area is a number; use \"quantitative\"");
  if (size->scale != ScaleSpec()) {
    ThrowDocumentError(document, size->path + ".scale",
                       "bubbles are as large as the plot has room for; leave it out");
  }
  return *size;
}

// The sizes of the rows that are drawn, and all other columns, in the order in which they are packed: the
// largest first, which gives the roundest picture, unless the document says otherwise.
class BubbleRows {
 public:
  BubbleRows(MarkContext& context, Encoding const& size) : graph_(context.GetGraph()) {
    numbers_ = FieldNumbers(context.GetCompilation(), {&size, &context.GetRows(), ""}, "size");
    hasArea_ = graph_.Keep(graph_.Zip("has area", "greater", numbers_, graph_.Real(0)));
    NodeId const placed =
        context.FindPlaced({context.GetScaled(Channel::Color), context.GetScaled(Channel::Opacity)});
    mask_ = placed < 0 ? hasArea_ : graph_.Zip("is drawn", "and", hasArea_, placed);
    numbers_ = graph_.Call("drawn sizes", "filter", {numbers_, mask_});
    if (graph_.Peek(numbers_)->AsColumn().GetCount() == 0) {
      DataTable const& table = context.GetRows().GetTable();
      ThrowDocumentError(context.GetCompilation().document, size.path + ".field",
                         fmt::format("field '{}' of {} has no value above 0, which bubbles need", size.field,
                                     table.sourceName));
    }
    if (!size.keepsDataOrder) {
      order_ = graph_.Call("packing order", "sortIndices",
                           {numbers_, graph_.Bool(size.isDescending.value_or(true))});
      numbers_ = graph_.Call("sizes in packing order", "take", {numbers_, order_});
    }
  }

  NodeId GetNumbers() const { return numbers_; }
  NodeId HasArea() const { return hasArea_; }

  NodeId Arrange(NodeId column, std::string const& name) {
    if (column < 0) return column;
    NodeId const drawn = graph_.Call("drawn " + name, "filter", {column, mask_});
    return graph_.Keep(order_ < 0 ? drawn : graph_.Call(name + " in packing order", "take", {drawn, order_}));
  }

 private:
  GraphBuilder& graph_;
  NodeId numbers_ = -1;
  NodeId hasArea_ = -1;
  NodeId mask_ = -1;
  NodeId order_ = -1;
};

// Where the packing's bounds lie along an axis, in its own units.
struct Span {
  NodeId low;
  NodeId high;
};

Span FindSpan(GraphBuilder& graph, std::string const& name, NodeId centres, NodeId radii) {
  NodeId const low = graph.Zip(name + " low sides", "subtract", centres, radii);
  NodeId const high = graph.Zip(name + " high sides", "add", centres, radii);
  return {graph.Call(name + " low end", "columnMin", {low}),
          graph.Call(name + " high end", "columnMax", {high})};
}

NodeId MakePair(GraphBuilder& graph, std::string const& name, NodeId value) {
  return graph.Call("named " + name, "makeTuple", {graph.Text(name), value});
}

// Puts the middle of the bounds in the middle of the plot.
NodeId Centre(GraphBuilder& graph, std::string const& name, NodeId pixels, Span const& span, NodeId scale,
              double length) {
  NodeId const middle =
      graph.Zip(name + " middle in pixels", "multiply",
                graph.Call(name + " middle", "interpolate", {graph.Real(0.5), span.low, span.high}), scale);
  NodeId const shift = graph.Zip(name + " shift", "subtract", graph.Real(length / 2), middle);
  return graph.Keep(graph.Zip(name + " of bubbles", "add", pixels, shift));
}

void PackIntoPlot(MarkContext& context, NodeId numbers, BubbleColumns& columns) {
  GraphBuilder& graph = context.GetGraph();
  NodeId const roots = graph.Map("size roots", "sqrt", numbers);
  NodeId const unit = graph.Zip("radius unit", "divide", graph.Real(kLargestRadius),
                                graph.Call("largest root", "columnMax", {roots}));
  NodeId const radii = graph.Zip("radii", "multiply", roots, unit);
  NodeId const layout = graph.Call("packed bubbles", "layoutBubbles", {radii});
  auto const member = [&](NodeId values, char const* key, char const* name) {
    return graph.Call(name, "member", {values, graph.Text(key)});
  };
  Span const x = FindSpan(graph, "x", member(layout, "x", "packed x"), radii);
  Span const y = FindSpan(graph, "y", member(layout, "y", "packed y"), radii);
  auto const fit = [&](char const* name, double length, Span const& span) {
    return graph.Zip(name, "divide", graph.Real(length),
                     graph.Zip("packed length", "subtract", span.high, span.low));
  };
  NodeId const scale = graph.Zip("scale", "Min", fit("scale to the width", context.GetWidth(), x),
                                 fit("scale to the height", context.GetHeight(), y));
  NodeId const pair = graph.Call("named scales", "makeTuple",
                                 {MakePair(graph, "xScale", scale), MakePair(graph, "yScale", scale)});
  NodeId const pixels = graph.Call("bubbles in pixels", "pixelScaleBubbles",
                                   {layout, radii, graph.Call("scales", "toKeyMap", {pair})});
  columns.x = Centre(graph, "x", member(pixels, "x", "scaled x"), x, scale, context.GetWidth());
  columns.y = Centre(graph, "y", member(pixels, "y", "scaled y"), y, scale, context.GetHeight());
  columns.diameter = graph.Keep(member(pixels, "size", "diameters"));
  columns.area = graph.Keep(graph.Zip("areas", "multiply", columns.diameter, columns.diameter));
}

// What is said within the circles.
void PlanLabels(GraphBuilder& graph, BubbleColumns& columns) {
  if (columns.text < 0) return;
  NodeId const room = graph.Zip("room in circles", "subtract", columns.diameter, graph.Real(2 * kMargin));
  NodeId const hasRoom =
      graph.Zip("is labelled", "greaterOrEqual", columns.diameter, graph.Real(kLeastLabelled));
  NodeId const texts = graph.Call("texts of circles", "choose", {hasRoom, columns.text, graph.Text("")});
  columns.label = graph.Keep(ComposeInShapes(graph, "labels", texts, {room, room, true}, ListStyles(),
                                             kMostLines, kFontShare, runtime::DotsRight));
}

NodeId GetTexts(MarkContext& context, Channel channel) {
  Encoding const* const encoding = context.GetSpec().Find(channel);
  if (encoding == nullptr || encoding->field.empty()) return -1;
  return context.GetRows().GetTexts(context.GetGraph(), encoding->field).node;
}

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  Encoding const& size = RequireSize(context);
  BubbleRows rows(context, size);
  BubbleColumns columns{.color = rows.Arrange(context.GetScaled(Channel::Color), "colors"),
                        .opacity = rows.Arrange(context.GetScaled(Channel::Opacity), "opacities"),
                        .text = rows.Arrange(GetTexts(context, Channel::Text), "texts"),
                        .tooltip = rows.Arrange(GetTexts(context, Channel::Tooltip), "tooltips")};
  PackIntoPlot(context, rows.GetNumbers(), columns);
  PlanLabels(context.GetGraph(), columns);
  return std::make_unique<BubblePlan>(columns, rows.HasArea(), size, context.GetLook());
}

}  // namespace

MarkDefinition DefinePackedBubbles() {
  return {.name = "packedBubbles",
          .properties = {"fill"},
          .channels = {Channel::Color, Channel::Size, Channel::Opacity, Channel::Detail, Channel::Text,
                       Channel::Tooltip},
          .plan = Plan,
          .isFilled = true,
          .scalesSize = false};
}

}  // namespace ostrel::charts
