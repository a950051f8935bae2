#include "ostreltransforms/when/CellComparison.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

template <class T>
bool Equal(T const& a, T const& b) {
  if constexpr (std::is_floating_point_v<T>) {
    return a == b || (a != a && b != b);
  } else if constexpr (std::is_same_v<T, Value>) {
    return a == b || (a != nullptr && b != nullptr && a->Equals(*b));
  } else {
    return a == b;
  }
}

template <class T>
bool EqualElements(void const* elements, int a, int b) {
  auto const* const column = static_cast<T const*>(elements);
  return Equal(column[a], column[b]);
}

}  // namespace

CellComparison::CellComparison(StoreValue const& column)
    : view_(&column.AsColumn()),
      equalSlots_(ChooseEqualSlots(column.GetTypeInfo().GetElementType(), view_->GetStorage())),
      elements_(view_->GetFirstElement()) {}

CellComparison::EqualSlots CellComparison::ChooseEqualSlots(StoreType elementType, StorageClass storage) {
  if (elementType == StoreType::Real32) return EqualElements<float>;
  if (elementType == StoreType::Real64) return EqualElements<double>;
  switch (storage) {
    case StorageClass::UInt8:
      return EqualElements<uint8>;
    case StorageClass::UInt32:
      return EqualElements<uint32>;
    case StorageClass::UInt64:
      return EqualElements<uint64>;
    case StorageClass::String:
      return EqualElements<RIndirectString>;
    case StorageClass::Value:
      break;
  }
  return EqualElements<Value>;
}

}  // namespace OstrelTransforms
