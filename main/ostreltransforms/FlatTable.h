#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace OstrelTransforms {

// A hash table that only grows, in one block of memory: a look-up costs a look at one or two neighbouring
// slots, where the nodes of the standard containers cost an allocation for each new key. Slot has a member
// `key` and tells by IsFree whether it holds one; Slot{} is free.
template <class Slot>
class FlatTable {
 public:
  using Key = decltype(Slot::key);

  // The slot of a key, and whether it is new: then it is free, and the caller fills all of it but the key at
  // once. Valid until the next call.
  [[gnu::always_inline]] std::pair<Slot*, bool> FindOrAdd(Key const& key) {
    Slot* const slot = FindSlot(key);
    if (!slot->IsFree()) [[likely]]
      return {slot, false};
    return {Add(key, slot), true};
  }

  template <class Visit>
  void ForEach(Visit const& visit) const {
    for (Slot const& slot : slots_) {
      if (!slot.IsFree()) visit(slot);
    }
  }

 private:
  static constexpr int kFirstBits = 6;
  // Slots from a key's home; with keys that the hash tells apart hardly a few dozen.
  static constexpr std::size_t kFarthest = 256;
  // Slots of a table that may leave three quarters of them free, since it stays in the caches all the same.
  static constexpr std::size_t kSmall = std::size_t{1} << 16;

  // Where the key stands, or the free slot where it belongs.
  [[gnu::always_inline]] Slot* FindSlot(Key const& key) {
    Slot* const slots = slots_.data();
    std::size_t const mask = slots_.size() - 1;
    std::size_t index = GetHome(key);
    // Most keys stand at home or beside it: which of the two follows no pattern and is asked without a
    // branch.
    std::size_t const near = (index + (slots[index].key != key)) & mask;
    if (slots[near].key == key) [[likely]]
      return slots + near;
    while (slots[index].key != key && !slots[index].IsFree()) index = (index + 1) & mask;
    return slots + index;
  }

  // The high bits of the product depend on all bits of the hash, which for integers is the number itself.
  std::size_t GetHome(Key const& key) const { return (std::hash<Key>{}(key)*multiplier_) >> shift_; }

  [[gnu::noinline]] Slot* Add(Key const& key, Slot* slot) {
    if ((slots_.size() <= kSmall ? 4 : 2) * (count_ + 1) > slots_.size()) {
      --shift_;
      Refill(2 * slots_.size());
      slot = FindSlot(key);
    } else if (((static_cast<std::size_t>(slot - slots_.data()) - GetHome(key)) & (slots_.size() - 1)) >
               kFarthest) {
      // Keys that the multiplier does not tell apart. There are some for every multiplier, but not the same.
      multiplier_ = multiplier_ * UINT64_C(0x5851F42D4C957F2D) + 2;
      Refill(slots_.size());
      slot = FindSlot(key);
    }
    ++count_;
    slot->key = key;
    return slot;
  }

  void Refill(std::size_t size) {
    std::vector<Slot> former(size);
    former.swap(slots_);
    for (Slot& slot : former) {
      if (!slot.IsFree()) *FindSlot(slot.key) = std::move(slot);
    }
  }

  std::vector<Slot> slots_ = std::vector<Slot>(std::size_t{1} << kFirstBits);
  int shift_ = 64 - kFirstBits;
  std::uint64_t multiplier_ = 0x9E3779B97F4A7C15;  // odd
  std::size_t count_ = 0;
};

}  // namespace OstrelTransforms
