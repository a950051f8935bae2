#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "services/NumberFormat.h"

using namespace ostrel::services;
using namespace ort::core;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string Format(double value, char const* pattern) {
  return FormatNumber(value, OStringCore::fromUtf8(pattern).view()).toUtf8();
}

struct Row {
  char const* pattern;
  double value;
  char const* text;
};

constexpr Row kRows[] = {
    // No type: up to 12 significant digits.
    {"", 0, "0"},
    {"", -0.0, "0"},
    {"", 42, "42"},
    {"", 0.1, "0.1"},
    {"", 1.0 / 3, "0.333333333333"},
    {"", -1234567.5, "−1234567.5"},
    {"", 1e21, "1e+21"},
    {"", 1e-7, "1e-7"},
    {"", kNaN, "NaN"},
    {"", kInfinity, "Infinity"},
    {"", -kInfinity, "−Infinity"},
    {".3", 3.14159, "3.14"},
    {",", 1234567.891, "1,234,567.891"},
    // Fixed point: the exact value decides, halves go up.
    {".0f", 0.5, "1"},
    {".0f", 1.5, "2"},
    {".0f", 2.5, "3"},
    {".2f", 1.005, "1.00"},
    {".1f", 0.25, "0.3"},
    {".1f", 0.35, "0.3"},
    {".2f", 999.995, "1000.00"},
    {".3f", 0.0004, "0.000"},
    {".2f", -0.001, "0.00"},
    {"+.2f", -0.001, "−0.00"},
    {"f", 3, "3.000000"},
    {".0f", 1e20, "100000000000000000000"},
    {".2f", 1e22, "1e+22"},
    {",.2f", 1234.5, "1,234.50"},
    {",.2f", 999, "999.00"},
    {",.2f", -1e6, "−1,000,000.00"},
    {".20f", 0.1, "0.10000000000000000555"},
    {".1f", 0.05, "0.1"},
    {".0f", 0.49999999999999994, "0"},
    // Whole numbers.
    {"d", 1234.5, "1235"},
    {"d", 42, "42"},
    {",d", 1e15, "1,000,000,000,000,000"},
    {"d", -0.4, "0"},
    {"d", 1e24, "1000000000000000000000000"},
    // Exponents and significant digits.
    {"e", 42, "4.200000e+1"},
    {".2e", 0.00012345, "1.23e-4"},
    {".0e", 9.5, "1e+1"},
    {"g", 0.00001, "0.0000100000"},
    {".3g", 1234, "1.23e+3"},
    {".3r", 1234567, "1230000"},
    {".2r", 0.001255, "0.0013"},
    {"r", 0, "0"},
    // Prefixes.
    {"s", 1500, "1.50000k"},
    {"~s", 1500, "1.5k"},
    {".3s", 43e6, "43.0M"},
    {".3s", 999.5, "1.00k"},
    {".2s", 0.0042, "4.2m"},
    {"~s", 0, "0"},
    {".1s", 1e-24, "1y"},
    {".2s", 1e-6, "1.0µ"},
    {"s", 1e30, "1000000Y"},
    {"~s", kNaN, "NaN"},
    // Percent.
    {".0%", 0.123, "12%"},
    {".1%", 0.12345, "12.3%"},
    {"%", 0.5, "50.000000%"},
    {".2p", 0.12345, "12%"},
    {"+.0%", 0.25, "+25%"},
    // Sign, symbol, fill, width.
    {"$,.2f", 1234.5, "$1,234.50"},
    {"$,.2f", -1234.5, "−$1,234.50"},
    {"($.2f", -3.5, "($3.50)"},
    {"+d", 5, "+5"},
    {" d", 5, " 5"},
    {"5d", 42, "   42"},
    {"<5d", 42, "42   "},
    {"^5d", 42, " 42  "},
    {"*^6d", 42, "**42**"},
    {"*=6d", -42, "−***42"},
    {"05d", -42, "−0042"},
    {"08,d", 1234, "0,001,234"},
    {"020,.0f", 1234, "0,000,000,000,001,234"},
    // Bases, n, c, and a type that is none.
    {"x", 48879, "beef"},
    {"#X", 48879, "0xBEEF"},
    {"#b", 5, "0b101"},
    {"o", 8, "10"},
    {"x", 14, "e"},
    {"x", -14, "−e"},
    {"b", 9007199254740992.0, "100000000000000000000000000000000000000000000000000000"},
    {"n", 123456, "123,456"},
    {"c", -1.5, "-1.5"},
    {"k", 1.5, "1.5"},
    {"~f", 1.5, "1.5"},
    {"~e", 1500, "1.5e+3"},
    {"~g", 100, "100"},
};

