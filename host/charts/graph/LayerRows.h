#pragma once

#include <map>
#include <memory>

#include "charts/data/DataTable.h"
#include "charts/graph/GraphBuilder.h"

namespace ostrel::charts {

/// A column of rows as a node of the graph, and its values, which planning looks at.
struct RowColumn {
  std::string name;
  NodeId node = -1;
  Value values;

  ort::core::StoreType GetType() const { return values->GetTypeInfo().GetElementType(); }
};

/// The rows that a layer draws: a table as it was loaded or made by other nodes, or those rows of it that a
/// mask keeps. Columns become nodes when they are first asked for. The functions throw DataError for a field
/// that the table does not have.
class LayerRows {
 public:
  /// `label` begins the names of the table's inputs, which must differ from those of other tables.
  LayerRows(std::shared_ptr<DataTable const> table, std::string label)
      : table_(std::move(table)), rowCount_(table_->rowCount), label_(std::move(label)) {}
  /// A table whose columns are nodes, one for each.
  LayerRows(std::shared_ptr<DataTable const> table, std::string label, std::vector<NodeId> nodes)
      : LayerRows(std::move(table), std::move(label)) {
    nodes_ = std::move(nodes);
  }
  /// Some rows of other rows: those where a Bool column is true, or those that an Int32 column names.
  LayerRows(GraphBuilder& graph, std::shared_ptr<LayerRows> whole, NodeId selection, std::string label);

  /// The table that these rows are from, with all rows.
  DataTable const& GetTable() const { return *table_; }
  int GetRowCount() const { return rowCount_; }
  LayerRows& GetWhole() { return whole_ ? whole_->GetWhole() : *this; }
  /// Those rows of a column of other rows, of which these are some, or which these are.
  NodeId Keep(GraphBuilder& graph, std::string const& name, NodeId column, LayerRows const& of) const;

  /// The column as it stands.
  RowColumn const& GetColumn(GraphBuilder& graph, std::string const& field);
  /// Int64 or Real64; infinite numbers, which have no place on any scale, are missing.
  RowColumn const& GetNumbers(GraphBuilder& graph, std::string const& field);
  /// Date or DateTime.
  RowColumn const& GetDates(GraphBuilder& graph, std::string const& field);
  RowColumn const& GetTexts(GraphBuilder& graph, std::string const& field);
  /// The texts that tell discrete values apart: "null" for null, "undefined" where there is no value at all.
  NodeId GetCategories(GraphBuilder& graph, std::string const& field);

 private:
  enum class Form { AsItStands, Numbers, Dates, Texts };

  RowColumn const& Get(GraphBuilder& graph, Form form, std::string const& field);
  RowColumn Make(GraphBuilder& graph, Form form, std::string const& field);

  std::shared_ptr<DataTable const> table_;
  int rowCount_ = 0;
  std::string label_;
  std::vector<NodeId> nodes_;
  std::shared_ptr<LayerRows> whole_;
  NodeId selection_ = -1;
  char const* selector_ = "filter";
  std::map<std::pair<Form, std::string>, RowColumn> columns_;
  std::map<std::string, NodeId> categories_;
};

}  // namespace ostrel::charts
