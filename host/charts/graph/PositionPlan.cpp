#include "charts/graph/PositionPlan.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/Readers.h"
#include "charts/guides/GuideStyle.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/LinkedDomains.h"
#include "charts/scales/OffsetScale.h"
#include "charts/transforms/ChannelFields.h"

namespace ostrel::charts {
namespace {

constexpr double kDefaultLength = 300;
constexpr double kDefaultStep = 20;
constexpr double kGapBetweenGroups = 0.2;

// What discrete values leave free is up to the first of the marks that stand on them between gaps.
std::optional<double> FindBandGap(ChartDocument const& document) {
  for (LayerSpec const& layer : document.layers) {
    if (auto const gap = GetDefinition(layer.mark).bandGap) return gap;
  }
  return std::nullopt;
}

class PositionPlanner {
 public:
  PositionPlanner(Compilation& compilation, LayerRowList const& rows, ChartPlan& plan)
      : compilation_(compilation), rows_(rows), plan_(plan) {}

  void Plan(LengthRequest const& width, LengthRequest const& height) {
    ChannelScales x = PlanDomains(Channel::X, "x", width);
    ChannelScales y = PlanDomains(Channel::Y, "y", height);
    ShareUnits(x, y);
    plan_.width = PlaceAll(x);
    plan_.height = PlaceAll(y);
  }

 private:
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
  PaneScales AddScales(ChannelScales const& request, LayerRowList const& rows) {
    bool const isHorizontal = request.channel == Channel::X;
    PaneScales added;
    for (std::size_t i = 0; i < request.groups.size(); ++i) {
      ScaleSource& source =
          added.sources.emplace_back(MakeSource(compilation_, request.name, request.groups[i], rows));
      GuideSpec& axis = source.encoding.axis;
      if (i > 0 && axis.orient.empty()) axis.orient = isHorizontal ? "top" : "right";
      if (i > 0 && !axis.grid) axis.grid = false;
      Placing& placing = added.placings.emplace_back();
      if (i < request.offsets.size()) {
        placing.offset = PlanOffsetScale(
            compilation_,
            MakeSource(compilation_, isHorizontal ? "x offset" : "y offset", request.offsets[i], rows));
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

  void WidenDomains(ChannelScales const& request, LayerRowList const& rows, PaneScales const& added) {
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
        PlanPositions(compilation_, pane.sources[i], *placing.scale);
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
  std::vector<RowReach> FindReaches(ChannelScales const& request, std::size_t group, LayerRowList const& rows,
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

  bool IsPlace(LayerUse const& use) const {
    LayerSpec const& spec = compilation_.document.layers[use.layer];
    return IsPlaceOf(spec.mark, spec.encodings, use.encoding->channel);
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
    return isShared ? KeepPaneRows(compilation_.graph, layer, name, column, *rows_[use.layer]) : column;
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
  LayerRowList const& rows_;
  ChartPlan& plan_;
};

}  // namespace

double LengthRequest::GetDiscrete() const {
  return length.value_or(
      step.value_or(defaults.discrete.value_or(defaults.discreteStep.value_or(kDefaultStep))));
}

double LengthRequest::GetContinuous() const {
  return length.value_or(defaults.continuous.value_or(kDefaultLength));
}

void PlanPositionScales(Compilation& compilation, LayerRowList const& rows, LengthRequest const& width,
                        LengthRequest const& height, ChartPlan& plan) {
  PositionPlanner(compilation, rows, plan).Plan(width, height);
}

}  // namespace ostrel::charts
