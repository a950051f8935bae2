#pragma once

#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "ostrelrtcore/ColumnBuilder.h"
#include "ostrelrtcore/StoreValue.h"

/// Every value is made here. Invalid arguments throw OrtRuntimeException with code 55.
namespace ort::core::factory {

using Value = std::shared_ptr<StoreValue>;
using NamedValues = std::unordered_map<OStringCore, Value>;

ORTCORE_API Value MakeBool(bool value);
ORTCORE_API Value MakeInt32(int value);
ORTCORE_API Value MakeInt64(int64 value);
ORTCORE_API Value MakeReal32(float value);
ORTCORE_API Value MakeReal64(double value);
ORTCORE_API Value MakeString(OStringCore const& value);
ORTCORE_API Value MakeString(RIndirectString const& value);
/// A value of type Date; the instant is kept as it is, with its time of day.
ORTCORE_API Value MakeDate(OrtDateTime value);
ORTCORE_API Value MakeDateTime(OrtDateTime value);
ORTCORE_API Value MakeColor(OrtColor value);

/// A special value of a type; kind None makes kind Missing.
ORTCORE_API Value MakeSpecial(StoreTypeInfo const& type, SpecialKind kind);

/// A column of values->size() rows that takes the vector as its storage. T is a storage element or a type
/// that lives in one (`bool` apart: use uint8), and must be of the element type's width. specialRows and
/// specialKinds are both null or of one length; they may be unsorted; of two entries for a row the later
/// holds; kind None is an ordinary row. The slot of a special row is set to zero, and Bool bytes to 0 or 1.
template <class T>
Value MakeArray(StoreTypeInfo const& elementType, std::unique_ptr<std::vector<T>> values,
                std::unique_ptr<std::vector<int>> specialRows = nullptr,
                std::unique_ptr<std::vector<SpecialKind>> specialKinds = nullptr);

/// A column of `count` equal rows in constant memory.
template <class T>
Value MakeConstantArray(StoreTypeInfo const& elementType, T const& value, int count);
/// A column of `count` rows that are all special of one kind, in constant memory.
template <class T>
Value MakeConstantArray(StoreTypeInfo const& elementType, int count, SpecialKind kind);

/// `count` rows in the runtime's pooled memory, to be written and then finished into a column.
template <class T>
ColumnBuilder<T> MakeColumnBuilder(StoreTypeInfo const& elementType, int count) {
  return ColumnBuilder<T>(elementType, count);
}

ORTCORE_API Value MakeTuple(std::vector<Value> members);
ORTCORE_API Value MakeTuple(std::unique_ptr<std::vector<Value>> members);

/// A table of named columns; a key map of named values. A null value throws.
ORTCORE_API Value MakeTable(NamedValues columns);
ORTCORE_API Value MakeTable(std::unique_ptr<NamedValues> columns);
ORTCORE_API Value MakeKeyMap(NamedValues members);
ORTCORE_API Value MakeKeyMap(std::unique_ptr<NamedValues> members);

/// A key set: keys in their storage class, payloads of V (uint64 or Value); `indexType` is the type of the
/// payload's slot. specialEntries may be null. Keys that are whole values compare by value; all others, reals
/// too, by their bits.
template <class K, class V>
ORTCORE_API Value MakeKeySet(StoreTypeInfo const& keyType, StoreTypeInfo const& valueType,
                             StoreTypeInfo const& indexType,
                             std::unique_ptr<std::unordered_map<K, V>> entries,
                             std::unique_ptr<std::unordered_map<SpecialKind, V>> specialEntries);

/// `count` rows from `first` on of a column without special rows, as a column that shares its storage. Throws
/// 55 for rows that the column does not have.
ORTCORE_API Value MakeSlice(Value const& column, int first, int count);

/// A key set of 32-bit keys to slices of one column, which are made when they are looked up or listed: the
/// payload of keys[i] are the column's rows from starts[i] up to the next start or the column's end. The keys
/// ascend by the order of their type, the starts too. specialEntries may be null.
ORTCORE_API Value MakeKeySetOfSlices(StoreTypeInfo const& keyType, std::vector<uint32> const& keys,
                                     std::vector<int> starts, Value const& column,
                                     std::unique_ptr<std::unordered_map<SpecialKind, Value>> specialEntries);

namespace detail {
ORTCORE_API Value MakeConstantColumn(StoreTypeInfo const& elementType, StorageClass storage,
                                     void const* element, std::shared_ptr<void const> owner, int count,
                                     SpecialKind kind);
}  // namespace detail

template <class T>
Value MakeArray(StoreTypeInfo const& elementType, std::unique_ptr<std::vector<T>> values,
                std::unique_ptr<std::vector<int>> specialRows,
                std::unique_ptr<std::vector<SpecialKind>> specialKinds) {
  static_assert(!std::is_same_v<T, bool>, "Bool columns are made from uint8 bytes");
  if (values == nullptr) values = std::make_unique<std::vector<T>>();
  std::shared_ptr<std::vector<T>> owner = std::move(values);
  return detail::MakeColumn(elementType, ElementTraits<T>::kStorage, owner->data(), owner->size(), owner,
                            specialRows.get(), specialKinds.get());
}

template <class T>
Value MakeConstantArray(StoreTypeInfo const& elementType, T const& value, int count) {
  auto owner = std::make_shared<T>(value);
  if constexpr (std::is_same_v<T, uint8>) *owner = value != 0 ? 1 : 0;
  return detail::MakeConstantColumn(elementType, ElementTraits<T>::kStorage, owner.get(), owner, count,
                                    SpecialKind::None);
}

template <class T>
Value MakeConstantArray(StoreTypeInfo const& elementType, int count, SpecialKind kind) {
  auto owner = std::make_shared<T>();
  return detail::MakeConstantColumn(elementType, ElementTraits<T>::kStorage, owner.get(), owner, count,
                                    kind == SpecialKind::None ? SpecialKind::Missing : kind);
}

}  // namespace ort::core::factory
