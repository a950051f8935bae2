#include <gtest/gtest.h>

#include <algorithm>

#include "Texts.h"
#include "ostrelsys/OCType.h"
#include "ostreltransforms/Callbacks.h"
#include "render/ComplexTokenizer.h"
#include "render/SimpleTokenizer.h"
#include "render/TokenPassIterator.h"

namespace runtime {
namespace {

constexpr char const* kEAcute = "e\u0301";
constexpr char const* kFamily = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
constexpr char const* kKeycap = "#\uFE0F\u20E3";

// A token as "word" or "(blank)" with '_' for a space, segments of a styled one as "0:ab+1:c", and behind it
// '-' for a hyphen, '~' for a soft break, '$' for a line break.
std::string Describe(Token const& token, bool withStyles) {
  std::string text;
  for (TokenSegment const& segment : token.segments) {
    if (segment.measurement != 0) text += "(measured)";
    if (&segment != token.segments.begin()) text += '+';
    if (withStyles) text += std::to_string(segment.styleIndex) + ":";
    text += segment.text.toUtf8();
  }
  std::ranges::replace(text, ' ', '_');
  if (token.isWord == 0) text = "(" + text + ")";
  char const* const breaks[] = {"", "-", "~", "$"};
  return text + breaks[token.breakAfter];
}

std::string Describe(Tokenizer& tokenizer, bool withStyles = false) {
  std::string all;
  while (auto const token = tokenizer.next()) {
    all += (all.empty() ? "" : " ") + Describe(*token, withStyles);
  }
  EXPECT_TRUE(tokenizer.atEnd());
  EXPECT_EQ(tokenizer.next(), nullptr);
  return all;
}

struct TokenCase {
  std::string text;
  std::string tokens;
};

TEST(SimpleTokenizer, EachLineIsAWordOfTheFirstStyle) {
  TokenCase const cases[] = {
      {"", ""},
      {"\n", "$"},
      {"a", "a$"},
      {"a\n", "a$"},
      {"a\n\nb", "a$ $ b$"},
      {"\na", "$ a$"},
      {"a\n\n", "a$ $"},
      {"a b.\tc\r\nd", "a_b.\tc\r$ d$"},
      {"1:a|0:b\nc", "ab$ c$"},
  };
  for (auto const& [text, tokens] : cases) {
    SimpleTokenizer tokenizer(Texts::Make(text));
    EXPECT_EQ(Describe(tokenizer), tokens) << text;
    tokenizer.reset();
    EXPECT_EQ(Describe(tokenizer), tokens) << text << ", read again";
    EXPECT_FALSE(tokenizer.HasBlank() || tokenizer.HasPunctuation() || tokenizer.usesBreakHints()) << text;
  }
  SimpleTokenizer styled(Texts::Make("3:a|0:b\nc"));
  EXPECT_EQ(Describe(styled, true), "3:ab$ 3:c$");
}

struct ModesCase {
  std::string text;
  std::string spaces, punctuation, characters;  // the tokens by break mode
};

TEST(ComplexTokenizer, CutsByMode) {
  std::string const eAcute = kEAcute, family = kFamily, keycap = kKeycap;
  ModesCase const cases[] = {
      {"", "", "", ""},
      {"word", "word", "word", "w o r d"},
      {"a\tb", "a (_) b", "a (_) b", "a (_) b"},
      {"  a  ", "(__) a (__)", "(__) a (__)", "(__) a (__)"},
      {"e.g.x", "e.g.x", "e. g. x", "e . g . x"},
      {"a,, b", "a,, (_) b", "a, , (_) b", "a , , (_) b"},
      // Line ends: each kind is one; one by itself is a blank.
      {"x\r\ny", "x$ y", "x$ y", "x$ y"},
      {"x\ry", "x$ y", "x$ y", "x$ y"},
      {"x\n\ry", "x$ (_)$ y", "x$ (_)$ y", "x$ (_)$ y"},
      {"\nx", "(_)$ x", "(_)$ x", "(_)$ x"},
      {"\r\n\r\n", "(_)$ (_)$", "(_)$ (_)$", "(_)$ (_)$"},
      {"a \nb", "a (_)$ b", "a (_)$ b", "a (_)$ b"},
      {"a.\nb", "a.$ b", "a.$ b", "a .$ b"},
      // Spaces beyond ASCII, of which no-break spaces are none.
      {"a\u3000b\u00A0c", "a (\u3000) b\u00A0c", "a (\u3000) b\u00A0c", "a (\u3000) b \u00A0 c"},
      {"a\u200Bb", "a (\u200B) b", "a (\u200B) b", "a (\u200B) b"},
      // What a reader takes for one character stays whole.
      {"a" + eAcute + "b", "a" + eAcute + "b", "a" + eAcute + "b", "a " + eAcute + " b"},
      {family + family, family + family, family + family, family + " " + family},
      {"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", "\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7",
       "\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", "\U0001F1E9\U0001F1EA \U0001F1EB\U0001F1F7"},
      {"a" + keycap + "b#c", "a" + keycap + "b#c", "a" + keycap + " b# c", "a " + keycap + " b # c"},
      {"a \u0301b", "a (_) \u0301b", "a (_) \u0301b", "a _\u0301 b"},
      // Scripts without spaces, and punctuation of theirs.
      {"\u6F22\u5B57\u3002\u4EEE", "\u6F22\u5B57\u3002\u4EEE", "\u6F22\u5B57\u3002 \u4EEE",
       "\u6F22 \u5B57 \u3002 \u4EEE"},
      {"\u0E01\u0E33\u0E19", "\u0E01\u0E33\u0E19", "\u0E01\u0E33\u0E19", "\u0E01\u0E33 \u0E19"},
  };
  for (auto const& [text, spaces, punctuation, characters] : cases) {
    ComplexTokenizer tokenizer(Texts::Make(text), false);
    // From fine to coarse and back, to see that reading leaves nothing behind.
    for (std::uint32_t const mode : {AnyCharacter, SpacesOnly, AfterPunctuation, AnyCharacter}) {
      tokenizer.SetBreakMode(mode);
      tokenizer.reset();
      EXPECT_EQ(Describe(tokenizer), mode == SpacesOnly         ? spaces
                                     : mode == AfterPunctuation ? punctuation
                                                                : characters)
          << text << ", mode " << mode;
    }
  }
}

TEST(ComplexTokenizer, KeepsTheStyleOfEachCharacter) {
  TokenCase const cases[] = {
      {"0:a|1:b", "0:a+1:b"},
      {"0:a|0:b|1:c", "0:ab+1:c"},
      {"0:ab |1: cd|0:", "0:ab (0:_+1:_) 1:cd"},
      {"1:|0:a|1:|0:b", "0:ab"},
      {"2:a|3:\n", "2:a$"},
      {"2:|3:\n|1:b", "(3:_)$ 1:b"},
      {"1:e|0:\u0301x|1:y", "1:e+0:\u0301x+1:y"},
      {"4:a|4:b", "4:ab"},
  };
  for (auto const& [text, tokens] : cases) {
    ComplexTokenizer tokenizer(Texts::Make(text), false);
    EXPECT_EQ(Describe(tokenizer, true), tokens) << text;
    tokenizer.reset();
    EXPECT_EQ(Describe(tokenizer, true), tokens) << text << ", read again";
  }
  // A cluster across a change of style is one token.
  ComplexTokenizer tokenizer(Texts::Make("1:e|0:\u0301x"), false);
  tokenizer.SetBreakMode(AnyCharacter);
  EXPECT_EQ(Describe(tokenizer, true), "1:e+0:\u0301 0:x");
}

TEST(ComplexTokenizer, PassesOverWhatFollowsAZero) {
  FormattedText text;
  text.append({0, OStringCore(std::u16string_view(u"a\0b.", 4))});
  text.append({0, OStringCore(u"c")});
  ComplexTokenizer tokenizer(text, false);
  EXPECT_EQ(Describe(tokenizer), "ac");
  EXPECT_FALSE(tokenizer.HasPunctuation());
}

TEST(ComplexTokenizer, TellsOfBlanksAndPunctuation) {
  struct {
    std::string text;
    bool hasBlank, hasPunctuation;
  } const cases[] = {{"", false, false},        {"ab", false, false},      {"a\r\nb", false, false},
                     {"a\tb", true, false},     {"a.b", false, true},      {"a, b", true, true},
                     {"a\u3000b", true, false}, {"a\u3002b", false, true}, {"a$b", false, false}};
  for (auto const& [text, hasBlank, hasPunctuation] : cases) {
    ComplexTokenizer const tokenizer(Texts::Make(text), false);
    EXPECT_EQ(tokenizer.HasBlank(), hasBlank) << text;
    EXPECT_EQ(tokenizer.HasPunctuation(), hasPunctuation) << text;
  }
}

// Text callback 4 as a function of UTF-8; the other three are empty.
void TransformWith(std::function<std::string(std::string)> transform) {
  OstrelTransforms::SetRuntimeFunctionCallbacks(
      {}, {}, {}, [transform](OStringCore const& text) { return Texts::Utf8(transform(text.toUtf8())); });
}

TEST(ComplexTokenizer, TakesBreakHintsOfTheHost) {
  // '|' in the transformed text stands for the marker.
  struct {
    std::string text, marked, tokens;
  } const cases[] = {
      {"abc", "a|bc|", "a~ bc~"},
      {"a-b", "a-|b", "a-~ b"},
      {"a-b", "a-b", "a-- b"},
      {"a b", "a |b", "a (_)~ b"},
      {"a\tb", "a\t|b", "a (_)~ b"},
      {"a\nb", "a\n|b", "a$ b"},
      {"a\r\nb", "a\r|\n|b", "a$ b"},
      {"a\nb", "a|\nb", "a~ (_)$ b"},
      {"0:a|1:b", "a|b", "a~ b"},
      // Anything else is a text without hints, where a hyphen is a character like others.
      {"a-b", "a-B", "a-b"},
      {"a-b", "a|-|", "a-b"},
      {"a-b", "", "a-b"},
      {"a-b", "a||-b", "a-b"},
  };
  for (auto const& [text, marked, tokens] : cases) {
    std::string result = marked;
    std::ranges::replace(result, '|', '\f');
    TransformWith([&result](std::string const&) { return result; });
    ComplexTokenizer tokenizer(Texts::Make(text), true);
    EXPECT_TRUE(tokenizer.usesBreakHints());
    EXPECT_EQ(Describe(tokenizer), tokens) << text << " as " << marked;
    tokenizer.SetBreakMode(AnyCharacter);
    tokenizer.reset();
    tokenizer.next();
  }
  OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {});
  EXPECT_THROW(ComplexTokenizer(Texts::Make("a"), true), std::bad_function_call);
  EXPECT_THROW(ComplexTokenizer(Texts::Make(""), true), std::bad_function_call);
}

TEST(ComplexTokenizer, NothingIsLostOrDoubled) {
  // Characters of all kinds but line ends, in random order.
  std::u16string const kinds = u"ab.-,  \t\u3000\u200B\u6F22\u3002\u0301\u0E33\u0E01\uAC00\u1161\u11A8";
  std::uint32_t seed = 12345;
  for (int round = 0; round < 2000; ++round) {
    std::u16string plain;
    FormattedText text;
    for (int run = 0; run < 3; ++run) {
      std::u16string units;
      for (int i = 0; i < 6; ++i)
        units += kinds[(seed = seed * 1664525U + 1013904223U) / 65536 % kinds.size()];
      text.append({static_cast<std::uint32_t>(run % 2), OStringCore(units)});
      plain += units;
    }
    std::ranges::replace(plain, u'\t', u' ');
    ComplexTokenizer tokenizer(text, false);
    for (std::uint32_t const mode : {SpacesOnly, AfterPunctuation, AnyCharacter}) {
      tokenizer.SetBreakMode(mode);
      tokenizer.reset();
      std::u16string joined;
      while (auto const token = tokenizer.next()) {
        auto const before = joined.size();
        for (auto const& segment : token->segments) joined += segment.text.view();
        ASSERT_GT(joined.size(), before) << "an empty token";
        if (mode != AnyCharacter || OCType::isSpace(joined[before])) continue;
        ASSERT_EQ(static_cast<int>(joined.size()),
                  OCType::nextClusterBoundary(OStringCore(plain), static_cast<int>(before)));
      }
      ASSERT_EQ(joined, plain) << text.GetText() << ", mode " << mode;
    }
  }
}

TEST(TokenPassIterator, TriesFinerBreaksOnlyWhereTheyMayHelp) {
  // By text: the modes with finer breaks allowed in a short and a long text, and without.
  struct {
    std::string text, shortText, longText, coarseOnly;
  } const cases[] = {{"a b", "02", "0", "0"},   {"a, b", "012", "01", "0"}, {"ab", "2", "2", "0"},
                     {"a.b", "12", "1", "0"},   {"", "2", "2", "0"},        {"a\nb", "2", "2", "0"},
                     {"a b.", "012", "01", "0"}};
  auto const modesOf = [](Tokenizer const& tokenizer, bool allow, bool isShort) {
    TokenPassIterator passes(tokenizer, allow, isShort);
    std::string modes;
    for (bool more = passes.HasNext(); passes.advance(); more = passes.HasNext()) {
      EXPECT_TRUE(more);
      modes += std::to_string(passes.GetBreakMode());
    }
    EXPECT_FALSE(passes.HasNext());
    return modes;
  };
  TransformWith([](std::string const& text) { return text; });
  for (auto const& [text, shortText, longText, coarseOnly] : cases) {
    ComplexTokenizer const plain(Texts::Make(text), false);
    EXPECT_EQ(modesOf(plain, true, true), shortText) << text;
    EXPECT_EQ(modesOf(plain, true, false), longText) << text;
    EXPECT_EQ(modesOf(plain, false, true), coarseOnly) << text;
    // With hints there is no cutting between any two characters.
    ComplexTokenizer const hinted(Texts::Make(text), true);
    EXPECT_EQ(modesOf(hinted, true, true), hinted.HasPunctuation() ? "01" : "0") << text;
  }
  OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {});
}

TEST(Tokenizer, TokensOutliveTheirTokenizer) {
  FormattedText const text({{0, OStringCore(std::u16string(500, u'x'))}});
  // All are kept, none, or each so many-th, while memory of the others is used again.
  for (std::size_t const step : {1U, 2U, 7U, 40U, 1000U}) {
    std::vector<std::shared_ptr<Token>> tokens;
    {
      ComplexTokenizer tokenizer(text, false);
      tokenizer.SetBreakMode(AnyCharacter);
      for (std::size_t i = 0; auto token = tokenizer.next(); ++i) {
        ASSERT_EQ(Describe(*token, true), "0:x") << i;
        token->segments.push_back({static_cast<std::uint32_t>(i), OStringCore(u"y")});
        if (i % step == 0) tokens.push_back(std::move(token));
      }
    }
    ASSERT_EQ(tokens.size(), (text.GetCharacterCount() + step - 1) / step);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      EXPECT_EQ(Describe(*tokens[i], true), "0:x+" + std::to_string(i * step) + ":y");
    }
  }
}

}  // namespace
}  // namespace runtime
