#include "charts/graph/ChartPlan.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/document/Readers.h"
#include "charts/graph/TitlePlan.h"
#include "charts/guides/GuideStyle.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/LinkedDomains.h"
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

// What discrete values leave free is up to the first of the marks that stand on them between gaps.
std::optional<double> FindBandGap(ChartDocument const& document) {
  for (LayerSpec const& layer : document.layers) {
    if (auto const gap = GetDefinition(layer.mark).bandGap) return gap;
  }
  return std::nullopt;
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
  LengthSpec defaults;

  // Of an axis that no field stands on, which is one value wide.
  double GetDiscrete() const {
    return length.value_or(
        step.value_or(defaults.discrete.value_or(defaults.discreteStep.value_or(kDefaultStep))));
  }
  double GetContinuous() const { return length.value_or(defaults.continuous.value_or(kDefaultLength)); }
};

class ScalePlanner {
 public:
  ScalePlanner(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& rows, ChartPlan& plan)
      : compilation_(compilation), rows_(rows), plan_(plan) {}

  // Sets the pane's width and height: as asked for, or what the steps of discrete values need.
  void PlanPositions(LengthRequest const& width, LengthRequest const& height) {
    ChannelScales x = PlanDomains(Channel::X, "x", width);
    ChannelScales y = PlanDomains(Channel::Y, "y", height);
    ShareUnits(x, y);
    plan_.width = PlaceAll(x);
    plan_.height = PlaceAll(y);
  }

