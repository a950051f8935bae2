#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "../../ostrelrtcore/ErrorOf.h"
#include "Texts.h"
#include "ostrelsys/OLogicException.h"
#include "render/RectFitTest.h"
#include "render/TextComposer.h"

namespace runtime {
namespace {

using ort::core::ErrorOf;
using Texts::Style;

constexpr float kFloatNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kFloatInfinity = std::numeric_limits<float>::infinity();

// Runs as "text@x,y", of another style than 0 as "1:text@x,y", and the status behind them where it is not 0.
std::string Describe(ComposedText const& composed) {
  std::ostringstream text;
  for (ComposedTextRun const& run : composed.GetRuns()) {
    if (&run != composed.GetRuns().data()) text << ' ';
    if (run.styleIndex != 0) text << run.styleIndex << ':';
    text << run.text << '@' << run.x << ',' << run.y;
  }
  if (composed.GetStatus() != AllPlaced) text << " !" << composed.GetStatus();
  return text.str();
}

std::string DescribeBounds(Composed const& composed) {
  Rect const& bounds = composed.GetBounds();
  std::ostringstream text;
  text << bounds.x << ',' << bounds.y << ' ' << bounds.width << 'x' << bounds.height;
  return text.str();
}

ComposedText Compose(TextComposer& composer, std::string const& text, Size const& size) {
  ComposedText composed;
  composer.compose(Texts::Make(text), size, composed);
  return composed;
}

// Styles of the cases; every unit is 10 wide, so is every line high with the baseline at 8.
std::vector<Style> const kStyles = {
    {},                                            // 0 left
    {.hAlign = 1},                                 // 1 centred
    {.hAlign = 2},                                 // 2 right
    {.height = 20, .ascent = 15, .leading = 4},    // 3 large, with leading
    {.orientation = 3},                            // 4 turned clockwise
    {.orientation = 2},                            // 5 turned anticlockwise
    {.hAlign = 1, .vAlign = 1},                    // 6 anchored in the middle
    {.hAlign = 2, .vAlign = 2},                    // 7 anchored at the end
    {.orientation = 3, .hAlign = 1, .vAlign = 2},  // 8
    {.orientation = 2, .hAlign = 2, .vAlign = 1},  // 9
};

struct LayoutCase {
  std::uint32_t wrapMode;
  std::string text;
  Size size;
  std::string runs;
};

class ComposerCases : public testing::Test {
 protected:
  void Check(std::vector<LayoutCase> const& cases, bool clipHeight = false) {
    auto const measuring = Texts::MeasureByCounting();
    TextComposer composer(Texts::MakeTable(kStyles));
    composer.SetClipHeight(clipHeight);
    for (auto const& [wrapMode, text, size, runs] : cases) {
      composer.SetWrapMode(wrapMode);
      auto const composed = Compose(composer, text, size);
      EXPECT_EQ(Describe(composed), runs)
          << "mode " << wrapMode << ", " << text << " in " << size.width << " x " << size.height;
      EXPECT_EQ(composer.GetWrapMode(), wrapMode == 3 ? WordWrap : wrapMode);
      // A composer that has composed before composes the same as a new one.
      TextComposer fresh(Texts::MakeTable(kStyles));
      fresh.SetWrapMode(wrapMode);
      fresh.SetClipHeight(clipHeight);
      EXPECT_EQ(Describe(Compose(fresh, text, size)), runs);
      if (!clipHeight) continue;
      RectFitTest const test(composer, size);
      EXPECT_EQ(test.fits(Texts::Make(text)), composed.GetStatus() == AllPlaced) << text;
    }
  }
};

TEST_F(ComposerCases, LinesEndAtLineBreaksAlone) {
  Check({
      {NoWrap, "", {100, 100}, ""},
      {NoWrap, "ab", {100, 100}, "ab@0,8"},
      {NoWrap, "ab cd", {20, 100}, "ab cd@0,8 !1"},
      {NoWrap, "ab\ncd", {20, 100}, "ab@0,8 cd@0,18"},
      {NoWrap, "ab\n\ncd", {20, 100}, "ab@0,8 @0,18 cd@0,28"},
      {NoWrap, "0:a|3:b|0:\nc", {100, 100}, "a@0,15 3:b@10,15 c@0,32"},
      {NoWrap, "0:abc|3:d\nab", {30, 100}, "abc@0,15 3:d@30,15 3:ab@0,39 !1"},
      // Neighbours of one style are one run.
      {NoWrap, "0:a|0:b c|1: d", {100, 100}, "ab c@0,8 1: d@40,8"},
      {NoWrap, "0:a\n|1:\n|0:b", {100, 100}, "a@0,8 1: @0,18 b@0,28"},
  });
}

TEST_F(ComposerCases, TokensAreCutAtTheEdge) {
  Check({
      {Clip, "abcd", {40, 100}, "abcd@0,8"},
      {Clip, "abcd", {39, 100}, "abc@0,8 !1"},
      {Clip, "abcd", {39.3F, 100}, "abcd@0,8"},
      {Clip, "abcd", {5, 100}, "@0,8 !1"},
      {Clip, "abcd\nef\nghi", {20, 100}, "ab@0,8 ef@0,18 gh@0,28 !1"},
      {Clip, "0:ab|3: cd|0: e", {35, 100}, "ab@0,15 3: @20,15 !1"},
      {Clip, "0:ab|3:cd", {30, 100}, "ab@0,15 3:c@20,15 !1"},
      {Clip, "0:abcd\n|3:ef", {20, 100}, "ab@0,8 3:ef@0,25 !1"},
      // Nothing is cut where there is no room at all, and none without bounds.
      {Clip, "abcd", {-5, 100}, "abcd@0,8"},
      {Clip, "abcd", {20, 0}, "abcd@0,8"},
      // Whole characters: 3 units of e and two accents, 8 of a family, 2 of a face.
      {Clip, "ae\u0301\u0323b", {30, 100}, "a@0,8 !1"},
      {Clip, "a\U0001F468\u200D\U0001F469\u200D\U0001F467b", {80, 100}, "a@0,8 !1"},
      {Clip,
       "a\U0001F468\u200D\U0001F469\u200D\U0001F467b",
       {90, 100},
       "a\U0001F468\u200D\U0001F469\u200D\U0001F467@0,8 !1"},
      {Clip, "\U0001F600\U0001F600", {30, 100}, "\U0001F600@0,8 !1"},
  });
}

TEST_F(ComposerCases, LinesEndWhereAWordWouldNotFit) {
  Check({
      {WordWrap, "", {50, 100}, ""},
      {WordWrap, "ab cd", {50, 100}, "ab cd@0,8"},
      {WordWrap, "ab cd", {49.2F, 100}, "ab cd@0,8"},
      {WordWrap, "ab cd", {49, 100}, "ab@0,8 cd@0,18"},
      {WordWrap, "ab   cd", {40, 100}, "ab@0,8 cd@0,18"},
      {WordWrap, "ab   cd", {20, 100}, "ab@0,8 cd@0,18"},
      {WordWrap, "  ab", {30, 100}, "  @0,8 ab@0,18"},
      {WordWrap, "  ab", {10, 100}, "  @0,8 a@0,18 b@0,28 !1"},
      {WordWrap, "ab ", {20, 100}, "ab@0,8"},
      {WordWrap, "ab ", {30, 100}, "ab @0,8"},
      {WordWrap, "ab \ncd", {20, 100}, "ab@0,8 cd@0,18"},
      {WordWrap, "ab \ncd", {30, 100}, "ab @0,8 cd@0,18"},
      {WordWrap, "ab\n\ncd", {20, 100}, "ab@0,8  @0,18 cd@0,28"},
      {WordWrap, "ab\n\ncd", {5, 100}, "a@0,8 b@0,18 @0,28 c@0,38 d@0,48 !1"},
      {3, "ab cd", {20, 100}, "ab@0,8 cd@0,18"},
      // Finer breaks, after those between words have failed.
      {WordWrap, "ab.cd.ef gh", {50, 100}, "ab.@0,8 cd.ef@0,18 gh@0,28"},
      {WordWrap, "abcd ef", {20, 100}, "ab@0,8 cd@0,18 ef@0,28"},
      {WordWrap, "abcd.ef", {20, 100}, "ab@0,8 cd@0,18 .e@0,28 f@0,38"},
      {WordWrap, "\u6F22\u5B57\u3002\u4EEE\u540D", {30, 100}, "\u6F22\u5B57\u3002@0,8 \u4EEE\u540D@0,18"},
      {WordWrap, "ae\u0301b", {20, 100}, "a@0,8 e\u0301@0,18 b@0,28"},
      // A long text is not cut between characters: its words stick out.
      {WordWrap,
       "a abcdefghijklmnopqrstuvwxyz012 b",
       {50, 100},
       "a@0,8 abcdefghijklmnopqrstuvwxyz012@0,18 b@0,28 !1"},
      {WordWrap,
       "abcdefghijklmnopqrstuvwxyz01234.bc",
       {50, 100},
       "abcdefghijklmnopqrstuvwxyz01234.@0,8 bc@0,18 !1"},
      // One word without punctuation is, however long.
      {WordWrap,
       "abcdefghijklmnopqrstuvwxyz0123456789",
       {200, 100},
       "abcdefghijklmnopqrst@0,8 uvwxyz0123456789@0,18"},
      // Without bounds nothing wraps.
      {WordWrap, "ab cd\nef", {0, 100}, "ab cd@0,8 ef@0,18"},
      {WordWrap, "ab cd", {20, 0}, "ab cd@0,8"},
      // Styles count by token.
      {WordWrap, "0:a|3:b c|0:d", {30, 100}, "a@0,15 3:b@10,15 3:c@0,39 d@10,39"},
  });
}

TEST_F(ComposerCases, LinesAreAligned) {
  Check({
      {WordWrap, "1:abc d", {50, 100}, "1:abc d@0,8"},
      {WordWrap, "1:abc d", {40, 100}, "1:abc@5,8 1:d@15,18"},
      {WordWrap, "2:abc d", {40, 100}, "2:abc@10,8 2:d@30,18"},
      {NoWrap, "1:abc", {20, 100}, "1:abc@0,8 !1"},
      {NoWrap, "2:abc", {20, 100}, "2:abc@0,8 !1"},
      {NoWrap, "2:a|0:b", {40, 100}, "2:a@20,8 b@30,8"},
      {NoWrap, "0:a|2:b", {40, 100}, "a@0,8 2:b@10,8"},
  });
}

TEST_F(ComposerCases, LinesRunDownwardsAndUpwards) {
  Check({
      {WordWrap, "4:ab cd", {60, 20}, "4:ab@51,0 4:cd@41,0"},
      {WordWrap, "5:ab cd", {60, 20}, "5:ab@8,19 5:cd@18,19"},
      {WordWrap, "4:ab cd", {20, 60}, "4:ab cd@11,0"},
      {NoWrap, "4:ab|0:cd", {30, 100}, "4:ab@21,0 cd@21,20"},
      {NoWrap, "5:ab|0:cd", {30, 100}, "5:ab@8,99 cd@8,79"},
  });
}

TEST_F(ComposerCases, TheFirstLineBeyondTheBottomIsTheLast) {
  Check(
      {
          {NoWrap, "a\nb\nc", {50, 30}, "a@0,8 b@0,18 c@0,28"},
          {NoWrap, "a\nb\nc", {50, 29.3F}, "a@0,8 b@0,18 c@0,28"},
          {NoWrap, "a\nb\nc\nd", {50, 25}, "a@0,8 b@0,18 c@0,28 !2"},
          {NoWrap, "a\nb\nc\nd", {50, -5}, "a@0,8 b@0,18 c@0,28 d@0,38"},
          {NoWrap, "a\nb\nc\nd", {0, 5}, "a@0,8 b@0,18 c@0,28 d@0,38"},
          // Leading stands between lines only.
          {NoWrap, "3:a\nb", {50, 44}, "3:a@0,15 3:b@0,39"},
          {NoWrap, "3:a\nb", {50, 43}, "3:a@0,15 3:b@0,39 !2"},
          // A line that is too wide as well.
          {NoWrap, "aaa\nb\nc", {20, 15}, "aaa@0,8 b@0,18 !1"},
          {WordWrap, "ab cd ef gh", {20, 25}, "ab@0,8 cd@0,18 ef@0,28 !2"},
      },
      true);
}

TEST(TextComposer, AnchorsUnboundedTexts) {
  auto const measuring = Texts::MeasureByCounting();
  TextComposer composer(Texts::MakeTable(kStyles));
  struct {
    std::string text, runs, bounds;
  } const cases[] = {
      {"0:abc\nd", "abc@0,8 d@0,18", "0,0 30x20"}, {"1:abc\nd", "1:abc@-15,8 1:d@-15,18", "-15,0 30x20"},
      {"2:abc", "2:abc@-30,8", "-30,0 30x10"},     {"6:abc\nd", "6:abc@-15,-2 6:d@-15,8", "-15,-10 30x20"},
      {"7:abc", "7:abc@-30,-2", "-30,-10 30x10"},  {"8:abc\nd", "8:abc@11,-15 8:d@1,-15", "-1,-15 20x30"},
      {"9:abc", "9:abc@3,29", "-5,-1 10x30"},      {"4:abc", "4:abc@-9,0", "-11,0 10x30"},
      {"5:abc", "5:abc@8,-1", "0,-31 10x30"},
  };
  for (auto const& [text, runs, bounds] : cases) {
    auto const composed = Compose(composer, text, {});
    EXPECT_EQ(Describe(composed), runs) << text;
    EXPECT_EQ(DescribeBounds(composed), bounds) << text;
    EXPECT_EQ(composed.GetSize(), (Size{composed.GetBounds().width, composed.GetBounds().height}));
  }
  // From an origin of its own; Clip leaves the text at it.
  composer.SetOrigin(100, 200);
  EXPECT_EQ(Describe(Compose(composer, "7:abc", {})), "7:abc@70,198");
  composer.SetWrapMode(Clip);
  EXPECT_EQ(Describe(Compose(composer, "7:abc", {})), "7:abc@100,208");
}

TEST(TextComposer, KeepsInsetsFree) {
  auto const measuring = Texts::MeasureByCounting();
  TextComposer composer(Texts::MakeTable(kStyles));
  struct {
    float left, right, extra, width;
    std::string text, runs;
  } const cases[] = {
      {5, 10, 0, 50, "0:abc", "abc@5,8"},      {5, 10, 0, 50, "1:abc", "1:abc@7.5,8"},
      {5, 10, 0, 50, "2:abc", "2:abc@10,8"},   {5, 10, 0, 40, "2:abc", "2:abc@5,8 !1"},
      {5, 10, 0, 40, "1:abc", "1:abc@5,8 !1"}, {5, 10, 3, 15, "0:abc", "abc@8,8 !1"},
      {5, 10, 3, 15, "2:abc", "2:abc@0,8 !1"}, {5, 10, 3, 0, "0:abc", "abc@8,8"},
  };
  for (auto const& [left, right, extra, width, text, runs] : cases) {
    composer.SetInsets(left, right, extra);
    EXPECT_EQ(Describe(Compose(composer, text, {width, 50})), runs) << text << " in " << width;
  }
}

TEST(TextComposer, ClipsLinesAtTheirEnd) {
  auto const measuring = Texts::MeasureByCounting();
  TextComposer composer(Texts::MakeTable(kStyles));
  composer.SetClipWidth(true);
  EXPECT_EQ(Describe(Compose(composer, "abcdef\nab", {35, 50})), "abc@0,8 ab@0,18 !1");
  EXPECT_EQ(Describe(Compose(composer, "0:ab|3:cd|0:ef", {35, 50})), "ab@0,15 3:c@20,15 !1");
  EXPECT_EQ(Describe(Compose(composer, "0:ab|3:cd|0:ef", {25, 50})), "ab@0,15 !1");
  EXPECT_EQ(Describe(Compose(composer, "abcdef", {})), "abcdef@0,8");
}

TEST(TextComposer, NoLengthExceedsAnotherByTheTolerance) {
  TextComposer composer(Texts::MakeTable(kStyles));
  float width = 0;
  auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [&](OStringCore const&, TestValues::Value const&) { return width; });
  struct {
    float measured, box;
    std::uint32_t status;
  } const cases[] = {{1.6F, 0.8F, AllPlaced},
                     {std::nextafter(1.6F, 2.0F), 0.8F, WidthExceeded},
                     {10.5F, 10, AllPlaced},
                     {11, 10, WidthExceeded}};
  for (auto const& [measured, box, status] : cases) {
    width = measured;
    EXPECT_EQ(Compose(composer, "a", {box, 10}).GetStatus(), status) << measured;
  }
}

TEST(TextComposer, LivesWithAnySizeAndMeasure) {
  float const values[] = {kFloatNaN, kFloatInfinity, -kFloatInfinity, -1, 0, 1e30F, 25};
  std::string const texts[] = {"", "a", "ab cd. ef\ng", "0:ab |3:cd", "\n\n", std::string(50, 'a'), " "};
  for (float const measure : values) {
    auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
        [&](OStringCore const& text, TestValues::Value const&) {
          return measure * static_cast<float>(text.length());
        });
    for (std::uint32_t const mode : {0U, 1U, 2U, 7U}) {
      for (float const width : values) {
        for (float const height : values) {
          TextComposer composer(Texts::MakeTable(
              {{.height = height}, {}, {}, {.orientation = 2, .hAlign = 1, .ascent = width}}));
          composer.SetWrapMode(mode);
          composer.SetClipHeight(true);
          composer.SetInsets(0, width);
          for (std::string const& text : texts) {
            auto const composed = Compose(composer, text, {width, height});
            ASSERT_LE(composed.GetLineCount(), std::max<std::size_t>(text.size(), 1));
          }
        }
      }
    }
  }
}

