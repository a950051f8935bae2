#include "ostrelrtcore/Factory.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <numeric>

#include "ostrelrtcore/BufferPool.h"
#include "ostrelrtcore/values/ColumnValue.h"
#include "ostrelrtcore/values/ContainerValue.h"
#include "ostrelrtcore/values/ScalarValue.h"
#include "ostrelrtcore/values/ValueOrder.h"

namespace ort::core::factory {
namespace {

Value MakeScalar(StoreTypeInfo const& type, uint64 bits) { return std::make_shared<ScalarValue>(type, bits); }

[[noreturn]] void ThrowInvalid(wchar_t const* what) {
  throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(what));
}

struct SpecialRows {
  std::vector<int> rows;
  std::vector<SpecialKind> kinds;
};

// Sorted by row, the later entry of a row, ordinary kinds left out.
SpecialRows NormaliseSpecials(std::vector<int> const& rows, std::vector<SpecialKind> const& kinds,
                              std::size_t count) {
  if (rows.size() != kinds.size()) ThrowInvalid(L"special rows and kinds of unequal length");
  for (int const row : rows) {
    if (row < 0 || static_cast<std::size_t>(row) >= count) ThrowInvalid(L"a special row outside the column");
  }
  bool const isPlain = std::ranges::adjacent_find(rows, std::greater_equal<>()) == rows.end() &&
                       std::ranges::find(kinds, SpecialKind::None) == kinds.end();
  if (isPlain) return {rows, kinds};

  std::vector<std::size_t> order(rows.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return rows[i]; });
  SpecialRows result;
  for (std::size_t i = 0; i < order.size(); ++i) {
    bool const isOverruled = i + 1 < order.size() && rows[order[i + 1]] == rows[order[i]];
    if (isOverruled || kinds[order[i]] == SpecialKind::None) continue;
    result.rows.push_back(rows[order[i]]);
    result.kinds.push_back(kinds[order[i]]);
  }
  return result;
}

template <class T>
void ClearRows(void* elements, std::vector<int> const& rows) {
  for (int const row : rows) static_cast<T*>(elements)[row] = T{};
}

void ClearRows(StorageClass storage, void* elements, std::vector<int> const& rows) {
  switch (storage) {
    case StorageClass::UInt8:
      return ClearRows<uint8>(elements, rows);
    case StorageClass::UInt32:
      return ClearRows<uint32>(elements, rows);
    case StorageClass::UInt64:
      return ClearRows<uint64>(elements, rows);
    case StorageClass::String:
      return ClearRows<RIndirectString>(elements, rows);
    case StorageClass::Value:
      return ClearRows<Value>(elements, rows);
  }
}

// Truth values are read as `bool`, which no other byte may be.
void NormaliseTruth(uint8* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) bytes[i] = bytes[i] != 0 ? 1 : 0;
}

// Every row but a special one has a value.
void RequireValues(Value const* values, std::size_t count, std::vector<int> const& specialRows) {
  auto special = specialRows.begin();
  for (std::size_t i = 0; i < count; ++i) {
    if (special != specialRows.end() && static_cast<std::size_t>(*special) == i) {
      ++special;
    } else if (values[i] == nullptr) {
      ThrowInvalid(L"a row of a column holds no value");
    }
  }
}

void RequireStorage(StoreTypeInfo const& elementType, StorageClass storage) {
  StoreType const type = elementType.GetStoreType();
  if (type == StoreType::Empty || type > StoreType::Table || GetStorageClass(type) != storage) {
    throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"a column of ") +
                                                           StoreTypeToString(type) +
                                                           OStringCore(L" in elements of another width"));
  }
}

// The payloads of a key set of slices.
class SliceSource final : public IPayloadSource<Value> {
 public:
  // `starts` ends with the end of the last slice.
  SliceSource(Value column, std::vector<int> starts)
      : column_(std::move(column)), starts_(std::move(starts)) {}

  Value MakePayload(std::size_t position) const override {
    return MakeSlice(column_, starts_[position], starts_[position + 1] - starts_[position]);
  }

 private:
  Value column_;
  std::vector<int> starts_;
};

std::unique_ptr<NamedValues> RequireMembers(std::unique_ptr<NamedValues> values) {
  if (values == nullptr) ThrowInvalid(L"no members");
  return values;
}

}  // namespace

