#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <sstream>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>

#include "ostrelsys/OStringCore.h"

namespace {

using namespace std::string_literals;
using Strings = std::vector<OStringCore>;

TEST(OStringCore, IsMadeFromWideTextOfALengthOrUpToItsZero) {
  wchar_t const invalid[] = {L'a', wchar_t(0xD800), wchar_t(0xDFFF), wchar_t(0x110000), wchar_t(-1), 0};
  struct {
    OStringCore made;
    std::u16string expected;
  } const cases[] = {
      {OStringCore(), u""},
      {OStringCore(L"abc"), u"abc"},
      {OStringCore(L"abc", -1), u"abc"},
      {OStringCore(L"abc", -7), u"abc"},
      {OStringCore(L"abc", 2), u"ab"},
      {OStringCore(L"abc", 0), u""},
      {OStringCore(L"a\0b", 3), u"a\0b"s},
      {OStringCore(static_cast<wchar_t const*>(nullptr), 5), u""},
      {OStringCore(L"\uFFFF\U00010000\U0001F600\U0010FFFF"), u"\uFFFF\xD800\xDC00\xD83D\xDE00\xDBFF\xDFFF"},
      {OStringCore(invalid), u"a\uFFFD\uFFFD\uFFFD\uFFFD"},
      {OStringCore(u"ab\xD800"), u"ab\xD800"},
      {OStringCore(u"abc", 1), u"a"},
      {OStringCore(std::u16string(u"x\0y"s)), u"x\0y"s},
      {OStringCore(std::u16string_view(u"xyz").substr(1)), u"yz"},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.made.view(), c.expected);
    EXPECT_EQ(c.made.length(), static_cast<int>(c.expected.size()));
    EXPECT_EQ(c.made.isEmpty(), c.expected.empty());
    EXPECT_EQ(c.made.constData()[c.made.length()], u'\0');
  }
}

TEST(OStringCore, ConvertsFromUtf8WithAReplacementForEachIllFormedPart) {
  struct {
    std::string utf8;
    std::u16string expected;
  } const cases[] = {
      {"", u""},
      {"plain ASCII that is longer than a word", u"plain ASCII that is longer than a word"},
      {"12345678\xC3\xA9 8", u"12345678\u00E9 8"},
      {"\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u20AC\xD83D\xDE00"},
      {"a\0b"s, u"a\0b"s},
      {"\x80", u"\uFFFD"},
      {"\xC0\xAF", u"\uFFFD\uFFFD"},
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"a\xE2\x82", u"a\uFFFD"},
      {"a\xF0\x9F\x98z", u"a\uFFFDz"},
      {"\xFF\xFE", u"\uFFFD\uFFFD"},
  };
  for (auto const& c : cases) EXPECT_EQ(OStringCore::fromUtf8(c.utf8).view(), c.expected);
}

TEST(OStringCore, ConvertsToUtf8WithAReplacementForEachUnpairedSurrogate) {
  EXPECT_EQ(OStringCore().toUtf8(), "");
  EXPECT_EQ(OStringCore(u"a\0\u00E9\u20AC\xD83D\xDE00", 6).toUtf8(),
            "a\0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"s);
  EXPECT_EQ(OStringCore(u"\xD83D").toUtf8(), "\xEF\xBF\xBD");
  EXPECT_EQ(OStringCore(u"\xDE00\xD83Dx").toUtf8(), "\xEF\xBF\xBD\xEF\xBF\xBDx");
  std::ostringstream out;
  out << OStringCore(L"\u00E9");
  EXPECT_EQ(out.str(), "\xC3\xA9");
}

