#include "charts/marks/Series.h"

#include <algorithm>

namespace ostrel::charts {
namespace {

// The channel order's numbers, or its values as they stand.
NodeId OrderColumn(MarkContext& context, Encoding const& order) {
  bool const isNumber = order.type == FieldType::Quantitative || order.type == FieldType::Temporal;
  if (isNumber) return FieldNumbers(context.GetCompilation(), {&order, &context.GetRows(), ""}, "order");
  return context.GetRows().GetColumn(context.GetGraph(), order.field).node;
}

}  // namespace

void CheckSeriesChannels(MarkContext& context) {
  ChartDocument const& document = context.GetCompilation().document;
  if (PlacedChannel const* const opacity = context.Find(Channel::Opacity)) {
    ThrowDocumentError(document, opacity->encoding->path,
                       "a line has one width and opacity; use \"color\" or \"detail\"");
  }
  PlacedChannel const* const color = context.Find(Channel::Color);
  if (color != nullptr && ResolveScaleType(*color->encoding) != ScaleType::Ordinal) {
    ThrowDocumentError(document, color->encoding->path + ".type",
                       "a line has one color; use \"nominal\" or \"ordinal\"");
  }
}

NodeId FindSeries(MarkContext& context) {
  std::vector<NodeId> columns;
  for (Encoding const& encoding : context.GetSpec().encodings) {
    bool const splits = encoding.channel == Channel::Color || encoding.channel == Channel::Detail;
    if (splits && !encoding.field.empty())
      columns.push_back(context.GetRows().GetColumn(context.GetGraph(), encoding.field).node);
  }
  return columns.empty() ? -1 : context.GetGraph().Call("series of row", "groupIndex", columns);
}

NodeId FindDirection(MarkContext& context) {
  PlacedChannel const* const x = context.Find(Channel::X);
  PlacedChannel const* const y = context.Find(Channel::Y);
  auto const isQuantity = [](PlacedChannel const& channel) {
    ScaleType const type = channel.position->scaleType;
    return type != ScaleType::Time && type != ScaleType::Ordinal;
  };
  if (x != nullptr && y != nullptr && isQuantity(*x) && !isQuantity(*y)) return y->numbers;
  return x == nullptr ? -1 : x->numbers;
}

void SortSeries(MarkContext& context, NodeId direction, NodeId color, std::vector<NodeId*> const& columns,
                NodeId group) {
  GraphBuilder& graph = context.GetGraph();
  struct Key {
    NodeId column;
    std::optional<bool> isDescending = {};
  };
  std::vector<Key> keys;
  if (group >= 0) keys.push_back({group});
  bool isOrdered = false;
  for (Encoding const& encoding : context.GetSpec().encodings) {
    if (encoding.channel != Channel::Order) continue;
    keys.push_back({OrderColumn(context, encoding), encoding.isDescending.value_or(false)});
    isOrdered = true;
  }
  if (!isOrdered && direction >= 0) keys.push_back({direction});
  auto const change = [&](auto const& function) {
    for (NodeId* column : columns) {
      if (*column >= 0) *column = function(*column);
    }
  };
  if (color >= 0) {
    NodeId const placed = context.FindPlaced({color});
    auto const keep = [&](NodeId column) { return graph.Call("coloured rows", "filter", {column, placed}); };
    change(keep);
    for (Key& key : keys) key.column = keep(key.column);
  }
  if (keys.empty()) return;
  std::vector<NodeId> columnsAndFlags;
  for (auto const& [column, isDescending] : keys) {
    columnsAndFlags.push_back(column);
    if (isDescending) columnsAndFlags.push_back(graph.Bool(*isDescending));
  }
  NodeId const drawingOrder = graph.Call("drawing order", "sortIndices", columnsAndFlags);
  change([&](NodeId column) { return graph.Call("in drawing order", "take", {column, drawingOrder}); });
}

}  // namespace ostrel::charts
