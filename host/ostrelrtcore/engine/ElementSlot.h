#pragma once

#include <utility>

#include "ostrelrtcore/Factory.h"

namespace ort::core::engine {

using Value = factory::Value;

/// Calls `visit.operator()<T>()` with the element type of a storage class.
template <class Visit>
decltype(auto) VisitStorage(StorageClass storage, Visit&& visit) {
  switch (storage) {
    case StorageClass::UInt8:
      return visit.template operator()<uint8>();
    case StorageClass::UInt32:
      return visit.template operator()<uint32>();
    case StorageClass::UInt64:
      return visit.template operator()<uint64>();
    case StorageClass::String:
      return visit.template operator()<RIndirectString>();
    case StorageClass::Value:
      break;
  }
  return visit.template operator()<Value>();
}

/// One element of a column in memory of its own: what a scalar is beside columns, and an accumulator.
class ElementSlot {
 public:
  /// The zero of a storage class: 0, the empty string, no value.
  explicit ElementSlot(StorageClass storage) noexcept : storage_(storage) {}
  /// The element that a scalar is; the zero for a special value.
  explicit ElementSlot(Value const& scalar);

  StorageClass GetStorage() const noexcept { return storage_; }
  void* GetAddress() noexcept { return const_cast<void*>(std::as_const(*this).GetAddress()); }
  void const* GetAddress() const noexcept;

  /// The element as a scalar of a type; a special value when the kind is not None.
  Value ToScalar(StoreType type, SpecialKind kind) const;

 private:
  StorageClass storage_;
  alignas(8) unsigned char bits_[8] = {};
  RIndirectString text_;
  Value value_;
};

}  // namespace ort::core::engine