Value MakeBool(bool value) { return MakeScalar(StoreTypeInfo::Bool, value ? 1 : 0); }
Value MakeInt32(int value) { return MakeScalar(StoreTypeInfo::Int32, static_cast<uint32>(value)); }
Value MakeInt64(int64 value) { return MakeScalar(StoreTypeInfo::Int64, static_cast<uint64>(value)); }
Value MakeReal32(float value) { return MakeScalar(StoreTypeInfo::Real32, std::bit_cast<uint32>(value)); }
Value MakeReal64(double value) { return MakeScalar(StoreTypeInfo::Real64, std::bit_cast<uint64>(value)); }
Value MakeString(OStringCore const& value) { return MakeString(RIndirectString(value)); }
Value MakeString(RIndirectString const& value) { return std::make_shared<StringValue>(value); }
Value MakeDate(OrtDateTime value) { return MakeScalar(StoreTypeInfo::Date, value.GetValue()); }
Value MakeDateTime(OrtDateTime value) { return MakeScalar(StoreTypeInfo::DateTime, value.GetValue()); }
Value MakeColor(OrtColor value) {
  return MakeScalar(StoreTypeInfo::Color, static_cast<uint32>(value.GetValue()));
}

Value MakeSpecial(StoreTypeInfo const& type, SpecialKind kind) {
  return std::make_shared<ScalarValue>(type, 0, kind == SpecialKind::None ? SpecialKind::Missing : kind);
}

Value MakeTuple(std::vector<Value> members) {
  if (std::ranges::find(members, nullptr) != members.end()) ThrowInvalid(L"a member of a tuple is no value");
  return std::make_shared<TupleValue>(std::make_shared<std::vector<Value> const>(std::move(members)));
}

Value MakeTuple(std::unique_ptr<std::vector<Value>> members) {
  if (members == nullptr) ThrowInvalid(L"no members");
  return MakeTuple(std::move(*members));
}

Value MakeTable(NamedValues columns) { return NamedValue::Make(StoreTypeInfo::Table, columns); }
Value MakeTable(std::unique_ptr<NamedValues> columns) {
  return MakeTable(*RequireMembers(std::move(columns)));
}
Value MakeKeyMap(NamedValues members) { return NamedValue::Make(StoreTypeInfo::KeyMap, members); }
Value MakeKeyMap(std::unique_ptr<NamedValues> members) {
  return MakeKeyMap(*RequireMembers(std::move(members)));
}

template <class K, class V>
Value MakeKeySet(StoreTypeInfo const& keyType, StoreTypeInfo const& valueType, StoreTypeInfo const& indexType,
                 std::unique_ptr<std::unordered_map<K, V>> entries,
                 std::unique_ptr<std::unordered_map<SpecialKind, V>> specialEntries) {
  if (GetStorageClass(keyType) != ElementTraits<K>::kStorage)
    ThrowInvalid(L"keys of another width than their type");
  if constexpr (std::is_same_v<V, Value>) {
    auto const isNull = [](auto const& entry) { return entry.second == nullptr; };
    if ((entries != nullptr && std::ranges::any_of(*entries, isNull)) ||
        (specialEntries != nullptr && std::ranges::any_of(*specialEntries, isNull))) {
      ThrowInvalid(L"a payload of a key set is no value");
    }
  }
  KeySetTypes const types{keyType, valueType, indexType};
  using Dictionary = IStoreDictionary<K, V>;
  auto dictionary = std::make_shared<Dictionary const>(
      types, entries ? std::move(*entries) : typename Dictionary::Entries(),
      specialEntries ? std::move(*specialEntries) : typename Dictionary::SpecialEntries());
  return std::make_shared<KeySetValue<K, V>>(types, std::move(dictionary));
}

#define ORT_INSTANTIATE_KEY_SET(K, V)                                                               \
  template Value MakeKeySet<K, V>(StoreTypeInfo const&, StoreTypeInfo const&, StoreTypeInfo const&, \
                                  std::unique_ptr<std::unordered_map<K, V>>,                        \
                                  std::unique_ptr<std::unordered_map<SpecialKind, V>>);
ORT_INSTANTIATE_KEY_SET(uint8, uint64)
ORT_INSTANTIATE_KEY_SET(uint32, uint64)
ORT_INSTANTIATE_KEY_SET(uint64, uint64)
ORT_INSTANTIATE_KEY_SET(RIndirectString, uint64)
ORT_INSTANTIATE_KEY_SET(Value, uint64)
ORT_INSTANTIATE_KEY_SET(uint8, Value)
ORT_INSTANTIATE_KEY_SET(uint32, Value)
ORT_INSTANTIATE_KEY_SET(uint64, Value)
ORT_INSTANTIATE_KEY_SET(RIndirectString, Value)
ORT_INSTANTIATE_KEY_SET(Value, Value)
#undef ORT_INSTANTIATE_KEY_SET

Value MakeSlice(Value const& column, int first, int count) {
  if (column == nullptr) ThrowInvalid(L"no column");
  ColumnView const& view = column->AsColumn();
  if (view.HasSpecials()) ThrowInvalid(L"a slice of a column with special rows");
  if (first < 0 || count < 0 || count > view.GetCount() - first) {
    ThrowInvalid(L"a slice of rows that the column does not have");
  }
  void const* element = view.GetFirstElement();
  if (!view.IsConstant()) {
    element = static_cast<std::byte const*>(element) +
              static_cast<std::size_t>(first) * GetElementSize(view.GetStorage());
  }
  return std::make_shared<ColumnValue>(
      column->GetTypeInfo().GetElementType(),
      ColumnView::Content{
          view.GetStorage(), count, view.IsConstant(), SpecialKind::None, element, column, {}, {}});
}