TEST(TextComposer, WrappedTextKeepsAllItsWords) {
  // Random words in random widths, against the plain greedy rule on words.
  auto const measuring = Texts::MeasureByCounting();
  TextComposer composer(Texts::MakeTable(kStyles));
  composer.SetWrapMode(WordWrap);
  std::uint32_t seed = 99;
  auto const random = [&seed](std::uint32_t below) {
    seed = seed * 1664525U + 1013904223U;
    return seed / 65536 % below;
  };
  for (int round = 0; round < 500; ++round) {
    auto const columns = 8 + random(20);
    std::string text;
    std::vector<std::string> lines(1);
    for (auto words = 1 + random(30); words > 0; --words) {
      std::string const word(1 + random(8), static_cast<char>('a' + random(26)));
      text += (text.empty() ? "" : " ") + word;
      std::string& last = lines.back();
      if (last.size() + (last.empty() ? 0 : 1) + word.size() <= columns) {
        last += (last.empty() ? "" : " ") + word;
      } else {
        lines.push_back(word);
      }
    }
    auto const composed = Compose(composer, text, {static_cast<float>(columns * 10), 1000});
    std::vector<std::string> got;
    for (auto const& run : composed.GetRuns()) got.push_back(run.text.toUtf8());
    ASSERT_EQ(got, lines) << text;
    ASSERT_EQ(composed.GetStatus(), AllPlaced);
    // The width that was taken is wide enough.
    ASSERT_EQ(Describe(Compose(composer, text, {composed.GetSize().width, 1000})), Describe(composed));
  }
}

