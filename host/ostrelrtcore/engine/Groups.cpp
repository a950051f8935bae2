#include "ostrelrtcore/engine/Groups.h"

#include <utility>

#include "ostrelrtcore/builtins/RowNumbers.h"

namespace ort::core::engine {
namespace {

constexpr int kNoGroup = -1;

bool IsOneGroup(StoreValue const& keys) {
  if (!IsColumn(keys)) return true;
  auto const& column = keys.AsColumn();
  return column.IsConstant() &&
         (!column.HasSpecials() || column.GetUniformSpecialKind() != SpecialKind::None);
}

}  // namespace

Groups::Groups(StoreValue const& keys, int count, std::span<int const> leftOut) {
  std::vector<int> groups(static_cast<std::size_t>(count), 0);
  std::size_t groupCount = 1;
  if (!IsOneGroup(keys)) {
    builtins::RowNumbers numbers;
    numbers.Number(keys, [&groups](int row, int number) { groups[static_cast<std::size_t>(row)] = number; });
    groupCount = static_cast<std::size_t>(numbers.GetCount());
  }
  for (int const row : leftOut) groups[static_cast<std::size_t>(row)] = kNoGroup;
  // A counting sort: ends_ holds each group's size, then its begin, then, with its rows placed, its end.
  ends_.assign(groupCount, 0);
  for (int const group : groups) {
    if (group != kNoGroup) ++ends_[static_cast<std::size_t>(group)];
  }
  std::size_t begin = 0;
  for (std::size_t& size : ends_) begin += std::exchange(size, begin);
  rows_.resize(begin);
  for (int row = 0; row < count; ++row) {
    int const group = groups[static_cast<std::size_t>(row)];
    if (group != kNoGroup) rows_[ends_[static_cast<std::size_t>(group)]++] = row;
  }
}

}  // namespace ort::core::engine
