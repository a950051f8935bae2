#pragma once

#include <vector>

#include "ostrelrtcore/engine/Operand.h"
#include "ostrelrtcore/engine/RowSet.h"

namespace ort::core::engine {

/// The rows that a plain function does not see: special in any of its operands, with the kind of the first
/// operand that has one.
class SpecialRows {
 public:
  SpecialRows(std::span<Operand const> operands, int count);

  /// The kind of all rows where they are special of one kind; the lists are empty then.
  SpecialKind GetUniformKind() const noexcept { return uniformKind_; }
  std::span<int const> GetRows() const noexcept { return rows_; }
  std::span<SpecialKind const> GetKinds() const noexcept { return kinds_; }

  /// Calls work(rows) for row sets that make up all other rows, from the first or the last on. Each set is a
  /// range where ranges are long, and one list of all rows where they are short.
  template <class Work>
  void ForEachOrdinary(bool isForward, Work const& work) const;

 private:
  /// Below this many rows a special row, listing the ordinary rows costs less than a call for each range.
  static constexpr std::size_t kRowsPerListedSpecial = 32;

  void Merge(Operand const& first, Operand const& second);
  bool AreDense() const noexcept {
    return rows_.size() > 1 && rows_.size() * kRowsPerListedSpecial > static_cast<std::size_t>(count_);
  }
  std::vector<int> ListOrdinary() const;

  int count_;
  SpecialKind uniformKind_ = SpecialKind::None;
  std::span<int const> rows_;
  std::span<SpecialKind const> kinds_;
  std::vector<int> ownRows_;
  std::vector<SpecialKind> ownKinds_;
};

template <class Work>
void SpecialRows::ForEachOrdinary(bool isForward, Work const& work) const {
  if (uniformKind_ != SpecialKind::None || count_ == 0) return;
  if (AreDense()) {
    auto const rows = ListOrdinary();
    if (!rows.empty()) work(RowSet::List(rows.data(), rows.size()));
    return;
  }
  // Range i stands before special row i, the last one behind all of them.
  std::size_t const ranges = rows_.size() + 1;
  for (std::size_t step = 0; step < ranges; ++step) {
    std::size_t const i = isForward ? step : ranges - 1 - step;
    int const begin = i == 0 ? 0 : rows_[i - 1] + 1;
    int const end = i == rows_.size() ? count_ : rows_[i];
    if (begin < end) work(RowSet::Range(begin, end));
  }
}

}  // namespace ort::core::engine
