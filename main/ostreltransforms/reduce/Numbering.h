#pragma once

#include <bit>
#include <cstdint>
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
      int& place = small_[index];
      if (place == 0) [[unlikely]]
        place = ++count_;
      return place - 1;
    }
    auto const [slot, isNew] = table_.FindOrAdd(value);
    if (!isNew) [[likely]]
      return slot->place - 1;
    slot->place = ++count_;
    // The array never takes more room than a few integers a different value.
    if (index < 8U * static_cast<unsigned>(count_)) Enlarge(index);
    return count_ - 1;
  }

 private:
  struct Slot {
    int key = 0;
    int place = 0;  // the number plus 1; 0 in a free slot
    bool IsFree() const { return place == 0; }
  };

  // Copies what the table holds of the array's new range; the table is not asked for it again.
  [[gnu::noinline]] void Enlarge(std::uint32_t index) {
    small_.resize(std::bit_ceil(std::size_t{index} + 1));
    table_.ForEach([this](Slot const& slot) {
      auto const key = static_cast<std::uint32_t>(slot.key);
      if (key < small_.size() && small_[key] == 0) small_[key] = slot.place;
    });
  }

  std::vector<int> small_ = std::vector<int>(64);
  FlatTable<Slot> table_;
  int count_ = 0;
};

}  // namespace OstrelTransforms
