#include "charts/graph/PaneGrid.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/scales/CategoryField.h"

namespace ostrel::charts {
namespace {

constexpr int kMostPanes = 400;

// The values of one channel of panes, and of each layer's rows the place among them.
struct PaneField {
  Encoding const* encoding = nullptr;
  std::vector<std::string> labels;
  std::vector<NodeId> indices;  // -1 for a layer that lacks the field

  int GetCount() const { return encoding == nullptr ? 1 : static_cast<int>(labels.size()); }
};

class GridPlanner {
 public:
  GridPlanner(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& layers)
      : compilation_(compilation), layers_(layers) {}

  PaneField PlanField(Channel channel, char const* name) {
    PaneField field;
    field.encoding = compilation_.document.FindFacet(channel);
    field.indices.assign(layers_.size(), -1);
    if (field.encoding == nullptr) return field;
    std::vector<FieldUse> uses;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < layers_.size(); ++i) {
      // The first layer's table must have the field, and says so if not.
      bool const hasField = i == 0 || layers_[i]->GetTable().Find(field.encoding->field) != nullptr;
      if (!hasField) continue;
      uses.push_back({field.encoding, layers_[i].get(), i == 0 ? "" : fmt::format(" of layer {}", i + 1)});
      places.push_back(i);
    }
    ScaleSource const source{name, *field.encoding, uses};
    CategoryField const categories = IndexCategories(compilation_, source);
    for (std::size_t i = 0; i < places.size(); ++i) field.indices[places[i]] = categories.indices[i];
    ReadLabels(categories.labels, field);
    return field;
  }

  // The layers' rows where all fields have the given places.
  PaneCell MakeCell(int row, int column, std::vector<std::pair<PaneField const*, int>> const& places) {
    PaneCell cell{row, column, {}, {}};
    GraphBuilder& graph = compilation_.graph;
    std::string const label = fmt::format("pane {},{} ", row + 1, column + 1);
    for (std::size_t i = 0; i < layers_.size(); ++i) {
      NodeId mask = -1;
      for (auto const& [field, place] : places) {
        if (field->indices[i] < 0) continue;
        NodeId const isHere = graph.Zip(label + "rows", "equal", field->indices[i], graph.Int(place));
        mask = mask < 0 ? isHere : graph.Zip(label + "rows", "and", mask, isHere);
      }
      cell.layers.push_back(mask < 0 ? layers_[i]
                                     : std::make_shared<LayerRows>(graph, layers_[i], mask, label));
    }
    return cell;
  }

 private:
  void ReadLabels(NodeId labels, PaneField& field) {
    auto const& values = compilation_.graph.Peek(labels)->AsTypedArray<ort::core::RIndirectString>();
    for (int row = 0; row < values.GetCount(); ++row)
      field.labels.push_back(values.GetElement(row).Get().toUtf8());
    if (values.GetCount() <= kMostPanes) return;
    ThrowDocumentError(compilation_.document, field.encoding->path + ".field",
                       fmt::format("{} values of field '{}' are more panes than {}", values.GetCount(),
                                   field.encoding->field, kMostPanes));
  }

  Compilation& compilation_;
  std::vector<std::shared_ptr<LayerRows>> const& layers_;
};

// One row of panes after the other.
void PlanWrapped(GridPlanner& planner, ChartDocument const& document, PaneField const& field,
                 PaneGrid& grid) {
  int const count = field.GetCount();
  double const given = field.encoding->columns.value_or(document.paneColumns.value_or(count));
  grid.columnCount = std::clamp(static_cast<int>(given), 1, count);
  grid.rowCount = (count + grid.columnCount - 1) / grid.columnCount;
  grid.panes = PaneHeader{field.encoding, field.labels};
  for (int place = 0; place < count; ++place) {
    grid.cells.push_back(
        planner.MakeCell(place / grid.columnCount, place % grid.columnCount, {{&field, place}}));
  }
}

void PlanCrossed(GridPlanner& planner, ChartDocument const& document, PaneField const& rows,
                 PaneField const& columns, PaneGrid& grid) {
  grid.rowCount = rows.GetCount();
  grid.columnCount = columns.GetCount();
  if (grid.rowCount * grid.columnCount > kMostPanes) {
    ThrowDocumentError(document, rows.encoding->path,
                       fmt::format("{} rows of {} panes are more panes than {}", grid.rowCount,
                                   grid.columnCount, kMostPanes));
  }
  if (rows.encoding != nullptr) grid.rows = PaneHeader{rows.encoding, rows.labels};
  if (columns.encoding != nullptr) grid.columns = PaneHeader{columns.encoding, columns.labels};
  for (int row = 0; row < grid.rowCount; ++row) {
    for (int column = 0; column < grid.columnCount; ++column)
      grid.cells.push_back(planner.MakeCell(row, column, {{&rows, row}, {&columns, column}}));
  }
}

// What the channels say comes before what stands beside facet.
PaneSpacing FindSpacing(ChartDocument const& document) {
  PaneSpacing spacing = document.spacing;
  for (Channel const channel : {Channel::Row, Channel::Column, Channel::Facet}) {
    Encoding const* const encoding = document.FindFacet(channel);
    if (encoding == nullptr) continue;
    if (channel != Channel::Column && encoding->spacing.rows) spacing.rows = encoding->spacing.rows;
    if (channel != Channel::Row && encoding->spacing.columns) spacing.columns = encoding->spacing.columns;
  }
  return spacing;
}

}  // namespace

PaneGrid PlanPanes(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& layers) {
  GridPlanner planner(compilation, layers);
  PaneField const wrapped = planner.PlanField(Channel::Facet, "facet");
  PaneField const rows = planner.PlanField(Channel::Row, "row");
  PaneField const columns = planner.PlanField(Channel::Column, "column");
  PaneGrid grid;
  grid.spacing = FindSpacing(compilation.document);
  if (wrapped.encoding != nullptr) {
    PlanWrapped(planner, compilation.document, wrapped, grid);
  } else {
    PlanCrossed(planner, compilation.document, rows, columns, grid);
  }
  return grid;
}

}  // namespace ostrel::charts
