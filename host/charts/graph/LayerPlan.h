#pragma once

#include "charts/graph/MapPlan.h"
#include "charts/marks/MarkLook.h"
#include "charts/marks/MarkPlan.h"
#include "charts/scales/PositionScale.h"
#include "charts/scales/StyleScale.h"

namespace ostrel::charts {

/// A channel of a layer that has a field, and what its scale makes of the layer's rows.
struct PlacedChannel {
  Encoding const* encoding = nullptr;
  PositionScale const* position = nullptr;  ///< the scale of a position channel
  NodeId scaled = -1;     ///< Real64 pixels, Color, Real64 size or opacity, or Int32 shape of each row
  NodeId numbers = -1;    ///< of a position: Real64 column in data order, for sorting
  NodeId bandwidth = -1;  ///< of a discrete position or an offset: Real64 scalar, the pixels that marks fill
  NodeId unscaled = -1;   ///< of a logarithmic position: the data numbers, else -1
};

/// A layer of a pane.
struct LayerPlan {
  LayerSpec const* spec = nullptr;
  std::shared_ptr<LayerRows> rows;
  std::vector<PlacedChannel> channels;  ///< those that have a scale, positions first
  MapPlan const* map = nullptr;         ///< while the mark of a map is planned
  MarkLook look;
  std::unique_ptr<MarkPlan> mark;

  /// Null when the channel has no field.
  PlacedChannel const* Find(Channel channel) const {
    for (PlacedChannel const& placed : channels) {
      if (placed.encoding->channel == channel) return &placed;
    }
    return nullptr;
  }
};

}  // namespace ostrel::charts
