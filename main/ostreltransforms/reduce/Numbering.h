#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "ostreltransforms/FlatTable.h"

namespace OstrelTransforms {

// Numbers different integers 0, 1, 2, ... in the order of their first appearance. Small ones, of which a
// column mostly holds many, stand in an array by their value, all others in a hash table.
class Numbering {
 public:
  [[gnu::always_inline]] int GetNumber(int value) {
    auto const index = static_cast<std::uint32_t>(value);
    if (index < small_.size()) {
      int& number = small_[index];
      if (number == kNone) [[unlikely]]
        number = count_++;
      return number;
    }
    auto const [slot, isNew] = table_.FindOrAdd(value);
    if (!isNew) [[likely]]
      return slot->number;
    slot->number = count_++;
    // The array never takes more room than a few integers a different value.
    if (index < 8U * static_cast<unsigned>(count_)) Enlarge(index);
    return count_ - 1;
  }

  // The numbers of many values, one after the other; of one length.
  void GetNumbers(std::span<int const> values, std::span<int> numbers) {
    for (std::size_t row = 0; row < values.size(); ++row) {
      row = CopyKnown(values, numbers, row);
      if (row == values.size()) return;
      numbers[row] = GetNumber(values[row]);
    }
  }

 private:
  static constexpr int kNone = -1;

  struct Slot {
    int key = 0;
    int number = kNone;  // in a free slot
    bool IsFree() const { return number == kNone; }
  };

  // Writes what the array knows, up to the first row that it does not, which is given back. Nothing here
  // changes the array, so that where it stands is not read again for each row.
  std::size_t CopyKnown(std::span<int const> values, std::span<int> numbers, std::size_t row) const {
    int const* const known = small_.data();
    auto const size = static_cast<std::uint32_t>(small_.size());
    int const* const from = values.data();
    int* const to = numbers.data();
    for (std::size_t const count = values.size(); row < count; ++row) {
      auto const index = static_cast<std::uint32_t>(from[row]);
      if (index >= size || known[index] < 0) break;
      to[row] = known[index];
    }
    return row;
  }

  // Copies what the table holds of the array's new range; the table is not asked for it again.
  [[gnu::noinline]] void Enlarge(std::uint32_t index) {
    small_.resize(std::bit_ceil(std::size_t{index} + 1), kNone);
    table_.ForEach([this](Slot const& slot) {
      auto const key = static_cast<std::uint32_t>(slot.key);
      if (key < small_.size() && small_[key] == kNone) small_[key] = slot.number;
    });
  }

  std::vector<int> small_ = std::vector<int>(64, kNone);
  FlatTable<Slot> table_;
  int count_ = 0;
};

}  // namespace OstrelTransforms
