#pragma once

#include <bit>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "ostrelrtcore/StorageClass.h"

namespace ort::core {

namespace detail {
/// Keys that are whole values hash and compare by value, all others by their bits or address.
ORTCORE_API std::size_t HashValueKey(StoreValue const* key) noexcept;
ORTCORE_API bool EqualValueKeys(StoreValue const* a, StoreValue const* b);

inline std::size_t HashKey(uint64 key) noexcept {
  key *= 0x9E3779B97F4A7C15ull;
  return static_cast<std::size_t>(key ^ (key >> 32));
}
inline std::size_t HashKey(uint32 key) noexcept { return HashKey(uint64{key}); }
inline std::size_t HashKey(uint8 key) noexcept { return key; }
inline std::size_t HashKey(RIndirectString const& key) noexcept { return std::hash<RIndirectString>{}(key); }
inline std::size_t HashKey(std::shared_ptr<StoreValue> const& key) noexcept {
  return HashValueKey(key.get());
}

template <class K>
bool EqualKeys(K const& a, K const& b) {
  if constexpr (std::is_same_v<K, std::shared_ptr<StoreValue>>) {
    return EqualValueKeys(a.get(), b.get());
  } else {
    return a == b;
  }
}
}  // namespace detail

/// The types of a key set's parts; `indexType` is the type of the payload's slot.
struct KeySetTypes {
  StoreTypeInfo keyType;
  StoreTypeInfo valueType;
  StoreTypeInfo indexType;
};

/// Makes a dictionary's payloads when they are asked for, by their position in its listing; the same position
/// gives equal payloads each time. Safe from many threads.
template <class V>
class IPayloadSource {
 public:
  virtual ~IPayloadSource() = default;
  virtual V MakePayload(std::size_t position) const = 0;
};

/// A key set or key map read as a mapping from a key, in its storage class, to a payload. Special keys are
/// held apart by their kind. Immutable; look-ups are constant time and safe from many threads.
template <class K, class V>
class ORTCORE_API IStoreDictionary {
 public:
  using Entries = std::unordered_map<K, V>;
  using SpecialEntries = std::unordered_map<SpecialKind, V>;
  using Listing = std::vector<std::pair<K, V>>;
  using SpecialListing = std::vector<std::pair<SpecialKind, V>>;

  IStoreDictionary(KeySetTypes const& types, Entries entries, SpecialEntries specials);
  /// Keys that ascend, without doubles, and what makes their payloads.
  IStoreDictionary(std::vector<K> const& keys, std::unique_ptr<IPayloadSource<V> const> source,
                   SpecialEntries specials);
  ~IStoreDictionary();
  IStoreDictionary(IStoreDictionary&&) noexcept;

  /// The number of ordinary keys.
  int GetCount() const noexcept { return static_cast<int>(entries_.size()); }

  /// The payload of a key; 0 or null when the key is absent.
  V Lookup(K const& key) const {
    for (std::size_t slot = detail::HashKey(key) & mask_;; slot = (slot + 1) & mask_) {
      uint32 const index = slots_[slot];
      if (index == 0) return V{};
      if (!detail::EqualKeys(entries_[index - 1].first, key)) continue;
      return deferred_ == nullptr ? entries_[index - 1].second : MakePayload(index - 1);
    }
  }

  /// The payload of a special key; 0 or null when the kind has no entry.
  V LookupSpecial(SpecialKind kind) const;

  /// All entries by ascending key (by the order of the key's type), and the special ones by ascending kind.
  /// Payloads that come from a source are made here, once; looked up before, they are made each time.
  Listing const& GetEntries() const {
    if (deferred_ != nullptr) ListPayloads();
    return entries_;
  }
  SpecialListing const& GetSpecialEntries() const noexcept { return specials_; }

 private:
  struct Deferred;

  void SetSpecials(SpecialEntries const& specials);
  void IndexKeys();
  V MakePayload(std::size_t position) const;
  void ListPayloads() const;

  Listing mutable entries_;  // without payloads until these are listed, when they are deferred
  std::unique_ptr<Deferred> deferred_;
  SpecialListing specials_;
  std::vector<uint32> slots_;  // open addressing; position in entries_ plus one, 0 for a free slot
  std::size_t mask_ = 0;
};

}  // namespace ort::core
