#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "services/WidthCache.h"

using ostrel::services::WidthCache;

namespace {

std::u16string Text(int number) {
  std::string const digits = std::to_string(number);
  return std::u16string(digits.begin(), digits.end());
}

TEST(WidthCache, KeepsWidthsApartByFontAndText) {
  WidthCache cache;
  cache.Insert(1, u"ab", 1.5);
  cache.Insert(2, u"ab", 2.5);
  EXPECT_EQ(cache.Find(1, u"ab"), 1.5);
  EXPECT_EQ(cache.Find(2, u"ab"), 2.5);
  EXPECT_EQ(cache.Find(1, u"abc"), std::nullopt);
  EXPECT_EQ(cache.Find(3, u"ab"), std::nullopt);
}

TEST(WidthCache, StaysBoundedAndKeepsWhatIsAskedFor) {
  WidthCache cache;
  cache.Insert(1, u"often", 7);
  for (int i = 0; i < 1'000'000; ++i) {
    cache.Insert(1, Text(i), i);
    if (i % 1000 != 0) continue;
    ASSERT_EQ(cache.Find(1, u"often"), 7) << i;
  }
  EXPECT_LE(cache.GetSize(), WidthCache::kMostTexts);
  EXPECT_GE(cache.GetSize(), WidthCache::kMostTexts / 3);
  EXPECT_EQ(cache.Find(1, Text(999'999)), 999'999);
  EXPECT_EQ(cache.Find(1, Text(0)), std::nullopt);
}

TEST(WidthCache, DoesNotKeepLongTexts) {
  WidthCache cache;
  std::u16string const longest(WidthCache::kLongestText, u'x');
  cache.Insert(1, longest, 1);
  cache.Insert(1, longest + u"x", 2);
  EXPECT_EQ(cache.Find(1, longest), 1);
  EXPECT_EQ(cache.Find(1, longest + u"x"), std::nullopt);
}

TEST(WidthCacheThreads, NeverSeeAnotherTextsWidth) {
  WidthCache cache;
  std::vector<std::thread> threads;
  std::vector<int> wrong(4);
  for (int& count : wrong) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50'000; ++i) {
        int const number = i % 40'000;
        auto const found = cache.Find(1, Text(number));
        if (found && *found != number) ++count;
        if (!found) cache.Insert(1, Text(number), number);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
