#include <gtest/gtest.h>
#include <unicode/uchar.h>

#include <climits>
#include <random>
#include <set>
#include <thread>

#include "ostrelsys/OCType.h"
#include "ostrelsys/OStringCore.h"

namespace {

TEST(OCType, SpacesAreWhiteSpaceWithTheOneWithoutWidthAndNoBreakOnes) {
  std::set<char32_t> const spaces = {0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0x1680,
                                     0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2008,
                                     0x2009, 0x200A, 0x200B, 0x2028, 0x2029, 0x205F, 0x3000};
  for (char32_t c = 0; c <= 0x110000; ++c) {
    ASSERT_EQ(OCType::isSpace(c), spaces.count(c) == 1) << std::hex << static_cast<unsigned>(c);
  }
  EXPECT_TRUE(OCType::isSpace(u' '));
  EXPECT_TRUE(OCType::isSpace(L'\u3000'));
  EXPECT_FALSE(OCType::isSpace(-1));
}

TEST(OCType, PunctuationIsThatOfUnicodeWithoutSymbols) {
  std::u32string const ascii = U"!\"#%&'()*,-./:;?@[\\]_{}";
  for (char32_t c = 0; c < 0x80; ++c) {
    EXPECT_EQ(OCType::isPunct(c), ascii.find(c) != ascii.npos) << static_cast<unsigned>(c);
  }
  for (auto const c :
       U"\u00A1\u00A7\u00AB\u00BF\u2010\u2014\u2018\u201D\u2026\u203F\u3001\u300C\uFF01\U00010100") {
    EXPECT_EQ(OCType::isPunct(c), c != 0) << std::hex << static_cast<unsigned>(c);
  }
  for (char32_t const c :
       {0xA0, 0xA9, 0xB1, 0xD7, 0xE9, 0x20AC, 0x2192, 0x4E00, 0xD800, 0xDFFF, 0x1F600, 0x110000}) {
    EXPECT_FALSE(OCType::isPunct(c)) << std::hex << static_cast<unsigned>(c);
  }
  for (char32_t c = 0; c < 0x110000; ++c) {
    bool const isPunctuation = (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_P_MASK) != 0;
    ASSERT_EQ(OCType::isPunct(c), isPunctuation) << std::hex << static_cast<unsigned>(c);
  }
  EXPECT_TRUE(OCType::isPunct(u'\u2014'));
  EXPECT_FALSE(OCType::isPunct(-1));
}

struct ClusterCase {
  char const* what;
  OStringCore text;
  std::vector<int> boundaries;
};

// The rules of Unicode Standard Annex 29, each with a text of its own.
std::vector<ClusterCase> const kClusterCases = {
    {"nothing", L"", {0}},
    {"one letter", L"a", {0, 1}},
    {"letters", L"ab c", {0, 1, 2, 3, 4}},
    {"carriage return and line feed", L"a\r\nb\n\r", {0, 1, 3, 4, 5, 6}},
    {"an accent", L"ae\u0301b", {0, 1, 3, 4}},
    {"an accent on nothing", L"\u0301a", {0, 1, 2}},
    {"no accent on a control", L"\n\u0301", {0, 1, 2}},
    {"several accents", L"a\u0301\u0323\u0302", {0, 4}},
    {"ideographs and kana", L"漢字かな", {0, 1, 2, 3, 4}},
    {"wide and general punctuation", L"\u2014a\u3002\uFF0C\u203C", {0, 1, 2, 3, 4, 5}},
    {"marks beside the plain ranges", L"\u2014\u20D0\u3001\u302A\uFF76\uFF9E", {0, 2, 4, 6}},
    {"a voicing mark", L"か\u3099な", {0, 2, 3}},
    {"Hangul syllables of parts", L"\u1100\u1161\u11A8\u1100\u1161", {0, 3, 5}},
    {"a pair", L"a\U0001F600b", {0, 1, 3, 4}},
    {"only a pair", L"\U0001F600", {0, 2}},
    {"flags", L"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", {0, 4, 8}},
    {"a skin tone", L"\U0001F44D\U0001F3FDx", {0, 4, 5}},
    {"a joined family", L"\U0001F468\u200D\U0001F469\u200D\U0001F467!", {0, 8, 9}},
    {"a variation selector", L"\u2764\uFE0Fa", {0, 2, 3}},
    {"a spacing mark", L"\u0915\u093F\u0915", {0, 2, 3}},
    {"a prepended sign", L"\u06001", {0, 2}},
    {"unpaired surrogates", u"a\xD83Dx\xDE00\xDE00", {0, 1, 2, 3, 4, 5}},
    {"a tone mark behind Cyrillic", L"\u0434\u0483\u0434", {0, 2, 3}},
    {"a long plain text before a cluster", L"0123456789012345678901234567890123456789e\u0301", {}},
};

TEST(OCType, ClusterBoundariesFollowTheAnnex) {
  for (auto c : kClusterCases) {
    if (c.boundaries.empty()) {
      for (int i = 0; i <= 40; ++i) c.boundaries.push_back(i);
      c.boundaries.push_back(42);
    }
    SCOPED_TRACE(c.what);
    EXPECT_EQ(OCType::clusterBoundaries(c.text), c.boundaries);
    std::set<int> const expected(c.boundaries.begin(), c.boundaries.end());
    for (int position = -2; position <= c.text.length() + 2; ++position) {
      EXPECT_EQ(OCType::isClusterBoundary(c.text, position), expected.count(position) == 1) << position;
      auto const after = expected.upper_bound(position);
      EXPECT_EQ(OCType::nextClusterBoundary(c.text, position),
                after == expected.end() ? c.text.length() : *after)
          << position;
      auto const before = expected.lower_bound(position);
      EXPECT_EQ(OCType::previousClusterBoundary(c.text, position),
                before == expected.begin() ? 0 : *std::prev(before))
          << position;
    }
    for (int const far : {INT_MIN, INT_MAX}) {
      EXPECT_FALSE(OCType::isClusterBoundary(c.text, far));
      EXPECT_EQ(OCType::nextClusterBoundary(c.text, far), far < 0 ? 0 : c.text.length());
      EXPECT_EQ(OCType::previousClusterBoundary(c.text, far), far < 0 ? 0 : c.text.length());
    }
  }
}

OStringCore MakeRandomText(std::mt19937& random) {
  static char16_t const units[] =
      u"a\r\n \u00E9\u0301\u200D\u0434\u3042\u3099\u4E00\u1100\u1161\u0915\u093F\u0600"
      u"\uFE0F\xD83D\xDE00\xD83C\xDDE9\xDFFD";
  std::u16string text(random() % 12, u'\0');
  for (auto& unit : text) unit = units[random() % (std::size(units) - 1)];
  return OStringCore(text);
}

// All five ways of asking agree: the quick path between plain characters and the three of the iterator.
TEST(OCType, EveryWayOfAskingForBoundariesAgrees) {
  std::mt19937 random(20240229);
  for (int round = 0; round < 20000; ++round) {
    auto const text = MakeRandomText(random);
    std::vector<int> asked;
    std::vector<int> forward{0};
    std::vector<int> backward{text.length()};
    for (int i = 0; i <= text.length(); ++i) {
      if (OCType::isClusterBoundary(text, i)) asked.push_back(i);
    }
    while (forward.back() < text.length())
      forward.push_back(OCType::nextClusterBoundary(text, forward.back()));
    while (backward.back() > 0) backward.push_back(OCType::previousClusterBoundary(text, backward.back()));
    ASSERT_EQ(OCType::clusterBoundaries(text), asked) << text;
    ASSERT_EQ(forward, asked) << text;
    ASSERT_EQ(std::vector<int>(backward.rbegin(), backward.rend()), asked) << text;
  }
}

TEST(OCType, ClusterBoundariesAreFoundByManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> faults(4);
  for (auto& fault : faults) {
    threads.emplace_back([&fault] {
      for (int round = 0; round < 500; ++round) {
        for (auto const& c : kClusterCases) {
          if (!c.boundaries.empty() && OCType::clusterBoundaries(c.text) != c.boundaries) ++fault;
        }
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(faults, std::vector<int>(4));
}

}  // namespace
