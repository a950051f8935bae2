#pragma once

#include <span>
#include <vector>

#include "ostrelrtcore/StoreValue.h"
#include "ostrelrtcore/engine/RowSet.h"

namespace ort::core::engine {

/// The rows of a column ordered by group, in row order within each group. Groups come in the order of their
/// first rows. Ordinary rows group by value (NaN with NaN, both zeros), special ones by kind.
class Groups {
 public:
  /// `count` rows, grouped by a column of that many, or by a scalar, which makes one group. Rows listed in
  /// `leftOut` belong to no group; a group may thus be empty.
  Groups(StoreValue const& keys, int count, std::span<int const> leftOut);

  std::size_t GetCount() const noexcept { return ends_.size(); }
  RowSet GetRows(std::size_t group) const noexcept {
    std::size_t const begin = group == 0 ? 0 : ends_[group - 1];
    return RowSet::List(rows_.data() + begin, ends_[group] - begin);
  }

 private:
  std::vector<int> rows_;
  std::vector<std::size_t> ends_;  // of each group's rows in rows_
};

}  // namespace ort::core::engine
