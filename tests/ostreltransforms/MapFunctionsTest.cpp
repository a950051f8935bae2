#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <unordered_map>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/RowLoop.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace RowDriver;
using Value = std::shared_ptr<StoreValue>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr SpecialKind kOrdinary = SpecialKind::None;
constexpr SpecialKind kMissing = SpecialKind::Missing;
constexpr SpecialKind kNull = SpecialKind::Null;

std::vector<Value> Reals(std::vector<double> const& numbers) {
  std::vector<Value> values;
  for (double const number : numbers) values.push_back(factory::MakeReal64(number));
  return values;
}

template <class T>
Value Column(StoreTypeInfo const& type, std::vector<T> const& values) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(values));
}

class MapFunctions : public testing::Test {
 protected:
  MapFunctions() { OstrelTransforms::RegisterOstrelMapFunctions(registry_); }
  // The registration of a name for an input; where there are two, the one of a type.
  Factory Find(wchar_t const* name, StoreTypeInfo const& input, std::vector<Value> parameters = {},
               int type = -1) {
    for (auto const& entry : registry_.GetUnaryFunctions().Find(FunctionKey(OStringCore(name), input))) {
      if (type < 0 || type == static_cast<int>(entry.GetType())) {
        return [factory = entry.GetFactory(), parameters = std::move(parameters)] {
          return factory(parameters);
        };
      }
    }
    throw std::runtime_error("no registration of " + OStringCore(name).toUtf8());
  }
  Factory OfReals(wchar_t const* name, std::vector<double> const& parameters = {}) {
    return Find(name, StoreTypeInfo::Real64, Reals(parameters));
  }

  FunctionRegistry registry_;
};

struct NumberCase {
  wchar_t const* name;
  std::vector<double> parameters;
  std::vector<double> input;
  std::vector<double> expected;
};

TEST_F(MapFunctions, MapNumbersToNumbers) {
  using namespace TransformNames;
  NumberCase const cases[] = {
      {INVLERP, {2, 4}, {2, 3, 6, -2, kNaN, kInfinity}, {0, 0.5, 2, -2, kNaN, kInfinity}},
      {INVLERP, {2, 2}, {2, 3, 1}, {kNaN, kInfinity, -kInfinity}},
      {INVLERP, {4, 2}, {2, 4, 3}, {1, -0.0, 0.5}},
      {INVLERP3, {0, 10, 20}, {5, 10, 15, 20, -10, 30, kNaN}, {0.5, 0, 0.5, 1, -1, 2, kNaN}},
      {INVLERP3, {0, 10, 10}, {5, 10, 11, kNaN}, {0.5, 1, 1, 1}},
      {INVLERP3, {10, 10, 20}, {5, 10, 15}, {0, 0, 0.5}},
      {CLAMP_MIN, {2}, {1, 2, 3, kNaN, -kInfinity}, {2, 2, 3, 2, 2}},
      {CLAMP_MIN, {0}, {-0.0, 0.0}, {0.0, 0.0}},
      {CLAMP_MIN, {kNaN}, {1}, {kNaN}},
      {CLAMP_MAX, {2}, {1, 2, 3, kNaN, kInfinity}, {1, 2, 2, 2, 2}},
      {CLAMP_MAX, {-0.0}, {0.0}, {-0.0}},
      {ADD_IF_LESS_THAN, {0, 360}, {-170, 0, 10, kNaN}, {190, 0, 10, kNaN}},
      {ABS, {}, {-2.5, 2.5, -0.0, -kInfinity, kNaN}, {2.5, 2.5, 0, kInfinity, kNaN}},
      {NICE_NUM_ROUND,
       {},
       {0, -0.0, 1, 2.5, 3.2, 7, 0.0042, -1.4, 1.4999, 1.5, 2.9999, 3, 6.9999, kNaN, -kInfinity},
       {0, 0, 1, 2, 5, 10, 5 * (1 / 1e3), -1, 1, 2, 2, 5, 5, kNaN, -kInfinity}},
      {NICE_NUM_ROUND_UP,
       {},
       {0, 1, 1.01, 2, 2.01, 5, 5.1, 120, -120, 0.03, kInfinity},
       {0, 1, 2, 2, 5, 5, 10, 200, -200, 5 * (1 / 1e2), kInfinity}},
      // Beyond what the scale can hold.
      {NICE_NUM_ROUND, {}, {1.7e308, 5e-324, -1e-309}, {kInfinity, 0, -0.0}},
  };
  for (auto const& [name, parameters, input, expected] : cases) {
    SCOPED_TRACE(OStringCore(name).toUtf8());
    ExpectUnary<double, double>(OfReals(name, parameters), input, expected);
  }
  ExpectUnary<float, float>(
      Find(INVLERP, StoreTypeInfo::Real32, {factory::MakeReal32(0.1F), factory::MakeReal32(0.7F)}),
      {0.1F, 0.3F}, {0.0F, (0.3F - 0.1F) / (0.7F - 0.1F)});
}

