#include <bit>
#include <limits>
#include <random>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

class ColumnFunctions : public testing::Test {
 protected:
  ColumnFunctions() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }
  Value Ask(wchar_t const* name, std::vector<Value> const& inputs, std::size_t place = 0) {
    return Call(registry_, name, inputs, place);
  }

  FunctionRegistry registry_;
};

Value Instant(int day) { return factory::MakeDateTime(OrtDateTime(2020, 3, day)); }
Value Date(int day) { return factory::MakeDate(OrtDateTime(2020, 3, day)); }

TEST_F(ColumnFunctions, TotalsStandInEveryRow) {
  constexpr int64 kMost = std::numeric_limits<int64>::max();
  auto const nothing = [](StoreTypeInfo const& type, int count) {
    return factory::MakeConstantArray<uint64>(type, count, kMissing);
  };
  struct {
    std::size_t place;
    Value column, expected;
  } const cases[] = {
      {0, Longs({1, 0, 2}, {kNone, kNull}), Longs({3, 3, 3})},
      {0, Longs({kMost, 1}), Longs({-kMost - 1, -kMost - 1})},
      {0, Longs({0, 0}, {kNull, kMissing}), nothing(StoreTypeInfo::Int64, 2)},
      {0, Longs({}), nothing(StoreTypeInfo::Int64, 0)},
      {0, factory::MakeConstantArray<int64>(StoreTypeInfo::Int64, 7, 3), Longs({21, 21, 21})},
      {1, Reals({1, 0, 2.5}, {kNone, kNull}), Reals({3.5, 3.5, 3.5})},
      {1, Reals({1e16, 1, 1, -1e16}), Reals({0, 0, 0, 0})},
      {1, Reals({kInfinity, 1}), Reals({kInfinity, kInfinity})},
      {1, factory::MakeConstantArray<uint64>(StoreTypeInfo::Real64, 2, kNull),
       nothing(StoreTypeInfo::Real64, 2)},
  };
  int place = 0;
  for (auto const& [registration, column, expected] : cases) {
    ExpectEqual(Ask(TransformNames::ACCUMULATE, {column}, registration), expected,
                "case " + std::to_string(place++));
  }
  // Added in order: the sum of tenths shows it.
  double sum = 0;
  for (int i = 0; i < 100; ++i) sum += 0.1;
  Value const tenths = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, 0.1, 100);
  EXPECT_EQ(Ask(TransformNames::ACCUMULATE, {tenths}, 1)->AsTypedArray<double>().GetElement(99), sum);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::ACCUMULATE, {}); }), 219);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::ACCUMULATE, {tenths, tenths}, 1); }), 219);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::ACCUMULATE, {tenths}, 0); }), 55);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::ACCUMULATE, {R64(1)}, 1); }), 55);
}

TEST_F(ColumnFunctions, InterpolateKeepsTheType) {
  struct {
    Value fraction, from, to, expected;
  } const cases[] = {
      {R64(0.25), I32(0), I32(10), I32(3)},
      {R64(0.25), I64(0), I64(-10), I64(-3)},
      {R64(0.25), R32(0), R32(10), R32(2.5)},
      {R64(2), R64(1), R64(2), R64(3)},
      {R64(kNaN), R64(5), R64(5), R64(5)},
      {R64(0.5), Instant(1), Instant(3), Instant(2)},
      {R64(0.3), R64(-3e6), R64(5e6), R64(-3e6 * (1 - 0.3) + 5e6 * 0.3)},
  };
  for (auto const& [fraction, from, to, expected] : cases) {
    ExpectEqual(Ask(TransformNames::INTERPOLATE, {fraction, from, to}), expected);
  }
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::INTERPOLATE, {R64(1), R64(1)}); }), 219);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::INTERPOLATE, {R64(1), R64(1), I32(1)}); }), 220);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::INTERPOLATE, {I32(1), R64(1), R64(1)}); }), 55);
}

template <class K, class V>
Value KeySet(StoreTypeInfo const& keyType, StoreTypeInfo const& valueType, std::unordered_map<K, V> entries,
             std::unordered_map<SpecialKind, V> specials = {}) {
  return factory::MakeKeySet<K, V>(keyType, valueType, StoreTypeInfo::Int64,
                                   std::make_unique<std::unordered_map<K, V>>(std::move(entries)),
                                   std::make_unique<std::unordered_map<SpecialKind, V>>(std::move(specials)));
}

