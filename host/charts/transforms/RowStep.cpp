#include "charts/transforms/RowStep.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostrel::charts {

namespace {

using ort::core::StoreType;

void PutColumn(std::vector<std::pair<std::string, NodeId>>& columns, std::string const& name, NodeId node) {
  auto const found = std::ranges::find(columns, name, &std::pair<std::string, NodeId>::first);
  if (found != columns.end()) {
    found->second = node;
  } else {
    columns.emplace_back(name, node);
  }
}

}  // namespace

StoreType RowStep::GetType(std::string const& field) { return rows_.GetColumn(graph, field).GetType(); }

NodeId RowStep::Column(std::string const& field) { return rows_.GetColumn(graph, field).node; }

NodeId RowStep::Numbers(std::string const& field) {
  RowColumn const& numbers = rows_.GetNumbers(graph, field);
  if (rows_.GetColumn(graph, field).GetType() == StoreType::String &&
      numbers.values->AsColumn().GetSpecialRows().size() == static_cast<std::size_t>(rows_.GetRowCount())) {
    throw DataError(fmt::format("{}: field '{}' of {} holds text, not numbers", path_, field,
                                rows_.GetTable().sourceName));
  }
  if (numbers.GetType() == StoreType::Real64) return numbers.node;
  return graph.Map(numbers.name + " as reals", "asReal64", numbers.node);
}

NodeId RowStep::Instants(std::string const& field) {
  RowColumn const& dates = rows_.GetDates(graph, field);
  if (dates.GetType() == StoreType::DateTime) return dates.node;
  return graph.Map(dates.name + " instants", "toDateTime", dates.node);
}

NodeId RowStep::Texts(std::string const& field) { return rows_.GetTexts(graph, field).node; }

NodeId RowStep::Categories(std::string const& field) { return rows_.GetCategories(graph, field); }

NodeId RowStep::Groups(std::string const& name, std::vector<std::string> const& fields) {
  if (fields.empty()) {
    return graph.Constant(name, ort::core::factory::MakeConstantArray<int>(ort::core::StoreTypeInfo::Int32, 0,
                                                                           rows_.GetRowCount()));
  }
  std::vector<NodeId> columns;
  for (std::string const& field : fields) columns.push_back(Column(field));
  return graph.Call(name, "groupIndex", columns);
}

void RowStep::Set(std::string const& name, NodeId column) { PutColumn(columns_, name, column); }

std::shared_ptr<LayerRows> RowStep::Make(std::vector<std::pair<std::string, NodeId>> const& columns) {
  std::vector<NodeId> nodes;
  for (auto const& [name, node] : columns) nodes.push_back(node);
  std::vector<Value> const values = graph.Peek(nodes);
  DataTable const& source = rows_.GetTable();
  auto table = std::make_shared<DataTable>(DataTable{source.sourceName, 0, {}});
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    std::string const& name = columns[i].first;
    DataColumn const* const former = source.Find(name);
    table->columns.push_back({name, values[i], former != nullptr && former->isFromText});
  }
  if (!values.empty()) table->rowCount = values.front()->AsColumn().GetCount();
  if (table->rowCount == 0)
    throw DataError(fmt::format("{}: no row of {} is left", path_, source.sourceName));
  // Inputs that conversions of these columns become must differ from those of other steps.
  std::string label = fmt::format("{} step {} ", path_, graph.GetGraph().GetCount());
  return std::make_shared<LayerRows>(std::move(table), std::move(label), std::move(nodes));
}

std::shared_ptr<LayerRows> RowStep::Extend() {
  std::vector<std::pair<std::string, NodeId>> columns;
  for (DataColumn const& column : rows_.GetTable().columns)
    columns.emplace_back(column.name, Column(column.name));
  for (auto const& [name, node] : columns_) PutColumn(columns, name, node);
  return Make(columns);
}

std::shared_ptr<LayerRows> RowStep::Replace() { return Make(columns_); }

}  // namespace ostrel::charts
