#include "ostrelrtcore/builtins/RowNumbers.h"

#include <memory>

namespace ort::core::builtins {
namespace {

RowGroups GroupOneColumn(Value const& column) {
  RowGroups result{factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, column->AsColumn().GetCount()), {}};
  RowNumbers numbers;
  numbers.Number(*column, [&, groups = result.groups.GetValues().data()](int row, int number) {
    groups[row] = number;
    if (static_cast<std::size_t>(number) == result.firstRows.size()) result.firstRows.push_back(row);
  });
  return result;
}

RowGroups GroupPairs(RowGroups first, RowGroups second) {
  auto const groups = first.groups.GetValues();
  auto const others = second.groups.GetValues();
  WordTable pairs;
  std::vector<int> firstRows;
  int count = 0;
  for (std::size_t row = 0; row < groups.size(); ++row) {
    uint64 const pair = (static_cast<uint64>(groups[row]) << 32) | static_cast<uint32>(others[row]);
    groups[row] = pairs.FindOrInsert(pair, count);
    if (static_cast<std::size_t>(groups[row]) == firstRows.size()) firstRows.push_back(static_cast<int>(row));
  }
  return {std::move(first.groups), std::move(firstRows)};
}

}  // namespace

void WordTable::Allocate(std::size_t count) {
  memory_ = PooledBuffer(count * sizeof(Slot));
  slots_ = {static_cast<Slot*>(memory_.data()), count};
  std::ranges::uninitialized_fill(slots_, Slot());
}

void WordTable::Grow() {
  PooledBuffer const oldMemory = std::move(memory_);
  std::span<Slot const> const old = slots_;
  Allocate(old.size() * (IsLarge() ? 2 : 4));
  constexpr std::size_t kAhead = 16;
  for (std::size_t i = 0; i < old.size(); ++i) {
    Prefetch(old[std::min(i + kAhead, old.size() - 1)].word);
    if (old[i].number >= 0) slots_[Probe(old[i].word)] = old[i];
  }
}

RowGroups GroupRows(std::span<Value const> columns) {
  if (columns.empty()) ThrowError(OrtError_WrongInputCount, "one column or more wanted");
  int const count = columns[0]->AsColumn().GetCount();
  for (Value const& column : columns) RequireOneLength(count, column->AsColumn().GetCount(), "columns");
  RowGroups result = GroupOneColumn(columns[0]);
  for (Value const& column : columns.subspan(1))
    result = GroupPairs(std::move(result), GroupOneColumn(column));
  return result;
}

}  // namespace ort::core::builtins
