#include "charts/graph/ChartPlan.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/Readers.h"
#include "charts/graph/TitlePlan.h"
#include "charts/guides/GuideStyle.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/DomainRoom.h"
#include "charts/scales/OffsetScale.h"
#include "charts/transforms/ChannelFields.h"
#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {
namespace {

constexpr double kDefaultLength = 300;
constexpr double kDefaultStep = 20;
constexpr double kGapBetweenGroups = 0.2;

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

// The rows that each layer draws; its channels become columns of them.
std::vector<std::shared_ptr<LayerRows>> DeriveLayers(Compilation& compilation,
                                                     std::vector<std::shared_ptr<LayerRows>> rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    LayerSpec& layer = compilation.document.layers[i];
    auto const transformed = TransformRows(compilation.graph, layer.transforms, rows[i]);
    DrawnRows drawn = DeriveChannelFields(compilation.graph, layer, transformed);
    layer.encodings = std::move(drawn.encodings);
    rows[i] = std::move(drawn.rows);
  }
  return rows;
}

// What discrete values leave free is up to the marks that stand on them.
std::optional<double> FindBandGap(ChartDocument const& document) {
  std::optional<double> gap;
  for (LayerSpec const& layer : document.layers) {
    auto const own = GetDefinition(layer.mark).bandGap;
    if (own) gap = std::max(gap.value_or(0), *own);
  }
  return gap;
}

// A channel of a layer, counted from 0.
struct LayerUse {
  Encoding const* encoding;
  std::size_t layer;
};

// The uses of each scale of a channel: one for all layers, or one for each. Those of a second channel, which
// the scale serves too, come last.
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

// How long an axis is asked to be: so many pixels, or so many for each step of discrete values.
struct LengthRequest {
  std::optional<double> length;
  std::optional<double> step;
};

class ScalePlanner {
 public:
  ScalePlanner(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& rows, ChartPlan& plan)
      : compilation_(compilation), rows_(rows), plan_(plan) {}

  // Gives the length of the channel's axis: as asked for, or what the steps of discrete values need.
  double PlanPosition(Channel channel, char const* name, LengthRequest request) {
    bool const isHorizontal = channel == Channel::X;
    auto const groups = GroupUses(compilation_.document, channel, isHorizontal ? Channel::X2 : Channel::Y2);
    auto const offsets = GroupUses(compilation_.document, isHorizontal ? Channel::XOffset : Channel::YOffset);
    bool const isShared = !compilation_.document.resolvePanes.HasOwnScale(channel);
    // Panes with scales of their own have one length all the same.
    if (!isShared && !request.length) request.length = kDefaultLength;
    std::vector<Placing> placings;
    if (isShared) placings = AddScales({channel, name, groups, offsets, request}, rows_);
    for (std::size_t pane = 0; pane < plan_.panes.size(); ++pane) {
      if (!isShared)
        placings = AddScales({channel, name, groups, offsets, request}, plan_.grid.cells[pane].layers);
      for (std::size_t i = 0; i < groups.size(); ++i) {
        PlaceUses(groups[i], *placings[i].scale, plan_.panes[pane], isShared);
        if (placings[i].offset) PlaceOffsetUses(offsets[i], placings[i], plan_.panes[pane], isShared);
      }
    }
    return placings.empty() ? request.length.value_or(kDefaultLength) : placings.front().scale->space.length;
  }

  void PlanStyle(Channel channel, char const* name) {
    for (auto const& uses : GroupUses(compilation_.document, channel)) {
      StyleScale const scale = PlanStyleScale(compilation_, MakeSource(name, uses, rows_));
      plan_.styles.push_back({scale, uses.front().layer});
      for (PanePlan& pane : plan_.panes) {
        for (std::size_t i = 0; i < uses.size(); ++i) {
          LayerPlan& layer = pane.layers[uses[i].layer];
          layer.channels.push_back(
              {.encoding = uses[i].encoding, .scaled = Keep(layer, uses[i], name, scale.rows[i], true)});
        }
      }
    }
  }