TEST_F(MapFunctions, InvlerpSpecialTakesASpecialRowForZeroAndKeepsItsKind) {
  ExpectSpecialUnary<double, double>(OfReals(TransformNames::INVLERP_SPECIAL, {2, 4}),
                                     {{3, kOrdinary}, {99, kNull}, {kNaN, kMissing}, {kNaN, kOrdinary}},
                                     {{0.5, kOrdinary}, {-1, kNull}, {-1, kMissing}, {kNaN, kOrdinary}});
  ExpectSpecialUnary<double, double>(OfReals(TransformNames::INVLERP_SPECIAL, {2, 2}),
                                     {{3, kOrdinary}, {2, kNull}}, {{0, kMissing}, {0, kMissing}});
}

TEST_F(MapFunctions, SpecialConversionsMakeKindOneOfEveryKind) {
  Special<double> const none{0, kMissing};
  ExpectSpecialUnary<double, double>(
      OfReals(TransformNames::LN_SPECIAL),
      {{1, kOrdinary},
       {0, kOrdinary},
       {-3, kOrdinary},
       {kNaN, kOrdinary},
       {5, kNull},
       {kInfinity, kOrdinary},
       {-kInfinity, kOrdinary},
       {-0.0, kOrdinary}},
      {{0, kOrdinary}, none, none, {kNaN, kOrdinary}, none, {kInfinity, kOrdinary}, none, none});
  ExpectSpecialUnary<int64, double>(Find(TransformNames::LN_SPECIAL, StoreTypeInfo::Int64),
                                    {{1, kOrdinary}, {0, kOrdinary}, {INT64_MIN, kOrdinary}, {7, kNull}},
                                    {{0, kOrdinary}, none, none, none});
  ExpectSpecialUnary<double, double>(OfReals(TransformNames::EXP_SPECIAL),
                                     {{0, kOrdinary},
                                      {1, kNull},
                                      {kNaN, kOrdinary},
                                      {710, kOrdinary},
                                      {kInfinity, kOrdinary},
                                      {-kInfinity, kOrdinary},
                                      {-746, kOrdinary},
                                      {-1e308, kOrdinary}},
                                     {{1, kOrdinary},
                                      none,
                                      {kNaN, kOrdinary},
                                      {kInfinity, kOrdinary},
                                      {kInfinity, kOrdinary},
                                      {0, kOrdinary},
                                      {0, kOrdinary},
                                      {0, kOrdinary}});
  OrtDateTime const noon(1900, 1, 1, 12);
  ExpectUnary<OrtDateTime, double>(Find(TransformNames::TO_REAL64, StoreTypeInfo::DateTime, {}, 0),
                                   {noon, OrtDateTime()}, {2.5, -2415018});
  ExpectSpecialUnary<OrtDateTime, double>(Find(TransformNames::TO_REAL64, StoreTypeInfo::DateTime, {}, 1),
                                          {{noon, kOrdinary}, {noon, kNull}}, {{2.5, kOrdinary}, none});
}

constexpr VectorLevel kLevels[] = {VectorLevel::Baseline, VectorLevel::Avx2, VectorLevel::Avx512};

