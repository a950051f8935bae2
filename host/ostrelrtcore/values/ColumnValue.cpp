#include "ostrelrtcore/values/ColumnValue.h"

#include <algorithm>

#include "ostrelrtcore/values/ReleaseQueue.h"
#include "ostrelrtcore/values/ScalarValue.h"
#include "ostrelsys/StringHash.h"

namespace ort::core {
namespace {

// The elements of a column one by one, whatever its storage; numbers by the bits under which they are equal.
class ElementReader {
 public:
  explicit ElementReader(StoreValue const& value)
      : type_(value.GetTypeInfo().GetElementType()),
        column_(value.AsColumn()),
        first_(column_.GetFirstElement()) {}

  bool IsEqualAt(ElementReader const& other, std::size_t row) const {
    if (column_.GetStorage() == StorageClass::Value) {
      auto const& a = At<std::shared_ptr<StoreValue>>(row);
      auto const& b = other.At<std::shared_ptr<StoreValue>>(row);
      return a == b || (a != nullptr && b != nullptr && a->Equals(*b));
    }
    if (column_.GetStorage() == StorageClass::String) {
      return At<RIndirectString>(row) == other.At<RIndirectString>(row);
    }
    return BitsAt(row) == other.BitsAt(row);
  }

  uint64 HashAt(std::size_t row) const {
    switch (column_.GetStorage()) {
      case StorageClass::Value: {
        auto const& value = At<std::shared_ptr<StoreValue>>(row);
        return value == nullptr ? 0 : value->GetHash();
      }
      case StorageClass::String:
        return At<RIndirectString>(row).GetHash();
      default:
        return BitsAt(row);
    }
  }

 private:
  template <class T>
  T const& At(std::size_t row) const {
    return static_cast<T const*>(first_)[column_.IsConstant() ? 0 : row];
  }

  uint64 BitsAt(std::size_t row) const {
    switch (column_.GetStorage()) {
      case StorageClass::UInt8:
        return At<uint8>(row);
      case StorageClass::UInt32:
        return GetCanonicalBits(type_, At<uint32>(row));
      default:
        return GetCanonicalBits(type_, At<uint64>(row));
    }
  }

  StoreType type_;
  ColumnView const& column_;
  void const* first_;
};

}  // namespace

ColumnValue::~ColumnValue() {
  if (view_.GetStorage() != StorageClass::Value) return;
  auto owners = view_.TakeOwners();
  ReleaseWithoutRecursion(std::move(owners.elements));
  ReleaseWithoutRecursion(std::move(owners.repeatedElements));
}

bool ColumnValue::Equals(StoreValue const& other) const {
  if (other.GetStoreType() != StoreType::Array || other.IsSpecial()) return false;
  auto const elementType = GetTypeInfo().GetElementType();
  if (other.GetTypeInfo().GetElementType() != elementType) return false;
  auto const& column = other.AsColumn();
  if (column.GetCount() != view_.GetCount()) return false;
  // A constant column is not spelled out to be compared with another one.
  bool const isConstant = column.IsConstant() && view_.IsConstant();
  if (isConstant && column.GetUniformSpecialKind() != view_.GetUniformSpecialKind()) return false;
  if (!isConstant && !std::ranges::equal(column.GetSpecialRows(), view_.GetSpecialRows())) return false;
  if (!isConstant && !std::ranges::equal(column.GetSpecialKinds(), view_.GetSpecialKinds())) return false;
  ElementReader const a(*this);
  ElementReader const b(other);
  auto const count = static_cast<std::size_t>(isConstant ? std::min(view_.GetCount(), 1) : view_.GetCount());
  for (std::size_t row = 0; row < count; ++row) {
    if (!a.IsEqualAt(b, row)) return false;
  }
  return true;
}

std::shared_ptr<StoreValue> ColumnValue::Clone() const {
  return std::make_shared<ColumnValue>(GetTypeInfo().GetElementType(), view_.GetContent());
}

std::size_t ColumnValue::GetHash() const {
  auto const count = static_cast<std::size_t>(view_.GetCount());
  uint64 hash = StringHash::Mix(count ^ 0x9E3779B97F4A7C15ull,
                                static_cast<uint64>(GetTypeInfo().GetElementType().GetStoreType()) + 1);
  ElementReader const reader(*this);
  for (std::size_t row = 0; row < count; ++row) {
    hash = StringHash::Mix(hash ^ reader.HashAt(row), 0xD1B54A32D192ED03ull);
  }
  return hash;
}

}  // namespace ort::core