TEST(TextComposer, LongTextsAreLaidOutInLinearTime) {
  int calls = 0;
  auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [&](OStringCore const& text, TestValues::Value const&) {
        calls += text.length();
        return 10 * static_cast<float>(text.length());
      });
  constexpr int count = 20'000;
  std::string const letters(count, 'a');
  std::string points = letters;
  points[1] = '.';
  for (std::uint32_t const mode : {NoWrap, Clip, WordWrap}) {
    for (std::string const& text : {letters, points, std::string(count, ' '), std::string(count, '\n')}) {
      for (float const width : {-1.0F, 5.0F, 1000.0F}) {
        TextComposer composer(Texts::MakeTable(kStyles));
        composer.SetWrapMode(mode);
        calls = 0;
        Compose(composer, text, {width, 10});
        EXPECT_LE(calls, 4 * count) << mode << ' ' << width << ' ' << text.substr(0, 3);
      }
    }
  }
}

TEST(TextComposer, MeasuresThatDoNotGrowTakeNoLonger) {
  std::size_t units = 0;
  auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [&](OStringCore const& text, TestValues::Value const&) {
        units += static_cast<std::size_t>(text.length());
        return 5.0F;
      });
  constexpr std::size_t count = 100'000;
  TextComposer composer(Texts::MakeTable(kStyles));
  composer.SetWrapMode(WordWrap);
  auto const composed = Compose(composer, std::string(count, 'a'), {100, 10});
  EXPECT_EQ(composed.GetStatus(), AllPlaced);
  EXPECT_LT(units, 20 * count);
}

