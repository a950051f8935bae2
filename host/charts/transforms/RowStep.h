#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "charts/graph/LayerRows.h"

namespace ostrel::charts {

/// One step from rows to the next: nodes over the columns of the first, and of those the columns of the
/// second. `path` names the step in messages: "$.encoding.y". The functions throw DataError for a field that
/// the rows do not have, and for one of a wrong kind.
class RowStep {
 public:
  RowStep(GraphBuilder& builder, LayerRows& rows, std::string path)
      : graph(builder), rows_(rows), path_(std::move(path)) {}

  bool Has(std::string const& field) const { return rows_.GetTable().Find(field) != nullptr; }
  int GetRowCount() const { return rows_.GetRowCount(); }
  ort::core::StoreType GetType(std::string const& field);
  /// The column as it stands, with its values.
  RowColumn const& Get(std::string const& field) { return rows_.GetColumn(graph, field); }

  NodeId Column(std::string const& field);
  /// Real64; texts that are no numbers are special rows.
  NodeId Numbers(std::string const& field);
  /// DateTime.
  NodeId Instants(std::string const& field);
  NodeId Texts(std::string const& field);
  /// Texts, with those of missing values.
  NodeId Categories(std::string const& field);
  /// Int32: which rows are equal in all fields; all rows are one group of none.
  NodeId Groups(std::string const& name, std::vector<std::string> const& fields);

  void Set(std::string const& name, NodeId column);
  /// The rows with the columns that were set, new ones last.
  std::shared_ptr<LayerRows> Extend();
  /// Rows of the columns that were set. Throws DataError when there are none.
  std::shared_ptr<LayerRows> Replace();

  GraphBuilder& graph;

 private:
  std::shared_ptr<LayerRows> Make(std::vector<std::pair<std::string, NodeId>> const& columns);

  LayerRows& rows_;
  std::string path_;
  std::vector<std::pair<std::string, NodeId>> columns_;
};

}  // namespace ostrel::charts