// Blocks of rows, their ends, and special rows among them, in place as well.
TEST_F(MapFunctions, SpecialFormsGiveTheSameBitsAtEveryVectorLevel) {
  std::mt19937_64 random(5);
  constexpr std::size_t count = 5000;
  std::vector<double> input(count), expected(count);
  std::vector<SpecialKind> kinds(count), expectedKinds(count);
  for (std::size_t row = 0; row < count; ++row) {
    input[row] =
        row % 2 == 0 ? std::bit_cast<double>(random()) : static_cast<double>(random() % 2000) - 1000.5;
    kinds[row] = row > 2000 && random() % 10 == 0 ? kNull : kOrdinary;
  }
  for (wchar_t const* const name : {TransformNames::LN_SPECIAL, TransformNames::EXP_SPECIAL}) {
    auto const owner = OfReals(name)();
    auto& functor = dynamic_cast<IUnarySpecialFunctor<double, double>&>(*owner);
    for (std::size_t row = 0; row < count; ++row)
      std::tie(expected[row], expectedKinds[row]) = functor.Apply(input[row], kinds[row]);
    for (auto const level : kLevels) {
      LimitVectorLevel(level);
      std::vector<double> output(count), values = input;
      std::vector<SpecialKind> outputKinds(count), inPlaceKinds = kinds;
      functor.ApplyToArray(input, kinds, output, outputKinds);
      ExpectSame(output, expected, "level", static_cast<std::size_t>(level));
      EXPECT_EQ(outputKinds, expectedKinds);
      functor.ApplyToArray(values, inPlaceKinds, values, inPlaceKinds);
      ExpectSame(values, expected, "in place at level", static_cast<std::size_t>(level));
      EXPECT_EQ(inPlaceKinds, expectedKinds);
    }
  }
  LimitVectorLevel(VectorLevel::Avx512);
}

TEST_F(MapFunctions, RoundGoesAwayFromZeroAndSaturates) {
  std::vector<double> input = {2.5,
                               -2.5,
                               2.4,
                               -2.6,
                               0.49999999999999994,
                               -0.5,
                               0,
                               -0.0,
                               kNaN,
                               1e300,
                               -1e300,
                               kInfinity,
                               -kInfinity,
                               0x1p63,
                               -0x1p63,
                               0x1.fffffffffffffp62,
                               -0x1.fffffffffffffp62,
                               4503599627370495.5,
                               4503599627370497.0,
                               -9007199254740993.0,
                               5e-324};
  std::vector<int64> expected = {3,
                                 -3,
                                 2,
                                 -3,
                                 0,
                                 -1,
                                 0,
                                 0,
                                 0,
                                 INT64_MAX,
                                 INT64_MIN,
                                 INT64_MAX,
                                 INT64_MIN,
                                 INT64_MAX,
                                 INT64_MIN,
                                 INT64_MAX - 1023,
                                 -INT64_MAX + 1023,
                                 4503599627370496,
                                 4503599627370497,
                                 -9007199254740992,
                                 0};
  std::mt19937_64 random(17);
  for (int i = 0; i < 300; ++i) {
    double const x =
        static_cast<double>(static_cast<int64>(random())) / static_cast<double>(1ull << (random() % 63));
    input.push_back(x);
    expected.push_back(static_cast<int64>(std::llround(x)));
  }
  for (auto const level : kLevels) {
    LimitVectorLevel(level);
    ExpectUnary<double, int64>(OfReals(TransformNames::ROUND), input, expected);
  }
}

// Beside a power of ten the decade must be the right one.
TEST_F(MapFunctions, NiceNumbersStandFirmBesidePowersOfTen) {
  std::vector<double> input, rounded, roundedUp;
  for (int exponent = -22; exponent <= 22; ++exponent) {
    double const power = exponent < 0 ? 1 / std::pow(10, -exponent) : std::pow(10, exponent);
    double const next = std::nextafter(power, kInfinity);
    bool const isTold = next / power > 1;  // the quotient still tells the two apart
    input.insert(input.end(), {power, -power, next});
    rounded.insert(rounded.end(), {power, -power, power});
    roundedUp.insert(roundedUp.end(), {power, -power, isTold ? 2 * power : power});
  }
  ExpectUnary<double, double>(OfReals(TransformNames::NICE_NUM_ROUND), input, rounded);
  ExpectUnary<double, double>(OfReals(TransformNames::NICE_NUM_ROUND_UP), input, roundedUp);

  auto const owner = OfReals(TransformNames::NICE_NUM_ROUND_UP)();
  auto& up = dynamic_cast<IUnaryFunctor<double, double>&>(*owner);
  for (double const power : {1.0, 1e3, 1e15, 1e-3, 1e-5})
    EXPECT_DOUBLE_EQ(up.Apply(std::nextafter(power, 0)), power);
}

