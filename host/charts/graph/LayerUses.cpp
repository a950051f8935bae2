#include "charts/graph/LayerUses.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"

namespace ostrel::charts {

std::vector<std::vector<LayerUse>> GroupUses(ChartDocument const& document, Channel channel, Channel second) {
  std::vector<std::vector<LayerUse>> groups;
  bool const isShared = !document.resolveLayers.HasOwnScale(channel);
  for (std::size_t layer = 0; layer < document.layers.size(); ++layer) {
    bool isFirst = true;
    for (Encoding const& encoding : document.layers[layer].encodings) {
      bool const isUse = encoding.channel == channel || encoding.channel == second;
      if (!isUse || encoding.field.empty()) continue;
      LayerSpec const& spec = document.layers[layer];
      if (channel == Channel::Size && !GetDefinition(spec.mark).scalesSize) continue;
      if (groups.empty() || (isFirst && !isShared)) groups.emplace_back();
      groups.back().push_back({&encoding, layer});
      isFirst = false;
    }
  }
  for (auto& group : groups) {
    std::stable_partition(group.begin(), group.end(),
                          [&](LayerUse const& use) { return use.encoding->channel == channel; });
  }
  return groups;
}

std::vector<std::vector<LayerUse>> GroupUses(ChartDocument const& document, Channel channel) {
  return GroupUses(document, channel, channel);
}

ScaleSource MakeSource(Compilation const& compilation, char const* name, std::vector<LayerUse> const& group,
                       LayerRowList const& rows) {
  std::vector<FieldUse> uses;
  for (LayerUse const& use : group) {
    std::string const end = IsSecondPosition(use.encoding->channel) ? " end" : "";
    uses.push_back({use.encoding, rows[use.layer].get(),
                    rows.size() == 1 ? end : fmt::format("{} of layer {}", end, use.layer + 1)});
  }
  return JoinUses(compilation, name, std::move(uses));
}

NodeId KeepPaneRows(GraphBuilder& graph, LayerPlan const& layer, std::string const& name, NodeId column,
                    LayerRows const& whole) {
  return column < 0 ? column : graph.Keep(layer.rows->Keep(graph, name, column, whole));
}

}  // namespace ostrel::charts