TEST(TextComposer, LettersThatJoinAreBrokenByTheirWidthTogether) {
  // A text is 6 wider than its letters, as words are whose letters join or kern.
  auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [](OStringCore const& text, TestValues::Value const&) {
        return 4 * static_cast<float>(text.length()) + 6;
      });
  TextComposer composer(Texts::MakeTable(kStyles));
  composer.SetWrapMode(WordWrap);
  struct {
    std::string text;
    float width;
    std::string runs;
  } const cases[] = {
      {"abcde", 26, "abcde@0,8"},
      {"abcde", 25, "abcd@0,8 e@0,18"},
      {"abcde", 14, "ab@0,8 cd@0,18 e@0,28"},
      {"abcde", 10, "a@0,8 b@0,18 c@0,28 d@0,38 e@0,48"},
      {"abcde fg", 26, "abcde@0,8 fg@0,18"},
      {"0:ab|3:cdef|0:g", 52, "ab@0,15 3:cdef@14,15 g@36,15"},
      {"0:ab|3:cdef|0:g", 51, "ab@0,15 3:cdef@14,15 g@0,32"},
  };
  for (auto const& [text, width, runs] : cases) {
    EXPECT_EQ(Describe(Compose(composer, text, {width, 100})), runs) << text << " in " << width;
  }
}