TEST(OStringCore, SurvivesTheWayThroughUtf8AtEveryLength) {
  // Pairs stand at every place, also where a long text is converted in pieces.
  for (int const length : {1, 7, 8, 9, 65534, 65535, 65536, 65537, 200000}) {
    std::u16string text;
    while (static_cast<int>(text.size()) < length) text += text.size() % 7 == 1 ? u"\xD83D\xDE00" : u"\u20AC";
    for (auto const& prefix : {u"", u"a"}) {
      auto const whole = OStringCore(prefix + text);
      ASSERT_EQ(OStringCore::fromUtf8(whole.toUtf8()), whole) << length;
    }
  }
}

TEST(OStringCore, ClampsPositionsAndCounts) {
  OStringCore const text(L"abcd");
  struct {
    OStringCore actual;
    wchar_t const* expected;
  } const cases[] = {
      {text.left(2), L"ab"},          {text.left(0), L""},          {text.left(-1), L""},
      {text.left(9), L"abcd"},        {text.left(INT_MIN), L""},    {text.left(INT_MAX), L"abcd"},
      {text.right(1), L"d"},          {text.right(0), L""},         {text.right(-1), L""},
      {text.right(INT_MIN), L""},     {text.right(9), L"abcd"},     {text.mid(1), L"bcd"},
      {text.mid(1, 2), L"bc"},        {text.mid(1, 0), L""},        {text.mid(1, -5), L"bcd"},
      {text.mid(1, INT_MAX), L"bcd"}, {text.mid(4), L""},           {text.mid(INT_MAX, INT_MAX), L""},
      {text.mid(-3, 2), L"ab"},       {text.mid(INT_MIN), L"abcd"}, {OStringCore().right(3), L""},
  };
  int row = 0;
  for (auto const& c : cases) EXPECT_EQ(c.actual, OStringCore(c.expected)) << "case " << row++;
  EXPECT_EQ(text[0], u'a');
  EXPECT_EQ(text[3], u'd');
  for (int const outside : {-1, 4, 5, INT_MIN, INT_MAX}) EXPECT_EQ(text[outside], u'\0');
}

TEST(OStringCore, TrimsBreakingSpacesAtTheRightOnly) {
  EXPECT_EQ(OStringCore(L" a b \t\r\n\u2003\u200B\u3000").trimRight(), OStringCore(L" a b"));
  EXPECT_EQ(OStringCore(L"a \u00A0").trimRight(), OStringCore(L"a \u00A0"));
  EXPECT_EQ(OStringCore(L" \n ").trimRight(), OStringCore());
  EXPECT_EQ(OStringCore().trimRight(), OStringCore());
}

TEST(OStringCore, SplitsAtEverySeparator) {
  struct {
    wchar_t const* text;
    wchar_t const* separator;
    bool keepEmptyParts;
    bool caseSensitive;
    Strings expected;
  } const cases[] = {
      {L"a,b", L",", true, true, {L"a", L"b"}},
      {L"a,,b,", L",", true, true, {L"a", L"", L"b", L""}},
      {L",a,,b,", L",", false, true, {L"a", L"b"}},
      {L"", L",", true, true, {L""}},
      {L"", L",", false, true, {}},
      {L",", L",", false, true, {}},
      {L"abc", L"", true, true, {L"abc"}},
      {L"", L"", false, true, {}},
      {L"aaa", L"aa", true, true, {L"", L"a"}},
      {L"1x2X3", L"x", true, true, {L"1", L"2X3"}},
      {L"1x2X3", L"x", true, false, {L"1", L"2", L"3"}},
      {L"AéBÉC", L"É", true, false, {L"A", L"B", L"C"}},
      {L"\U00010400q\U00010428r", L"\U00010428", true, false, {L"", L"q", L"r"}},
      {L"shorter", L"than the separator", true, false, {L"shorter"}},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(OStringCore(c.text).split(c.separator, c.keepEmptyParts, c.caseSensitive), c.expected)
        << OStringCore(c.text) << " at " << OStringCore(c.separator);
  }
}

