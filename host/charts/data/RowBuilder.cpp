#include "charts/data/RowBuilder.h"

#include <fmt/format.h>

#include <limits>

namespace ostrel::charts {

using ort::core::RIndirectString;
using ort::core::SpecialKind;
using ort::core::StoreType;

namespace {

constexpr std::size_t kMostColumns = 16'384;
/// A sparse table may take this many empty cells, and as many times more than it has values.
constexpr std::size_t kFreeAbsentCells = std::size_t{16} << 20;
constexpr std::size_t kAbsentPerCell = 64;

}  // namespace

void RowBuilder::SetField(std::string_view name, RowCell cell) {
  auto& column = GetColumn(name);
  if (column.pendingRow != rowCount_) {
    column.pendingRow = rowCount_;
    touched_.push_back(static_cast<std::size_t>(&column - columns_.data()));
  }
  column.pending = std::move(cell);
}

RowBuilder::Column& RowBuilder::GetColumn(std::string_view name) {
  if (expected_ >= columns_.size() || columns_[expected_].name != name) {
    auto const [found, isNew] = positions_.try_emplace(std::string(name), columns_.size());
    if (isNew) {
      if (columns_.size() == kMostColumns) {
        throw DataError(
            fmt::format("{}: row {}: more than {} fields", sourceName_, rowCount_ + 1, kMostColumns));
      }
      columns_.emplace_back().name = name;
    }
    expected_ = found->second;
  }
  return columns_[expected_++];
}

void RowBuilder::EndRow() {
  if (rowCount_ == std::numeric_limits<int>::max()) throw DataError(sourceName_ + ": too many rows");
  for (auto const index : touched_) {
    auto& column = columns_[index];
    PadUntil(column, static_cast<std::size_t>(rowCount_));
    Append(column.store, column.pending);
    column.pending = {};
  }
  cells_ += touched_.size();
  touched_.clear();
  expected_ = 0;
  ++rowCount_;
}

void RowBuilder::PadUntil(Column& column, std::size_t rows) {
  absentCells_ += rows - column.store.GetCount();
  if (absentCells_ > kFreeAbsentCells + kAbsentPerCell * cells_) {
    throw DataError(
        fmt::format("{}: row {}: {} fields, most of them in few rows only; such rows are no table",
                    sourceName_, rowCount_, columns_.size()));
  }
  while (column.store.GetCount() < rows) column.store.AppendSpecial(SpecialKind::Missing);
}

void RowBuilder::Append(ColumnStore& store, RowCell& cell) {
  auto const append = [&store, &cell] {
    switch (cell.type) {
      case StoreType::Bool:
        return store.AppendBool(cell.bits != 0);
      case StoreType::Int64:
        return store.AppendInteger(static_cast<std::int64_t>(cell.bits));
      case StoreType::Real64:
        return store.AppendReal(std::bit_cast<double>(cell.bits));
      case StoreType::String:
        return store.AppendString(cell.text);
      default:
        store.AppendSpecial(SpecialKind::Null);
        return true;
    }
  };
  if (append()) return;
  // Values of different kinds have only their texts in common.
  store.TurnIntoStrings();
  if (cell.type != StoreType::String)
    cell.text = RIndirectString::FromUtf8(DescribeScalar(cell.type, cell.bits));
  store.AppendString(cell.text);
}

DataTable RowBuilder::Finish() {
  DataTable table{sourceName_, rowCount_, {}};
  for (auto& column : columns_) {
    PadUntil(column, static_cast<std::size_t>(rowCount_));
    table.columns.push_back({std::move(column.name), column.store.Finish(), false});
  }
  return table;
}

}  // namespace ostrel::charts
