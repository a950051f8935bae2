#pragma once

#include "ostreltransforms/FlatTable.h"

namespace OstrelTransforms {

// Numbers different values 0, 1, 2, ... in the order of their first appearance.
template <class T>
class Numbering {
 public:
  int GetNumber(T const& value) {
    auto const [slot, isNew] = table_.FindOrAdd(value);
    if (isNew) slot->place = ++count_;
    return slot->place - 1;
  }

 private:
  struct Slot {
    T key{};
    int place = 0;  // the number plus 1; 0 in a free slot
    bool IsFree() const { return place == 0; }
  };
  FlatTable<Slot> table_;
  int count_ = 0;
};

}  // namespace OstrelTransforms
