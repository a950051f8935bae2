#pragma once

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "ostrelrtcore/StoreValue.h"

namespace ort::core {

namespace detail {
/// Pooled memory for `count` elements of a storage class; strings and values are constructed empty, all other
/// elements are uninitialised. Throws 55 for a negative count.
struct ORTCORE_API ColumnMemory {
  void* elements = nullptr;
  std::shared_ptr<void const> owner;
  static ColumnMemory Allocate(StorageClass storage, int count);
};
}  // namespace detail

/// Rows of a column to be: write GetValues(), name the special rows, then Finish() once.
template <class T>
class ColumnBuilder {
 public:
  /// Throws 55 when T is not of the element type's width or the count is negative.
  ColumnBuilder(StoreTypeInfo const& elementType, int count)
      : type_(elementType),
        count_(count),
        memory_(detail::ColumnMemory::Allocate(ElementTraits<T>::kStorage, count)) {
    if (GetStorageClass(elementType) != ElementTraits<T>::kStorage) {
      throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(elementType));
    }
  }

  /// The rows; uninitialised until written (strings and values start empty).
  std::span<T> GetValues() { return {static_cast<T*>(memory_.elements), static_cast<std::size_t>(count_)}; }

  /// Marks a row special; its slot is set to zero by Finish. Fastest in ascending order of rows.
  void SetSpecial(int row, SpecialKind kind) {
    specialRows_.push_back(row);
    specialKinds_.push_back(kind);
  }

  /// The column. The builder is empty afterwards, also when this throws 55 for a special row outside the
  /// column or, in a column of whole values, for an ordinary row without a value.
  std::shared_ptr<StoreValue> Finish();

 private:
  StoreTypeInfo type_;
  int count_;
  detail::ColumnMemory memory_;
  std::vector<int> specialRows_;
  std::vector<SpecialKind> specialKinds_;
};

namespace factory::detail {
/// A column over elements that `owner` keeps alive. Lists may be null, unsorted, doubled: see MakeArray.
ORTCORE_API std::shared_ptr<StoreValue> MakeColumn(StoreTypeInfo const& elementType, StorageClass storage,
                                                   void* elements, std::size_t count,
                                                   std::shared_ptr<void const> owner,
                                                   std::vector<int> const* specialRows,
                                                   std::vector<SpecialKind> const* specialKinds);
}  // namespace factory::detail

template <class T>
std::shared_ptr<StoreValue> ColumnBuilder<T>::Finish() {
  auto const count = static_cast<std::size_t>(std::exchange(count_, 0));
  auto memory = std::exchange(memory_, {});
  auto const rows = std::exchange(specialRows_, {});
  auto const kinds = std::exchange(specialKinds_, {});
  return factory::detail::MakeColumn(type_, ElementTraits<T>::kStorage, memory.elements, count,
                                     std::move(memory.owner), &rows, &kinds);
}

}  // namespace ort::core
