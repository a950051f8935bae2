#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace OstrelTransforms {

// A set that only grows, in one block of memory: a row costs a look at one or two neighbouring slots, where
// the nodes of the standard set cost an allocation for each new value. T{} marks a free slot.
template <class T>
class SeenValues {
 public:
  // True when the value had not been inserted before.
  bool Insert(T const& value) {
    if (value == T{}) return !std::exchange(hasDefault_, true);
    if (2 * (count_ + 1) > slots_.size()) Grow();
    T& slot = FindSlot(value);
    if (slot == value) return false;
    slot = value;
    ++count_;
    return true;
  }

 private:
  static constexpr std::size_t kFirstSize = 64;

  // Where the value stands, or the free slot where it belongs.
  T& FindSlot(T const& value) {
    std::size_t const mask = slots_.size() - 1;
    // The high bits of the product depend on all bits of the hash, which for integers is the number itself.
    std::uint64_t const mixed = std::hash<T>{}(value)*UINT64_C(0x9E3779B97F4A7C15);
    std::size_t index = mixed >> (64 - std::countr_zero(slots_.size()));
    while (slots_[index] != T{} && slots_[index] != value) index = (index + 1) & mask;
    return slots_[index];
  }

  void Grow() {
    std::vector<T> former(slots_.empty() ? kFirstSize : 2 * slots_.size());
    former.swap(slots_);
    for (T& value : former) {
      if (value != T{}) FindSlot(value) = std::move(value);
    }
  }

  std::vector<T> slots_;
  std::size_t count_ = 0;
  bool hasDefault_ = false;
};

}  // namespace OstrelTransforms
