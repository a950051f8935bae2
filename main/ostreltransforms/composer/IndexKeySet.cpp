#include "ostreltransforms/composer/IndexKeySet.h"

#include <algorithm>
#include <bit>

#include "ostrelrtcore/BufferPool.h"
#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// A row under its key: the key in the upper half, so that whole words order by key, then by row.
using KeyedRow = std::uint64_t;
KeyedRow MakeKeyedRow(std::uint32_t key, int row) {
  return std::uint64_t{key} << 32U | static_cast<std::uint32_t>(row);
}
std::uint32_t GetKey(KeyedRow row) { return static_cast<std::uint32_t>(row >> 32U); }
int GetRow(KeyedRow row) { return static_cast<int>(static_cast<std::uint32_t>(row)); }

class KeyedRows {
 public:
  explicit KeyedRows(std::size_t count)
      : buffer_(count * sizeof(KeyedRow)), rows_(static_cast<KeyedRow*>(buffer_.data()), count) {}

  std::span<KeyedRow> Get() { return rows_; }
  void Swap(KeyedRows& other) {
    std::swap(buffer_, other.buffer_);
    std::swap(rows_, other.rows_);
  }

 private:
  PooledBuffer buffer_;
  std::span<KeyedRow> rows_;
};

// Sorts rows that ascend already by their keys. Stable counting sorts by one digit of the key after the
// other, from the lowest one on: their time does not depend on how many different keys there are, and for
// keys close to each other, as the numbers of groups are, one or two digits are enough.
void SortByKey(KeyedRows& rows) {
  constexpr std::size_t kFewRows = 128;  // for which comparing is faster than counting digits
  if (rows.Get().size() <= kFewRows) {
    std::ranges::sort(rows.Get());
    return;
  }
  constexpr int kMaxDigitBits = 11;
  auto const [least, most] = std::ranges::minmax(rows.Get(), {}, GetKey);
  std::uint32_t const base = GetKey(least);
  int const bits = std::bit_width(GetKey(most) - base);
  int const digits = (bits + kMaxDigitBits - 1) / kMaxDigitBits;
  if (digits == 0) return;
  int const digitBits = (bits + digits - 1) / digits;
  std::uint32_t const mask = (1U << digitBits) - 1;
  KeyedRows sorted(rows.Get().size());
  std::vector<std::uint32_t> next(std::size_t{mask} + 1);
  for (int shift = 0; shift < bits; shift += digitBits) {
    auto const getDigit = [&](KeyedRow row) { return (GetKey(row) - base) >> shift & mask; };
    std::ranges::fill(next, 0);
    for (KeyedRow const row : rows.Get()) ++next[getDigit(row)];
    std::uint32_t sum = 0;
    for (std::uint32_t& place : next) sum += std::exchange(place, sum);
    for (KeyedRow const row : rows.Get()) sorted.Get()[next[getDigit(row)]++] = row;
    rows.Swap(sorted);
  }
}

// The rows of each key, one key's after the other's.
struct Groups {
  std::vector<std::uint32_t> keys;  // ascending
  std::vector<int> starts;          // of each key's rows
  Value rows;
};

Groups GroupRows(KeyedRows rows) {
  SortByKey(rows);
  std::span<KeyedRow const> const sorted = rows.Get();
  auto const beginsGroup = [&](std::size_t i) {
    return i == 0 || GetKey(sorted[i]) != GetKey(sorted[i - 1]);
  };
  std::size_t count = 0;
  for (std::size_t i = 0; i < sorted.size(); ++i) count += beginsGroup(i) ? 1 : 0;
  Groups groups;
  groups.keys.reserve(count);
  groups.starts.reserve(count + 1);
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(sorted.size()));
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (beginsGroup(i)) {
      groups.keys.push_back(GetKey(sorted[i]));
      groups.starts.push_back(static_cast<int>(i));
    }
    column.GetValues()[i] = GetRow(sorted[i]);
  }
  groups.rows = column.Finish();
  return groups;
}

// Turns the order of signed numbers into that of unsigned ones, and back.
constexpr std::uint32_t kSign = 0x80000000U;

Groups GroupOrdinaryRows(ColumnView const& column, std::span<uint32 const> values) {
  std::span<int const> const specials = column.GetSpecialRows();
  KeyedRows rows(values.size() - specials.size());
  KeyedRow* next = rows.Get().data();
  auto const append = [&](int begin, int end) {
    for (int row = begin; row < end; ++row) {
      *next++ = MakeKeyedRow(values[static_cast<std::size_t>(row)] ^ kSign, row);
    }
  };
  int begin = 0;
  for (int const special : specials) {
    append(begin, special);
    begin = special + 1;
  }
  append(begin, column.GetCount());
  Groups groups = GroupRows(std::move(rows));
  for (std::uint32_t& key : groups.keys) key ^= kSign;
  return groups;
}

std::unique_ptr<std::unordered_map<SpecialKind, Value>> IndexSpecialRows(ColumnView const& column) {
  if (!column.HasSpecials()) return nullptr;
  std::span<int const> const specials = column.GetSpecialRows();
  KeyedRows rows(specials.size());
  for (std::size_t i = 0; i < specials.size(); ++i) {
    rows.Get()[i] = MakeKeyedRow(static_cast<std::uint32_t>(column.GetSpecialKinds()[i]), specials[i]);
  }
  Groups groups = GroupRows(std::move(rows));
  groups.starts.push_back(static_cast<int>(specials.size()));
  auto entries = std::make_unique<std::unordered_map<SpecialKind, Value>>();
  for (std::size_t i = 0; i < groups.keys.size(); ++i) {
    entries->emplace(
        static_cast<SpecialKind>(groups.keys[i]),
        factory::MakeSlice(groups.rows, groups.starts[i], groups.starts[i + 1] - groups.starts[i]));
  }
  return entries;
}

}  // namespace

Value BuildIndexKeySet(Value const& numbers) {
  detail::RequireColumnOf(StoreType::Int32, numbers);
  auto const& column = numbers->AsTypedArray<uint32>();
  Groups groups = GroupOrdinaryRows(column, column.GetValues());
  return factory::MakeKeySetOfSlices(StoreTypeInfo::Int32, groups.keys, std::move(groups.starts), groups.rows,
                                     IndexSpecialRows(column));
}

}  // namespace OstrelTransforms