TEST(TextComposer, MeasuresWithTheFontOfEachStyle) {
  TextComposer composer(Texts::MakeTable(kStyles));
  auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [&](OStringCore const& text, TestValues::Value const& font) {
        return static_cast<float>(text.length() * (10 + font->AsTuple().GetMember(0)->GetInt32()));
      });
  EXPECT_EQ(Describe(Compose(composer, "0:ab|2:cd|3:e", {})), "ab@0,15 2:cd@20,15 3:e@44,15");
}

TEST(TextComposer, RefusesWhatTheStyleTableDoesNotHave) {
  auto const measuring = Texts::MeasureByCounting();
  auto const compose = [](TestValues::Value const& table, std::string const& text) {
    return ErrorOf([&] {
      TextComposer composer(table);
      Compose(composer, text, {});
    });
  };
  using ort::core::Error;
  EXPECT_EQ(compose(nullptr, "a"), Error(55, "text_font"));
  EXPECT_EQ(compose(TestValues::I32(1), "a").first, 55);
  for (std::string const name :
       {"text_font", "text_orientation", "hAlign", "vAlign", "font_height", "ascent", "leading"}) {
    EXPECT_EQ(compose(Texts::MakeTable({{}}, {name}), "a"), Error(219, name));
  }
  EXPECT_EQ(compose(Texts::MakeTable({}), "a").first, 55);
  EXPECT_EQ(compose(Texts::MakeTable({}), "").first, 55);
  EXPECT_EQ(compose(Texts::MakeTable({{}}), "1:a").first, 55);
  EXPECT_EQ(compose(Texts::MakeTable({{}}), "0:a|1:b").first, 55);
  EXPECT_EQ(compose(Texts::MakeTable({{}}), "0:a|1:"), Error(-1, "no error"));
  // An empty text is in the first style, whatever its runs say.
  EXPECT_EQ(compose(Texts::MakeTable({{}}), "1:"), Error(-1, "no error"));

  FormattedText beyond;
  beyond.append({0, Texts::Utf8("a")});
  beyond.append({0xFFFFFFFFU, Texts::Utf8("b")});
  TextComposer composer(Texts::MakeTable({{}}));
  ComposedText composed;
  EXPECT_EQ(ErrorOf([&] { composer.compose(beyond, {}, composed); }).first, 55);

  using namespace TestValues;
  auto const withFonts = [](Value const& fonts) {
    return factory::MakeTable({{Texts::Utf8("text_font"), fonts},
                               {Texts::Utf8("text_orientation"), Ints({0})},
                               {Texts::Utf8("hAlign"), Ints({0})}});
  };
  EXPECT_EQ(compose(withFonts(Ints({1})), "a").first, 55);
  EXPECT_EQ(compose(withFonts(Column(StoreTypeInfo::Tuple, std::vector<Value>{nullptr}, {kMissing})), "a"),
            Error(55, "text_font"));
}

