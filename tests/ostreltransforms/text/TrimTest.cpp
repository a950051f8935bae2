#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Texts.h"
#include "ostrelsys/OLogicException.h"
#include "ostreltransforms/composer/FontSize.h"
#include "string/InternalTrim.h"

namespace runtime {
namespace {

std::string Write(FormattedText const& text) {
  std::string notation;
  for (TextRun const& run : text.GetRuns()) {
    notation += (notation.empty() ? "" : "|") + std::to_string(run.styleIndex) + ":" + run.text.toUtf8();
  }
  return notation;
}

constexpr char kFlag[] = "\U0001F1EA\U0001F1FA";  // one cluster of four units

TEST(Trimmer, CutsAtWholeCharactersAndKeepsStyles) {
  Trimmer const cut;
  LeftDottedTrimmer const left;
  RightDottedTrimmer const right;
  PoundFillTrimmer const pound;
  struct {
    Trimmer const& trimmer;
    std::string text;
    std::uint32_t n;
    std::string trimmed, shortest, fallback;
  } const cases[] = {
      {cut, "hello", 3, "0:hel", "0:h", "0:"},
      {cut, "hello", 5, "0:hello", "0:h", "0:"},
      {cut, "hello", 9, "0:hello", "0:h", "0:"},
      {cut, "hello", 0, "0:", "0:h", "0:"},
      {cut, "1:ab|2:cd|3:ef", 3, "1:ab|2:c", "1:a", "1:"},
      {cut, "1:ab|2:cd", 2, "1:ab", "1:a", "1:"},
      {cut, std::string("1:a|2:") + kFlag + "b", 4, "1:a", "1:a", "1:"},
      {cut, std::string("1:a|2:") + kFlag + "b", 5, std::string("1:a|2:") + kFlag, "1:a", "1:"},
      {cut, std::string(kFlag) + "b", 2, "0:", std::string("0:") + kFlag, "0:"},
      {left, "hello", 3, "0:..llo", "0:.o", "0:."},
      {left, "hello", 5, "0:hello", "0:.o", "0:."},
      {left, "1:ab|2:cd|3:ef", 3, "2:..d|3:ef", "3:.f", "1:."},
      {left, "1:ab|2:cd", 2, "2:..cd", "2:.d", "1:."},
      {left, std::string("a") + kFlag + "b", 3, "0:..b", "0:.b", "0:."},
      {left, std::string("a") + kFlag, 3, "0:..", std::string("0:.") + kFlag, "0:."},
      {right, "hello", 3, "0:hel..", "0:h.", "0:."},
      {right, "hello", 5, "0:hello", "0:h.", "0:."},
      {right, "1:ab|2:cd|3:ef", 3, "1:ab|2:c..", "1:a.", "1:."},
      {right, std::string(kFlag) + "b", 1, "0:..", std::string("0:") + kFlag + ".", "0:."},
      {pound, "1:ab|2:cd", 3, "1:###", "1:#", "1:#"},
      {pound, "ab", 2, "0:##", "0:#", "0:#"},
      {pound, "ab", 4, "0:####", "0:#", "0:#"},
  };
  for (auto const& [trimmer, notation, n, trimmed, shortest, fallback] : cases) {
    FormattedText const text = Texts::Make(notation);
    EXPECT_EQ(Write(trimmer.trimTo(text, n)), trimmed) << notation << " to " << n;
    EXPECT_EQ(Write(trimmer.shortest(text)), shortest) << notation;
    EXPECT_EQ(Write(trimmer.fallback(text)), fallback) << notation;
  }
}

class InternalTrim : public testing::Test {
 protected:
  std::string Trim(std::string const& notation, double width, std::uint32_t style) {
    Size size{static_cast<float>(width), 20};
    Size const before = size;
    FormattedText out = Texts::Make("former");
    runtime::InternalTrim(Texts::Make(notation), composer_, size, static_cast<TextFitStyle>(style), out);
    EXPECT_EQ(size, before);
    return out.IsEmpty() ? "" : Write(out);
  }

