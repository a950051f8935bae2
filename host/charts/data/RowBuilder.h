#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "charts/data/ColumnStore.h"
#include "charts/data/DataTable.h"

namespace ostrel::charts {

/// A JSON scalar as a column takes it.
struct RowCell {
  ort::core::StoreType type = ort::core::StoreType::Empty;  // Empty is null
  std::uint64_t bits = 0;
  ort::core::RIndirectString text;
};

/// A table out of rows that name their fields: a field absent from a row is Missing there, and of a field
/// named twice in a row the last value holds.
class RowBuilder {
 public:
  explicit RowBuilder(std::string sourceName) : sourceName_(std::move(sourceName)) {}

  void SetField(std::string_view name, RowCell cell);
  /// Throws DataError where the rows have so little in common that a table of them would be nearly empty.
  void EndRow();
  int GetRowCount() const { return rowCount_; }
  DataTable Finish();

 private:
  struct Column {
    std::string name;
    ColumnStore store;
    RowCell pending;
    int pendingRow = -1;
  };

  Column& GetColumn(std::string_view name);
  void PadUntil(Column& column, std::size_t rows);
  static void Append(ColumnStore& store, RowCell& cell);

  std::string sourceName_;
  std::vector<Column> columns_;
  std::unordered_map<std::string, std::size_t> positions_;
  std::vector<std::size_t> touched_;
  std::size_t expected_ = 0;  // rows mostly name their fields in one order
  int rowCount_ = 0;
  std::size_t cells_ = 0;
  std::size_t absentCells_ = 0;
};

}  // namespace ostrel::charts
