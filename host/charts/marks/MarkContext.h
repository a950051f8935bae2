#pragma once

#include "charts/graph/LayerPlan.h"

namespace ostrel::charts {

/// What the mark of a layer is planned from.
class MarkContext {
 public:
  MarkContext(Compilation& compilation, LayerPlan const& layer, double width, double height)
      : compilation_(compilation), layer_(layer), width_(width), height_(height) {}

  Compilation& GetCompilation() { return compilation_; }
  GraphBuilder& GetGraph() { return compilation_.graph; }
  MarkSpec const& GetMark() const { return layer_.spec->mark; }
  LayerSpec const& GetSpec() const { return *layer_.spec; }
  LayerRows& GetRows() { return *layer_.rows; }
  MarkLook const& GetLook() const { return layer_.look; }
  /// The look of what is drawn over the layer's mark, in its colour where it has none of its own.
  MarkLook ResolveOverlay(MarkSpec const& mark) const;
  /// Null for a chart that is no map.
  MapPlan const* GetMap() const { return layer_.map; }
  /// Of the pane, in pixels.
  double GetWidth() const { return width_; }
  double GetHeight() const { return height_; }

  /// A channel that has a field, with what its scale makes of the rows; null for others.
  PlacedChannel const* Find(Channel channel) const { return layer_.Find(channel); }
  /// What a channel's scale makes of each row: pixels, a colour, ...; -1 for a channel without a field.
  NodeId GetScaled(Channel channel) const;
  /// A row's pixels on x, y, x2 or y2: of the channel's field, its place on the map, its constant, or the
  /// middle of the pane.
  NodeId GetPosition(Channel channel);
  /// Real64 scalar: the pixels that marks fill on a discrete x or y; -1 where the channel is not discrete.
  NodeId GetBandwidth(Channel channel) const;
  /// A column of the layer's rows that all have a scalar's value.
  NodeId Repeat(std::string const& name, NodeId scalar);
  /// Whether a row has a value in all of the columns; those that are -1 count for nothing. -1 without
  /// columns.
  NodeId FindPlaced(std::vector<NodeId> const& columns);
  /// A column's rows that have a place, kept for drawing; -1 for -1.
  NodeId KeepPlaced(std::string const& name, NodeId column, NodeId placed);

 private:
  NodeId AddOffset(Channel channel, NodeId position);

  Compilation& compilation_;
  LayerPlan const& layer_;
  double width_;
  double height_;
};

}  // namespace ostrel::charts
