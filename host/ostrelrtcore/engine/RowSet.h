#pragma once

#include <cstddef>

namespace ort::core::engine {

/// Rows that are worked on in pieces of this many where they can't be read and written in place: few enough
/// for the processor's first cache, many enough that a piece costs nothing beside its rows.
inline constexpr std::size_t kBlockRows = 4096;

/// Rows of a column in ascending order: a range, or listed ones.
struct RowSet {
  int begin = 0;
  std::size_t count = 0;
  int const* rows = nullptr;  // null for the range that starts at `begin`

  static RowSet Range(int begin, int end) { return {begin, static_cast<std::size_t>(end - begin), nullptr}; }
  /// A list that is a range in truth is treated as one.
  static RowSet List(int const* rows, std::size_t count) {
    bool const isRange = count != 0 && static_cast<std::size_t>(rows[count - 1] - rows[0]) == count - 1;
    return {isRange ? rows[0] : 0, count, isRange ? nullptr : rows};
  }

  bool IsRange() const noexcept { return rows == nullptr; }
  int GetRow(std::size_t i) const noexcept { return IsRange() ? begin + static_cast<int>(i) : rows[i]; }
  RowSet GetPart(std::size_t first, std::size_t size) const noexcept {
    if (IsRange()) return {begin + static_cast<int>(first), size, nullptr};
    return {0, size, rows + first};
  }
};

/// Calls work(part) for the parts of a row set, at most `size` rows each, from the first or the last on.
template <class Work>
void ForEachPart(RowSet const& set, std::size_t size, bool isForward, Work const& work) {
  if (set.count <= size) {
    if (set.count != 0) work(set);
    return;
  }
  for (std::size_t done = 0; done < set.count;) {
    std::size_t const left = set.count - done;
    std::size_t const now = left < size ? left : size;
    work(set.GetPart(isForward ? done : left - now, now));
    done += now;
  }
}

}  // namespace ort::core::engine