  OstrelTransforms::TestCallbackScope measuring_ = Texts::MeasureByCounting();
  TextComposer composer_{Texts::MakeTable({{}, {}})};
};

TEST_F(InternalTrim, FollowsTheFitStyle) {
  struct {
    std::string text;
    double width;
    std::uint32_t style;
    std::string expected;
  } const cases[] = {
      {"hello world", 50, Overflow, "0:hello world"},
      {"hello world", 50, HideIfOverflow, ""},
      {"hello", 50, HideIfOverflow, "0:hello"},
      {"hello world", 50, Truncate, "0:hello"},
      {"hello world", 50, TruncateAlso, "0:hello"},
      {"hello world", 50, DotsLeft, "0:..rld"},
      {"hello world", 70, DotsRight, "0:hello.."},
      {"hello world", 50, PoundFill, "0:#####"},
      {"hello", 50, PoundFill, "0:hello"},
      // A length that exceeds the width by the tolerance of 0.8 at most does not count.
      {"hello", 49.25, DotsRight, "0:hello"},
      {"hello", 49, DotsRight, "0:he.."},
      {"0:hel|1:lo world", 60, DotsRight, "0:hel|1:l.."},
      // No room for dots and a character: the short forms.
      {"hello", 20, DotsRight, "0:h."},
      {"hello", 20, DotsLeft, "0:.o"},
      {"hello", 10, DotsRight, "0:."},
      {"hello", 9, DotsRight, ""},
      {"hello", 10, Truncate, "0:h"},
      {"hello", 9, Truncate, ""},
      {"hello", 9, PoundFill, ""},
      {"hello", 10, PoundFill, "0:#"},
      {"", 9, DotsRight, ""},
      {"hello", 0, DotsRight, "0:hello"},
  };
  for (auto const& [text, width, style, expected] : cases) {
    EXPECT_EQ(Trim(text, width, style), expected) << text << " in " << width << " by style " << style;
  }
}

TEST_F(InternalTrim, RefusesOtherFitStyles) {
  for (std::uint32_t const style : {7U, 0xFFFFFFFFU}) {
    Size size{9, 20};
    FormattedText out = Texts::Make("former");
    try {
      runtime::InternalTrim(Texts::Make("hello"), composer_, size, static_cast<TextFitStyle>(style), out);
      ADD_FAILURE() << style;
    } catch (OLogicException const& error) {
      EXPECT_EQ(error.GetSource(), "InternalTrim");
      EXPECT_EQ(error.GetLine(), 122);
      EXPECT_EQ(error.GetExpression(), "0");
    }
    EXPECT_TRUE(out.IsEmpty());
  }
}

// The search against trying every length, the longest first.
TEST_F(InternalTrim, FindsTheLongestFormThatFits) {
  RightDottedTrimmer const trimmer;
  for (int length = 1; length <= 12; ++length) {
    std::string const word = std::string("abcdefghijkl").substr(0, static_cast<std::size_t>(length));
    FormattedText const text = Texts::Make(word);
    for (int width = 5; width <= 130; width += 5) {
      RectFitTest const test(composer_, {static_cast<float>(width), 20});
      std::string expected = test.fits(text) ? "0:" + word : "";
      for (int n = length; n >= 1 && expected.empty(); --n) {
        FormattedText const form = trimmer.trimTo(text, static_cast<std::uint32_t>(n));
        if (test.fits(form)) expected = Write(form);
      }
      if (expected.empty() && test.fits(trimmer.shortest(text))) expected = Write(trimmer.shortest(text));
      if (expected.empty() && test.fits(trimmer.fallback(text))) expected = Write(trimmer.fallback(text));
      EXPECT_EQ(Trim(word, width, DotsRight), expected) << word << " in " << width;
    }
  }
}

TEST_F(InternalTrim, ComposesALongTextAFewTimes) {
  for (std::size_t const length : {100U, 2000U, 5000U, 1'000'000U}) {
    int measured = 0;
    auto const counting = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
        [&](OStringCore const& text, TestValues::Value const&) {
          ++measured;
          return 10 * static_cast<float>(text.length());
        });
    Size size{300, 20};
    FormattedText out;
    FormattedText text;
    text.append({0, OStringCore(std::u16string(length, u'a'))});
    // One token: one measure a composition.
    runtime::InternalTrim(std::move(text), composer_, size, DotsRight, out);
    EXPECT_EQ(out.GetText(), OStringCore(std::u16string(28, u'a') + u".."));
    EXPECT_LE(measured, 2 + static_cast<int>(std::log2(length))) << length;
  }
}

TEST(ComputeFontSize, TruncatesAndSaturates) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  struct {
    int a, b;
    double t, s, u;
    int expected;
  } const cases[] = {
      {20, 10, 0.5, 1.0, 1.0, 15},        {10, 20, 0.5, 1.0, 1.0, 15},      {20, 10, 0.49, 1.0, 1.0, 14},
      {0, 1, 1.5, 1.0, 1.0, 0},           {0, 10, 2, 1.0, 1.0, -10},        {20, 10, 0.5, 2.0, 0.5, 25},
      {20, 10, NAN, 1.0, 1.0, 0},         {20, 10, 1e300, 1.0, 1.0, kMost}, {10, 20, 1e300, 1.0, 1.0, kLeast},
      {kMost, -1, 1.0, 1.0, 1.0, kLeast},
  };
  for (auto const& [a, b, t, s, u, expected] : cases) {
    EXPECT_EQ(OstrelTransforms::ComputeFontSize(a, b, t, s, u), expected) << a << " " << b << " " << t;
  }
}

}  // namespace
}  // namespace runtime
