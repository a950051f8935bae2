#pragma once

#include <memory>
#include <span>

#include "ostrelrtcore/Factory.h"

namespace ort::core::factory {

namespace detail {
ORTCORE_API Value MakeSpanColumn(StoreTypeInfo const& elementType, StorageClass storage, void const* elements,
                                 std::size_t count, std::shared_ptr<void const> owner);
}  // namespace detail

/// A column of values.size() ordinary rows that stand where they are: nothing is copied and nothing written.
/// T is a number, `bool`, OrtColor or OrtDateTime, of the element type's width.
///
/// The memory must stay as it is while the column or a result that shares its storage lives. With an `owner`
/// it does so by itself, since the column and such results hold on to it. Without one the caller keeps the
/// memory, and a result may be the column itself, or share its rows: its life ends before the memory's.
///
/// Throws 55 for a type of another width and for more than 2^31-1 rows.
template <class T>
Value MakeSpanColumn(StoreTypeInfo const& elementType, std::span<T const> values,
                     std::shared_ptr<void const> owner = nullptr) {
  static_assert(std::is_trivially_copyable_v<T> && !std::is_same_v<T, uint8>,
                "a span of texts, values or bytes has to be copied and checked: use MakeArray");
  return detail::MakeSpanColumn(elementType, ElementTraits<T>::kStorage, values.data(), values.size(),
                                std::move(owner));
}

/// The same with the type that T stands for: Int32 for `int`, DateTime for OrtDateTime, Bool for `bool`.
template <class T>
Value MakeSpanColumn(std::span<T const> values, std::shared_ptr<void const> owner = nullptr) {
  static_assert(ElementTraits<T>::kStoreType != StoreType::Empty, "name the type of bare elements");
  return MakeSpanColumn<T>({ElementTraits<T>::kStoreType, false}, values, std::move(owner));
}

}  // namespace ort::core::factory
