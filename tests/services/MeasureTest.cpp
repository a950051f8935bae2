#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "services/FontService.h"

using namespace ostrel::services;
using namespace ort::core;

namespace {

FontService const& Service() {
  static FontService const service;
  return service;
}

FontRequest Font(char16_t const* family, double size = 16, int weight = 400, int slant = 0) {
  return {OStringCore(family), size, weight, slant};
}

double Width(char const* text, FontRequest const& font = Font(u"DejaVu Sans")) {
  return Service().MeasureTextWidth(OStringCore::fromUtf8(text).view(), font);
}

struct Known {
  char16_t const* family;
  int weight;
  char const* text;
  double width;
};

// Widths at 16 px, as a browser (Chromium, text-rendering: geometricPrecision) gives them for the same fonts.
constexpr Known kKnown[] = {
    {u"sans-serif", 400, "Hello, World", 96.578},
    {u"sans-serif", 400, "AVATAR To Wave", 131.070},
    {u"sans-serif", 400, "office affluent fjord ffi fl fi", 202.945},
    {u"sans-serif", 400, "1,234,567.89", 106.875},
    {u"sans-serif", 400, "\u221242.5 %", 69.320},
    {u"sans-serif", 400, "The quick brown fox jumps over the lazy dog", 359.867},
    {u"sans-serif", 400, "Größe \u2013 Über", 104.797},
    {u"sans-serif", 400, "\u201Cquoted\u201D \u2026 text", 130.688},
    {u"sans-serif", 400, "Привет, мир", 103.977},
    {u"sans-serif", 400, "Ελληνικά", 73.516},
    {u"sans-serif", 400, "שלום עולם", 74.578},
    {u"sans-serif", 400, "مرحبا بالعالم", 84.398},
    {u"sans-serif", 400, "السلام عليكم 123", 122.914},
    {u"sans-serif", 400, "ქართული", 75.547},
    {u"sans-serif", 400, "😀 smile", 64.422},
    {u"sans-serif", 400, "ffi", 15.469},
    {u"sans-serif", 400, "x\u0301y", 18.938},
    {u"sans-serif", 700, "AVATAR To Wave", 148.188},
    {u"serif", 400, "AVATAR To Wave", 137.641},
    {u"monospace", 400, "Hello, World", 115.594},
};

TEST(Measure, AgreesWithABrowser) {
  for (Known const& known : kKnown) {
    EXPECT_NEAR(Width(known.text, Font(known.family, 16, known.weight)), known.width, 0.001) << known.text;
  }
}

TEST(Measure, IsProportionalToTheSize) {
  for (Known const& known : kKnown) {
    double const small = Width(known.text, Font(known.family, 8, known.weight));
    EXPECT_EQ(Width(known.text, Font(known.family, 64, known.weight)), 8 * small) << known.text;
  }
}

TEST(Measure, KernsAcrossTheWholeString) {
  EXPECT_LT(Width("AV"), Width("A") + Width("V"));
  EXPECT_LT(Width("To"), Width("T") + Width("o"));
  EXPECT_EQ(Width("AV"), Width("VA"));
}

TEST(Measure, JoinsArabicLetters) { EXPECT_LT(Width("بب"), 2 * Width("ب")); }

TEST(Measure, GivesControlCharactersAndZeroWidthSpacesNoWidth) {
  EXPECT_EQ(Width("\u200B"), 0);
  EXPECT_EQ(Width("\t\n\r\x01\x7F\u0085\uFEFF"), 0);
  EXPECT_EQ(Width("a\u200Bb"), Width("ab"));
  EXPECT_EQ(Width("A\u200BV"), Width("AV"));
  EXPECT_EQ(Width("นี้\u200Bคือ"), Width("นี้คือ"));
  EXPECT_EQ(Width(""), 0);
}

TEST(Measure, FallsBackForEachScript) {
  // The box that stands for what no font has; U+10FFFF never has a glyph.
  double const box = Width("\U0010FFFF");
  EXPECT_GT(box, 0);
  for (char const* text :
       {"नमस्ते", "হ্যালো", "สวัสดี", "你好世界", "こんにちは", "தமிழ்", "ಕನ್ನಡ", "አማርኛ", "မြန်မာ", "ខ្មែរ"}) {
    double const count = OStringCore::fromUtf8(text).length();
    EXPECT_GT(Width(text), 0) << text;
    EXPECT_NE(Width(text), count * box) << text;
    // Text beside it keeps its own font.
    double const both = Width((std::string(text) + " xyz").c_str());
    EXPECT_NEAR(both, Width(text) + Width(" xyz"), 1e-9) << text;
  }
}

TEST(Measure, SurvivesIllFormedAndLongText) {
  std::u16string const halves = u"a\xD800 b\xDC00";
  EXPECT_GT(Service().MeasureTextWidth(halves, Font(u"serif")), Width("ab", Font(u"serif")));
  std::u16string const latin(300'000, u'x');
  EXPECT_NEAR(Service().MeasureTextWidth(latin, Font(u"serif")), 300'000 * Width("x", Font(u"serif")), 1e-3);
  std::u16string const han(100'000, u'\u4F60');
  EXPECT_NEAR(Service().MeasureTextWidth(han, Font(u"serif")), 1'600'000, 1e-3);
}

TEST(Measure, ReadsTheFontFromATuple) {
  auto const font = MakeFont(Font(u"DejaVu Sans"));
  EXPECT_EQ(Service().MeasureTextWidth(OStringCore(u"AVATAR"), font), static_cast<float>(Width("AVATAR")));
  auto const resolved = Service().ResolveFont(MakeFont(Font(u"No Such Font, 'DejaVu Serif'", 20)));
  IStoreTuple const& members = resolved->AsTuple();
  ASSERT_EQ(members.GetCount(), 7);
  EXPECT_EQ(members.GetMember(0)->GetString().Get(), OStringCore(u"DejaVu Serif"));
  auto const metrics = Service().GetMetrics(Font(u"DejaVu Serif", 20));
  EXPECT_EQ(members.GetMember(4)->GetReal64(), metrics.ascent);
  EXPECT_EQ(members.GetMember(5)->GetReal64(), metrics.height);
  EXPECT_EQ(members.GetMember(6)->GetReal64(), metrics.leading);
  EXPECT_TRUE(Service().ResolveFont(resolved)->Equals(*resolved));
}

TEST(Measure, RefusesAValueThatIsNoFont) {
  auto const name = factory::MakeString(OStringCore(u"serif"));
  auto const four = factory::MakeInt32(400);
  for (Value const& value :
       {Value(), name, factory::MakeTuple({name, four, four, four}), factory::MakeTuple({name})}) {
    try {
      Service().MeasureTextWidth(OStringCore(u"x"), value);
      ADD_FAILURE();
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), OrtError_WrongValueKind);
      EXPECT_EQ(error.GetMessage(),
                OStringCore(u"a font is a tuple (family String, size Real64, weight Int32, slant Int32)"));
    }
  }
}

TEST(Measure, TakesMetricsFromTheFont) {
  auto const metrics = Service().GetMetrics(Font(u"DejaVu Sans", 2048));
  EXPECT_EQ(metrics.ascent, 1901);
  EXPECT_EQ(metrics.height, 1901 + 483);
  EXPECT_EQ(metrics.leading, 0);
}

TEST(Measure, CountsUnitsWhenFixed) {
  auto const fixed = MakeFixedMeasurer();
  auto const font = MakeFont(Font(u"serif", 99));
  EXPECT_EQ(fixed->MeasureTextWidth(OStringCore::fromUtf8("a😀\u200B"), font), 40.0F);
  EXPECT_EQ(fixed->MeasureTextWidth(std::u16string_view(u"abc"), Font(u"x")), 30.0);
  EXPECT_EQ(fixed->ResolveFont(font), font);
  EXPECT_EQ(fixed->GetCssFontFamilyList(OStringCore(u"Arial, Georgia")), "'Arial', 'Georgia', sans-serif");
}

TEST(MeasureThreads, GiveTheWidthsOfOneThread) {
  std::vector<std::u16string> texts;
  for (int i = 0; i < 400; ++i) {
    std::string const number = std::to_string(i * 7919);
    texts.push_back(std::u16string(OStringCore::fromUtf8((i % 2 != 0 ? "Label " : "नाम ") + number).view()));
  }
  std::vector<double> expected;
  FontService const alone;
  for (auto const& text : texts) expected.push_back(alone.MeasureTextWidth(text, Font(u"serif")));

  FontService const shared;
  std::vector<std::vector<double>> found(4);
  std::vector<std::thread> threads;
  for (auto& widths : found) {
    threads.emplace_back([&] {
      for (auto const& text : texts) widths.push_back(shared.MeasureTextWidth(text, Font(u"serif")));
    });
  }
  for (auto& thread : threads) thread.join();
  for (auto const& widths : found) EXPECT_EQ(widths, expected);
}

}  // namespace