TEST_F(MapFunctions, DatesGiveMonthAndYear) {
  std::vector<OrtDateTime> const dates = {OrtDateTime(2020, 3, 1, 12), OrtDateTime(1999, 12, 31, 23, 59, 59),
                                          OrtDateTime(2000, 1, 1), OrtDateTime(), OrtDateTime(-1, 2, 28)};
  ExpectUnary<OrtDateTime, int>(Find(TransformNames::GET_MONTH, StoreTypeInfo::DateTime), dates,
                                {3, 12, 1, 11, 2});
  ExpectUnary<OrtDateTime, int>(Find(TransformNames::GET_YEAR, StoreTypeInfo::DateTime), dates,
                                {2020, 1999, 2000, -4713, -1});
}

TEST_F(MapFunctions, ColorsComeFromBitsAndKeepTransparency) {
  ExpectUnary<int64, OrtColor>(Find(TransformNames::TO_COLOR, StoreTypeInfo::Int64),
                               {0, 0xFF00FF00LL, -1, 0x1'8000'0001LL},
                               {OrtColor(0), OrtColor(static_cast<int>(0xFF00FF00)), OrtColor(-1),
                                OrtColor(static_cast<int>(0x80000001))});
  OrtColor const color(0x10203040), transparent(0x00203040);
  ExpectUnary<OrtColor, OrtColor>(
      Find(TransformNames::COMBINE_ALPHA, StoreTypeInfo::Color, {factory::MakeInt32(0x180)}),
      {color, transparent}, {OrtColor(static_cast<int>(0x80203040)), transparent});
}

// The rule as it is written, channel by channel.
OrtColor PlainInterpolation(std::vector<int> const& palette, double x) {
  auto const n = static_cast<double>(palette.size());
  auto position = static_cast<float>((n - 1) * x);
  if (std::isnan(position)) position = 0;
  if (position < 0) return {palette.front()};
  if (position >= static_cast<float>(palette.size() - 1)) return {palette.back()};
  auto const index = static_cast<std::size_t>(std::floor(position));
  float const fraction = position - static_cast<float>(index);
  std::uint32_t color = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    int const c0 = (palette[index] >> shift) & 0xFF;
    int const c1 = (palette[index + 1] >> shift) & 0xFF;
    color |=
        static_cast<std::uint32_t>(static_cast<int>(std::trunc(static_cast<float>(c1 - c0) * fraction)) + c0)
        << shift;
  }
  return {static_cast<int>(color)};
}

TEST_F(MapFunctions, CinterpTruncatesChannelsOfNarrowedPositions) {
  auto const interpolate = [&](std::vector<int> const& palette) {
    return Find(TransformNames::CINTERP, StoreTypeInfo::Real64, {Column(StoreTypeInfo::Int32, palette)});
  };
  ExpectUnary<double, OrtColor>(interpolate({0, -1}), {0.5, -1, 2, kNaN, 0, 1, kInfinity, -kInfinity, -0.0},
                                {OrtColor(0x7F7F7F7F), OrtColor(0), OrtColor(-1), OrtColor(0), OrtColor(0),
                                 OrtColor(-1), OrtColor(-1), OrtColor(0), OrtColor(0)});
  ExpectUnary<double, OrtColor>(interpolate({0x12345678}), {0.5, -1, kNaN, 7},
                                std::vector<OrtColor>(4, OrtColor(0x12345678)));
  std::mt19937 random(23);
  std::uniform_real_distribution<double> positions(-0.1, 1.1);
  for (std::size_t const size : {2U, 3U, 7U, 256U, 1000U}) {
    std::vector<int> palette(size);
    for (int& color : palette) color = static_cast<int>(random());
    std::vector<double> input;
    std::vector<OrtColor> expected;
    // Among them positions that only narrowing to float moves onto the next colour.
    for (int i = 0; i < 300; ++i) {
      double const place = static_cast<double>(random() % size) / static_cast<double>(size - 1);
      input.push_back(i % 3 == 0 ? positions(random) : std::nextafter(place, i % 3 == 1 ? 0 : 2));
      expected.push_back(PlainInterpolation(palette, input.back()));
    }
    for (auto const level : kLevels) {
      LimitVectorLevel(level);
      ExpectUnary<double, OrtColor>(interpolate(palette), input, expected);
    }
  }
}

