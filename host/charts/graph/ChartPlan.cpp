#include "charts/graph/ChartPlan.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/guides/GuideStyle.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/SharedZero.h"

namespace ostrel::charts {
namespace {

constexpr double kDefaultLength = 300;

// The layers' rows; layers of one table share them.
std::vector<std::shared_ptr<LayerRows>> MakeRows(
    std::vector<std::shared_ptr<DataTable const>> const& tables) {
  std::vector<std::shared_ptr<LayerRows>> rows;
  for (auto const& table : tables) {
    auto const isSame = [&](auto const& other) { return &other->GetTable() == table.get(); };
    auto const same = std::ranges::find_if(rows, isSame);
    if (same != rows.end()) {
      rows.push_back(*same);
    } else {
      rows.push_back(
          std::make_shared<LayerRows>(table, rows.empty() ? "" : fmt::format("layer {} ", rows.size() + 1)));
    }
  }
  return rows;
}

// A channel of a layer, counted from 0.
struct LayerUse {
  Encoding const* encoding;
  std::size_t layer;
};

// The uses of each scale of a channel: one for all layers, or one for each.
std::vector<std::vector<LayerUse>> GroupUses(ChartDocument const& document, Channel channel) {
  std::vector<std::vector<LayerUse>> groups;
  bool const isShared = !document.resolveLayers.HasOwnScale(channel);
  for (std::size_t layer = 0; layer < document.layers.size(); ++layer) {
    bool isFirst = true;
    for (Encoding const& encoding : document.layers[layer].encodings) {
      if (encoding.channel != channel || encoding.field.empty()) continue;
      LayerSpec const& spec = document.layers[layer];
      if (channel == Channel::Size && !GetDefinition(spec.mark).scalesSize) continue;
      if (groups.empty() || (isFirst && !isShared)) groups.emplace_back();
      groups.back().push_back({&encoding, layer});
      isFirst = false;
    }
  }
  return groups;
}

class ScalePlanner {
 public:
  ScalePlanner(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& rows, ChartPlan& plan)
      : compilation_(compilation), rows_(rows), plan_(plan) {}

  void PlanPosition(Channel channel, char const* name) {
    auto const groups = GroupUses(compilation_.document, channel);
    bool const isShared = !compilation_.document.resolvePanes.HasOwnScale(channel);
    std::vector<PositionScale*> scales;
    if (isShared) scales = AddScales(channel, name, groups, rows_);
    for (std::size_t pane = 0; pane < plan_.panes.size(); ++pane) {
      if (!isShared) scales = AddScales(channel, name, groups, plan_.grid.cells[pane].layers);
      for (std::size_t i = 0; i < groups.size(); ++i)
        PlaceUses(groups[i], *scales[i], plan_.panes[pane], isShared);
    }
  }

  void PlanStyle(Channel channel, char const* name) {
    for (auto const& uses : GroupUses(compilation_.document, channel)) {
      StyleScale const scale = PlanStyleScale(compilation_, MakeSource(name, uses, rows_));
      plan_.styles.push_back({scale, uses.front().layer});
      for (PanePlan& pane : plan_.panes) {
        for (std::size_t i = 0; i < uses.size(); ++i) {
          LayerPlan& layer = pane.layers[uses[i].layer];
          layer.channels.push_back(
              {.encoding = uses[i].encoding, .scaled = Keep(layer, name, scale.rows[i], true)});
        }
      }
    }
  }

 private:
  ScaleSource MakeSource(char const* name, std::vector<LayerUse> const& group,
                         std::vector<std::shared_ptr<LayerRows>> const& rows) const {
    std::vector<FieldUse> uses;
    for (LayerUse const& use : group) {
      uses.push_back({use.encoding, rows[use.layer].get(),
                      rows.size() == 1 ? "" : fmt::format(" of layer {}", use.layer + 1)});
    }
    return JoinUses(compilation_, name, std::move(uses));
  }

  // The scales of all groups of uses. Those after the first have their axis on the other side and leave the
  // grid to it.
  std::vector<PositionScale*> AddScales(Channel channel, char const* name,
                                        std::vector<std::vector<LayerUse>> const& groups,
                                        std::vector<std::shared_ptr<LayerRows>> const& rows) {
    bool const isHorizontal = channel == Channel::X;
    std::vector<ScaleSource> sources;
    std::vector<PositionScale*> scales;
    for (auto const& group : groups) {
      ScaleSource& source = sources.emplace_back(MakeSource(name, group, rows));
      AxisSpec& axis = source.encoding.axis;
      bool const isFurther = !scales.empty();
      if (isFurther && axis.orient.empty()) axis.orient = isHorizontal ? "top" : "right";
      if (isFurther && !axis.grid) axis.grid = false;
      plan_.positions.push_back(std::make_unique<PositionScale>(
          PlanPositionDomain(compilation_, source,
                             {.isHorizontal = isHorizontal,
                              .length = isHorizontal ? plan_.width : plan_.height,
                              .labelFontSize = GuideStyle::kLabelFontSize,
                              .labelLimit = GuideStyle::kLabelLimit})));
      scales.push_back(plan_.positions.back().get());
    }
    if (compilation_.document.resolveLayers.SharesZero(channel)) AlignZeros(compilation_, scales);
    for (std::size_t i = 0; i < scales.size(); ++i) PlanPositions(compilation_, sources[i], *scales[i]);
    return scales;
  }

