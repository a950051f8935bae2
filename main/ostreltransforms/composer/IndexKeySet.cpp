#include "ostreltransforms/composer/IndexKeySet.h"

#include <unordered_map>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/FlatTable.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// The rows of each key. Two passes: the first numbers the keys as they come and counts their rows, so that
// the second writes each row to its place and no list ever grows.
template <class Key, class GetRow>
std::unique_ptr<std::unordered_map<Key, Value>> IndexRows(std::span<Key const> keys, GetRow const& getRow) {
  struct Slot {
    Key key{};
    std::uint32_t group = 0;  // counted from 1
    bool IsFree() const { return group == 0; }
  };
  FlatTable<Slot> table;
  std::vector<Key> groupKeys;
  std::vector<int> counts;
  std::vector<std::uint32_t> groups(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    auto const [slot, isNew] = table.FindOrAdd(keys[i]);
    if (isNew) {
      groupKeys.push_back(keys[i]);
      counts.push_back(0);
      slot->group = static_cast<std::uint32_t>(groupKeys.size());
    }
    groups[i] = slot->group - 1;
    ++counts[groups[i]];
  }

  std::vector<ColumnBuilder<int>> columns;
  std::vector<int*> next;
  columns.reserve(counts.size());
  next.reserve(counts.size());
  for (int const count : counts) {
    columns.emplace_back(StoreTypeInfo::Int32, count);
    next.push_back(columns.back().GetValues().data());
  }
  for (std::size_t i = 0; i < keys.size(); ++i) *next[groups[i]]++ = getRow(i);

  auto entries = std::make_unique<std::unordered_map<Key, Value>>(columns.size());
  for (std::size_t group = 0; group < columns.size(); ++group) {
    entries->emplace(groupKeys[group], columns[group].Finish());
  }
  return entries;
}

// The rows that are not special, in their order.
std::vector<int> ListOrdinaryRows(ColumnView const& column) {
  std::vector<int> rows;
  rows.reserve(static_cast<std::size_t>(column.GetCount()) - column.GetSpecialRows().size());
  int row = 0;
  for (int const special : column.GetSpecialRows()) {
    while (row < special) rows.push_back(row++);
    ++row;
  }
  while (row < column.GetCount()) rows.push_back(row++);
  return rows;
}

}  // namespace

Value BuildIndexKeySet(Value const& numbers) {
  detail::RequireColumnOf(StoreType::Int32, numbers);
  auto const& column = numbers->AsTypedArray<uint32>();
  std::span<uint32 const> const values = column.GetValues();
  std::unique_ptr<std::unordered_map<uint32, Value>> entries;
  std::unique_ptr<std::unordered_map<SpecialKind, Value>> specials;
  if (!column.HasSpecials()) {
    entries = IndexRows(values, [](std::size_t row) { return static_cast<int>(row); });
  } else {
    std::vector<int> const rows = ListOrdinaryRows(column);
    std::vector<uint32> kept;
    kept.reserve(rows.size());
    for (int const row : rows) kept.push_back(values[static_cast<std::size_t>(row)]);
    entries = IndexRows(std::span<uint32 const>(kept), [&](std::size_t i) { return rows[i]; });
    std::span<int const> const specialRows = column.GetSpecialRows();
    specials = IndexRows(column.GetSpecialKinds(), [&](std::size_t i) { return specialRows[i]; });
  }
  return factory::MakeKeySet(StoreTypeInfo::Int32, StoreTypeInfo::Array, StoreTypeInfo::Array,
                             std::move(entries), std::move(specials));
}

}  // namespace OstrelTransforms
