#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>

#include "ostrel/ValueJson.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

std::string Write(Value const& value) {
  std::string out;
  WriteValue(*value, out);
  return out;
}

Value Read(std::string const& text) { return ReadValue(ParseRequest(text), JsonPlace()); }

TEST(ValueJson, WritesRealsInTheShortestFormThatReadsBack) {
  struct Case {
    double value;
    char const* text;
  };
  for (auto const& [value, text] : std::initializer_list<Case>{{0.1, "0.1"},
                                                               {-0.0, "-0.0"},
                                                               {1e21, "1e+21"},
                                                               {100, "100"},
                                                               {1.0 / 3, "0.3333333333333333"},
                                                               {5e-324, "5e-324"},
                                                               {std::nan(""), "\"NaN\""},
                                                               {-INFINITY, "\"-Infinity\""}}) {
    EXPECT_EQ(Write(factory::MakeReal64(value)), std::string(R"({"Real64":)") + text + "}");
  }
}

RC_GTEST_PROP(ValueJson, Real64KeepsItsBits, (uint64 bits)) {
  auto const value = std::bit_cast<double>(bits);
  RC_PRE(!std::isnan(value));
  RC_ASSERT(std::bit_cast<uint64>(Read(Write(factory::MakeReal64(value)))->GetReal64()) == bits);
}

// rapidcheck draws small numbers first; the exponent has to be drawn as well.
RC_GTEST_PROP(ValueJson, Real32KeepsItsBits, (uint32 bits, std::uint8_t exponent)) {
  auto const value = std::bit_cast<float>((bits & 0x807FFFFFU) | (uint32{exponent} << 23));
  RC_PRE(!std::isnan(value));
  RC_ASSERT(std::bit_cast<uint32>(Read(Write(factory::MakeReal32(value)))->GetReal32()) ==
            std::bit_cast<uint32>(value));
}

RC_GTEST_PROP(ValueJson, Int64KeepsItsValueAndIsANumberWhenADoubleHoldsIt, (int64 value)) {
  std::string const text = Write(factory::MakeInt64(value));
  RC_ASSERT(Read(text)->GetInt64() == value);
  RC_ASSERT((text.find('"', 9) == std::string::npos) ==
            (std::abs(static_cast<long double>(value) - static_cast<double>(value)) == 0));
}

TEST(ValueJson, WritesInt64AsTextWhereADoubleWouldRound) {
  EXPECT_EQ(Write(factory::MakeInt64(9007199254740992)), R"({"Int64":9007199254740992})");
  EXPECT_EQ(Write(factory::MakeInt64(9007199254740993)), R"({"Int64":"9007199254740993"})");
  EXPECT_EQ(Write(factory::MakeInt64(INT64_MAX)), R"({"Int64":"9223372036854775807"})");
  EXPECT_EQ(Write(factory::MakeInt64(INT64_MIN)), R"({"Int64":-9223372036854775808})");
}

RC_GTEST_PROP(ValueJson, InstantsKeepTheirTicks, (uint64 ticks, bool isNear)) {
  auto const instant =
      OrtDateTime::FromValue(isNear ? ticks % (5'400'000 * OrtDateTime::kTicksPerDay) : ticks);
  RC_ASSERT(Read(Write(factory::MakeDateTime(instant)))->GetDateTime() == instant);
  RC_ASSERT(Read(Write(factory::MakeDate(instant)))->GetDate() == instant);
}

