#include "ostrelrtcore/StoreDictionary.h"

#include <algorithm>
#include <atomic>
#include <mutex>

#include "ostrelrtcore/StoreValue.h"
#include "ostrelrtcore/values/ValueOrder.h"

namespace ort::core {

namespace detail {

std::size_t HashValueKey(StoreValue const* key) noexcept { return key == nullptr ? 0 : key->GetHash(); }

bool EqualValueKeys(StoreValue const* a, StoreValue const* b) {
  return a == b || (a != nullptr && b != nullptr && a->Equals(*b));
}

}  // namespace detail

namespace {

template <class K>
int CompareKeys(StoreType keyType, K const& a, K const& b) {
  if constexpr (std::is_same_v<K, std::shared_ptr<StoreValue>>) {
    return CompareForListing(*a, *b);
  } else if constexpr (std::is_same_v<K, RIndirectString>) {
    return a.Get().compare(b.Get());
  } else {
    return CompareForListing(keyType, a, b);
  }
}

// Of keys that are equal by value one stays.
template <class Listing>
void DropEqualKeys(Listing& entries) {
  auto const isEqual = [](auto const& a, auto const& b) { return detail::EqualKeys(a.first, b.first); };
  entries.erase(std::unique(entries.begin(), entries.end(), isEqual), entries.end());
}

}  // namespace

template <class K, class V>
struct IStoreDictionary<K, V>::Deferred {
  std::unique_ptr<IPayloadSource<V> const> source;
  std::mutex mutex;
  std::atomic<bool> isListed{false};
};

template <class K, class V>
IStoreDictionary<K, V>::~IStoreDictionary() = default;
template <class K, class V>
IStoreDictionary<K, V>::IStoreDictionary(IStoreDictionary&&) noexcept = default;

template <class K, class V>
IStoreDictionary<K, V>::IStoreDictionary(KeySetTypes const& types, Entries entries, SpecialEntries specials) {
  if constexpr (std::is_same_v<K, std::shared_ptr<StoreValue>>) {
    for (auto const& [key, payload] : entries) {
      if (key == nullptr)
        throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"a key that is no value"));
    }
  }
  entries_.assign(std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end()));
  StoreType const keyType = types.keyType.GetStoreType();
  std::ranges::sort(entries_, [keyType](auto const& a, auto const& b) {
    return CompareKeys(keyType, a.first, b.first) < 0;
  });
  DropEqualKeys(entries_);
  SetSpecials(specials);
  IndexKeys();
}

template <class K, class V>
IStoreDictionary<K, V>::IStoreDictionary(std::vector<K> const& keys,
                                         std::unique_ptr<IPayloadSource<V> const> source,
                                         SpecialEntries specials)
    : deferred_(std::make_unique<Deferred>()) {
  deferred_->source = std::move(source);
  entries_.reserve(keys.size());
  for (K const& key : keys) entries_.emplace_back(key, V{});
  SetSpecials(specials);
  IndexKeys();
}

template <class K, class V>
void IStoreDictionary<K, V>::SetSpecials(SpecialEntries const& specials) {
  specials_.assign(specials.begin(), specials.end());
  std::ranges::sort(specials_, {}, &std::pair<SpecialKind, V>::first);
}

template <class K, class V>
void IStoreDictionary<K, V>::IndexKeys() {
  std::size_t const slotCount = std::bit_ceil(entries_.size() * 2 + 1);
  mask_ = slotCount - 1;
  slots_.assign(slotCount, 0);
  // How many keys before its use a slot of a large table is fetched from memory.
  constexpr std::size_t ahead = 16;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if constexpr (std::is_integral_v<K>) {
      if (i + ahead < entries_.size()) {
        __builtin_prefetch(&slots_[detail::HashKey(entries_[i + ahead].first) & mask_], 1);
      }
    }
    std::size_t slot = detail::HashKey(entries_[i].first) & mask_;
    while (slots_[slot] != 0) slot = (slot + 1) & mask_;
    slots_[slot] = static_cast<uint32>(i + 1);
  }
}

template <class K, class V>
V IStoreDictionary<K, V>::MakePayload(std::size_t position) const {
  if (deferred_->isListed.load(std::memory_order_acquire)) return entries_[position].second;
  return deferred_->source->MakePayload(position);
}

template <class K, class V>
void IStoreDictionary<K, V>::ListPayloads() const {
  if (deferred_->isListed.load(std::memory_order_acquire)) return;
  std::lock_guard const lock(deferred_->mutex);
  if (deferred_->isListed.load(std::memory_order_relaxed)) return;
  for (std::size_t i = 0; i < entries_.size(); ++i) entries_[i].second = deferred_->source->MakePayload(i);
  deferred_->isListed.store(true, std::memory_order_release);
}

template <class K, class V>
V IStoreDictionary<K, V>::LookupSpecial(SpecialKind kind) const {
  auto const found = std::ranges::find(specials_, kind, &std::pair<SpecialKind, V>::first);
  return found == specials_.end() ? V{} : found->second;
}

template class IStoreDictionary<uint8, uint64>;
template class IStoreDictionary<uint32, uint64>;
template class IStoreDictionary<uint64, uint64>;
template class IStoreDictionary<RIndirectString, uint64>;
template class IStoreDictionary<std::shared_ptr<StoreValue>, uint64>;
template class IStoreDictionary<uint8, std::shared_ptr<StoreValue>>;
template class IStoreDictionary<uint32, std::shared_ptr<StoreValue>>;
template class IStoreDictionary<uint64, std::shared_ptr<StoreValue>>;
template class IStoreDictionary<RIndirectString, std::shared_ptr<StoreValue>>;
template class IStoreDictionary<std::shared_ptr<StoreValue>, std::shared_ptr<StoreValue>>;

}  // namespace ort::core