TEST(TextComposer, IsAsBeforeWhenTheMeasurerThrew) {
  TextComposer composer(Texts::MakeTable(kStyles));
  composer.SetWrapMode(WordWrap);
  ComposedText composed;
  {
    auto const measuring = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
        [](OStringCore const& text, TestValues::Value const&) -> float {
          if (text.view() == u"bad") throw std::runtime_error("no width");
          return 10;
        });
    composer.compose(Texts::Make("good"), {100, 100}, composed);
    EXPECT_EQ(composed.GetRuns().size(), 1U);
    EXPECT_THROW(composer.compose(Texts::Make("good bad"), {100, 0}, composed), std::runtime_error);
    EXPECT_TRUE(composed.GetRuns().empty());
    EXPECT_EQ(composer.GetWrapMode(), WordWrap);
  }
  auto const measuring = Texts::MeasureByCounting();
  EXPECT_EQ(Describe(Compose(composer, "good bad", {50, 100})), "good@0,8 bad@0,18");
  OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {});
  EXPECT_THROW(Compose(composer, "a", {}), std::bad_function_call);
  EXPECT_TRUE(RectFitTest(composer, {}).fits(FormattedText()));
}

TEST(FormattedText, KnowsItsRuns) {
  struct {
    std::string notation;
    std::uint32_t count;
    bool isEmpty, isSingle;
    std::string text;
  } const cases[] = {{"", 0, true, true, ""},
                     {"ab", 2, false, true, "ab"},
                     {"0:|1:", 0, true, false, ""},
                     {"1:a|1:b", 2, false, true, "ab"},
                     {"1:a|0:|1:b", 2, false, false, "ab"},
                     {"0:\U0001F600|1:b", 3, false, false, "\U0001F600b"}};
  for (auto const& [notation, count, isEmpty, isSingle, whole] : cases) {
    auto text = Texts::Make(notation);
    EXPECT_EQ(text.GetCharacterCount(), count) << notation;
    EXPECT_EQ(text.IsEmpty(), isEmpty) << notation;
    EXPECT_EQ(text.HasSingleStyle(), isSingle) << notation;
    EXPECT_EQ(text.GetText().toUtf8(), whole) << notation;
    text.clear();
    EXPECT_EQ(text, FormattedText()) << notation;
    EXPECT_TRUE(text.HasSingleStyle());
  }
}

}  // namespace
}  // namespace runtime
