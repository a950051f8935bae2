#include "charts/graph/ChartPlan.h"

#include <algorithm>

#include "charts/graph/DocumentChecks.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {
namespace {

constexpr double kDefaultLength = 300;

bool IsLine(MarkSpec const& mark) { return mark.kind == MarkKind::Line; }

bool HasField(Encoding const* encoding) { return encoding != nullptr && !encoding->field.empty(); }

std::optional<PositionScale> PlanPosition(Compilation& compilation, Channel channel, double length) {
  Encoding const* const encoding = compilation.document.Find(channel);
  if (!HasField(encoding)) return std::nullopt;
  return PlanPositionScale(compilation, *encoding,
                           {.isHorizontal = channel == Channel::X,
                            .length = length,
                            .labelFontSize = GuideStyle::kLabelFontSize,
                            .labelLimit = GuideStyle::kLabelLimit});
}

// The pixels of a channel without a field: its constant, or the middle.
NodeId ConstantPosition(Compilation& compilation, Channel channel, double length) {
  Encoding const* const encoding = compilation.document.Find(channel);
  double const* const given = encoding == nullptr ? nullptr : std::get_if<double>(&encoding->value);
  auto const constant = ort::core::factory::MakeConstantArray<double>(
      ort::core::StoreTypeInfo::Real64, given != nullptr ? *given : length / 2, compilation.table.rowCount);
  return compilation.graph.Constant(channel == Channel::X ? "x position" : "y position", constant);
}

void PlanStyles(Compilation& compilation, ChartPlan& plan) {
  auto const add = [&](Channel channel, auto planScale) {
    Encoding const* const encoding = compilation.document.Find(channel);
    if (!HasField(encoding)) return;
    if (IsLine(compilation.document.mark) && channel != Channel::Color) {
      ThrowDocumentError(compilation.document, encoding->path,
                         "a line has one width and opacity; use \"color\" or \"detail\"");
    }
    plan.styles.push_back(planScale(compilation, *encoding));
  };
  add(Channel::Color, PlanColorScale);
  add(Channel::Size, PlanSizeScale);
  add(Channel::Opacity, PlanOpacityScale);
  add(Channel::Shape, PlanShapeScale);
}

NodeId StyleRows(ChartPlan const& plan, Channel channel) {
  StyleScale const* const scale = plan.Find(channel);
  return scale == nullptr ? -1 : scale->rows;
}

// Rows that every scale has placed.
NodeId PlacedRows(GraphBuilder& graph, std::vector<NodeId> const& columns) {
  NodeId placed = -1;
  for (NodeId const column : columns) {
    if (column < 0) continue;
    NodeId const has = graph.Map("has value", "not", graph.Map("has none", "isSpecial", column));
    placed = placed < 0 ? has : graph.Zip("placed rows", "and", placed, has);
  }
  return placed;
}

SymbolPlan PlanSymbols(Compilation& compilation, ChartPlan const& plan, NodeId x, NodeId y) {
  GraphBuilder& graph = compilation.graph;
  SymbolPlan symbols{x,
                     y,
                     StyleRows(plan, Channel::Color),
                     StyleRows(plan, Channel::Size),
                     StyleRows(plan, Channel::Opacity),
                     StyleRows(plan, Channel::Shape)};
  NodeId const placed =
      PlacedRows(graph, {symbols.x, symbols.y, symbols.color, symbols.size, symbols.opacity, symbols.shape});
  auto const filter = [&](NodeId& column, char const* name) {
    if (column >= 0) column = graph.Keep(graph.Call(name, "filter", {column, placed}));
  };
  filter(symbols.x, "symbol x");
  filter(symbols.y, "symbol y");
  filter(symbols.color, "symbol color");
  filter(symbols.size, "symbol size");
  filter(symbols.opacity, "symbol opacity");
  filter(symbols.shape, "symbol shape");
  return symbols;
}

// The columns whose equal rows make up one line.
std::vector<NodeId> LineGroups(Compilation& compilation) {
  std::vector<NodeId> columns;
  for (Encoding const& encoding : compilation.document.encodings) {
    bool const splits = encoding.channel == Channel::Color || encoding.channel == Channel::Detail;
    if (!splits || encoding.field.empty()) continue;
    if (encoding.channel == Channel::Color && ResolveScaleType(encoding) != ScaleType::Ordinal) {
      ThrowDocumentError(compilation.document, encoding.path + ".type",
                         "a line has one color; use \"nominal\" or \"ordinal\"");
    }
    DataColumn const& column = compilation.table.Get(encoding.field);
    columns.push_back(compilation.graph.Input(encoding.field, column.values));
  }
  return columns;
}

// What rows of a line are ordered by.
NodeId OrderNumbers(Compilation& compilation, Encoding const& order) {
  if (order.type == FieldType::Quantitative || order.type == FieldType::Temporal) {
    return ScaleField(compilation, order, "order", {}).numbers;
  }
  return compilation.graph.Input(order.field, compilation.table.Get(order.field).values);
}

// A line runs along x, but along y where that alone is no quantity.
PositionScale const* LineDirection(ChartPlan const& plan) {
  auto const isQuantity = [](PositionScale const& scale) {
    return scale.scaleType != ScaleType::Time && scale.scaleType != ScaleType::Ordinal;
  };
  if (plan.y && plan.x && isQuantity(*plan.x) && !isQuantity(*plan.y)) return &*plan.y;
  return plan.x ? &*plan.x : nullptr;
}

LinePlan PlanLines(Compilation& compilation, ChartPlan const& plan, NodeId x, NodeId y) {
  GraphBuilder& graph = compilation.graph;
  LinePlan lines{.x = x, .y = y, .color = StyleRows(plan, Channel::Color)};
  if (auto const groups = LineGroups(compilation); !groups.empty())
    lines.group = graph.Call("line of row", "groupIndex", groups);
  NodeId order = -1;
  NodeId isDescending = -1;
  if (Encoding const* const encoding = compilation.document.Find(Channel::Order); HasField(encoding)) {
    order = OrderNumbers(compilation, *encoding);
    isDescending = graph.Bool(encoding->isDescending.value_or(false));
  } else if (PositionScale const* const direction = LineDirection(plan)) {
    order = direction->numbers;
  }
  auto const change = [&](auto const& function) {
    for (NodeId* column : {&lines.x, &lines.y, &lines.group, &lines.color, &order}) {
      if (*column >= 0) *column = function(*column);
    }
  };
  if (lines.color >= 0) {
    NodeId const placed = PlacedRows(graph, {lines.color});
    change([&](NodeId column) { return graph.Call("coloured rows", "filter", {column, placed}); });
  }
  std::vector<NodeId> keys;
  for (NodeId const key : {lines.group, order, isDescending}) {
    if (key >= 0) keys.push_back(key);
  }
  if (!keys.empty()) {
    NodeId const drawingOrder = graph.Call("drawing order", "sortIndices", keys);
    change([&](NodeId column) { return graph.Call("in drawing order", "take", {column, drawingOrder}); });
  }
  for (NodeId const column : {lines.x, lines.y, lines.group, lines.color}) {
    if (column >= 0) graph.Keep(column);
  }
  return lines;
}

}  // namespace

StyleScale const* ChartPlan::Find(Channel channel) const {
  auto const found = std::ranges::find(styles, channel, &StyleScale::channel);
  return found == styles.end() ? nullptr : &*found;
}

ChartPlan PlanChart(Compilation& compilation, ChartOptions const& options) {
  ChartDocument const& document = compilation.document;
  CheckDocument(document);
  ChartPlan plan;
  plan.width = options.width.value_or(document.width.value_or(kDefaultLength));
  plan.height = options.height.value_or(document.height.value_or(kDefaultLength));
  plan.x = PlanPosition(compilation, Channel::X, plan.width);
  plan.y = PlanPosition(compilation, Channel::Y, plan.height);
  PlanStyles(compilation, plan);

  NodeId const x = plan.x ? plan.x->positions : ConstantPosition(compilation, Channel::X, plan.width);
  NodeId const y = plan.y ? plan.y->positions : ConstantPosition(compilation, Channel::Y, plan.height);
  bool const isLine = IsLine(document.mark);
  if (isLine) plan.lines = PlanLines(compilation, plan, x, y);
  if (!isLine || document.mark.hasPoints) plan.symbols = PlanSymbols(compilation, plan, x, y);
  return plan;
}

}  // namespace ostrel::charts
