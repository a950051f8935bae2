#include "charts/graph/StylePlan.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/LegendRooms.h"

namespace ostrel::charts {
namespace {

class StylePlanner {
 public:
  StylePlanner(Compilation& compilation, LayerRowList const& rows, ChartPlan& plan)
      : compilation_(compilation), rows_(rows), plan_(plan) {}

  void Plan(Channel channel, char const* name) {
    bool const isShared = !compilation_.document.resolvePanes.HasOwnScale(channel);
    for (auto const& uses : GroupUses(compilation_.document, channel)) {
      if (isShared) {
        PlanShared(uses, name);
      } else {
        for (std::size_t pane = 0; pane < plan_.panes.size(); ++pane) PlanPane(uses, name, pane);
      }
    }
  }

 private:
  void PlanShared(std::vector<LayerUse> const& uses, char const* name) {
    StyleScale const scale = PlanScale(uses, name, rows_, plan_.GetWidth());
    plan_.styles.push_back({scale, uses.front().layer, std::nullopt});
    for (PanePlan& pane : plan_.panes) {
      for (std::size_t i = 0; i < uses.size(); ++i) {
        LayerPlan& layer = pane.layers[uses[i].layer];
        AddChannel(layer, uses[i],
                   KeepPaneRows(compilation_.graph, layer, name, scale.rows[i], *rows_[uses[i].layer]));
      }
    }
  }

  void PlanPane(std::vector<LayerUse> const& uses, char const* name, std::size_t pane) {
    LayerRowList const& rows = plan_.grid.cells[pane].layers;
    StyleScale const scale = PlanScale(uses, name, rows, plan_.width);
    auto const hasRows = [&](LayerUse const& use) { return rows[use.layer]->GetRowCount() > 0; };
    if (std::ranges::any_of(uses, hasRows)) plan_.styles.push_back({scale, uses.front().layer, pane});
    for (std::size_t i = 0; i < uses.size(); ++i)
      AddChannel(plan_.panes[pane].layers[uses[i].layer], uses[i], scale.rows[i]);
  }

  // The width is that of a legend along the chart or its pane, in pixels.
  StyleScale PlanScale(std::vector<LayerUse> const& uses, char const* name, LayerRowList const& rows,
                       double width) {
    ScaleSource source = MakeSource(compilation_, name, uses, rows);
    if (source.encoding.channel == Channel::Size) LimitSizes(source.encoding);
    if (source.encoding.channel == Channel::Color) ChooseScheme(uses, source.encoding);
    WarnOfOrder(source.encoding);
    StyleScale scale = PlanStyleScale(compilation_, source);
    GuideSpec const& legend = source.encoding.legend;
    if (legend.RunsAcross() && !legend.columns && !scale.IsRamp()) {
      MarkDefinition const& mark = GetDefinition(compilation_.document.layers[uses.front().layer].mark);
      bool const isOfLines = mark.sample == LegendSample::Line && !legend.symbol;
      scale.entryRooms = PlanLegendRooms(compilation_.graph, scale, isOfLines, width);
    }
    return scale;
  }

  void WarnOfOrder(Encoding const& encoding) {
    bool const hasOrder = encoding.type != FieldType::Nominal || !encoding.sort.empty() || encoding.sortBy ||
                          encoding.isDescending || !encoding.scale.domain.empty();
    if (hasOrder || (encoding.channel != Channel::Size && encoding.channel != Channel::Opacity)) return;
    plan_.leftOut.push_back(fmt::format(
        "the {} of nominal '{}' tells an order that its values do not have; use \"ordinal\", or color",
        NameOf(encoding.channel), DefaultTitle(encoding)));
  }

  static void AddChannel(LayerPlan& layer, LayerUse const& use, NodeId styles) {
    layer.channels.push_back({.encoding = use.encoding, .scaled = styles});
  }

  // Pixels of a bin, 0 without bins: ticks stand where bins end.
  double FindBinWidth(PositionScale const& scale) const {
    if (!scale.encoding.bin || scale.encoding.bin->isDone || scale.encoding.axis.tickCount) return 0;
    auto const& ticks = compilation_.graph.Peek(scale.tickPositions)->AsTypedArray<double>();
    return ticks.GetCount() < 2 ? 0 : std::abs(ticks.GetElement(1) - ticks.GetElement(0));
  }

  // Symbols on discrete values, or on bins, may become as large as these leave room for.
  void LimitSizes(Encoding& encoding) const {
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
    spec.range = {std::min(FindSmallestSymbol(encoding), largest), largest};
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

  Compilation& compilation_;
  LayerRowList const& rows_;
  ChartPlan& plan_;
};

}  // namespace

void PlanStyleScales(Compilation& compilation, LayerRowList const& rows, ChartPlan& plan) {
  StylePlanner planner(compilation, rows, plan);
  planner.Plan(Channel::Color, "color");
  planner.Plan(Channel::Size, "size");
  planner.Plan(Channel::Opacity, "opacity");
  planner.Plan(Channel::Shape, "shape");
}

}  // namespace ostrel::charts
