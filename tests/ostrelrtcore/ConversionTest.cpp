#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using factory::MakeBool;
using factory::MakeColor;
using factory::MakeDate;
using factory::MakeDateTime;
using factory::MakeInt32;
using factory::MakeInt64;
using factory::MakeReal32;
using factory::MakeReal64;
using factory::Value;

Value Text(wchar_t const* text) { return factory::MakeString(OStringCore(text)); }
Value Missing(StoreTypeInfo const& type) { return factory::MakeSpecial(type, SpecialKind::Missing); }

struct Case {
  Value from;
  Value expected;
};

void Check(std::vector<Case> const& cases) {
  for (std::size_t i = 0; i < cases.size(); ++i) {
    auto const& [from, expected] = cases[i];
    auto const converted = from->ConvertTo(expected->GetStoreType());
    EXPECT_TRUE(converted->Equals(*expected))
        << "case " << i << " gave "
        << (converted->IsSpecial() ? "a special"
                                   : converted->ConvertTo(StoreType::String)->GetString().Get().toUtf8());
  }
}

constexpr int64 kMost = std::numeric_limits<int64>::max();
constexpr int64 kLeast = std::numeric_limits<int64>::min();
constexpr int kMost32 = std::numeric_limits<int>::max();
constexpr int kLeast32 = std::numeric_limits<int>::min();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr float kMostFloat = std::numeric_limits<float>::max();

TEST(Conversion, OfRealsRoundsHalvesAwayFromZeroAndSaturates) {
  std::vector<Case> cases;
  struct {
    double real;
    int64 integer;
  } const rounded[] = {{0.5, 1},  {-0.5, -1},  {1.5, 2},      {2.5, 3}, {-2.5, -3}, {0.49999999999999994, 0},
                       {-0.0, 0}, {2.4999, 2}, {1e6, 1000000}};
  for (auto const& r : rounded) {
    cases.push_back({MakeReal64(r.real), MakeInt64(r.integer)});
    cases.push_back({MakeReal64(r.real), MakeInt32(static_cast<int>(r.integer))});
  }
  for (double const beyond : {1e300, 0x1p63, kInfinity}) {
    cases.push_back({MakeReal64(beyond), MakeInt64(kMost)});
    cases.push_back({MakeReal64(-beyond), MakeInt64(kLeast)});
    cases.push_back({MakeReal64(beyond), MakeInt32(kMost32)});
    cases.push_back({MakeReal32(static_cast<float>(-beyond)), MakeInt32(kLeast32)});
  }
  for (Case const& c :
       std::vector<Case>{{MakeReal64(2147483647.4), MakeInt32(kMost32)},
                         {MakeReal64(-2147483648.5), MakeInt32(kLeast32)},
                         {MakeReal64(0x1p62 + 0x1p10), MakeInt64((int64{1} << 62) + 1024)},
                         {MakeReal64(1e300), MakeReal32(kMostFloat)},
                         {MakeReal64(-1e300), MakeReal32(-kMostFloat)},
                         {MakeReal64(kInfinity), MakeReal32(std::numeric_limits<float>::infinity())},
                         {MakeReal64(0.1), MakeReal32(0.1F)},
                         {MakeReal32(0.1F), MakeReal64(double{0.1F})},
                         {MakeReal64(kNan), MakeReal32(std::nanf(""))},
                         {MakeReal64(kNan), Missing(StoreTypeInfo::Int32)},
                         {MakeReal32(std::nanf("")), Missing(StoreTypeInfo::Int64)},
                         {MakeReal64(kNan), Missing(StoreTypeInfo::Date)},
                         {MakeReal64(kNan), Missing(StoreTypeInfo::DateTime)}}) {
    cases.push_back(c);
  }
  Check(cases);
}