 private:
  ScaleSource MakeSource(char const* name, std::vector<LayerUse> const& group,
                         std::vector<std::shared_ptr<LayerRows>> const& rows) const {
    std::vector<FieldUse> uses;
    for (LayerUse const& use : group) {
      std::string const end = IsSecondPosition(use.encoding->channel) ? " end" : "";
      uses.push_back({use.encoding, rows[use.layer].get(),
                      rows.size() == 1 ? end : fmt::format("{} of layer {}", end, use.layer + 1)});
    }
    return JoinUses(compilation_, name, std::move(uses));
  }

  // The scales of one position channel, as the document asks for them.
  struct PositionRequest {
    Channel channel;
    char const* name;
    std::vector<std::vector<LayerUse>> const& groups;
    std::vector<std::vector<LayerUse>> const& offsets;  // places side by side, of the first groups
    LengthRequest const& length;
  };

  struct Placing {
    PositionScale* scale = nullptr;
    std::optional<OffsetScale> offset;
  };

  // The scales of all groups of uses. Those after the first have their axis on the other side and leave the
  // grid to it.
  std::vector<Placing> AddScales(PositionRequest const& request,
                                 std::vector<std::shared_ptr<LayerRows>> const& rows) {
    bool const isHorizontal = request.channel == Channel::X;
    std::vector<ScaleSource> sources;
    std::vector<Placing> placings;
    std::vector<PositionScale*> scales;
    for (std::size_t i = 0; i < request.groups.size(); ++i) {
      ScaleSource& source = sources.emplace_back(MakeSource(request.name, request.groups[i], rows));
      AxisSpec& axis = source.encoding.axis;
      if (i > 0 && axis.orient.empty()) axis.orient = isHorizontal ? "top" : "right";
      if (i > 0 && !axis.grid) axis.grid = false;
      Placing& placing = placings.emplace_back();
      if (i < request.offsets.size()) {
        placing.offset = PlanOffsetScale(
            compilation_, MakeSource(isHorizontal ? "x offset" : "y offset", request.offsets[i], rows));
      }
      plan_.positions.push_back(std::make_unique<PositionScale>(
          PlanPositionDomain(compilation_, source, MakeSpace(isHorizontal, request.length, placing.offset))));
      placing.scale = plan_.positions.back().get();
      scales.push_back(placing.scale);
      if (source.encoding.scale.fit.value_or(false)) Fit(request, i, rows, *placing.scale);
    }
    if (compilation_.document.resolveLayers.SharesZero(request.channel)) AlignZeros(compilation_, scales);
    for (std::size_t i = 0; i < scales.size(); ++i) {
      PlanPositions(compilation_, sources[i], *scales[i]);
      if (placings[i].offset && scales[i]->bandwidth < 0) {
        ThrowDocumentError(compilation_.document, request.offsets[i].front().encoding->path,
                           fmt::format("needs a nominal or ordinal {} to stand in", request.name));
      }
    }
    return placings;
  }

  // Gives a continuous domain room for the marks that would reach out of the pane.
  void Fit(PositionRequest const& request, std::size_t group,
           std::vector<std::shared_ptr<LayerRows>> const& rows, PositionScale& scale) {
    std::vector<RowReach> reaches;
    for (std::size_t i = 0; i < request.groups[group].size(); ++i) {
      LayerUse const& use = request.groups[group][i];
      LayerSpec const& spec = compilation_.document.layers[use.layer];
      MarkDefinition const& definition = GetDefinition(spec.mark);
      if (definition.reach == nullptr || use.encoding->channel != request.channel) continue;
      LayerPlan const layer{.spec = &spec,
                            .rows = rows[use.layer],
                            .channels = {},
                            .look = ResolveMarkLook(compilation_.document, spec),
                            .mark = {}};
      MarkContext context(compilation_, layer, scale.space.length, scale.space.length);
      RowReach& reach = reaches.emplace_back(definition.reach(context, request.channel));
      reach.numbers = scale.field.rows[i].numbers;
    }
    FitMarks(compilation_, scale, reaches);
  }

