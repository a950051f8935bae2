#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>

#include "services/FontCatalog.h"
#include "services/PairAdvances.h"
#include "services/ThreadShaper.h"

using namespace ostrel::services;

namespace {

FontCatalog const& Catalog() {
  static FontCatalog const catalog({});
  return catalog;
}

std::u16string RandomText() {
  auto const slots = *rc::gen::container<std::vector<int>>(
      rc::gen::oneOf(rc::gen::inRange(0x20, 0x7F), rc::gen::inRange(0, PairSlots::kCount),
                     rc::gen::elementOf(std::vector<int>{'f', 'i', 'l', 't', 'j', 'T', '.', 'A', 'V', 'o'})));
  std::u16string text;
  for (int const slot : slots) {
    if (char16_t const character = PairSlots::GetCharacter(slot)) text += character;
  }
  return text;
}

TEST(PairSlots, TakeEachCharacterBackAndForth) {
  int found = 0;
  for (int unit = 0; unit < 0x10000; ++unit) {
    int const slot = PairSlots::Find(static_cast<char16_t>(unit));
    if (slot < 0) continue;
    ++found;
    EXPECT_EQ(PairSlots::GetCharacter(slot), unit);
  }
  EXPECT_EQ(found, 95 + 95 + 28);
}

struct Face {
  char const* family;
  int weight;
  int slant;
};

// Shaping the whole text is the model; a family that is not there gives the default one.
RC_GTEST_PROP(PairAdvances, GiveTheWidthOfTheShapedText, ()) {
  auto const face = *rc::gen::elementOf(std::vector<Face>{{"DejaVu Sans", 400, 0},
                                                          {"DejaVu Sans", 700, 0},
                                                          {"DejaVu Sans", 400, 1},
                                                          {"DejaVu Serif", 400, 0},
                                                          {"DejaVu Sans Mono", 400, 0},
                                                          {"Noto Sans", 400, 0},
                                                          {"Noto Serif", 700, 1},
                                                          {"Liberation Sans", 400, 0},
                                                          {"Droid Sans Fallback", 400, 0}});
  FontSet const& fonts = Catalog().GetFontSet(face.family, face.weight, face.slant);
  FontFace const& first = fonts.GetFace(0);
  std::u16string const text = RandomText();
  auto const units = first.GetPairs().Measure(text);
  RC_CLASSIFY(units.has_value());
  if (!units) return;
  double const ems = static_cast<double>(*units) / first.GetUnitsPerEm();
  RC_ASSERT(ems == ThreadShaper::Get().MeasureEms(text, fonts));
}

TEST(PairAdvances, ServePlainTextAndLeaveTheRestToTheShaper) {
  auto const& pairs = Catalog().GetFontSet("DejaVu Sans", 400, 0).GetFace(0).GetPairs();
  for (char16_t const* text :
       {u"", u"Hello, World", u"AVATAR", u"till 1,234.5 %", u"Größe", u"\u2212 \u2026"}) {
    EXPECT_TRUE(pairs.Measure(text)) << static_cast<int>(text[0]);
  }
  for (char16_t const* text :
       {u"office", u"a\u0301", u"\u200B", u"\t", u"\u00AD", u"Привет", u"\xD83D\xDE00"}) {
    EXPECT_FALSE(pairs.Measure(text)) << static_cast<int>(text[0]);
  }
}

}  // namespace
