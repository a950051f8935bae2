#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <charconv>
#include <limits>
#include <string>

#include "charts/data/NumberText.h"

namespace ostrel::charts {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberTextTest, WholeNumbersThatFitAreIntegers) {
  struct Case {
    char const* text;
    std::int64_t value;
  };
  Case const cases[] = {{"0", 0},
                        {"-0", 0},
                        {"+7", 7},
                        {"007", 7},
                        {"-12", -12},
                        {"999999999999999999", 999'999'999'999'999'999},
                        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
                        {"+9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                        {"00000000000000000000000012", 12}};
  for (auto const& [text, value] : cases) {
    auto const number = ReadNumber(text);
    EXPECT_EQ(number.kind, NumberText::Kind::Integer) << text;
    EXPECT_EQ(number.integer, value) << text;
  }
}

TEST(NumberTextTest, OtherNumbersAreTheNearestReal) {
  struct Case {
    char const* text;
    double value;
  };
  Case const cases[] = {{"0.0", 0.0},
                        {"-0.0", -0.0},
                        {"1.", 1.0},
                        {".5", 0.5},
                        {"-.5", -0.5},
                        {"+1.25e2", 125.0},
                        {"1E3", 1000.0},
                        {"0.1", 0.1},
                        {"315.70", 315.7},
                        {"9007199254740993.0", 9007199254740992.0},
                        {"9223372036854775808", 9223372036854775808.0},
                        {"0.30000000000000004", 0.30000000000000004},
                        {"5e-324", 5e-324},
                        {"1e400", kInfinity},
                        {"-1e400", -kInfinity},
                        {"1e-400", 0.0},
                        {"0e99999", 0.0},
                        {"1e99999999999999999999", kInfinity},
                        {"1e-99999999999999999999", 0.0},
                        {"Infinity", kInfinity},
                        {"-Infinity", -kInfinity}};
  for (auto const& [text, value] : cases) {
    auto const number = ReadNumber(text);
    EXPECT_EQ(number.kind, NumberText::Kind::Real) << text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(number.real), std::bit_cast<std::uint64_t>(value)) << text;
  }
  EXPECT_EQ(ReadNumber(std::string(400, '9')).real, kInfinity);
  EXPECT_EQ(ReadNumber("0." + std::string(400, '0') + "1").real, 0.0);
  EXPECT_EQ(ReadNumber("0." + std::string(400, '0') + "1e500").real, 1e99);
}

TEST(NumberTextTest, AnythingElseIsNoNumber) {
  for (char const* text : {"",    "-",        "+",     ".",         "-.",  "e5",    "1e",      "1e+", "1.2.3",
                           "1 2", "0x10",     "1,5",   "--1",       "+-1", "1e5.0", "12px",    "nan", "NaN",
                           "inf", "infinity", "1_000", "Infinity1", " 1",  "1 ",    "\xD9\xA1"}) {
    EXPECT_EQ(ReadNumber(text).kind, NumberText::Kind::None) << text;
  }
}

TEST(NumberTextTest, AgreesWithTheStandardReader) {
  rc::check("decimals of any length and scale", [](std::uint32_t high, std::uint64_t low) {
    auto digits = std::to_string(high) + std::to_string(low);
    digits.resize(*rc::gen::inRange<std::size_t>(1, digits.size() + 1));
    auto const point = *rc::gen::inRange<std::size_t>(0, digits.size());
    auto const text =
        (*rc::gen::arbitrary<bool>() ? "-" : "") + digits.substr(0, point) + "." + digits.substr(point);
    double wanted = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), wanted);
    RC_ASSERT(std::bit_cast<std::uint64_t>(ReadNumber(text).ToReal()) ==
              std::bit_cast<std::uint64_t>(wanted));
  });
}

}  // namespace
}  // namespace ostrel::charts
