#pragma once

#include "charts/graph/LayerPlan.h"
#include "charts/scales/ScaleSource.h"

namespace ostrel::charts {

/// A channel of a layer, counted from 0.
struct LayerUse {
  Encoding const* encoding;
  std::size_t layer;
};

using LayerRowList = std::vector<std::shared_ptr<LayerRows>>;

/// The uses of each scale of a channel: one for all layers, or one for each. Those of a second channel, which
/// the scale serves too, come last.
std::vector<std::vector<LayerUse>> GroupUses(ChartDocument const& document, Channel channel, Channel second);
std::vector<std::vector<LayerUse>> GroupUses(ChartDocument const& document, Channel channel);

/// The scale that some uses share, of the given rows of each layer.
ScaleSource MakeSource(Compilation const& compilation, char const* name, std::vector<LayerUse> const& group,
                       LayerRowList const& rows);

/// Those rows of a column of `whole`, the layer's rows in all panes, that it has in its pane.
NodeId KeepPaneRows(GraphBuilder& graph, LayerPlan const& layer, std::string const& name, NodeId column,
                    LayerRows const& whole);

}  // namespace ostrel::charts