TEST_F(MapFunctions, ArrayLookupsGiveZeroOutside) {
  std::vector<int> const indices = {-1, 0, 2, 3, INT_MIN, INT_MAX};
  auto const find = [&](wchar_t const* name, Value const& column) {
    return Find(name, StoreTypeInfo::Int32, {column});
  };
  ExpectUnary<int, double>(
      find(TransformNames::ARRAY_LOOKUP_REAL64, Column<double>(StoreTypeInfo::Real64, {1.5, kNaN, -0.0})),
      indices, {0, 1.5, -0.0, 0, 0, 0});
  ExpectUnary<int, float>(
      find(TransformNames::ARRAY_LOOKUP_REAL32, Column<float>(StoreTypeInfo::Real32, {1.5F, 2, 3})), indices,
      {0, 1.5F, 3, 0, 0, 0});
  ExpectUnary<int, int64>(
      find(TransformNames::ARRAY_LOOKUP_INT64, Column<int64>(StoreTypeInfo::Int64, {INT64_MIN, 2, 3})),
      indices, {0, INT64_MIN, 3, 0, 0, 0});
  ExpectUnary<int, int>(find(TransformNames::MAP_RANGE_INDICES, Column<int>(StoreTypeInfo::Int32, {7, 8, 9})),
                        indices, {0, 7, 9, 0, 0, 0});
  ExpectUnary<int, int>(find(TransformNames::MAP_RANGE_INDICES, Column<int>(StoreTypeInfo::Int32, {})), {0},
                        {0});
}

template <class K>
Value KeySet(StoreTypeInfo const& keyType, StoreTypeInfo const& payloadType,
             std::unordered_map<K, uint64> entries, std::unordered_map<SpecialKind, uint64> specials) {
  return factory::MakeKeySet<K, uint64>(
      keyType, payloadType, payloadType, std::make_unique<std::unordered_map<K, uint64>>(std::move(entries)),
      std::make_unique<std::unordered_map<SpecialKind, uint64>>(std::move(specials)));
}

// The same rows of keys (first, absent, special with and without an entry) under every key type.
template <class In, class K>
void ExpectLookups(FunctionRegistry& registry, StoreTypeInfo const& input, StoreTypeInfo const& keyType,
                   K const& key, In const& present, In const& absent) {
  auto const find = [&](wchar_t const* name, Value const& keySet) {
    return FindFactory(registry.GetUnaryFunctions(), FunctionKey(OStringCore(name), input), {keySet});
  };
  std::vector<Special<In>> const rows = {
      {present, kOrdinary}, {absent, kOrdinary}, {present, kNull}, {present, kMissing}};
  ExpectSpecialUnary<In, double>(
      find(TransformNames::LOOKUP_REAL64_SPECIAL,
           KeySet<K>(keyType, StoreTypeInfo::Real64, {{key, std::bit_cast<uint64>(1.5)}},
                     {{kNull, std::bit_cast<uint64>(-1.0)}})),
      rows, {{1.5, kOrdinary}, {0, kOrdinary}, {-1, kOrdinary}, {0, kOrdinary}});
  ExpectSpecialUnary<In, int64>(
      find(TransformNames::LOOKUP_INT64_SPECIAL,
           KeySet<K>(keyType, StoreTypeInfo::Int64, {{key, uint64{15}}}, {{kNull, ~uint64{0}}})),
      rows, {{15, kOrdinary}, {0, kOrdinary}, {-1, kOrdinary}, {0, kOrdinary}});
}

