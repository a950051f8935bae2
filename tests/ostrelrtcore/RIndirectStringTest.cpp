#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ostrelrtcore/RIndirectString.h"

namespace {

using ort::core::RIndirectString;

std::size_t CountEntries() { return RIndirectString::GetPoolStatistics().entries; }

OStringCore MakeText(int number) { return OStringCore::fromUtf8("intern test " + std::to_string(number)); }

TEST(RIndirectString, EqualTextsShareOneAddress) {
  auto const before = CountEntries();
  {
    RIndirectString const a(OStringCore(L"intern me"));
    auto const b = RIndirectString::FromView(u"intern me");
    auto const c = RIndirectString::FromUtf8("intern me");
    RIndirectString const other(OStringCore(L"Intern me"));
    EXPECT_TRUE(a == b && b == c);
    EXPECT_TRUE(a != other);
    EXPECT_EQ(&a.Get(), &c.Get());
    EXPECT_EQ(std::hash<RIndirectString>()(a), std::hash<RIndirectString>()(b));
    EXPECT_TRUE(std::equal_to<RIndirectString>()(a, b));
    EXPECT_TRUE(a == OStringCore(L"intern me"));
    EXPECT_TRUE(OStringCore(L"x") != a);
    OStringCore const& text = a;
    EXPECT_EQ(text, OStringCore(L"intern me"));
    EXPECT_EQ(CountEntries(), before + 2);
  }
  EXPECT_EQ(CountEntries(), before);
}

TEST(RIndirectString, TheEmptyStringIsTheDefaultAndNotInThePool) {
  auto const before = CountEntries();
  RIndirectString const none;
  EXPECT_TRUE(none.IsEmpty());
  EXPECT_EQ(none.Get(), OStringCore());
  for (auto const& empty :
       {RIndirectString(OStringCore()), RIndirectString::FromView({}), RIndirectString::FromUtf8({})}) {
    EXPECT_TRUE(empty == none);
  }
  EXPECT_EQ(CountEntries(), before);
}

TEST(RIndirectString, CopiesMovesAndAssignsWithTheCountKept) {
  auto const before = CountEntries();
  {
    RIndirectString a(MakeText(1));
    RIndirectString b(MakeText(2));
    auto copy = a;
    auto moved = std::move(a);
    EXPECT_TRUE(a.IsEmpty());
    EXPECT_TRUE(copy == moved);
    auto& self = copy;
    copy = self;
    copy = std::move(self);
    EXPECT_EQ(copy.Get(), MakeText(1));
    copy = b;
    moved = std::move(b);
    EXPECT_EQ(CountEntries(), before + 1);
    EXPECT_EQ(moved.Get(), MakeText(2));
    a = MakeText(3);
    EXPECT_EQ(a.Get(), MakeText(3));
  }
  EXPECT_EQ(CountEntries(), before);
}

TEST(RIndirectString, TakesUtf8OfEveryKindAndLength) {
  for (std::size_t const length : {1U, 7U, 8U, 255U, 256U, 257U, 5000U}) {
    std::string const ascii(length, 'q');
    EXPECT_EQ(RIndirectString::FromUtf8(ascii).Get(), OStringCore::fromUtf8(ascii));
    auto const mixed = ascii + "\xE2\x82\xAC\xF0\x9F\x98\x80\xFF";
    EXPECT_EQ(RIndirectString::FromUtf8(mixed).Get(), OStringCore::fromUtf8(mixed));
  }
}

TEST(RIndirectString, KeysUnorderedContainers) {
  std::unordered_map<RIndirectString, int> numbers;
  for (int i = 0; i < 1000; ++i) numbers[MakeText(i % 100)] += i;
  EXPECT_EQ(numbers.size(), 100U);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(numbers.at(MakeText(i)), 4500 + 10 * i);
}

// Random strings made and dropped, against the plain count of what is alive.
TEST(RIndirectString, ThePoolHoldsExactlyWhatIsAlive) {
  auto const before = CountEntries();
  std::mt19937 random(7);
  std::vector<RIndirectString> alive(3000);
  std::vector<int> numbers(alive.size(), -1);
  for (int step = 0; step < 60000; ++step) {
    auto const at = random() % alive.size();
    // Phases of growing and shrinking, so that tables are resized both ways.
    bool const drops = random() % 100 < (step / 10000 % 2 == 0 ? 20U : 90U);
    numbers[at] = drops ? -1 : static_cast<int>(random() % 2000);
    alive[at] = drops ? RIndirectString() : RIndirectString(MakeText(numbers[at]));
    if (step % 1000 != 0) continue;
    std::unordered_set<int> different(numbers.begin(), numbers.end());
    different.erase(-1);
    ASSERT_EQ(CountEntries(), before + different.size()) << "step " << step;
    for (std::size_t i = 0; i < alive.size(); ++i) {
      ASSERT_EQ(alive[i].Get(), numbers[i] < 0 ? OStringCore() : MakeText(numbers[i])) << "step " << step;
    }
  }
}

TEST(RIndirectString, ThePoolGivesItsTablesBack) {
  auto const before = RIndirectString::GetPoolStatistics();
  constexpr std::size_t kMany = 200000;
  std::vector<RIndirectString> alive;
  for (std::size_t i = 0; i < kMany; ++i) alive.emplace_back(MakeText(static_cast<int>(i)));
  auto const full = RIndirectString::GetPoolStatistics();
  EXPECT_EQ(full.entries, before.entries + kMany);
  EXPECT_GE(full.slots, full.entries);
  alive.resize(kMany / 100);
  auto const few = RIndirectString::GetPoolStatistics();
  EXPECT_EQ(few.entries, before.entries + kMany / 100);
  EXPECT_LT(few.slots, full.slots / 10);
  for (auto const& text : alive) EXPECT_TRUE(RIndirectString(text.Get()) == text);
  alive.clear();
  EXPECT_LE(RIndirectString::GetPoolStatistics().slots, before.slots);
}

// Few texts and short lives: the last reference is dropped while other threads ask for the same text.
TEST(RIndirectString, LastReferencesAndNewOnesMeetOnManyThreads) {
  auto const before = CountEntries();
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (unsigned seed = 1; seed <= 4; ++seed) {
    threads.emplace_back([&wrong, seed] {
      std::mt19937 random(seed);
      RIndirectString kept;
      for (int i = 0; i < 50000; ++i) {
        auto const text = MakeText(static_cast<int>(random() % 3));
        RIndirectString const made(text);
        auto const copy = made;
        if (copy.Get() != text || copy != RIndirectString::FromView(text.view())) ++wrong;
        if (random() % 4 == 0) kept = copy;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(CountEntries(), before);
}

// Long texts stand alone, short ones go in groups, and empty ones never reach the pool.
TEST(RIndirectString, ManyTextsGiveTheStringsOfEach) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < 500; ++i) {
    auto const length = i % 97 == 0 ? 5000 : i % 7 * i % 211;
    texts.push_back(std::string(length, static_cast<char>('a' + i % 26)) + (i % 5 == 0 ? "" : "\xC3\xA4"));
  }
  std::vector<std::string_view> const views(texts.begin(), texts.end());
  std::vector<RIndirectString> strings(texts.size());
  RIndirectString::FromUtf8(views, strings);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(strings[i], RIndirectString::FromUtf8(texts[i])) << i;
    EXPECT_EQ(strings[i].Get().toUtf8(), texts[i]) << i;
  }
  RIndirectString::FromUtf8(std::span<std::string_view const>(), {});
}

}  // namespace
