#include "charts/graph/ChartPlan.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/guides/GuideStyle.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/MarkTable.h"

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

// Which layer a use of a scale belongs to.
struct LayerUses {
  std::vector<FieldUse> uses;
  std::vector<LayerPlan*> layers;
};

LayerUses CollectUses(PanePlan& pane, Channel channel) {
  LayerUses found;
  for (LayerPlan& layer : pane.layers) {
    auto const number = static_cast<int>(&layer - pane.layers.data()) + 1;
    for (Encoding const& encoding : layer.spec->encodings) {
      if (encoding.channel != channel || encoding.field.empty()) continue;
      if (channel == Channel::Size && !GetDefinition(layer.spec->mark).scalesSize) continue;
      found.uses.push_back(
          {&encoding, layer.rows.get(), pane.layers.size() == 1 ? "" : fmt::format(" of layer {}", number)});
      found.layers.push_back(&layer);
    }
  }
  return found;
}

void PlanPosition(Compilation& compilation, Channel channel, double length, ChartPlan& plan, PanePlan& pane) {
  LayerUses const found = CollectUses(pane, channel);
  if (found.uses.empty()) return;
  bool const isHorizontal = channel == Channel::X;
  ScaleSource const source = JoinUses(compilation, isHorizontal ? "x" : "y", found.uses);
  plan.positions.push_back(
      std::make_unique<PositionScale>(PlanPositionScale(compilation, source,
                                                        {.isHorizontal = isHorizontal,
                                                         .length = length,
                                                         .labelFontSize = GuideStyle::kLabelFontSize,
                                                         .labelLimit = GuideStyle::kLabelLimit})));
  PositionScale const& scale = *plan.positions.back();
  pane.axes.push_back(&scale);
  for (std::size_t i = 0; i < found.uses.size(); ++i) {
    PositionRows const& rows = scale.rows[i];
    found.layers[i]->channels.push_back(
        {found.uses[i].encoding, &scale, rows.positions, rows.numbers, rows.unscaled});
  }
}

void PlanStyle(Compilation& compilation, Channel channel, char const* name, ChartPlan& plan, PanePlan& pane) {
  LayerUses const found = CollectUses(pane, channel);
  if (found.uses.empty()) return;
  StyleScale const scale = PlanStyleScale(compilation, JoinUses(compilation, name, found.uses));
  for (std::size_t i = 0; i < found.uses.size(); ++i)
    found.layers[i]->channels.push_back({.encoding = found.uses[i].encoding, .scaled = scale.rows[i]});
  plan.styles.push_back({scale, static_cast<std::size_t>(found.layers.front() - pane.layers.data())});
}

}  // namespace

ChartPlan PlanChart(Compilation& compilation, std::vector<std::shared_ptr<DataTable const>> const& tables,
                    ChartOptions const& options) {
  ChartDocument const& document = compilation.document;
  ChartPlan plan;
  plan.width = options.width.value_or(document.width.value_or(kDefaultLength));
  plan.height = options.height.value_or(document.height.value_or(kDefaultLength));
  PanePlan& pane = plan.panes.emplace_back();
  auto const rows = MakeRows(tables);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    LayerSpec const& spec = document.layers[i];
    pane.layers.push_back({.spec = &spec,
                           .rows = rows[i],
                           .channels = {},
                           .look = ResolveMarkLook(document, spec),
                           .mark = {}});
  }
  PlanPosition(compilation, Channel::X, plan.width, plan, pane);
  PlanPosition(compilation, Channel::Y, plan.height, plan, pane);
  PlanStyle(compilation, Channel::Color, "color", plan, pane);
  PlanStyle(compilation, Channel::Size, "size", plan, pane);
  PlanStyle(compilation, Channel::Opacity, "opacity", plan, pane);
  PlanStyle(compilation, Channel::Shape, "shape", plan, pane);
  for (LayerPlan& layer : pane.layers) {
    MarkContext context(compilation, layer, plan.width, plan.height);
    layer.mark = GetDefinition(layer.spec->mark).plan(context);
  }
  return plan;
}

}  // namespace ostrel::charts
