#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

NodeId MarkContext::GetScaled(Channel channel) const {
  PlacedChannel const* const placed = Find(channel);
  return placed == nullptr ? -1 : placed->scaled;
}

NodeId MarkContext::GetPosition(Channel channel) {
  if (NodeId const scaled = GetScaled(channel); scaled >= 0) return scaled;
  Channel const degrees = channel == Channel::X ? Channel::Longitude : Channel::Latitude;
  if (NodeId const place = GetScaled(degrees); place >= 0) return place;
  Encoding const* const encoding = layer_.spec->Find(channel);
  double const* const given = encoding == nullptr ? nullptr : std::get_if<double>(&encoding->value);
  double const middle = (channel == Channel::X ? width_ : height_) / 2;
  auto const constant = ort::core::factory::MakeConstantArray<double>(
      ort::core::StoreTypeInfo::Real64, given != nullptr ? *given : middle, layer_.rows->GetRowCount());
  return GetGraph().Constant(channel == Channel::X ? "x position" : "y position", constant);
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

}  // namespace ostrel::charts
