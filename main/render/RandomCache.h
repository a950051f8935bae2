#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "ostrelsys/OStringCore.h"
#include "render/MeasurerGeneration.h"
#include "render/StripedLock.h"

namespace runtime {

class ComposedText;
class TextComposition;

// Finished results by their key, shared by all threads. A cache that is full gives up a result chosen at
// random whenever it takes a new one, so that a hit keeps no books and needs the read lock alone.
//
// K is a value with == and std::hash. No result is computed under a lock: two threads may compute one key at
// the same time, and the result that is entered first is kept. A result whose computing began before the
// text measurer was exchanged is handed out, but neither kept nor counted as an insertion.
template <class K = TextComposition, class V = ComposedText>
class RandomCache {
 public:
  using Value = std::shared_ptr<V>;
  using Compute = std::function<Value()>;

  static constexpr std::uint32_t kLeastCapacity = 5;

  // Holds up to `capacity` results, but never fewer than five.
  RandomCache(OStringCore name, std::uint32_t capacity)
      : name_(std::move(name)), capacity_(std::max(capacity, kLeastCapacity)) {}
  RandomCache(RandomCache const&) = delete;
  RandomCache& operator=(RandomCache const&) = delete;
  virtual ~RandomCache() { DeleteAll(index_); }

  // The result that is held for the key; where there is none, compute() is called and its result entered. An
  // exception of compute() goes to the caller and leaves the cache as it was.
  virtual Value get(K const& key, Compute const& compute);
  // Drops the result of a key, if there is one.
  virtual void erase(K const& key);
  // Drops all results; the counters go on.
  virtual void clear();

  // The results that are held for some keys, null for the others: many look-ups at once, whose memory is
  // fetched ahead of its use. Each that finds its key counts as a call of get; one that does not counts
  // nothing, for get is what then comes. There must be as many values as keys.
  void FindHeld(std::span<K const> keys, std::span<Value> values);

  OStringCore const& GetName() const noexcept { return name_; }
  std::uint32_t GetCapacity() const noexcept { return capacity_; }
  // The results held now.
  std::uint32_t GetSize() const;
  // The calls of get; those that found their key; those that came to enter a result. Each is exact as soon as
  // the calls have returned, and wraps around beyond 2^32.
  std::uint32_t GetLookups() const noexcept { return lock_.Sum(&Counters::misses) + GetHits(); }
  std::uint32_t GetHits() const noexcept { return lock_.Sum(&Counters::hits); }
  std::uint32_t GetInsertions() const;

 private:
  struct Entry {
    Entry(K const& ofKey, std::size_t ofHash, Value&& held, std::size_t at)
        : hash(ofHash), key(ofKey), value(std::move(held)), position(at) {}

    Entry* next = nullptr;  // in the same bucket
    std::size_t hash;
    K key;
    Value value;
    // In index_ when it was entered. Entries only move down there, so it stands at that place or below; where
    // is asked only by erase(), and numbering all later entries anew would cost more than the rest of get().
    std::size_t position;
  };
  using Index = std::vector<Entry*>;

  // Counted under the read lock by all threads at once, hence one pair beside each of the lock's parts. A
  // look-up counts once, as what it turns out to be.
  struct Counters {
    std::atomic<std::uint32_t> misses{0};
    std::atomic<std::uint32_t> hits{0};
  };

  // Keys whose memory is fetched together.
  static constexpr std::size_t kGroup = 16;

  // Spread over all bits, of which the top ones choose the bucket.
  static std::size_t Hash(K const& key) { return std::hash<K>()(key) * 0x9E3779B97F4A7C15U; }
  static void DeleteAll(Index const& entries) noexcept {
    for (Entry* const entry : entries) delete entry;
  }

  // Only while there are buckets.
  Entry*& GetBucket(std::size_t hash) { return buckets_[hash >> bucketShift_]; }
  Entry* FindEntry(K const& key, std::size_t hash);
  void FindGroup(std::span<K const> keys, std::span<Value> values);
  Value Find(K const& key);
  Value Enter(K const& key, Value value, std::uint64_t generation);
  void Grow();
  std::size_t ChooseVictim();
  std::unique_ptr<Entry> Remove(std::size_t position) noexcept;