Value MakeKeySetOfSlices(StoreTypeInfo const& keyType, std::vector<uint32> const& keys,
                         std::vector<int> starts, Value const& column,
                         std::unique_ptr<std::unordered_map<SpecialKind, Value>> specialEntries) {
  if (GetStorageClass(keyType) != StorageClass::UInt32)
    ThrowInvalid(L"keys of another width than their type");
  if (starts.size() != keys.size()) ThrowInvalid(L"keys and slices of unequal number");
  auto const isOrdered = [&](uint32 a, uint32 b) { return CompareForListing(keyType, a, b) < 0; };
  if (std::ranges::adjacent_find(keys, std::not_fn(isOrdered)) != keys.end()) {
    ThrowInvalid(L"keys that do not ascend");
  }
  if (column == nullptr) ThrowInvalid(L"no column");
  starts.push_back(column->AsColumn().GetCount());
  if (starts.front() < 0 || !std::ranges::is_sorted(starts) || column->AsColumn().HasSpecials()) {
    ThrowInvalid(L"slices that the column does not have");
  }
  KeySetTypes const types{keyType, StoreTypeInfo::Array, StoreTypeInfo::Array};
  using Dictionary = IStoreDictionary<uint32, Value>;
  auto dictionary = std::make_shared<Dictionary const>(
      keys, std::make_unique<SliceSource>(column, std::move(starts)),
      specialEntries ? std::move(*specialEntries) : Dictionary::SpecialEntries());
  return std::make_shared<KeySetValue<uint32, Value>>(types, std::move(dictionary));
}

namespace detail {

Value MakeColumn(StoreTypeInfo const& elementType, StorageClass storage, void* elements, std::size_t count,
                 std::shared_ptr<void const> owner, std::vector<int> const* specialRows,
                 std::vector<SpecialKind> const* specialKinds) {
  RequireStorage(elementType, storage);
  if (count > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    ThrowInvalid(L"a column of too many rows");
  if ((specialRows == nullptr) != (specialKinds == nullptr)) {
    ThrowInvalid(L"special rows and kinds of unequal length");
  }
  SpecialRows specials;
  if (specialRows != nullptr && !(specialRows->empty() && specialKinds->empty())) {
    specials = NormaliseSpecials(*specialRows, *specialKinds, count);
    ClearRows(storage, elements, specials.rows);
  }
  if (storage == StorageClass::UInt8) NormaliseTruth(static_cast<uint8*>(elements), count);
  if (storage == StorageClass::Value)
    RequireValues(static_cast<Value const*>(elements), count, specials.rows);
  return std::make_shared<ColumnValue>(
      elementType,
      ColumnView::Content{storage, static_cast<int>(count), false, SpecialKind::None, elements,
                          std::move(owner), std::move(specials.rows), std::move(specials.kinds)});
}

Value MakeConstantColumn(StoreTypeInfo const& elementType, StorageClass storage, void const* element,
                         std::shared_ptr<void const> owner, int count, SpecialKind kind) {
  RequireStorage(elementType, storage);
  if (count < 0) ThrowInvalid(L"a column of a negative count");
  if (storage == StorageClass::Value && kind == SpecialKind::None && count > 0) {
    RequireValues(static_cast<Value const*>(element), 1, {});
  }
  return std::make_shared<ColumnValue>(
      elementType,
      ColumnView::Content{
          storage, count, true, count > 0 ? kind : SpecialKind::None, element, std::move(owner), {}, {}});
}

}  // namespace detail
}  // namespace ort::core::factory

namespace ort::core::detail {
namespace {

template <class T>
ColumnMemory AllocateElements(std::size_t count) {
  auto elements = std::make_shared<std::vector<T>>(count);
  void* const first = elements->data();
  return {first, std::move(elements)};
}

}  // namespace

ColumnMemory ColumnMemory::Allocate(StorageClass storage, int count) {
  if (count < 0) factory::ThrowInvalid(L"a column of a negative count");
  auto const rows = static_cast<std::size_t>(count);
  if (storage == StorageClass::String) return AllocateElements<RIndirectString>(rows);
  if (storage == StorageClass::Value) return AllocateElements<std::shared_ptr<StoreValue>>(rows);
  auto buffer = std::make_shared<PooledBuffer>(rows * GetElementSize(storage));
  void* const first = buffer->data();
  return {first, std::move(buffer)};
}

}  // namespace ort::core::detail