TEST(NumberFormat, WritesByPattern) {
  for (Row const& row : kRows)
    EXPECT_EQ(Format(row.value, row.pattern), row.text) << row.pattern << ' ' << row.value;
}

TEST(NumberFormat, IsTheSameOnMinusTheValueButForItsSign) {
  for (Row const& row : kRows) {
    if (std::string_view(row.pattern).find_first_of("(+ 0123456789c") != std::string_view::npos) continue;
    std::string const plus = Format(std::fabs(row.value), row.pattern);
    std::string const minus = Format(-std::fabs(row.value), row.pattern);
    EXPECT_TRUE(minus == plus || minus == "−" + plus) << row.pattern << ' ' << minus;
  }
}

TEST(NumberFormat, KeepsThePatternItRead) {
  for (Row const& row : kRows) {
    NumberFormat const format(OStringCore::fromUtf8(row.pattern).view());
    NumberFormat const again(format.ToPattern().view());
    EXPECT_EQ(again.Format(row.value).toUtf8(), row.text) << row.pattern;
  }
}

TEST(NumberFormat, RefusesIllFormedPatterns) {
  for (char const* pattern : {"..", ".f", "foo", "%d", "10001d", "d ", ",$", "é", "99999999999999999999d"}) {
    try {
      Format(1, pattern);
      ADD_FAILURE() << pattern;
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), OrtError_WrongValueKind);
      EXPECT_EQ(error.GetMessage().toUtf8(),
                "the number format \"" + std::string(pattern) +
                    "\" is not of the form [[fill]align][sign][symbol][0][width][,][.precision][~][type]");
    }
  }
}

TEST(NumberFormat, TakesItsPatternFromATuple) {
  auto const pattern = factory::MakeString(OStringCore(u".1f"));
  EXPECT_EQ(FormatNumber(2.25, factory::MakeTuple({pattern})->AsTuple()).toUtf8(), "2.3");
  EXPECT_EQ(FormatNumber(2.25, factory::MakeTuple(std::vector<factory::Value>())->AsTuple()).toUtf8(),
            "2.25");
  auto const wrong = {factory::MakeTuple({pattern, pattern}), factory::MakeTuple({factory::MakeInt32(1)})};
  for (auto const& tuple : wrong) {
    try {
      FormatNumber(1, tuple->AsTuple());
      ADD_FAILURE();
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), OrtError_WrongValueKind);
      EXPECT_EQ(error.GetMessage(), OStringCore(u"a number format is a tuple of one pattern String"));
    }
  }
}

struct TickRow {
  double step;
  double largest;
  char const* pattern;
  double value;
  char const* text;
};

TEST(TickPattern, TellsNeighbouringTicksApart) {
  constexpr TickRow rows[] = {
      {0.1, 1, "", 0.3, "0.3"},         {0.25, 10, "", 1.5, "1.50"}, {1000, 5000, "", 3000, "3,000"},
      {20, 100, "f", 40, "40"},         {0.05, 1, "%", 0.35, "35%"}, {0.001, 1, "%", 0.0125, "1.3%"},
      {500, 3000, "e", 1500, "1.5e+3"}, {0.5, 10, "g", 9.5, "9.5"},  {10, 100, ".2f", 20, "20.00"}};
  for (TickRow const& row : rows) {
    auto const pattern = GetTickPattern(row.step, row.largest, OStringCore::fromUtf8(row.pattern).view());
    EXPECT_EQ(FormatNumber(row.value, pattern.view()).toUtf8(), row.text) << row.step << ' ' << row.pattern;
  }
}

TEST(TickPattern, SharesOnePrefix) {
  NumberFormat const format(GetTickPattern(500'000, 3e6, u"s").view());
  EXPECT_EQ(format.FormatWithPrefixOf(500'000, 3e6).toUtf8(), "0.5M");
  EXPECT_EQ(format.FormatWithPrefixOf(3e6, 3e6).toUtf8(), "3.0M");
  EXPECT_EQ(format.FormatWithPrefixOf(0, 0).toUtf8(), "0.0");
  EXPECT_EQ(GetTickPattern(kNaN, 1, u"s"), NumberFormat(u"s").ToPattern());
}

}  // namespace