TEST(ValueJson, WritesYears1To9999AsIsoTextAndAllOthersAsTicks) {
  struct Case {
    OrtDateTime instant;
    char const* text;
  };
  auto const dec31 = OrtDateTime(0, 12, 31);
  for (auto const& [instant, text] :
       {Case{OrtDateTime(1, 1, 1), "0001-01-01T00:00:00.0000"},
        Case{OrtDateTime(9999, 12, 31, 23, 59, 59, 9999), "9999-12-31T23:59:59.9999"},
        Case{OrtDateTime(), "0"}}) {
    EXPECT_EQ(Write(factory::MakeDateTime(instant)), std::string(R"({"DateTime":")") + text + "\"}");
  }
  EXPECT_EQ(Write(factory::MakeDateTime(dec31)),
            R"({"DateTime":")" + std::to_string(dec31.GetValue()) + "\"}");
  EXPECT_EQ(Write(factory::MakeDate(OrtDateTime(2020, 3, 1, 12))), R"({"Date":"2020-03-01T12:00:00.0000"})");
}

RC_GTEST_PROP(ValueJson, TextsKeepTheirCharacters, (std::vector<std::uint16_t> units)) {
  std::u16string text;
  for (auto const unit : units) text += static_cast<char16_t>(unit < 0xD800 || unit > 0xDFFF ? unit : u'x');
  auto const value = factory::MakeString(OStringCore(text));
  RC_ASSERT(Read(Write(value))->GetString().Get() == OStringCore(text));
}

TEST(ValueJson, ReadsEveryFormThatItWrites) {
  for (
      char const* text : {
          R"({"Bool":true})",
          R"({"Color":"#80FF0001"})",
          R"({"String":"a\"\\\n\u0001é😀"})",
          R"({"Special":{"type":"Real64","kind":200}})",
          R"({"Special":{"type":"Table","kind":9}})",
          R"({"Array":{"type":"Bool","values":[true,null,false],"specials":[[1,1]]}})",
          R"({"Array":{"type":"Real32","values":[0.1,"NaN",-0.0]}})",
          R"({"Array":{"type":"Date","values":["2020-02-29"]}})",
          R"({"Array":{"type":"String","values":[]}})",
          R"({"Array":{"type":"Array","values":[{"Array":{"type":"Int32","values":[1]}},null],"specials":[[1,9]]}})",
          R"({"Array":{"type":"Tuple","values":[{"Tuple":[{"Int32":1},{"Tuple":[]}]}]}})",
          R"({"Table":{"a b":{"Array":{"type":"Int64","values":[1]}},"x":{"Int32":1}}})",
          R"({"KeyMap":{}})",
          R"({"KeySet":{"key":"Int64","value":"Real64","entries":[[-1,0.5],["9007199254740993",1]],"specials":[[1,2.5]]}})",
          R"({"KeySet":{"key":"String","value":"DateTime","entries":[["a","2020-03-01T12:00:00.0000"]]}})",
          R"({"KeySet":{"key":"Bool","value":"Int32","entries":[[true,-1]]}})",
          R"({"KeySet":{"key":"Tuple","value":"String","entries":[[{"Tuple":[{"Int32":1}]},"a"]]}})",
          R"({"KeySet":{"key":"Int32","value":"Array","entries":[[1,{"Array":{"type":"Int32","values":[0]}}]]}})",
      }) {
    EXPECT_EQ(Write(Read(text)), text);
  }
}

