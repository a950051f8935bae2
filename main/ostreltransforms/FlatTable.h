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

  // Where the key stands, or the free slot where it belongs.
  [[gnu::always_inline]] Slot* FindSlot(Key const& key) {
    // The high bits of the product depend on all bits of the hash, which for integers is the number itself.
    std::uint64_t const mixed = std::hash<Key>{}(key)*UINT64_C(0x9E3779B97F4A7C15);
    Slot* const slots = slots_.data();
    std::size_t const mask = slots_.size() - 1;
    std::size_t index = mixed >> shift_;
    while (slots[index].key != key && !slots[index].IsFree()) index = (index + 1) & mask;
    return slots + index;
  }

  [[gnu::noinline]] Slot* Add(Key const& key, Slot* slot) {
    if (2 * (count_ + 1) > slots_.size()) {
      Grow();
      slot = FindSlot(key);
    }
    ++count_;
    slot->key = key;
    return slot;
  }

  void Grow() {
    std::vector<Slot> former(2 * slots_.size());
    former.swap(slots_);
    --shift_;
    for (Slot& slot : former) {
      if (!slot.IsFree()) *FindSlot(slot.key) = std::move(slot);
    }
  }

  std::vector<Slot> slots_ = std::vector<Slot>(std::size_t{1} << kFirstBits);
  int shift_ = 64 - kFirstBits;
  std::size_t count_ = 0;
};

}  // namespace OstrelTransforms