TEST_F(ColumnFunctions, ExtremaPassSpecialValuesOver) {
  auto const bits = [](double value) { return std::bit_cast<uint64>(value); };
  auto const real = StoreTypeInfo::Real64;
  struct {
    Value input;
    Value least, greatest;  // as Real64
  } const cases[] = {
      {Reals({2.5, -1, 4}), R64(-1), R64(4)},
      {Reals({0, -1, 0, 4}, {kNull, kNone, kNull}), R64(-1), R64(4)},
      {Reals({kNaN, 1}), R64(kNaN), R64(kNaN)},
      {Reals({1, kNaN, 0}), R64(0), R64(1)},
      {Reals({}), Special(real), Special(real)},
      {Reals({0}, {kNull}), Special(real), Special(real)},
      {factory::MakeConstantArray<double>(real, 3, 9), R64(3), R64(3)},
      {factory::MakeConstantArray<double>(real, 9, kNull), Special(real), Special(real)},
      {Ints({5, -7}), R64(-7), R64(5)},
      {Column(StoreTypeInfo::Real32, std::vector<float>{0.5F, 2}), R64(0.5), R64(2)},
      {factory::MakeKeyMap({{L"b", I32(3)}, {L"a", R64(-2.5)}, {L"c", Special(real)}}), R64(-2.5), R64(3)},
      {factory::MakeKeyMap(factory::NamedValues{}), Special(real), Special(real)},
      {KeySet<uint64, uint64>(StoreTypeInfo::Int64, real, {{3, bits(1.5)}, {1, bits(-2)}}), R64(-2),
       R64(1.5)},
      {KeySet<uint32, uint64>(StoreTypeInfo::Int32, StoreTypeInfo::Int64, {{3, 7}}, {{kNull, 9}}), R64(7),
       R64(9)},
      {KeySet<RIndirectString, Value>(StoreTypeInfo::String, StoreTypeInfo::Int64,
                                      {{RIndirectString(OStringCore(L"k")), I64(4)},
                                       {RIndirectString(OStringCore(L"l")), Special(StoreTypeInfo::Int64)}}),
       R64(4), R64(4)},
      {KeySet<uint8, Value>(StoreTypeInfo::Bool, real, {{1, R64(4)}}), R64(4), R64(4)},
      {KeySet<Value, uint64>(StoreTypeInfo::Tuple, real, {{Tuple({I32(1)}), bits(8)}}), R64(8), R64(8)},
  };
  int place = 0;
  for (auto const& [input, least, greatest] : cases) {
    ExpectEqual(Ask(TransformNames::MIN_MULTI_R64, {input}), least, "least of case " + std::to_string(place));
    ExpectEqual(Ask(TransformNames::MAX_MULTI_R64, {input}), greatest,
                "greatest of case " + std::to_string(place++));
  }
}

TEST_F(ColumnFunctions, ExtremaHaveTheTypeOfTheirFunction) {
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
    Value expected;
  } const cases[] = {
      {TransformNames::MIN_MULTI_R64, {}, R64(0)},
      {TransformNames::MAX_MULTI_R64, {}, R64(0)},
      {TransformNames::MIN_MULTI_I64, {}, I64(0)},
      {TransformNames::MAX_MULTI_I64, {}, I64(0)},
      {TransformNames::MIN_MULTI_DATETIME, {}, factory::MakeDateTime(OrtDateTime())},
      {TransformNames::MAX_MULTI_DATETIME, {}, factory::MakeDateTime(OrtDateTime())},
      {TransformNames::MIN_MULTI_I64, {Longs({3, INT64_MIN})}, I64(INT64_MIN)},
      {TransformNames::MAX_MULTI_I64, {Reals({2.5, 1}), Reals({9})}, I64(3)},
      {TransformNames::MIN_MULTI_DATETIME,
       {Column(StoreTypeInfo::Date, std::vector{OrtDateTime(2020, 3, 4)})},
       Instant(4)},
      {TransformNames::MAX_MULTI_DATETIME,
       {factory::MakeKeyMap({{L"a", Instant(2)}, {L"b", Date(7)}})},
       Instant(7)},
      {TransformNames::MAX_MULTI_DATETIME, {Reals({})}, Special(StoreTypeInfo::DateTime)},
  };
  for (auto const& [name, inputs, expected] : cases) {
    ExpectEqual(Ask(name, inputs), expected, OStringCore(name).toUtf8());
  }
  // Of equal values the first one stays: zeros tell it.
  for (wchar_t const* const name : {TransformNames::MIN_MULTI_R64, TransformNames::MAX_MULTI_R64}) {
    EXPECT_TRUE(std::signbit(Ask(name, {Reals({-0.0, 0.0})})->GetReal64()));
    EXPECT_FALSE(std::signbit(Ask(name, {Reals({0.0, -0.0})})->GetReal64()));
  }
  struct {
    wchar_t const* name;
    Value input;
    int error;
  } const refused[] = {
      {TransformNames::MIN_MULTI_R64, nullptr, 55},
      {TransformNames::MIN_MULTI_R64, R64(1), 55},
      {TransformNames::MIN_MULTI_R64, Flags({1}), 55},
      {TransformNames::MIN_MULTI_R64, factory::MakeKeyMap({{L"a", Text(L"5")}}), 55},
      {TransformNames::MIN_MULTI_R64, factory::MakeKeyMap({{L"a", I32(5)}, {L"b", Text(L"5")}}), 220},
      {TransformNames::MIN_MULTI_R64, Column(StoreTypeInfo::Date, std::vector{OrtDateTime()}), 55},
      {TransformNames::MAX_MULTI_DATETIME, Reals({1}), 55},
      {TransformNames::MIN_MULTI_I64,
       KeySet<uint32, uint64>(StoreTypeInfo::Int32, StoreTypeInfo::Bool, {{1, 1}}), 55},
  };
  for (auto const& [name, input, error] : refused) {
    EXPECT_EQ(ErrorOf([&, &called = name, &given = input] { Ask(called, {given}); }), error);
  }
}

TEST_F(ColumnFunctions, ColumnsWithRowsAreNotEmpty) {
  auto const ask = [&](std::vector<Value> const& inputs) {
    return Ask(TransformNames::COLUMN_NOT_EMPTY, inputs)->GetBool();
  };
  EXPECT_FALSE(ask({Ints({}), Flag(false)}));
  EXPECT_TRUE(ask({Ints({}), Flag(true)}));
  EXPECT_TRUE(ask({Tuples({Tuple({})}), Flag(false)}));
  EXPECT_TRUE(ask({Reals({0}, {kNull}), Flag(false)}));
  EXPECT_EQ(ErrorOf([&] { ask({Ints({})}); }), 219);
  EXPECT_EQ(ErrorOf([&] { ask({Ints({}), I32(1)}); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask({R64(1), Flag(false)}); }), 55);
}

}  // namespace
