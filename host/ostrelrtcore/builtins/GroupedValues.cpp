#include "ostrelrtcore/builtins/GroupedValues.h"

namespace ort::core::builtins {
namespace {

/// Group numbers beyond this one must be below the number of rows, lest one row ask for gigabytes of groups.
constexpr int kMaxSparseGroup = 1 << 24;

}  // namespace

GroupColumn::GroupColumn(StoreValue const& groups)
    : rows_(RequireColumn(groups, StoreType::Int32, "groups").GetCount()), count_(0) {
  auto const& column = groups.AsTypedArray<int>();
  numbers_ = column.GetValues().data();
  kinds_ = RowKinds(column);
  int lowest = 0;
  int highest = -1;
  for (int row = 0; row < rows_; ++row) {
    if (kinds_[row] != SpecialKind::None) continue;
    lowest = std::min(lowest, numbers_[row]);
    highest = std::max(highest, numbers_[row]);
  }
  if (lowest < 0 || highest >= std::max(rows_, kMaxSparseGroup)) {
    ThrowError(OrtError_WrongValueKind, "group " + std::to_string(lowest < 0 ? lowest : highest));
  }
  count_ = highest + 1;
}

}  // namespace ort::core::builtins