TEST(Conversion, OfIntegersTruthsAndColours) {
  Check({{MakeInt64(kMost), MakeInt32(kMost32)},
         {MakeInt64(kLeast), MakeInt32(kLeast32)},
         {MakeInt64(-3), MakeInt32(-3)},
         {MakeInt32(kLeast32), MakeInt64(kLeast32)},
         {MakeInt64(kMost), MakeReal64(0x1p63)},
         {MakeInt32(kMost32), MakeReal32(0x1p31F)},
         {MakeInt32(-7), MakeReal64(-7)},
         {MakeBool(true), MakeInt32(1)},
         {MakeBool(false), MakeInt64(0)},
         {MakeBool(true), MakeReal32(1)},
         {MakeBool(true), MakeReal64(1)},
         {MakeBool(true), MakeBool(true)},
         {MakeInt32(0), MakeBool(false)},
         {MakeInt64(-4), MakeBool(true)},
         {MakeReal64(-0.0), MakeBool(false)},
         {MakeReal32(0.1F), MakeBool(true)},
         {MakeInt32(-1), MakeColor(OrtColor(-1))},
         {MakeInt64(0xFF112233), MakeColor(OrtColor(static_cast<int>(0xFF112233u)))},
         {MakeColor(OrtColor(-2)), MakeInt32(-2)},
         {MakeColor(OrtColor(-2)), MakeInt64(-2)},
         {MakeColor(OrtColor(5)), MakeColor(OrtColor(5))}});
}

TEST(Conversion, OfInstantsGoesThroughDayNumbers) {
  OrtDateTime const noon(1900, 1, 1, 12, 0, 0, 0);
  OrtDateTime const midnight(1900, 1, 1, 0, 0, 0, 0);
  OrtDateTime const last = OrtDateTime::FromValue(std::numeric_limits<uint64>::max());
  Check({{MakeDateTime(noon), MakeReal64(2.5)},
         {MakeDate(noon), MakeReal32(2.5F)},
         {MakeReal64(2.5), MakeDateTime(noon)},
         {MakeReal32(2.5F), MakeDate(noon)},
         {MakeDateTime(noon), MakeInt32(2)},
         {MakeDate(noon), MakeInt64(2)},
         {MakeInt32(2), MakeDateTime(midnight)},
         {MakeInt64(2), MakeDate(midnight)},
         {MakeDate(noon), MakeDateTime(noon)},
         {MakeDateTime(noon), MakeDate(noon)},
         {MakeInt64(-2415018), MakeDateTime(OrtDateTime())},
         {MakeInt64(kLeast), MakeDate(OrtDateTime())},
         {MakeInt64(-2415019), MakeDate(OrtDateTime())},
         {MakeInt64(kMost), MakeDate(last)},
         {MakeReal64(-1e300), MakeDate(OrtDateTime())},
         {MakeReal64(kInfinity), MakeDateTime(last)},
         {MakeDateTime(OrtDateTime()), MakeInt32(-2415018)},
         {MakeDateTime(last), MakeInt32(kMost32)},
         {MakeDateTime(OrtDateTime(2020, 3, 1, 12, 0, 0, 0)), Text(L"2020-03-01T12:00:00.0000")},
         {MakeDate(midnight), Text(L"1900-01-01")},
         {MakeDate(noon), Text(L"1900-01-01T12:00:00.0000")},
         {Text(L"1900-01-01T12:00:00.0000"), MakeDateTime(noon)},
         {Text(L"1900-01-01"), MakeDate(midnight)},
         {Text(L"yesterday"), Missing(StoreTypeInfo::Date)},
         {Text(L"1900-01-01x"), Missing(StoreTypeInfo::DateTime)}});
}

TEST(Conversion, OfTextsTakesTheWholeText) {
  Check({{MakeInt64(kLeast), Text(L"-9223372036854775808")},
         {MakeReal64(0.1), Text(L"0.1")},
         {MakeReal32(0.1F), Text(L"0.1")},
         {MakeReal64(-0.0), Text(L"-0")},
         {MakeReal64(1e300), Text(L"1e+300")},
         {MakeReal64(kNan), Text(L"NaN")},
         {MakeReal64(-kInfinity), Text(L"-Infinity")},
         {Text(L"x"), Text(L"x")},
         {Text(L"-12"), MakeInt32(-12)},
         {Text(L"9223372036854775807"), MakeInt64(kMost)},
         {Text(L"1.5"), MakeReal32(1.5F)},
         {Text(L"-1e3"), MakeReal64(-1000)},
         {Text(L"-Infinity"), MakeReal64(-kInfinity)},
         {Text(L"NaN"), MakeReal64(kNan)}});
  struct {
    wchar_t const* text;
    std::vector<StoreTypeInfo> refusing;
  } const refused[] = {{L"",
                        {StoreTypeInfo::Int32, StoreTypeInfo::Int64, StoreTypeInfo::Real32,
                         StoreTypeInfo::Real64, StoreTypeInfo::Date}},
                       {L" 1", {StoreTypeInfo::Int32, StoreTypeInfo::Real64}},
                       {L"1 ", {StoreTypeInfo::Int64, StoreTypeInfo::Real32}},
                       {L"1.5", {StoreTypeInfo::Int32, StoreTypeInfo::Int64}},
                       {L"2147483648", {StoreTypeInfo::Int32}},
                       {L"9223372036854775808", {StoreTypeInfo::Int32, StoreTypeInfo::Int64}},
                       {L"0x10", {StoreTypeInfo::Int32, StoreTypeInfo::Real64}},
                       {L"\x0661", {StoreTypeInfo::Int32}}};
  for (auto const& r : refused) {
    for (auto const& type : r.refusing)
      EXPECT_TRUE(Text(r.text)->ConvertTo(type)->Equals(*Missing(type))) << OStringCore(r.text);
  }
}

