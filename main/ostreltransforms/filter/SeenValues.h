#pragma once

#include <utility>

#include "ostreltransforms/FlatTable.h"

namespace OstrelTransforms {

// A set that only grows.
template <class T>
class SeenValues {
 public:
  // True when the value had not been inserted before.
  bool Insert(T const& value) {
    if (value == T{}) return !std::exchange(hasDefault_, true);
    return table_.FindOrAdd(value).second;
  }

 private:
  // The default value marks a free slot and is held apart.
  struct Slot {
    T key{};
    bool IsFree() const { return key == T{}; }
  };
  FlatTable<Slot> table_;
  bool hasDefault_ = false;
};

}  // namespace OstrelTransforms
