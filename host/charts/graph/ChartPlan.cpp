#include "charts/graph/ChartPlan.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/Readers.h"
#include "charts/graph/PlaceableRows.h"
#include "charts/graph/PositionPlan.h"
#include "charts/graph/StylePlan.h"
#include "charts/graph/TitlePlan.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/MarkTable.h"
#include "charts/transforms/ChannelFields.h"
#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {
namespace {

// The layers' rows; layers of one table share them.
LayerRowList MakeRows(std::vector<std::shared_ptr<DataTable const>> const& tables) {
  LayerRowList rows;
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
LayerRowList DeriveLayers(Compilation& compilation, LayerRowList rows, std::vector<std::string>& leftOut) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    LayerSpec& layer = compilation.document.layers[i];
    auto const transformed = TransformRows(compilation.graph, layer.transforms, rows[i]);
    DrawnRows drawn = DeriveChannelFields(compilation.graph, layer, transformed);
    layer.encodings = std::move(drawn.encodings);
    rows[i] = KeepPlaceable(compilation.graph, layer, std::move(drawn.rows), leftOut);
  }
  return rows;
}

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
  auto const rows = DeriveLayers(compilation, MakeRows(tables), plan.leftOut);
  plan.grid = PlanPanes(compilation, rows);
  plan.view = document.config.view;
  if (document.IsMap()) {
    auto const find = [](auto const& option, auto const& length, LengthSpec const& defaults) {
      return LengthRequest{option ? option : length, std::nullopt, defaults}.GetContinuous();
    };
    plan.width = find(options.width, document.width, document.config.width);
    plan.height = find(options.height, document.height, document.config.height);
    plan.map = PlanMap(compilation, rows, plan.width, plan.height, plan.grid);
  }
  plan.panes = MakePanes(document, plan.grid);
  PlanPositionScales(
      compilation, rows,
      {options.width ? options.width : document.width, document.widthStep, document.config.width},
      {options.height ? options.height : document.height, document.heightStep, document.config.height}, plan);
  PlanTitles(compilation, plan);
  PlanStyleScales(compilation, rows, plan);
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