  OStringCore const name_;
  std::uint32_t const capacity_;
  std::uint32_t insertions_ = 0;
  // A power of two, and as many as entries at least, so that a look-up needs no division.
  Index buckets_;
  int bucketShift_ = 0;
  Index index_;  // all entries, in order of insertion
  std::minstd_rand random_;
  mutable StripedLock<Counters> lock_;  // over cache lines of its own
};

template <class K, class V>
auto RandomCache<K, V>::get(K const& key, Compute const& compute) -> Value {
  if (Value found = Find(key)) return found;
  std::uint64_t const generation = TextMeasurerGeneration();
  return Enter(key, compute(), generation);
}

template <class K, class V>
auto RandomCache<K, V>::FindEntry(K const& key, std::size_t hash) -> Entry* {
  Entry* entry = buckets_.empty() ? nullptr : GetBucket(hash);
  while (entry != nullptr && (entry->hash != hash || !(entry->key == key))) entry = entry->next;
  return entry;
}

template <class K, class V>
auto RandomCache<K, V>::Find(K const& key) -> Value {
  std::size_t const hash = Hash(key);
  typename StripedLock<Counters>::Reader const reader(lock_);
  Entry* const found = FindEntry(key, hash);
  if (found == nullptr) {
    reader->misses.fetch_add(1, std::memory_order_relaxed);
    return nullptr;
  }
  reader->hits.fetch_add(1, std::memory_order_relaxed);
  return found->value;
}

template <class K, class V>
void RandomCache<K, V>::FindHeld(std::span<K const> keys, std::span<Value> values) {
  typename StripedLock<Counters>::Reader const reader(lock_);
  for (std::size_t done = 0; done < keys.size(); done += kGroup) {
    std::size_t const count = std::min(kGroup, keys.size() - done);
    FindGroup(keys.subspan(done, count), values.subspan(done, count));
  }
  auto const missed = std::count(values.begin(), values.end(), nullptr);
  reader->hits.fetch_add(static_cast<std::uint32_t>(values.size()) - static_cast<std::uint32_t>(missed),
                         std::memory_order_relaxed);
}

// In steps, each of which fetches for all keys what the next one reads.
template <class K, class V>
void RandomCache<K, V>::FindGroup(std::span<K const> keys, std::span<Value> values) {
  constexpr std::size_t kLine = 64;
  std::array<Entry*, kGroup> entries{};
  if (!buckets_.empty()) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
      Entry* const first = entries[i] = GetBucket(Hash(keys[i]));
      if (first == nullptr) continue;
      for (std::size_t at = 0; at < sizeof(Entry); at += kLine) {
        __builtin_prefetch(reinterpret_cast<char const*>(first) + at);
      }
    }
  }
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (entries[i] == nullptr) continue;
    entries[i] = FindEntry(keys[i], Hash(keys[i]));
    // Its count stands before it.
    if (entries[i] != nullptr) __builtin_prefetch(entries[i]->value.get(), 1);
  }
  for (std::size_t i = 0; i < keys.size(); ++i) {
    values[i] = entries[i] == nullptr ? nullptr : entries[i]->value;
  }
}

template <class K, class V>
auto RandomCache<K, V>::Enter(K const& key, Value value, std::uint64_t generation) -> Value {
  // What is given up is destroyed after the lock.
  std::unique_ptr<Entry> evicted;
  typename StripedLock<Counters>::Writer const writer(lock_);
  if (generation != TextMeasurerGeneration()) return value;
  ++insertions_;
  std::size_t const hash = Hash(key);
  if (Entry const* const entry = FindEntry(key, hash)) return entry->value;
  // The index first, which then can't fail any more.
  if (index_.size() == index_.capacity()) index_.reserve(2 * index_.size() + kLeastCapacity);
  if (index_.size() == buckets_.size()) Grow();
  auto* const entered = new Entry(key, hash, std::move(value), index_.size());
  index_.push_back(entered);
  entered->next = std::exchange(GetBucket(hash), entered);
  if (index_.size() > capacity_) evicted = Remove(ChooseVictim());
  return entered->value;
}

template <class K, class V>
void RandomCache<K, V>::Grow() {
  std::size_t const count = std::bit_ceil(2 * index_.size() + kLeastCapacity);
  Index(count).swap(buckets_);
  bucketShift_ = std::numeric_limits<std::size_t>::digits - std::countr_zero(count);
  for (Entry* const entry : index_) entry->next = std::exchange(GetBucket(entry->hash), entry);
}

template <class K, class V>
std::size_t RandomCache<K, V>::ChooseVictim() {
  return std::uniform_int_distribution<std::size_t>(0, index_.size() - 2)(random_);
}

template <class K, class V>
auto RandomCache<K, V>::Remove(std::size_t position) noexcept -> std::unique_ptr<Entry> {
  std::unique_ptr<Entry> removed(index_[position]);
  Entry** link = &GetBucket(removed->hash);
  while (*link != removed.get()) link = &(*link)->next;
  *link = removed->next;
  index_.erase(index_.begin() + static_cast<std::ptrdiff_t>(position));
  return removed;
}

template <class K, class V>
void RandomCache<K, V>::erase(K const& key) {
  std::unique_ptr<Entry> erased;
  typename StripedLock<Counters>::Writer const writer(lock_);
  Entry* const found = FindEntry(key, Hash(key));
  if (found == nullptr) return;
  std::size_t position = std::min(found->position, index_.size() - 1);
  while (index_[position] != found) --position;
  erased = Remove(position);
}

template <class K, class V>
void RandomCache<K, V>::clear() {
  Index cleared;
  {
    typename StripedLock<Counters>::Writer const writer(lock_);
    cleared.swap(index_);
    Index().swap(buckets_);
  }
  DeleteAll(cleared);
}

template <class K, class V>
std::uint32_t RandomCache<K, V>::GetSize() const {
  typename StripedLock<Counters>::Reader const reader(lock_);
  return static_cast<std::uint32_t>(index_.size());
}

template <class K, class V>
std::uint32_t RandomCache<K, V>::GetInsertions() const {
  typename StripedLock<Counters>::Reader const reader(lock_);
  return insertions_;
}

// A cache by its plain name holds composed texts.
RandomCache(OStringCore, std::uint32_t)->RandomCache<>;

}  // namespace runtime