  AxisSpace MakeSpace(bool isHorizontal, LengthRequest const& length,
                      std::optional<OffsetScale> const& offset) {
    AxisSpace space{.isHorizontal = isHorizontal,
                    .length = length.length.value_or(kDefaultLength),
                    .paneCount = isHorizontal ? plan_.grid.columnCount : plan_.grid.rowCount,
                    .step = std::nullopt,
                    .bandGap = offset ? kGapBetweenGroups : FindBandGap(compilation_.document),
                    .labelFontSize = GuideStyle::kLabelFontSize,
                    .labelLimit = GuideStyle::kLabelLimit};
    if (length.length) return space;
    space.step = length.step.value_or(kDefaultStep);
    if (offset)
      *space.step *= compilation_.graph.Peek(offset->field.count)->GetInt32() / (1 - kGapBetweenGroups);
    return space;
  }

  void PlaceOffsetUses(std::vector<LayerUse> const& uses, Placing const& placing, PanePlan& pane,
                       bool isShared) {
    GraphBuilder& graph = compilation_.graph;
    NodeId const bandwidth = placing.scale->bandwidth;
    for (std::size_t i = 0; i < uses.size(); ++i) {
      LayerPlan& layer = pane.layers[uses[i].layer];
      NodeId const shift = graph.Keep(PlaceOffsets(graph, *placing.offset, i, bandwidth));
      layer.channels.push_back({.encoding = uses[i].encoding,
                                .scaled = Keep(layer, uses[i], placing.offset->name, shift, isShared),
                                .bandwidth = OffsetBandwidth(graph, *placing.offset, bandwidth)});
    }
  }

  void PlaceUses(std::vector<LayerUse> const& uses, PositionScale const& scale, PanePlan& pane,
                 bool isShared) {
    for (std::size_t i = 0; i < uses.size(); ++i) {
      LayerPlan& layer = pane.layers[uses[i].layer];
      PositionRows const& rows = scale.rows[i];
      layer.channels.push_back(
          {.encoding = uses[i].encoding,
           .position = &scale,
           .scaled = Keep(layer, uses[i], scale.name, rows.positions, isShared),
           .numbers = Keep(layer, uses[i], scale.name + " number", rows.numbers, isShared),
           .bandwidth = scale.bandwidth,
           .unscaled = Keep(layer, uses[i], scale.name + " number", rows.unscaled, isShared)});
    }
    ResolveSpec const& resolve = compilation_.document.resolvePanes;
    Channel const channel = scale.space.isHorizontal ? Channel::X : Channel::Y;
    pane.axes.push_back({&scale, resolve.HasOwnAxis(channel) || IsOutermost(scale, pane)});
  }

  // Those rows of a shared scale's column that the layer has in its pane.
  NodeId Keep(LayerPlan const& layer, LayerUse const& use, std::string const& name, NodeId column,
              bool isShared) {
    if (column < 0 || !isShared) return column;
    return compilation_.graph.Keep(layer.rows->Keep(compilation_.graph, name, column, *rows_[use.layer]));
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
  auto const rows = DeriveLayers(compilation, MakeRows(tables));
  plan.grid = PlanPanes(compilation, rows);
  if (document.IsMap()) {
    plan.width = options.width.value_or(document.width.value_or(kDefaultLength));
    plan.height = options.height.value_or(document.height.value_or(kDefaultLength));
    plan.map = PlanMap(compilation, rows, plan.width, plan.height, plan.grid);
  }
  plan.panes = MakePanes(document, plan.grid);
  ScalePlanner scales(compilation, rows, plan);
  plan.width = scales.PlanPosition(Channel::X, "x",
                                   {options.width ? options.width : document.width, document.widthStep});
  plan.height = scales.PlanPosition(Channel::Y, "y",
                                    {options.height ? options.height : document.height, document.heightStep});
  PlanTitles(compilation, plan);
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
