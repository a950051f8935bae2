#pragma once

#include <initializer_list>
#include <span>

#include "ostrelrtcore/engine/ElementSlot.h"

namespace ort::core::engine {

/// An input of a row-wise function: a column, or a scalar that counts for every row. Refers to the value,
/// which must outlive it.
class Operand {
 public:
  explicit Operand(Value const& value);

  /// The type of its rows.
  StoreType GetElementType() const noexcept { return elementType_; }
  StorageClass GetStorage() const noexcept { return storage_; }

  bool IsScalar() const noexcept { return column_ == nullptr; }
  /// The rows of a column; a scalar has none of its own.
  int GetCount() const noexcept { return column_ == nullptr ? 0 : column_->GetCount(); }
  bool HasSpecials() const noexcept { return uniformKind_ != SpecialKind::None || !specialRows_.empty(); }

  /// True when one element stands for all rows: a scalar, or a column of one repeated value.
  bool IsBroadcast() const noexcept { return isBroadcast_; }
  /// The first element; for a broadcast operand the only one. Not null.
  void const* GetElements() const noexcept { return elements_ != nullptr ? elements_ : slot_.GetAddress(); }

  /// The kind of all rows where they are special of one kind; the lists below are empty then.
  SpecialKind GetUniformKind() const noexcept { return uniformKind_; }
  /// The special rows in ascending order and their kinds.
  std::span<int const> GetSpecialRows() const noexcept { return specialRows_; }
  std::span<SpecialKind const> GetSpecialKinds() const noexcept { return specialKinds_; }
  /// Logarithmic in the number of special rows.
  SpecialKind GetKind(int row) const;

 private:
  StoreType elementType_;
  StorageClass storage_;
  bool isBroadcast_;
  SpecialKind uniformKind_;
  ColumnView const* column_ = nullptr;
  void const* elements_ = nullptr;
  std::span<int const> specialRows_;
  std::span<SpecialKind const> specialKinds_;
  ElementSlot slot_;
};

/// True for a value whose rows a row-wise function works on.
inline bool IsColumn(StoreValue const& value) {
  return value.GetStoreType() == StoreType::Array && !value.IsSpecial();
}

/// The type of a column's rows, and of a scalar.
inline StoreType GetRowType(StoreValue const& value) {
  return IsColumn(value) ? value.GetTypeInfo().GetElementType().GetStoreType() : value.GetStoreType();
}

/// The count of rows that all columns among the operands have; -1 when all are scalars. Throws 259.
int GetCommonCount(std::initializer_list<Operand const*> operands);

}  // namespace ort::core::engine
