#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <thread>

#include "render/RandomCache.h"

namespace runtime {
namespace {

using Cache = RandomCache<int, std::string>;

Cache::Value Get(Cache& cache, int key) {
  return cache.get(key, [key] { return std::make_shared<std::string>(std::to_string(key)); });
}

bool Holds(Cache& cache, int key) {
  bool wasHeld = true;
  Cache::Value const value = cache.get(key, [&] {
    wasHeld = false;
    return std::make_shared<std::string>("probe");
  });
  return wasHeld;
}

TEST(RandomCache, ComputesOnceAndCounts) {
  Cache cache(OStringCore(L"Test"), 10);
  Cache::Value const first = Get(cache, 1);
  EXPECT_EQ(*first, "1");
  EXPECT_EQ(Get(cache, 1), first);
  Get(cache, 2);
  EXPECT_EQ(cache.GetName(), OStringCore(L"Test"));
  EXPECT_EQ(cache.GetLookups(), 3U);
  EXPECT_EQ(cache.GetHits(), 1U);
  EXPECT_EQ(cache.GetInsertions(), 2U);
  EXPECT_EQ(cache.GetSize(), 2U);
  cache.clear();
  EXPECT_EQ(cache.GetSize(), 0U);
  EXPECT_EQ(cache.GetLookups(), 3U);
  EXPECT_EQ(cache.GetInsertions(), 2U);
  EXPECT_NE(Get(cache, 1), first);
}

// Small caches have long chains of entries, among them keys that only differ in what chooses no bucket.
TEST(RandomCache, FindsManyAtOnceAndCountsThoseFound) {
  for (int const held : {0, 1, 5, 100}) {
    Cache cache(OStringCore(), 100);
    std::map<int, Cache::Value> values;
    for (int i = 0; i < held; ++i) values[2 * i * 4096] = Get(cache, 2 * i * 4096);
    std::vector<int> keys;
    for (int i = 0; i < 2 * held + 3; ++i) keys.push_back(i * 4096);
    std::uint32_t const lookups = cache.GetLookups();
    std::vector<Cache::Value> found(keys.size());
    cache.FindHeld(keys, found);
    for (std::size_t i = 0; i < keys.size(); ++i) {
      auto const expected = values.find(keys[i]);
      EXPECT_EQ(found[i], expected == values.end() ? nullptr : expected->second) << held << ' ' << keys[i];
    }
    EXPECT_EQ(cache.GetHits(), static_cast<std::uint32_t>(held));
    EXPECT_EQ(cache.GetLookups() - lookups, static_cast<std::uint32_t>(held));
  }
}

TEST(RandomCache, HoldsFiveAtLeast) {
  for (std::uint32_t const capacity : {0U, 1U, 4U, 5U, 6U}) {
    Cache cache(OStringCore(), capacity);
    for (int key = 0; key < 20; ++key) Get(cache, key);
    EXPECT_EQ(cache.GetSize(), std::max(capacity, 5U));
  }
}

TEST(RandomCache, GivesUpOneOlderResultForEachNewOne) {
  constexpr int kCapacity = 2048;
  Cache cache(OStringCore(), kCapacity);
  for (int key = 0; key < kCapacity; ++key) Get(cache, key);
  EXPECT_EQ(cache.GetSize(), static_cast<std::uint32_t>(kCapacity));
  Get(cache, kCapacity);
  EXPECT_EQ(cache.GetSize(), static_cast<std::uint32_t>(kCapacity));
  EXPECT_TRUE(Holds(cache, kCapacity));
  std::set<int> held;
  // A probe that fails enters nothing.
  Cache::Compute const fail = []() -> Cache::Value { throw std::runtime_error("absent"); };
  for (int key = 0; key <= kCapacity; ++key) {
    try {
      cache.get(key, fail);
      held.insert(key);
    } catch (std::runtime_error const&) {
    }
  }
  EXPECT_EQ(held.size(), static_cast<std::size_t>(kCapacity));
  EXPECT_EQ(cache.GetSize(), static_cast<std::uint32_t>(kCapacity));
}

TEST(RandomCache, GivesUpAllOlderResultsAlike) {
  std::map<int, int> evictions;
  Cache cache(OStringCore(), 5);
  Cache::Compute const fail = []() -> Cache::Value { throw 0; };
  for (int round = 0; round < 5000; ++round) {
    cache.clear();
    for (int key = 0; key < 6; ++key) Get(cache, key);
    for (int key = 0; key < 6; ++key) {
      try {
        cache.get(key, fail);
      } catch (int) {
        ++evictions[key];
      }
    }
  }
  EXPECT_EQ(evictions.count(5), 0U) << "the new result was given up";
  // 1000 each are expected, with a standard deviation of 28.
  for (int key = 0; key < 5; ++key) EXPECT_NEAR(evictions[key], 1000, 170) << key;
}

TEST(RandomCache, ErasesWhatIsAskedFor) {
  Cache cache(OStringCore(), 8);
  for (int key = 0; key < 8; ++key) Get(cache, key);
  cache.erase(100);
  EXPECT_EQ(cache.GetSize(), 8U);
  for (int const key : {3, 0, 7, 5}) cache.erase(key);
  cache.erase(3);
  EXPECT_EQ(cache.GetSize(), 4U);
  for (int const key : {1, 2, 4, 6}) EXPECT_TRUE(Holds(cache, key)) << key;
  // Entries that evictions have moved are still found.
  for (int key = 10; key < 200; ++key) {
    Get(cache, key);
    cache.erase(key - 2);
    EXPECT_LE(cache.GetSize(), 8U);
    EXPECT_TRUE(Holds(cache, key));
  }
  for (int key = 0; key < 200; ++key) cache.erase(key);
  EXPECT_EQ(cache.GetSize(), 0U);
}

TEST(RandomCache, KeepsNothingOfAFailedComputing) {
  Cache cache(OStringCore(), 5);
  EXPECT_THROW(cache.get(1, []() -> Cache::Value { throw std::runtime_error("no"); }), std::runtime_error);
  EXPECT_EQ(cache.GetSize(), 0U);
  EXPECT_EQ(cache.GetInsertions(), 0U);
  EXPECT_EQ(*Get(cache, 1), "1");
}

TEST(RandomCache, KeepsNothingOfAnEarlierMeasurer) {
  Cache cache(OStringCore(), 5);
  Cache::Value const value = cache.get(1, [] {
    OnTextMeasurerChanged();
    return std::make_shared<std::string>("of yesterday");
  });
  EXPECT_EQ(*value, "of yesterday");
  EXPECT_EQ(cache.GetSize(), 0U);
  EXPECT_EQ(cache.GetInsertions(), 0U);
}

TEST(RandomCache, KeepsTheFirstOfTwoResultsForOneKey) {
  Cache cache(OStringCore(), 5);
  Cache::Value inner;
  Cache::Value const outer = cache.get(1, [&] {
    inner = Get(cache, 1);
    return std::make_shared<std::string>("late");
  });
  EXPECT_EQ(outer, inner);
  EXPECT_EQ(cache.GetSize(), 1U);
  EXPECT_EQ(cache.GetInsertions(), 2U);
}

TEST(RandomCacheThreads, CountersAreExactAndResultsTheKeys) {
  constexpr int kThreads = 4;
  constexpr int kLookups = 4000;
  Cache cache(OStringCore(), 16);
  std::atomic<std::uint32_t> computed{0};
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < kLookups; ++i) {
        int const key = (i * (thread + 3) + i / 7) % 40;
        auto const value = cache.get(key, [&] {
          computed.fetch_add(1);
          return std::make_shared<std::string>(std::to_string(key));
        });
        if (*value != std::to_string(key)) ++wrong;
        if (i % 64 == 0) cache.erase(key);
        if (i % 1000 == 999) cache.clear();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(cache.GetLookups(), static_cast<std::uint32_t>(kThreads * kLookups));
  EXPECT_EQ(cache.GetInsertions(), computed);
  EXPECT_EQ(cache.GetHits(), cache.GetLookups() - computed);
  EXPECT_LE(cache.GetSize(), 16U);
}

}  // namespace
}  // namespace runtime
