#include "charts/marks/MarkContext.h"

#include "charts/document/Readers.h"

namespace ostrel::charts {

NodeId MarkContext::GetScaled(Channel channel) const {
  PlacedChannel const* const placed = Find(channel);
  return placed == nullptr ? -1 : placed->scaled;
}

MarkLook MarkContext::ResolveOverlay(MarkSpec const& mark) const {
  MarkLook look = ResolveMarkLook(compilation_.document, *layer_.spec, mark);
  std::string const& own = look.paint.isFilled ? mark.fill : mark.stroke;
  if (own.empty() && mark.color.empty()) look.color = layer_.look.color;
  return look;
}

NodeId MarkContext::GetPosition(Channel channel) {
  if (NodeId const scaled = GetScaled(channel); scaled >= 0) return AddOffset(channel, scaled);
  Channel const degrees = channel == Channel::X ? Channel::Longitude : Channel::Latitude;
  if (NodeId const place = GetScaled(degrees); place >= 0 && IsPosition(channel)) return place;
  Encoding const* const encoding = layer_.spec->Find(channel);
  double const* const given = encoding == nullptr ? nullptr : std::get_if<double>(&encoding->value);
  bool const isHorizontal = channel == Channel::X || channel == Channel::X2;
  double const length = isHorizontal ? width_ : height_;
  // A text is the pane's own length.
  bool const isWhole = encoding != nullptr && std::holds_alternative<std::string>(encoding->value);
  double const open = isWhole ? length : length / 2;
  auto const constant = ort::core::factory::MakeConstantArray<double>(
      ort::core::StoreTypeInfo::Real64, given != nullptr ? *given : open, layer_.rows->GetRowCount());
  return GetGraph().Constant(isHorizontal ? "x position" : "y position", constant);
}

NodeId MarkContext::AddOffset(Channel channel, NodeId position) {
  NodeId const shift = GetScaled(channel == Channel::X ? Channel::XOffset : Channel::YOffset);
  if (shift < 0 || !IsPosition(channel)) return position;
  return GetGraph().Zip("shifted position", "add", position, shift);
}

NodeId MarkContext::GetBandwidth(Channel channel) const {
  for (Channel const own : {channel == Channel::X ? Channel::XOffset : Channel::YOffset, channel}) {
    PlacedChannel const* const placed = Find(own);
    if (placed != nullptr && placed->bandwidth >= 0) return placed->bandwidth;
  }
  return -1;
}

NodeId MarkContext::Repeat(std::string const& name, NodeId scalar) {
  return GetGraph().Call(name, "repeat", {scalar, GetGraph().Int(layer_.rows->GetRowCount())});
}

NodeId MarkContext::FindPlaced(std::vector<NodeId> const& columns) {
  GraphBuilder& graph = GetGraph();
  NodeId placed = -1;
  for (NodeId const column : columns) {
    if (column < 0) continue;
    NodeId const has = graph.Map("has value", "not", graph.Map("has none", "isSpecial", column));
    placed = placed < 0 ? has : graph.Zip("placed rows", "and", placed, has);
  }
  return placed;
}

NodeId MarkContext::KeepPlaced(std::string const& name, NodeId column, NodeId placed) {
  return column < 0 ? -1 : GetGraph().Keep(GetGraph().Call(name, "filter", {column, placed}));
}

}  // namespace ostrel::charts
