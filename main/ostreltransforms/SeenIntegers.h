#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <span>
#include <vector>

#include "ostreltransforms/FlatTable.h"

namespace OstrelTransforms {

// The integers that came before, each with a mark: with Mark int its number 0, 1, 2, ... in the order of
// first appearance, with a smaller type, which takes less memory, always 0. Integers that lie close together,
// as a column's mostly do, stand in an array by their value, all others in a hash table.
template <std::signed_integral Mark>
class SeenIntegers {
 public:
  struct Entry {
    Mark mark;
    bool isNew;
  };

  [[gnu::always_inline]] Entry Add(int value) {
    if (std::uint32_t const place = GetPlace(value); place < marks_.size()) {
      Mark& mark = marks_[place];
      if (mark != kNone) [[likely]]
        return {mark, false};
      Widen(static_cast<std::uint32_t>(value));
      return {mark = GetNextMark(), true};
    }
    auto const [slot, isNew] = table_.FindOrAdd(value);
    if (!isNew) [[likely]]
      return {slot->mark, false};
    Mark const mark = slot->mark = GetNextMark();
    Enlarge(static_cast<std::uint32_t>(value));
    return {mark, true};
  }

  // Adds the values one after the other; write(row, entry) is called for each, and may overwrite the row's
  // value.
  template <class Write>
  void AddAll(std::span<int const> values, Write write) {
    Block marks;
    for (std::size_t row = 0; row < values.size();) {
      std::size_t const end = row + std::min(values.size() - row, marks.size());
      if (end - row == marks.size() && ReadSeen(values.data() + row, marks)) {
        for (Mark const mark : marks) write(row++, Entry{mark, false});
      } else {
        for (; row < end; ++row) write(row, Add(values[row]));
      }
    }
  }

 private:
  static constexpr Mark kNone = -1;
  static constexpr std::uint64_t kFirstSize = 64;
  using Block = std::array<Mark, 128>;

  struct Slot {
    int key = 0;
    Mark mark = kNone;  // in a free slot
    bool IsFree() const { return mark == kNone; }
  };

  Mark GetNextMark() {
    int const number = count_++;
    return std::same_as<Mark, int> ? static_cast<Mark>(number) : Mark{0};
  }

  // Where a value stands in the array. The integers form a ring, so that no value lies before the array.
  std::uint32_t GetPlace(int value) const { return static_cast<std::uint32_t>(value) - first_; }

  // The marks of a block of values, if all of them stand in the array: whether they do is found out in the
  // end, without a branch for each value.
  bool ReadSeen(int const* values, Block& block) const {
    std::uint32_t const first = first_;
    std::uint32_t places = 0;
    for (std::size_t i = 0; i < block.size(); ++i) places |= static_cast<std::uint32_t>(values[i]) - first;
    if (places >= marks_.size()) return false;  // which is a power of two
    Mark const* const marks = marks_.data();
#pragma GCC unroll 4
    for (std::size_t i = 0; i < block.size(); ++i) {
      block[i] = marks[static_cast<std::uint32_t>(values[i]) - first];
      if (block[i] == kNone) return false;
    }
    return true;
  }

  void Widen(std::uint32_t value) {
    if (value - first_ < lowest_ - first_) lowest_ = value;
    if (value - first_ > highest_ - first_) highest_ = value;
  }

  // Makes the array reach a value beyond it, if from its lowest value to its highest it takes no more room
  // than a few marks for each different value. Copies what the table holds of the new range; the table is not
  // asked for it again.
  [[gnu::noinline]] void Enlarge(std::uint32_t value) {
    if (marks_.empty()) lowest_ = highest_ = value;
    std::uint64_t const up = std::uint64_t{value - lowest_} + 1;
    std::uint64_t const down = std::uint64_t{highest_ - value} + 1;
    std::uint64_t const needed = std::min(up, down);
    if (needed > std::max(kFirstSize, 8 * static_cast<std::uint64_t>(count_))) return;
    // With room on both sides, or values that come at either end in turn would move the array each time.
    std::vector<Mark> enlarged(std::bit_ceil(std::max(kFirstSize, needed + needed / 4)), kNone);
    std::uint32_t const start = up <= down ? lowest_ : value;
    std::uint32_t const first = start - static_cast<std::uint32_t>((enlarged.size() - needed) / 2);
    if (!marks_.empty()) {
      std::copy_n(marks_.data() + (lowest_ - first_), std::size_t{highest_ - lowest_} + 1,
                  enlarged.data() + (lowest_ - first));
    }
    marks_.swap(enlarged);
    first_ = first;
    table_.ForEach([this](Slot const& slot) {
      std::uint32_t const place = GetPlace(slot.key);
      if (place >= marks_.size()) return;
      marks_[place] = slot.mark;
      Widen(static_cast<std::uint32_t>(slot.key));
    });
  }

  std::uint32_t first_ = 0;                 // the value that the array begins with
  std::uint32_t lowest_ = 0, highest_ = 0;  // of the array's values
  std::vector<Mark> marks_;
  FlatTable<Slot> table_;
  int count_ = 0;
};

}  // namespace OstrelTransforms