  void PlanStyle(Channel channel, char const* name) {
    for (auto const& uses : GroupUses(compilation_.document, channel)) {
      ScaleSource source = MakeSource(name, uses, rows_);
      if (channel == Channel::Size) LimitSizes(source.encoding);
      if (channel == Channel::Color) ChooseScheme(uses, source.encoding);
      StyleScale const scale = PlanStyleScale(compilation_, source);
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
  // Pixels of a bin, 0 without bins: ticks stand where bins end.
  double FindBinWidth(PositionScale const& scale) const {
    if (!scale.encoding.bin || scale.encoding.bin->isDone || scale.encoding.axis.tickCount) return 0;
    auto const& ticks = compilation_.graph.Peek(scale.tickPositions)->AsTypedArray<double>();
    return ticks.GetCount() < 2 ? 0 : std::abs(ticks.GetElement(1) - ticks.GetElement(0));
  }

  // Symbols on discrete values, or on bins, may become as large as these leave room for.
  void LimitSizes(Encoding& encoding) const {
    constexpr double kLeastArea = 9;
    constexpr double kShareOfStep = 0.95;
    GraphBuilder& graph = compilation_.graph;
    std::optional<double> least;
    for (auto const& scale : plan_.positions) {
      double const step = scale->step >= 0 ? graph.Peek(scale->step)->GetReal64() : FindBinWidth(*scale);
      if (step > 0) least = std::min(least.value_or(step), step);
    }
    ScaleSpec& spec = encoding.scale;
    if (!least || !spec.range.empty() || spec.domainMid) return;
    double const largest = std::pow(kShareOfStep * *least, 2);
    spec.range = {ResolveScaleType(encoding) == ScaleType::Log ? std::min(kLeastArea, largest) : 0.0,
                  largest};
  }

  // Marks that cover their places whole show a measure in colours of more than one hue.
  void ChooseScheme(std::vector<LayerUse> const& uses, Encoding& encoding) const {
    auto const covers = [&](LayerUse const& use) {
      MarkDefinition const& mark = GetDefinition(compilation_.document.layers[use.layer].mark);
      return mark.isMap || (mark.coversIntervals && mark.bandGap == 0);
    };
    ScaleSpec& spec = encoding.scale;
    bool const isOpen = spec.scheme.empty() && spec.range.empty() && !spec.domainMid;
    if (isOpen && !IsDiscrete(encoding.type) && std::ranges::all_of(uses, covers))
      spec.scheme = "yellowgreenblue";
  }

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

  struct Placing {
    PositionScale* scale = nullptr;
    std::optional<OffsetScale> offset;
  };

  // The scales of one pane, or those of all panes: one for each group of uses.
  struct PaneScales {
    std::vector<ScaleSource> sources;
    std::vector<Placing> placings;
  };

  // The scales of one position channel, as the document asks for them.
  struct ChannelScales {
    Channel channel;
    char const* name;
    std::vector<std::vector<LayerUse>> groups;
    std::vector<std::vector<LayerUse>> offsets;  // places side by side, of the first groups
    LengthRequest length;
    bool isShared = true;
    std::vector<PaneScales> panes = {};  // a single one where panes share them
  };

  ChannelScales PlanDomains(Channel channel, char const* name, LengthRequest length) {
    ChartDocument const& document = compilation_.document;
    bool const isHorizontal = channel == Channel::X;
    bool const isShared = !document.resolvePanes.HasOwnScale(channel);
    // Panes with scales of their own have one length all the same.
    if (!isShared) length.length = length.GetContinuous();
    ChannelScales scales{channel,
                         name,
                         GroupUses(document, channel, isHorizontal ? Channel::X2 : Channel::Y2),
                         GroupUses(document, isHorizontal ? Channel::XOffset : Channel::YOffset),
                         length,
                         isShared};
    if (isShared) {
      scales.panes.push_back(AddScales(scales, rows_));
    } else {
      for (PaneCell const& cell : plan_.grid.cells) scales.panes.push_back(AddScales(scales, cell.layers));
    }
    return scales;
  }

  // The domains of all groups of uses. Scales after the first have their axis on the other side and leave the
  // grid to it.
  PaneScales AddScales(ChannelScales const& request, std::vector<std::shared_ptr<LayerRows>> const& rows) {
    bool const isHorizontal = request.channel == Channel::X;
    PaneScales added;
    for (std::size_t i = 0; i < request.groups.size(); ++i) {
      ScaleSource& source = added.sources.emplace_back(MakeSource(request.name, request.groups[i], rows));
      GuideSpec& axis = source.encoding.axis;
      if (i > 0 && axis.orient.empty()) axis.orient = isHorizontal ? "top" : "right";
      if (i > 0 && !axis.grid) axis.grid = false;
      Placing& placing = added.placings.emplace_back();
      if (i < request.offsets.size()) {
        placing.offset = PlanOffsetScale(
            compilation_, MakeSource(isHorizontal ? "x offset" : "y offset", request.offsets[i], rows));
      }
      plan_.positions.push_back(std::make_unique<PositionScale>(
          PlanPositionDomain(compilation_, source,
                             MakeSpace(isHorizontal, IsDiscrete(source.encoding.type), request.length,
                                       placing.offset, request.groups[i]))));
      placing.scale = plan_.positions.back().get();
    }
    WidenDomains(request, rows, added);
    return added;
  }

  void WidenDomains(ChannelScales const& request, std::vector<std::shared_ptr<LayerRows>> const& rows,
                    PaneScales const& added) {
    ResolveSpec const& resolve = compilation_.document.resolveLayers;
    bool const sharesDomain = resolve.SharesDomain(request.channel);
    std::vector<PositionScale*> scales;
    std::vector<SharedScale> shared;
    for (std::size_t i = 0; i < added.placings.size(); ++i) {
      PositionScale& scale = *added.placings[i].scale;
      scales.push_back(&scale);
      SharedScale& own = shared.emplace_back();
      own.scale = &scale;
      if (!scale.encoding.scale.fit.value_or(false)) continue;
      std::vector<RowReach> const reaches = FindReaches(request, i, rows, scale);
      if (!sharesDomain) FitMarks(compilation_, scale, reaches);
      // A scale of its own is that of one layer.
      if (!reaches.empty()) own.reach = reaches.front();
    }
    if (sharesDomain) ShareDomain(compilation_, shared);
    if (resolve.SharesZero(request.channel)) AlignZeros(compilation_, scales);
  }

  // Lets a pixel be one amount on the scales of the channels that the document names.
  void ShareUnits(ChannelScales const& x, ChannelScales const& y) {
    ChartDocument const& document = compilation_.document;
    std::vector<PositionScale*> scales;
    std::string path;
    for (ChannelScales const* channel : {&x, &y}) {
      for (ResolveSpec const* resolve : {&document.resolvePanes, &document.resolveLayers}) {
        if (resolve->SharesUnit(channel->channel)) path = resolve->path + ".unit";
      }
      if (!document.resolvePanes.SharesUnit(channel->channel) &&
          !document.resolveLayers.SharesUnit(channel->channel))
        continue;
      for (PaneScales const& pane : channel->panes) {
        for (Placing const& placing : pane.placings) scales.push_back(placing.scale);
      }
    }
    if (!path.empty()) ShareUnit(compilation_, path, scales);
  }

  // Gives the length of the channel's axis.
  double PlaceAll(ChannelScales& scales) {
    for (PaneScales& pane : scales.panes) {
      for (std::size_t i = 0; i < pane.placings.size(); ++i) {
        Placing const& placing = pane.placings[i];
        ostrel::charts::PlanPositions(compilation_, pane.sources[i], *placing.scale);
        if (placing.offset && placing.scale->bandwidth < 0) {
          ThrowDocumentError(compilation_.document, scales.offsets[i].front().encoding->path,
                             fmt::format("needs a nominal or ordinal {} to stand in", scales.name));
        }
      }
    }
    for (std::size_t pane = 0; pane < plan_.panes.size(); ++pane) {
      auto const& placings = scales.panes[scales.isShared ? 0 : pane].placings;
      for (std::size_t i = 0; i < placings.size(); ++i) {
        PlaceUses(scales.groups[i], *placings[i].scale, plan_.panes[pane], scales.isShared);
        if (placings[i].offset)
          PlaceOffsetUses(scales.offsets[i], placings[i], plan_.panes[pane], scales.isShared);
      }
    }
    auto const& first = scales.panes.front().placings;
    if (!first.empty()) return first.front().scale->space.length;
    return HasAxis(scales.channel) ? scales.length.GetDiscrete() : scales.length.GetContinuous();
  }

  // What the layers of a scale draw around their rows.
  std::vector<RowReach> FindReaches(ChannelScales const& request, std::size_t group,
                                    std::vector<std::shared_ptr<LayerRows>> const& rows,
                                    PositionScale const& scale) {
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
    return reaches;
  }

  bool HasAxis(Channel channel) const {
    return std::ranges::any_of(compilation_.document.layers,
                               [channel](LayerSpec const& layer) {
                                 auto const& channels = GetDefinition(layer.mark).channels;
                                 return std::ranges::find(channels, channel) != channels.end();
                               }) &&
           !compilation_.document.IsMap();
  }

  // Whether the rows of a layer have their places on a channel: it is not the one of their size.
  bool IsPlace(LayerUse const& use) const {
    LayerSpec const& spec = compilation_.document.layers[use.layer];
    return IsHorizontal(spec.mark, spec.encodings) == (use.encoding->channel == Channel::Y);
  }

  // Half a mark would reach out of the pane at the ends of a scale that its rows have their places on.
  double FindMargin(std::vector<LayerUse> const& uses) const {
    double margin = 0;
    for (LayerUse const& use : uses) {
      bool const isInterval = use.encoding->bin || !use.encoding->timeUnit.empty();
      if (IsPosition(use.encoding->channel) && IsPlace(use) && !isInterval)
        margin = std::max(margin, GetDefinition(GetMark(use)).thickness.value_or(0));
    }
    return margin;
  }

  // Places of bars, lines and areas are told apart best by a domain of their own; other numbers are compared
  // with 0. The first layer decides.
  bool IncludesZero(std::vector<LayerUse> const& uses) const {
    LayerUse const& first = uses.front();
    MarkDefinition const& definition = GetDefinition(GetMark(first));
    return !((definition.thickness || definition.joinsRows) && IsPlace(first));
  }

  MarkSpec const& GetMark(LayerUse const& use) const { return compilation_.document.layers[use.layer].mark; }

  AxisSpace MakeSpace(bool isHorizontal, bool isDiscrete, LengthRequest const& length,
                      std::optional<OffsetScale> const& offset, std::vector<LayerUse> const& uses) {
    AxisSpace space{.isHorizontal = isHorizontal,
                    .length = length.GetContinuous(),
                    .paneCount = isHorizontal ? plan_.grid.columnCount : plan_.grid.rowCount,
                    .step = std::nullopt,
                    .bandGap = offset ? kGapBetweenGroups : FindBandGap(compilation_.document),
                    .outerGap = offset ? std::optional(kGapBetweenGroups) : std::nullopt,
                    .includesZero = IncludesZero(uses),
                    .margin = FindMargin(uses),
                    .labelFontSize = GuideStyle::kLabelFontSize,
                    .labelLimit = GuideStyle::kLabelLimit};
    if (length.length) return space;
    if (isDiscrete && !length.step && length.defaults.discrete) {
      space.length = *length.defaults.discrete;
      return space;
    }
    space.step = length.step.value_or(length.defaults.discreteStep.value_or(kDefaultStep));
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
  if (auto const& frame = document.config.frame)
    plan.frame =
        frame->empty() ? ort::core::OrtColor(0) : ReadColor(document, "$.config.view.stroke", *frame);
  if (document.IsMap()) {
    auto const find = [](auto const& option, auto const& length, LengthSpec const& defaults) {
      return LengthRequest{option ? option : length, std::nullopt, defaults}.GetContinuous();
    };
    plan.width = find(options.width, document.width, document.config.width);
    plan.height = find(options.height, document.height, document.config.height);
    plan.map = PlanMap(compilation, rows, plan.width, plan.height, plan.grid);
  }
  plan.panes = MakePanes(document, plan.grid);
  ScalePlanner scales(compilation, rows, plan);
  scales.PlanPositions(
      {options.width ? options.width : document.width, document.widthStep, document.config.width},
      {options.height ? options.height : document.height, document.heightStep, document.config.height});
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
