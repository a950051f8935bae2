#include "ostrelrtcore/builtins/RowOrder.h"

#include <algorithm>
#include <numeric>

#include "ostrelrtcore/BufferPool.h"
#include "ostrelrtcore/builtins/RowNumbers.h"

namespace ort::core::builtins {
namespace {

constexpr uint64 kSign = uint64{1} << 63;
/// No ordinary number's word, in either direction.
constexpr uint64 kAfterAll = ~uint64{0};
/// Up to here a comparison sort is ahead of the passes over all digits.
constexpr std::size_t kFewRows = 256;

struct KeyedRow {
  uint64 key;
  int row;
};

uint64 OrderWord(uint8 value) { return value; }
uint64 OrderWord(uint32 value) { return value; }
uint64 OrderWord(uint64 value) { return value; }
uint64 OrderWord(int value) { return static_cast<uint64>(int64{value}) ^ kSign; }
uint64 OrderWord(int64 value) { return static_cast<uint64>(value) ^ kSign; }
uint64 OrderWord(double value) {
  if (value != value) return kAfterAll;
  auto const bits = std::bit_cast<uint64>(value + 0.0);  // a negative zero becomes a positive one
  return bits & kSign ? ~bits : bits | kSign;
}
uint64 OrderWord(float value) { return OrderWord(static_cast<double>(value)); }

template <class T>
void FillWords(SortColumn const& column, std::vector<uint64>& words) {
  auto const values = column.column->AsTypedArray<T>().GetValues();
  uint64 const flip = column.isDescending ? ~uint64{0} : 0;
  for (std::size_t row = 0; row < words.size(); ++row) {
    uint64 const word = OrderWord(values[row]);
    if constexpr (std::is_floating_point_v<T>) {
      words[row] = word == kAfterAll ? word : word ^ flip;
    } else {
      words[row] = word ^ flip;
    }
  }
}

/// Texts are compared once for each different one: a row's word is its text's rank among them.
void FillTextWords(SortColumn const& column, std::vector<uint64>& words) {
  auto groups = GroupRows({&column.column, 1});
  auto const& texts = column.column->AsTypedArray<RIndirectString>();
  std::vector<int> order(groups.firstRows.size());
  std::iota(order.begin(), order.end(), 0);
  auto const textOf = [&](int group) {
    return texts.GetElement(groups.firstRows[static_cast<std::size_t>(group)]).Get().view();
  };
  std::ranges::sort(order, {}, textOf);
  std::vector<uint64> ranks(order.size());
  uint64 const flip = column.isDescending ? ~uint64{0} : 0;
  for (std::size_t i = 0; i < order.size(); ++i) ranks[static_cast<std::size_t>(order[i])] = i ^ flip;
  auto const rowGroups = groups.groups.GetValues();
  for (std::size_t row = 0; row < words.size(); ++row) {
    words[row] = ranks[static_cast<std::size_t>(rowGroups[row])];
  }
}

/// Least significant digit first, a byte at a time; a byte in which all keys agree costs nothing.
void RadixSort(std::span<KeyedRow> items, std::span<KeyedRow> spare) {
  std::array<std::array<std::size_t, 256>, 8> counts{};
  for (KeyedRow const& item : items) {
    for (std::size_t digit = 0; digit < 8; ++digit) ++counts[digit][(item.key >> (8 * digit)) & 0xFF];
  }
  KeyedRow* from = items.data();
  KeyedRow* to = spare.data();
  for (std::size_t digit = 0; digit < 8; ++digit) {
    auto& next = counts[digit];
    if (next[(items[0].key >> (8 * digit)) & 0xFF] == items.size()) continue;
    std::exclusive_scan(next.begin(), next.end(), next.begin(), std::size_t{0});
    for (std::size_t i = 0; i < items.size(); ++i) to[next[(from[i].key >> (8 * digit)) & 0xFF]++] = from[i];
    std::swap(from, to);
  }
  if (from != items.data()) std::copy(from, from + items.size(), items.data());
}

void SortKeyed(std::span<KeyedRow> items, std::span<KeyedRow> spare) {
  if (std::ranges::is_sorted(items, {}, &KeyedRow::key)) return;
  if (items.size() <= kFewRows) {
    std::ranges::stable_sort(items, {}, &KeyedRow::key);
  } else {
    RadixSort(items, spare);
  }
}

class Workspace {
 public:
  explicit Workspace(std::size_t count)
      : items_(count * sizeof(KeyedRow)), spare_(count * sizeof(KeyedRow)), count_(count) {}
  std::span<KeyedRow> GetItems() { return {static_cast<KeyedRow*>(items_.data()), count_}; }
  std::span<KeyedRow> GetSpare() { return {static_cast<KeyedRow*>(spare_.data()), count_}; }

 private:
  PooledBuffer items_;
  PooledBuffer spare_;
  std::size_t count_;
};

/// Reorders the rows by one column, stably.
void SortByColumn(SortColumn const& column, std::span<int> rows, Workspace& workspace) {
  auto const words = OrderWords(column);
  RowKinds const kinds(column.column->AsColumn());
  auto const items = workspace.GetItems();
  std::size_t ordinary = 0;
  std::vector<int> specials;
  for (int const row : rows) {
    if (kinds[row] == SpecialKind::None) {
      items[ordinary++] = {words[static_cast<std::size_t>(row)], row};
    } else {
      specials.push_back(row);
    }
  }
  SortKeyed(items.first(ordinary), workspace.GetSpare().first(ordinary));
  std::ranges::stable_sort(specials, {}, [&](int row) { return kinds[row]; });
  for (std::size_t i = 0; i < ordinary; ++i) rows[i] = items[i].row;
  std::ranges::copy(specials, rows.begin() + static_cast<std::ptrdiff_t>(ordinary));
}

}  // namespace

std::vector<uint64> OrderWords(SortColumn const& column) {
  std::vector<uint64> words(static_cast<std::size_t>(column.column->AsColumn().GetCount()));
  switch (ElementType(*column.column)) {
    case StoreType::Bool:
      FillWords<uint8>(column, words);
      break;
    case StoreType::Int32:
      FillWords<int>(column, words);
      break;
    case StoreType::Int64:
      FillWords<int64>(column, words);
      break;
    case StoreType::Real32:
      FillWords<float>(column, words);
      break;
    case StoreType::Real64:
      FillWords<double>(column, words);
      break;
    case StoreType::Color:
      FillWords<uint32>(column, words);
      break;
    case StoreType::Date:
    case StoreType::DateTime:
      FillWords<uint64>(column, words);
      break;
    case StoreType::String:
      FillTextWords(column, words);
      break;
    default:
      ThrowError(OrtError_UnsupportedType,
                 "no order of " + StoreTypeToString(ElementType(*column.column)).toUtf8());
  }
  return words;
}

ColumnBuilder<int> SortRows(std::span<SortColumn const> columns) {
  if (columns.empty()) ThrowError(OrtError_WrongInputCount, "one column or more wanted");
  int const count = columns[0].column->AsColumn().GetCount();
  for (auto const& [column, isDescending] : columns) {
    RequireOneLength(count, column->AsColumn().GetCount(), "columns");
  }
  auto result = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, count);
  auto const rows = result.GetValues();
  std::iota(rows.begin(), rows.end(), 0);
  Workspace workspace(rows.size());
  for (auto column = columns.rbegin(); column != columns.rend(); ++column) {
    SortByColumn(*column, rows, workspace);
  }
  return result;
}

}  // namespace ort::core::builtins
