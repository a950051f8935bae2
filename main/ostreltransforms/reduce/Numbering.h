#pragma once

#include "ostreltransforms/FlatTable.h"

namespace OstrelTransforms {

// Numbers different values 0, 1, 2, ... in the order of their first appearance.
template <class T>
class Numbering {
 public:
  int GetNumber(T const& value) {
    if (value == T{}) {
      if (defaultNumber_ < 0) defaultNumber_ = nextNumber_++;
      return defaultNumber_;
    }
    auto const [slot, isNew] = table_.FindOrAdd(value);
    if (isNew) slot->number = nextNumber_++;
    return slot->number;
  }

 private:
  struct Slot {
    T key;
    int number;
  };
  FlatTable<Slot> table_;
  int defaultNumber_ = -1;
  int nextNumber_ = 0;
};

}  // namespace OstrelTransforms