TEST_F(MapFunctions, LookupSpecialFindsKeysOfEveryType) {
  using Info = StoreTypeInfo;
  auto const text = [](wchar_t const* letters) { return RIndirectString(OStringCore(letters)); };
  auto const tuple = [](int member) { return factory::MakeTuple(std::vector{factory::MakeInt32(member)}); };
  OrtDateTime const date(2020, 3, 1);
  ExpectLookups(registry_, Info::String, Info::String, text(L"a"), text(L"a"), text(L"A"));
  ExpectLookups<int64, uint64>(registry_, Info::Int64, Info::Int64, uint64{7}, 7, 8);
  ExpectLookups<double, uint64>(registry_, Info::Real64, Info::Int64, std::bit_cast<uint64>(0.0), 0.0, -0.0);
  ExpectLookups<bool, uint8>(registry_, Info::Bool, Info::Bool, uint8{1}, true, false);
  ExpectLookups<Value, Value>(registry_, Info::Tuple, Info::Tuple, tuple(1), tuple(1), tuple(2));
  ExpectLookups<OrtDateTime, uint64>(registry_, Info::DateTime, Info::DateTime, date.GetValue(), date,
                                     OrtDateTime());
}

TEST_F(MapFunctions, ParametersAreCheckedWhenTheFunctorIsMade) {
  using namespace TransformNames;
  using Info = StoreTypeInfo;
  auto const realKeys = KeySet<uint64>(Info::Real64, Info::Real64, {}, {});
  auto const textKeys = KeySet<RIndirectString>(Info::String, Info::Real64, {}, {});
  auto const reals = Column<double>(Info::Real64, {1});
  struct {
    wchar_t const* name;
    StoreTypeInfo input;
    std::vector<Value> parameters;
    int error;
    wchar_t const* message;
  } const cases[] = {
      {INVLERP, Info::Real64, Reals({1}), 55, L"1 parameters given, 2 needed"},
      {INVLERP, Info::Real64, {factory::MakeReal32(1), factory::MakeReal64(1)}, 55, nullptr},
      {CINTERP, Info::Real64, {Column<int>(Info::Int32, {})}, 55, L"an empty palette"},
      {CINTERP,
       Info::Real64,
       {Column<int>(Info::Color, {1})},
       55,
       L"a column of Int32 is needed, one of Color was given"},
      {CINTERP, Info::Real64, {nullptr}, 55, L"a null pointer was given"},
      {CINTERP, Info::Real64, {factory::MakeInt32(1)}, 55, nullptr},
      {ARRAY_LOOKUP_INT64, Info::Int32, {reals}, 55, L"a column of Int64 is needed, one of Real64 was given"},
      {ARRAY_LOOKUP_REAL32,
       Info::Int32,
       {reals},
       55,
       L"a column of Real32 is needed, one of Real64 was given"},
      {ARRAY_LOOKUP_REAL64, Info::Int32, {Column<Value>(Info::Tuple, {})}, 55, nullptr},
      {MAP_RANGE_INDICES, Info::Int32, {reals}, 55, L"a column of Int32 is needed, one of Real64 was given"},
      {LOOKUP_REAL64_SPECIAL,
       Info::Int64,
       {textKeys},
       72,
       L"a key set from Int64 to Real64 is needed, one from String to Real64 was given"},
      {LOOKUP_INT64_SPECIAL,
       Info::String,
       {textKeys},
       72,
       L"a key set from String to Int64 is needed, one from String to Real64 was given"},
      {LOOKUP_REAL64_SPECIAL,
       Info::Real64,
       {realKeys},
       72,
       L"a key set from Int64 to Real64 is needed, one from Real64 to Real64 was given"},
      {LOOKUP_REAL64_SPECIAL, Info::String, {reals}, 55, nullptr},
      {LOOKUP_REAL64_SPECIAL, Info::String, {nullptr}, 55, L"a null pointer was given"},
  };
  for (auto const& [name, input, parameters, error, message] : cases) {
    try {
      Find(name, input, parameters)();
      ADD_FAILURE() << OStringCore(name).toUtf8() << " took its parameters";
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), error) << exception.what();
      if (message == nullptr) continue;
      EXPECT_EQ(exception.GetMessage(), OStringCore(message)) << exception.what();
    }
  }
}

}  // namespace