TEST(Conversion, ToTextAndBackKeepsEveryNumber) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    uint64 const bits = random();
    for (auto const& value : {MakeReal64(std::bit_cast<double>(bits)),
                              MakeReal32(std::bit_cast<float>(static_cast<uint32>(bits))),
                              MakeInt64(static_cast<int64>(bits)), MakeInt32(static_cast<int>(bits))}) {
      auto const text = value->ConvertTo(StoreType::String);
      EXPECT_TRUE(text->ConvertTo(value->GetStoreType())->Equals(*value)) << text->GetString().Get();
    }
  }
}

// Rows: from Int32 ... Table; columns: to the same types in order. x: there is a rule.
TEST(Conversion, HasRulesForThesePairsAlone) {
  std::vector<std::string> const rules = {"xxxxxxxxx.....",  // Int32
                                          "xxxxxxxxx.....",  // Int64
                                          "xxxxxxx.x.....",  // Real32
                                          "xxxxxxx.x.....",  // Real64
                                          "xxxxxxx.......",  // String
                                          "xxxxxxx.......",  // Date
                                          "xxxxxxx.......",  // DateTime
                                          "xx.....x......",  // Color
                                          "xxxx....x.....",  // Bool
                                          ".........x....", "..........x...", "...........x..",
                                          "............x.", ".............x"};
  std::vector<Value> values = {MakeInt32(1),
                               MakeInt64(1),
                               MakeReal32(1),
                               MakeReal64(1),
                               Text(L"1"),
                               MakeDate(OrtDateTime()),
                               MakeDateTime(OrtDateTime()),
                               MakeColor(OrtColor(1)),
                               MakeBool(true),
                               factory::MakeArray<int>(StoreTypeInfo::Int32, nullptr),
                               factory::MakeKeySet<uint32, uint64>(StoreTypeInfo::Int32, StoreTypeInfo::Int64,
                                                                   StoreTypeInfo::Int64, nullptr, nullptr),
                               factory::MakeKeyMap(factory::NamedValues()),
                               factory::MakeTuple(std::vector<Value>{}),
                               factory::MakeTable(factory::NamedValues())};
  for (std::size_t from = 0; from < values.size(); ++from) {
    StoreTypeInfo const fromType(static_cast<StoreType>(from + 1), false);
    auto const special = factory::MakeSpecial(fromType, SpecialKind::Null);
    for (std::size_t to = 0; to < values.size(); ++to) {
      auto const toType = static_cast<StoreType>(to + 1);
      std::string const pair =
          StoreTypeToString(fromType).toUtf8() + " to " + StoreTypeToString(toType).toUtf8();
      if (rules[from][to] == 'x') {
        EXPECT_EQ(values[from]->ConvertTo(toType)->GetStoreType(), toType) << pair;
        EXPECT_TRUE(special->ConvertTo(toType)->Equals(
            *factory::MakeSpecial(StoreTypeInfo(toType, false), SpecialKind::Null)))
            << pair;
      } else {
        EXPECT_EQ(ErrorOf([&] { values[from]->ConvertTo(toType); }), Error(178, pair));
        EXPECT_EQ(ErrorOf([&] { special->ConvertTo(toType); }), Error(178, pair));
      }
    }
    EXPECT_EQ(ErrorOf([&] { values[from]->ConvertTo(StoreType::Empty); }).first, 178);
  }
}

}  // namespace
}  // namespace ort::core
