#pragma once

#include <array>
#include <initializer_list>
#include <vector>

#include "ostrelrtcore/StoreType.h"

namespace ort::core {

/// The type of one input or output slot of a function: a main type and, for containers, the types of keys,
/// elements and indices. A column of doubles is (Array, Empty, Real64, Empty), a key set from strings to
/// doubles (KeySet, String, Real64, Empty).
class ORTCORE_API KeySegmentType {
 public:
  KeySegmentType() = default;
  KeySegmentType(StoreType type, bool flag) : components_{StoreTypeInfo(type, flag)} {}
  /// The type info of a column brings its element type.
  KeySegmentType(StoreTypeInfo const& type)
      : components_{StoreTypeInfo(type.GetStoreType(), type.GetFlag()), {}, type.GetElementType(), {}} {}
  KeySegmentType(StoreTypeInfo const& main, StoreTypeInfo const& key, StoreTypeInfo const& element,
                 StoreTypeInfo const& index)
      : components_{main, key, element, index} {}

  static std::vector<KeySegmentType> MakeVector(std::initializer_list<KeySegmentType> segments) {
    return segments;
  }

  StoreTypeInfo const& GetMainType() const { return components_[0]; }
  StoreTypeInfo const& GetKeyType() const { return components_[1]; }
  StoreTypeInfo const& GetElementType() const { return components_[2]; }
  StoreTypeInfo const& GetIndexType() const { return components_[3]; }

  /// The segment in words: "Real64", "Array of Int32", "KeySet of String to Real64".
  OStringCore ToString() const;

  /// All four components.
  friend bool operator==(KeySegmentType const& a, KeySegmentType const& b) = default;

 private:
  std::array<StoreTypeInfo, 4> components_;
};

/// Whether a call's segment suits a registered one: equal main types, and equal components except that an
/// empty component on either side matches any. A registered segment without a type takes any value.
ORTCORE_API bool Matches(KeySegmentType const& registered, KeySegmentType const& call);

}  // namespace ort::core
