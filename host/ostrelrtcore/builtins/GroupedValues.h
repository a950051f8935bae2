#pragma once

#include <algorithm>

#include "ostrelrtcore/builtins/Columns.h"

namespace ort::core::builtins {

/// The group of every row, or one group for all of them.
class GroupColumn {
 public:
  /// All `rows` rows in group 0.
  explicit GroupColumn(int rows) : rows_(rows), count_(1) {}
  /// A column of Int32 group numbers; there are as many groups as the highest number tells. Throws 55 for
  /// another column, a negative number, and numbers far beyond the number of rows.
  explicit GroupColumn(StoreValue const& groups);

  int GetRows() const { return rows_; }
  int GetCount() const { return count_; }

  /// Calls visit(group, row) for every row that is special neither in `kinds` nor here.
  template <class Visit>
  void ForEachRow(RowKinds const& kinds, Visit const& visit) const {
    bool const isPlain = !kinds.HasSpecials() && !kinds_.HasSpecials();
    if (numbers_ == nullptr) {
      for (int row = 0; row < rows_; ++row) {
        if (isPlain || kinds[row] == SpecialKind::None) visit(std::size_t{0}, row);
      }
    } else if (isPlain) {
      for (int row = 0; row < rows_; ++row) visit(static_cast<std::size_t>(numbers_[row]), row);
    } else {
      for (int row = 0; row < rows_; ++row) {
        if (kinds[row] == SpecialKind::None && kinds_[row] == SpecialKind::None) {
          visit(static_cast<std::size_t>(numbers_[row]), row);
        }
      }
    }
  }

 private:
  int rows_;
  int count_;
  int const* numbers_ = nullptr;
  RowKinds kinds_;
};

/// Values as they are aggregated: the ordinary rows of a column, each with its group.
template <class T>
class GroupedValues {
 public:
  /// Throws 259 where the two differ in length.
  GroupedValues(StoreValue const& values, GroupColumn const& groups)
      : groups_(groups), kinds_(values.AsColumn()), values_(values.AsTypedArray<T>().GetValues()) {
    RequireOneLength(static_cast<int>(values_.size()), groups.GetRows(), "groups");
  }

  int GetGroupCount() const { return groups_.GetCount(); }

  /// Calls visit(group, value) for every ordinary row, in order.
  template <class Visit>
  void ForEach(Visit const& visit) const {
    groups_.ForEachRow(
        kinds_, [&](std::size_t group, int row) { visit(group, values_[static_cast<std::size_t>(row)]); });
  }

 private:
  GroupColumn const& groups_;
  RowKinds kinds_;
  std::span<T const> values_;
};

}  // namespace ort::core::builtins