TEST(ValueJson, TellsWhatIsWrongAndWhere) {
  struct Case {
    char const* text;
    char const* message;
  };
  for (auto const& [text, message] : std::initializer_list<Case>{
           {"1", "$: a value is an object with one key like {\"Real64\": 1.5}, 1 was given"},
           {"{}", "$: a value is an object with one key like {\"Real64\": 1.5}, one with 0 keys was given"},
           {R"({"Real46":1})", "$.Real46: no type is named \"Real46\"; did you mean 'Real64'?"},
           {R"({"Empty":1})", "$.Empty: no type is named \"Empty\""},
           {R"({"Bool":1})", "$.Bool: Bool must be true or false, 1 was given"},
           {R"({"Int32":2147483648})",
            "$.Int32: Int32 must be a whole number from -2147483648 to 2147483647, 2147483648 was given"},
           {R"({"Int32":1.0})",
            "$.Int32: Int32 must be a whole number from -2147483648 to 2147483647, 1.0 was given"},
           {R"({"Int64":9223372036854775808})",
            "$.Int64: Int64 must be a whole number of 64 bits, as number or text, 9223372036854775808 was "
            "given"},
           {R"({"Int64":"1 "})",
            "$.Int64: Int64 must be a whole number of 64 bits, as number or text, \"1 \" was given"},
           {R"({"Real64":"inf"})",
            "$.Real64: Real64 must be a number, \"NaN\", \"Infinity\" or \"-Infinity\", \"inf\" was given"},
           {R"({"Real32":1e39})",
            "$.Real32: Real32 must be within the range of 32-bit reals, 1e+39 was given"},
           {R"({"String":null})", "$.String: String must be a text, null was given"},
           {R"({"Color":"#FFF"})", "$.Color: Color must be \"#AARRGGBB\", \"#FFF\" was given"},
           {R"({"Color":"#-1234567"})", "$.Color: Color must be \"#AARRGGBB\", \"#-1234567\" was given"},
           {R"({"Date":"2020-02-30"})",
            "$.Date: Date must be a text like \"2020-03-01\" or a count of ticks as text, \"2020-02-30\" was "
            "given"},
           {R"({"DateTime":"18446744073709551616"})",
            "$.DateTime: DateTime must be a text like \"2020-03-01T12:00:00.0000\" or a count of ticks as "
            "text, "
            "\"18446744073709551616\" was given"},
           {R"({"Array":{"type":"Real64","values":[1,null]}})",
            "$.Array.values[1]: null stands for special rows only, and 'specials' does not name this row"},
           {R"({"Array":{"type":"Real64","values":[1,"x"]}})",
            "$.Array.values[1]: Real64 must be a number, \"NaN\", \"Infinity\" or \"-Infinity\", \"x\" was "
            "given"},
           {R"({"Array":{"type":"Real64","values":[1],"specials":[[1,9]]}})",
            "$.Array.specials[0]: row 1 of a column of 1 rows"},
           {R"({"Array":{"type":"Real64","values":[1],"specials":[[0]]}})",
            "$.Array.specials[0]: [row, kind] is needed, a list of 1 was given"},
           {R"({"Array":{"type":"Real64","values":[1],"specials":[[0,256]]}})",
            "$.Array.specials[0]: a special kind must be a whole number from 0 to 255, 256 was given"},
           {R"({"Array":{"type":"Real64"}})", "$.Array: 'values' is missing"},
           {R"({"Array":{"typ":"Real64"}})", "$.Array.typ: there is no such property; did you mean 'type'?"},
           {R"({"Array":{"type":"Tuple","values":[{"Int32":1}]}})",
            "$.Array.values[0]: a value of type Tuple is needed, one of type Int32 was given"},
           {R"({"Tuple":{}})", "$.Tuple: a list of values is needed, an object was given"},
           {R"({"Table":[]})", "$.Table: an object of named values is needed, an array was given"},
           {R"({"Table":{"a b":1}})",
            "$.Table[\"a b\"]: a value is an object with one key like {\"Real64\": 1.5}, 1 was given"},
           {R"({"KeySet":{"key":"Int64","value":"Real64","entries":[[1,1],[1,2]]}})",
            "$.KeySet.entries[1]: the key stands twice"},
           {R"({"KeySet":{"key":"Tuple","value":"Real64","entries":[[{"Tuple":[]},1],[{"Tuple":[]},2]]}})",
            "$.KeySet.entries[1]: the key stands twice"},
           {R"({"KeySet":{"key":"Int64","value":"Real64","entries":[[1]]}})",
            "$.KeySet.entries[0]: [key, payload] is needed, a list of 1 was given"},
       }) {
    try {
      Read(text);
      ADD_FAILURE() << text << " was read";
    } catch (InvalidRequest const& error) {
      EXPECT_STREQ(error.what(), message) << text;
    }
  }
}

}  // namespace
}  // namespace ostrel::program
