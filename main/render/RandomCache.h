#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <unordered_map>
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
  virtual ~RandomCache() = default;

  // The result that is held for the key; where there is none, compute() is called and its result entered. An
  // exception of compute() goes to the caller and leaves the cache as it was.
  virtual Value get(K const& key, Compute const& compute);
  // Drops the result of a key, if there is one.
  virtual void erase(K const& key);
  // Drops all results; the counters go on.
  virtual void clear();

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
    Value value;
    // In index_ when it was entered. Entries only move down there, so it stands at that place or below; where
    // is asked only by erase(), and numbering all later entries anew would cost more than the rest of get().
    std::size_t position;
  };
  using Map = std::unordered_map<K, Entry>;
  using Node = typename Map::value_type;

  // Counted under the read lock by all threads at once, hence one pair beside each of the lock's parts. A
  // look-up counts once, as what it turns out to be.
  struct Counters {
    std::atomic<std::uint32_t> misses{0};
    std::atomic<std::uint32_t> hits{0};
  };

  Value Find(K const& key);
  Value Enter(K const& key, Value value, std::uint64_t generation);
  std::size_t ChooseVictim();
  typename Map::node_type Remove(std::size_t position);

  OStringCore const name_;
  std::uint32_t const capacity_;
  mutable StripedLock<Counters> lock_;
  std::uint32_t insertions_ = 0;
  Map map_;
  std::vector<Node*> index_;  // in order of insertion
  std::minstd_rand random_;
};

template <class K, class V>
auto RandomCache<K, V>::get(K const& key, Compute const& compute) -> Value {
  if (Value found = Find(key)) return found;
  std::uint64_t const generation = TextMeasurerGeneration();
  return Enter(key, compute(), generation);
}

template <class K, class V>
auto RandomCache<K, V>::Find(K const& key) -> Value {
  typename StripedLock<Counters>::Reader const reader(lock_);
  auto const found = map_.find(key);
  if (found == map_.end()) {
    reader->misses.fetch_add(1, std::memory_order_relaxed);
    return nullptr;
  }
  reader->hits.fetch_add(1, std::memory_order_relaxed);
  return found->second.value;
}

template <class K, class V>
auto RandomCache<K, V>::Enter(K const& key, Value value, std::uint64_t generation) -> Value {
  // What is given up is destroyed after the lock.
  typename Map::node_type evicted;
  typename StripedLock<Counters>::Writer const writer(lock_);
  if (generation != TextMeasurerGeneration()) return value;
  ++insertions_;
  // The index first, which then can't fail any more.
  if (index_.size() == index_.capacity()) index_.reserve(2 * index_.size() + kLeastCapacity);
  auto const [entered, isNew] = map_.try_emplace(key, Entry{std::move(value), index_.size()});
  if (isNew) index_.push_back(&*entered);
  if (map_.size() > capacity_) evicted = Remove(ChooseVictim());
  return entered->second.value;
}

template <class K, class V>
std::size_t RandomCache<K, V>::ChooseVictim() {
  return std::uniform_int_distribution<std::size_t>(0, index_.size() - 2)(random_);
}

template <class K, class V>
auto RandomCache<K, V>::Remove(std::size_t position) -> typename Map::node_type {
  auto node = map_.extract(map_.find(index_[position]->first));
  index_.erase(index_.begin() + static_cast<std::ptrdiff_t>(position));
  return node;
}

template <class K, class V>
void RandomCache<K, V>::erase(K const& key) {
  typename Map::node_type erased;
  typename StripedLock<Counters>::Writer const writer(lock_);
  auto const found = map_.find(key);
  if (found == map_.end()) return;
  std::size_t position = std::min(found->second.position, index_.size() - 1);
  while (index_[position] != &*found) --position;
  erased = Remove(position);
}

template <class K, class V>
void RandomCache<K, V>::clear() {
  Map cleared;
  typename StripedLock<Counters>::Writer const writer(lock_);
  cleared.swap(map_);
  index_.clear();
}

template <class K, class V>
std::uint32_t RandomCache<K, V>::GetSize() const {
  typename StripedLock<Counters>::Reader const reader(lock_);
  return static_cast<std::uint32_t>(map_.size());
}

template <class K, class V>
std::uint32_t RandomCache<K, V>::GetInsertions() const {
  typename StripedLock<Counters>::Reader const reader(lock_);
  return insertions_;
}

// A cache by its plain name holds composed texts.
RandomCache(OStringCore, std::uint32_t)->RandomCache<>;

}  // namespace runtime
