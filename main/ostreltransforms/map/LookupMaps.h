#pragma once

#include <bit>
#include <utility>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {

// The element of a column at an index; zero for an index outside it.
template <class T>
class ArrayLookUpFunctor {
 public:
  explicit ArrayLookUpFunctor(Value column) : column_(std::move(column)) {}
  T Apply(int index) const { return column_.GetOrZero(index); }

 private:
  ColumnParameter<T> column_;
};

template <class Index, class T>
class MapRangeIndicesFunctor {
 public:
  explicit MapRangeIndicesFunctor(Value indices) : indices_(std::move(indices)) {}
  T Apply(Index index) const { return indices_.GetOrZero(index); }

 private:
  ColumnParameter<T> indices_;
};

namespace detail {

// Throws 55 for anything but a key set, and 72 when its keys or payloads are of other types.
void RequireKeySetOf(ort::core::StoreType keyType, ort::core::StoreType payloadType, Value const& keySet);

// A key in its storage class.
inline ort::core::uint8 StoreKey(bool key) { return key ? 1 : 0; }
inline ort::core::uint64 StoreKey(ort::core::int64 key) { return static_cast<ort::core::uint64>(key); }
inline ort::core::uint64 StoreKey(double key) { return std::bit_cast<ort::core::uint64>(key); }
inline ort::core::uint64 StoreKey(ort::core::OrtDateTime key) { return key.GetValue(); }
inline ort::core::RIndirectString const& StoreKey(ort::core::RIndirectString const& key) { return key; }
inline Value const& StoreKey(Value const& key) { return key; }

template <class K>
inline constexpr ort::core::StoreType kKeyType = ort::core::ElementTraits<K>::kStoreType;
template <>
inline constexpr ort::core::StoreType kKeyType<Value> = ort::core::StoreType::Tuple;

}  // namespace detail

// The payload of a row's key, and of a special row's kind, in a key set; a key without an entry gives zero.
// Every row of the result is an ordinary one.
template <class K, class V, ort::core::StoreType keyType = detail::kKeyType<K>>
class KeySetLookupFunctor {
  using Argument = std::conditional_t<std::is_trivially_copyable_v<K>, K, K const&>;
  using StoredKey = std::remove_cvref_t<decltype(detail::StoreKey(std::declval<K const&>()))>;

 public:
  explicit KeySetLookupFunctor(Value keySet) : keySet_(std::move(keySet)) {
    detail::RequireKeySetOf(keyType, ort::core::ElementTraits<V>::kStoreType, keySet_);
    dictionary_ = &keySet_->AsDictionary<StoredKey, ort::core::uint64>();
  }

  std::pair<V, ort::core::SpecialKind> Apply(Argument key, ort::core::SpecialKind kind) const {
    ort::core::uint64 const payload = kind == ort::core::SpecialKind::None
                                          ? dictionary_->Lookup(detail::StoreKey(key))
                                          : dictionary_->LookupSpecial(kind);
    return {std::bit_cast<V>(payload), ort::core::SpecialKind::None};
  }

 private:
  Value keySet_;
  ort::core::IStoreDictionary<StoredKey, ort::core::uint64> const* dictionary_;
};

// Numbers are looked up by their bits in a key set of Int64, so that 0 and -0 are two keys.
template <class V>
using Real64KeySetLookupFunctor = KeySetLookupFunctor<double, V, ort::core::StoreType::Int64>;

}  // namespace OstrelTransforms
