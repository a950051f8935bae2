#pragma once

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
    T& slot = FindSlot(value);
    if (slot == value) return false;
    slot = value;
    if (2 * ++count_ > slots_.size()) Grow();
    return true;
  }

 private:
  static constexpr int kFirstBits = 6;

  // Where the value stands, or the free slot where it belongs.
  T& FindSlot(T const& value) {
    // The high bits of the product depend on all bits of the hash, which for integers is the number itself.
    std::uint64_t const mixed = std::hash<T>{}(value)*UINT64_C(0x9E3779B97F4A7C15);
    std::size_t const mask = slots_.size() - 1;
    std::size_t index = mixed >> shift_;
    while (slots_[index] != value && slots_[index] != T{}) index = (index + 1) & mask;
    return slots_[index];
  }

  void Grow() {
    std::vector<T> former(2 * slots_.size());
    former.swap(slots_);
    --shift_;
    for (T& value : former) {
      if (value != T{}) FindSlot(value) = std::move(value);
    }
  }

  std::vector<T> slots_ = std::vector<T>(std::size_t{1} << kFirstBits);
  int shift_ = 64 - kFirstBits;
  std::size_t count_ = 0;
  bool hasDefault_ = false;
};

}  // namespace OstrelTransforms