TEST(OStringCore, ComparesByCodeUnit) {
  // Ascending by unit; by code point the last two would change places.
  Strings const ascending = {L"", L"A", L"B", L"a", L"aB", L"aa", L"b", L"\U0001F600", L"\uFF5E"};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      auto const& a = ascending[i];
      auto const& b = ascending[j];
      EXPECT_EQ(a.compare(b) < 0, i < j) << a << ' ' << b;
      EXPECT_EQ(a.compare(b) > 0, i > j) << a << ' ' << b;
      EXPECT_EQ(a < b, i < j);
      EXPECT_EQ(a == b, i == j);
      EXPECT_EQ(a != b, i != j);
    }
  }
}

TEST(OStringCore, ComparesFoldingsWithoutRegardToCase) {
  struct {
    OStringCore left;
    OStringCore right;
    int sign;
  } const cases[] = {
      {L"Hello", L"hELLO", 0},
      {L"a", L"B", -1},
      {L"Z", L"a", 1},
      {L"_", L"A", -1},
      {L"É", L"é", 0},
      {L"Σ", L"ς", 0},
      {L"ß", L"SS", 1},
      {L"ẞ", L"ß", 0},
      {L"K", L"\u212A", 0},
      {L"\U00010400", L"\U00010428", 0},
      {L"ab", L"ABC", -1},
      {L"", L"", 0},
      {L"\U00010400", L"\uFF5E", -1},
      {u"\xD801", L"\U00010400", -1},
      {u"\xDC00", u"\xDC00", 0},
  };
  auto const sign = [](int value) { return (value > 0) - (value < 0); };
  for (auto const& c : cases) {
    EXPECT_EQ(sign(c.left.compare(c.right, false)), c.sign) << c.left << ' ' << c.right;
    EXPECT_EQ(sign(c.right.compare(c.left, false)), -c.sign) << c.left << ' ' << c.right;
  }
}

TEST(OStringCore, AppendsTextsAndCharacters) {
  OStringCore text(L"a");
  text.append(OStringCore(L"b")).append(u"c").append(u"defg", 1).append(std::u16string_view(u"e"));
  text.append(u'f').append(U'\U0001F600').append(L'g').append(U'\xDC00');
  text += L"h";
  text += u'i';
  EXPECT_EQ(text + L"j", OStringCore(u"abcdef\xD83D\xDE00g\uFFFDhij"));
  text += text;
  EXPECT_EQ(text.length(), 24);
  text.clear();
  EXPECT_TRUE(text.isEmpty());
}

TEST(OStringCore, HashesEqualTextsAlikeAndOthersApart) {
  // Texts of a few units and all lengths: a hash that drops a unit or the length meets another one here.
  std::unordered_set<std::size_t> hashes;
  std::size_t texts = 0;
  for (std::size_t length = 0; length <= 40; ++length) {
    std::u16string text(length, u'\0');
    hashes.insert(std::hash<OStringCore>()(OStringCore(text)));
    ++texts;
    for (auto& unit : text) {
      for (char16_t const value : {u'\1', u'a', u'\x8000'}) {
        unit = value;
        EXPECT_EQ(std::hash<OStringCore>()(OStringCore(text)), std::hash<OStringCore>()(OStringCore(text)));
        hashes.insert(std::hash<OStringCore>()(OStringCore(text)));
        ++texts;
      }
      unit = u'\0';
    }
  }
  EXPECT_EQ(hashes.size(), texts);
}

TEST(OStringCore, HashSpreadsOverItsTopAndBottomBits) {
  constexpr int kTexts = 1 << 16;
  std::vector<int> top(256);
  std::vector<int> bottom(256);
  for (int i = 0; i < kTexts; ++i) {
    auto const hash = std::hash<OStringCore>()(OStringCore::fromUtf8("key " + std::to_string(i)));
    ++top[hash >> 56];
    ++bottom[hash & 255];
  }
  // 256 expected in each, with a deviation of 16.
  for (auto const& counts : {top, bottom}) {
    for (int const count : counts) EXPECT_NEAR(count, 256, 6 * 16);
  }
}

}  // namespace