  void PlaceUses(std::vector<LayerUse> const& uses, PositionScale const& scale, PanePlan& pane,
                 bool isShared) {
    for (std::size_t i = 0; i < uses.size(); ++i) {
      LayerPlan& layer = pane.layers[uses[i].layer];
      PositionRows const& rows = scale.rows[i];
      layer.channels.push_back({uses[i].encoding, &scale, Keep(layer, scale.name, rows.positions, isShared),
                                Keep(layer, scale.name + " number", rows.numbers, isShared),
                                Keep(layer, scale.name + " number", rows.unscaled, isShared)});
    }
    ResolveSpec const& resolve = compilation_.document.resolvePanes;
    Channel const channel = scale.space.isHorizontal ? Channel::X : Channel::Y;
    pane.axes.push_back({&scale, resolve.HasOwnAxis(channel) || IsOutermost(scale, pane)});
  }

  // Those rows of a shared scale's column that the layer has in its pane.
  NodeId Keep(LayerPlan const& layer, std::string const& name, NodeId column, bool isShared) {
    if (column < 0 || !isShared) return column;
    return compilation_.graph.Keep(layer.rows->Keep(compilation_.graph, name, column));
  }

  // Whether no pane stands on the axis' side of a pane.
  bool IsOutermost(PositionScale const& scale, PanePlan const& pane) const {
    std::string const& orient = scale.encoding.axis.orient;
    int row = pane.row;
    int column = pane.column;
    if (scale.space.isHorizontal) {
      row += orient == "top" ? -1 : 1;
    } else {
      column += orient == "right" ? 1 : -1;
    }
    return std::ranges::none_of(
        plan_.panes, [&](PanePlan const& other) { return other.row == row && other.column == column; });
  }

  Compilation& compilation_;
  std::vector<std::shared_ptr<LayerRows>> const& rows_;
  ChartPlan& plan_;
};

std::vector<PlacedChannel> PlaceOnMap(LayerSpec const& spec, PaneCell const& cell, std::size_t layer) {
  if (cell.places.empty() || cell.places[layer].x < 0) return {};
  return {{.encoding = spec.Find(Channel::Longitude), .scaled = cell.places[layer].x},
          {.encoding = spec.Find(Channel::Latitude), .scaled = cell.places[layer].y}};
}

std::vector<PanePlan> MakePanes(ChartDocument const& document, PaneGrid const& grid) {
  std::vector<PanePlan> panes;
  for (PaneCell const& cell : grid.cells) {
    PanePlan& pane = panes.emplace_back();
    pane.row = cell.row;
    pane.column = cell.column;
    for (std::size_t i = 0; i < cell.layers.size(); ++i) {
      LayerSpec const& spec = document.layers[i];
      pane.layers.push_back({.spec = &spec,
                             .rows = cell.layers[i],
                             .channels = PlaceOnMap(spec, cell, i),
                             .map = nullptr,
                             .look = ResolveMarkLook(document, spec),
                             .mark = {}});
    }
  }
  return panes;
}

}  // namespace

ChartPlan PlanChart(Compilation& compilation, std::vector<std::shared_ptr<DataTable const>> const& tables,
                    ChartOptions const& options) {
  ChartDocument const& document = compilation.document;
  ChartPlan plan;
  plan.width = options.width.value_or(document.width.value_or(kDefaultLength));
  plan.height = options.height.value_or(document.height.value_or(kDefaultLength));
  auto const rows = MakeRows(tables);
  plan.grid = PlanPanes(compilation, rows);
  if (document.IsMap()) plan.map = PlanMap(compilation, rows, plan.width, plan.height, plan.grid);
  plan.panes = MakePanes(document, plan.grid);
  ScalePlanner scales(compilation, rows, plan);
  scales.PlanPosition(Channel::X, "x");
  scales.PlanPosition(Channel::Y, "y");
  scales.PlanStyle(Channel::Color, "color");
  scales.PlanStyle(Channel::Size, "size");
  scales.PlanStyle(Channel::Opacity, "opacity");
  scales.PlanStyle(Channel::Shape, "shape");
  for (PanePlan& pane : plan.panes) {
    for (LayerPlan& layer : pane.layers) {
      layer.map = plan.map ? &*plan.map : nullptr;
      MarkContext context(compilation, layer, plan.width, plan.height);
      layer.mark = GetDefinition(layer.spec->mark).plan(context);
      layer.map = nullptr;
    }
  }
  return plan;
}

}  // namespace ostrel::charts
