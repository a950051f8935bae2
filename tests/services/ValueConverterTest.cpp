#include <gtest/gtest.h>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "services/InstallServices.h"
#include "services/ValueConverter.h"

using namespace ostrel::services;
using namespace ort::core;

namespace {

struct Row {
  char16_t const* text;
  std::uint32_t argb;
};

constexpr Row kColors[] = {
    {u"steelblue", 0xFF4682B4},
    {u"  SteelBlue ", 0xFF4682B4},
    {u"aliceblue", 0xFFF0F8FF},
    {u"yellowgreen", 0xFF9ACD32},
    {u"rebeccapurple", 0xFF663399},
    {u"grey", 0xFF808080},
    {u"transparent", 0},
    {u"#4682b4", 0xFF4682B4},
    {u"#4682B480", 0x804682B4},
    {u"#fa3", 0xFFFFAA33},
    {u"#fa38", 0x88FFAA33},
    {u"rgb(70, 130, 180)", 0xFF4682B4},
    {u"rgb(70 130 180)", 0xFF4682B4},
    {u"rgb(70,130,180,0.5)", 0x804682B4},
    {u"rgba(70, 130, 180, 50%)", 0x804682B4},
    {u"rgb(70 130 180 / 50%)", 0x804682B4},
    {u"rgb(100%, 0%, 50%)", 0xFFFF0080},
    {u"rgb(300, -5, 12.6)", 0xFFFF000D},
    {u"hsl(0, 100%, 50%)", 0xFFFF0000},
    {u"hsl(120deg 100% 25%)", 0xFF008000},
    {u"hsl(-120, 100%, 50%)", 0xFF0000FF},
    {u"hsl(207, 44%, 49%)", 0xFF4682B4},
    {u"hsla(480, 100%, 50%, 0)", 0x0000FF00},
};

constexpr char16_t const* kNoColors[] = {
    u"",
    u" ",
    u"bleu",
    u"#",
    u"#12",
    u"#12345",
    u"#ggg",
    u"#-12",
    u"rgb()",
    u"rgb(1,2)",
    u"rgb(1,2,3",
    u"rgb(1,,3,4)",
    u"rgb(1,2,3,4,5)",
    u"rgb(a,b,c)",
    u"rgb(1 2 3 4 5)",
    u"hsl(1,2,3)",
    u"hsl(1x,2%,3%)",
    u"lab(1 2 3)",
    u"röt",
    u"rgb(nan,0,0)",
    u"rgb(1e400,0,0)",
};

TEST(ParseColor, ReadsColorsOfCss) {
  for (Row const& row : kColors) {
    auto const color = ParseColor(row.text);
    ASSERT_TRUE(color) << OStringCore(row.text).toUtf8();
    EXPECT_EQ(static_cast<std::uint32_t>(color->GetValue()), row.argb) << OStringCore(row.text).toUtf8();
  }
}

TEST(ParseColor, RefusesOtherTexts) {
  for (char16_t const* text : kNoColors) EXPECT_FALSE(ParseColor(text)) << OStringCore(text).toUtf8();
}

TEST(ConvertStyleValue, ConvertsColorsAndFonts) {
  auto const fixed = MakeFixedMeasurer();
  auto const red = factory::MakeColor(OrtColor(static_cast<int>(0xFFFF0000U)));
  EXPECT_EQ(ConvertStyleValue(red, *fixed), red);
  EXPECT_TRUE(ConvertStyleValue(factory::MakeString(OStringCore(u"red")), *fixed)->Equals(*red));
  auto const font = MakeFont({OStringCore(u"serif"), 12, 400, 0});
  EXPECT_EQ(ConvertStyleValue(font, *fixed), font);
}

TEST(ConvertStyleValue, NamesWhatItRefuses) {
  auto const fixed = MakeFixedMeasurer();
  struct {
    Value value;
    char16_t const* message;
  } const rows[] = {
      {factory::MakeString(OStringCore(u"bleu")), u"\"bleu\" is no colour"},
      {factory::MakeInt32(3), u"a style value is a colour, a colour's name or a font"},
      {factory::MakeSpecial(StoreTypeInfo::String, SpecialKind::Null),
       u"a style value is a colour, a colour's name or a font"},
      {nullptr, u"a style value is a colour, a colour's name or a font"},
  };
  for (auto const& row : rows) {
    try {
      ConvertStyleValue(row.value, *fixed);
      ADD_FAILURE() << OStringCore(row.message).toUtf8();
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), OrtError_WrongValueKind);
      EXPECT_EQ(error.GetMessage(), OStringCore(row.message));
    }
  }
}

TEST(InstalledServices, HoldTheirMeasurerUntilTheyEnd) {
  auto measurer = MakeFixedMeasurer();
  std::weak_ptr<TextMeasurer const> const watched = measurer;
  {
    InstalledServices const services(std::move(measurer));
    EXPECT_EQ(&services.GetMeasurer(), watched.lock().get());
    EXPECT_GT(watched.use_count(), 1);  // The plug-in's callbacks share it.
  }
  EXPECT_TRUE(watched.expired());
}

}  // namespace
