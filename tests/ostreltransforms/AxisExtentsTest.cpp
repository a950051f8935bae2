#include <cmath>
#include <random>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/AxisExtents.h"

namespace {

using namespace TestValues;
using OstrelTransforms::AxisExtents::Axis;
using OstrelTransforms::AxisExtents::Compute;
using OstrelTransforms::AxisExtents::Extents;
using RowDriver::ErrorOf;

double Number(OrtDateTime date) { return date.ToDouble(); }
Axis Linear(double minimum, double maximum, double start, double end,
            StoreType fieldType = StoreType::Real64) {
  return {minimum, maximum, 0, fieldType, false, false, start, end};
}
Axis Logarithmic(Axis axis) { return axis.isLog = true, axis; }
Axis Reversed(Axis axis) { return axis.isReversed = true, axis; }
Axis PassedThrough(Axis axis) { return axis.modeCode = 10, axis; }

TEST(AxisExtents, FollowTypeScaleAndMode) {
  auto const date = StoreType::Date, instant = StoreType::DateTime;
  double const ln10 = std::log(10.0), ln1000 = std::log(1000.0);
  double const march1 = Number(OrtDateTime(2020, 3, 1)), march2 = march1 + 1;
  struct {
    Axis axis;
    Extents expected;
  } const cases[] = {
      {Linear(0, 10, 2.5, 7.5), {0.25, 0.75, 0, 0, 10}},
      {Linear(-5, 15, 0, 10), {0.25, 0.75, 0.25, -5, 15}},
      {Linear(0, 10, 7.5, 2.5), {0.25, 0.75, 0, 0, 10}},
      {Reversed(Linear(0, 10, 2.5, 7.5)), {0.75, 0.25, 0, 0, 10}},
      {Linear(0.4, 9.2, 0, 10, StoreType::Int64), {0, 1, 0, 0, 10}},
      {Linear(-0.5, 9.5, 0, 10, StoreType::Int32), {1.0 / 11, 1, 1.0 / 11, -1, 10}},
      {Linear(0.5, 9.5, 0.5, 9.5, StoreType::Real32), {0, 1, -0.5 / 9, 0.5, 9.5}},
      {Linear(4, 4, 1, 2), {0, 1, 0, 4, 4}},
      {Reversed(Linear(4, 4, 1, 2)), {1, 0, 0, 4, 4}},
      {Linear(kNaN, kNaN, 1, 2), {0, 1, 0, kNaN, kNaN}},
      {PassedThrough(Linear(-3, 8, 1, 2)), {-3, 8, 0, -3, 8}},
      {PassedThrough(Linear(8, -3, 1, 2)), {-3, 8, 0, 8, -3}},
      {PassedThrough(Linear(4, 4, 1, 2)), {0, 1, 0, 4, 4}},
      {PassedThrough(Logarithmic(Linear(10, 1000, 1, 2))), {ln10, ln1000, 0, 10, 1000}},
      {Logarithmic(Linear(1, 1000, ln10, ln1000)), {ln10 / ln1000, 1, 0, 1, 1000}},
      {Logarithmic(Linear(-7, 0, 0, 1)), {0, 1, 0, -7, 0}},
      {Linear(march1, march1 + 1.5, march1, march2, date), {0, 0.5, 0, march1, march1 + 2}},
      {Linear(march1 + 0.25, march2, march1, march2, date), {0, 1, 0, march1, march2}},
      {Linear(march1 + 0.25, march1 + 1.25, march1 + 0.5, march1 + 1, instant),
       {0.25, 0.75, 0, march1 + 0.25, march1 + 1.25}},
      {Linear(march1, march1, march1, march1, instant), {-0.1, 0.1, 0, march1, march1}},
      {Reversed(Linear(march1, march1, 0, 0, date)), {0.1, -0.1, 0, march1, march1}},
  };
  int place = 0;
  for (auto const& [axis, expected] : cases) {
    Extents const got = Compute(axis);
    auto const expectSame = [&](double a, double b, char const* what) {
      EXPECT_TRUE(RowDriver::Same(a + 0.0, b + 0.0))
          << "case " << place << ", " << what << ": " << a << ", " << b;
    };
    expectSame(got.low, expected.low, "low");
    expectSame(got.high, expected.high, "high");
    expectSame(got.zero, expected.zero, "zero");
    expectSame(got.domainMinimum, expected.domainMinimum, "minimum");
    expectSame(got.domainMaximum, expected.domainMaximum, "maximum");
    ++place;
  }
}

// Of wide domains positions are ratios, of dates they are not.
TEST(AxisExtents, WideDomainsAreWeighed) {
  double const minimum = -3e6, maximum = 5e6, start = 12345.678;
  Value const ratio =
      StoreValueOperators::InverseInterpolate(*R64(start), *R64(minimum), *R64(maximum), false);
  Value const linear =
      StoreValueOperators::InverseInterpolate(*R64(start), *R64(minimum), *R64(maximum), true);
  ASSERT_NE(ratio->GetReal64(), linear->GetReal64());
  EXPECT_EQ(Compute(Linear(minimum, maximum, start, maximum)).low, ratio->GetReal64());
  Axis const dates = Linear(-2e6, 5e6, start, 5e6, StoreType::DateTime);
  EXPECT_EQ(Compute(dates).low, (start + 2e6) / 7e6);
}

TEST(AxisExtents, OrientationFollowsTheFlag) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> number(-100, 100);
  for (int i = 0; i < 1000; ++i) {
    Axis axis = Linear(number(random), number(random), number(random), number(random));
    Extents const upright = Compute(axis), reversed = Compute(Reversed(axis));
    EXPECT_LE(upright.low, upright.high);
    EXPECT_EQ(upright.low, reversed.high);
    EXPECT_EQ(upright.high, reversed.low);
    EXPECT_EQ(upright.zero, reversed.zero);
  }
}

class AxisFunctions : public testing::Test {
 protected:
  AxisFunctions() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }
  Value Ask(std::vector<Value> const& inputs) {
    return Call(registry_, TransformNames::COMPUTE_AXIS_EXTENTS, inputs);
  }

  FunctionRegistry registry_;
};

Value Ends(Value start, Value end) { return Tuple({std::move(start), std::move(end)}); }
Value Result(std::vector<double> low, std::vector<double> high, std::vector<double> zero,
             std::vector<double> minimum, std::vector<double> maximum) {
  return factory::MakeKeyMap({{L"minResult", Reals(low)},
                              {L"maxResult", Reals(high)},
                              {L"zeroResult", Reals(zero)},
                              {L"minRangeResult", Reals(minimum)},
                              {L"maxRangeResult", Reals(maximum)}});
}

TEST_F(AxisFunctions, RowsReceiveTheExtentsOfTheirAxis) {
  Value const missing = Special(StoreTypeInfo::Real64);
  Value const domains = Tuples({Range(I64(-5), I64(15), 0, 2), Range(missing, R64(4), 0, 4),
                                Range(factory::MakeDate(OrtDateTime(2020, 3, 1)),
                                      factory::MakeDate(OrtDateTime(2020, 3, 1, 12)), 0, 6)});
  Value const first = factory::MakeDateTime(OrtDateTime(2020, 3, 1));
  Value const ranges =
      Tuples({Ends(I32(0), R64(10)), Ends(R64(1), missing), Ends(first, first), Ends(R64(1), R64(2))});
  Value const flags = Flags({0, 1, 0, 1});
  double const day = Number(OrtDateTime(2020, 3, 1));
  for (bool const upright : {true, false}) {
    double const low = upright ? 0 : 1, high = 1 - low;
    Value const expected =
        Result({0.25, 0.25, 0.25, 0, low, low, low}, {0.75, 0, 0.75, 0, high, high, high},
               {0.25, 0, 0.25, 0, 0, 0, 0}, {-5, 0, -5, day, 0, 0, 0}, {15, 4, 15, day + 1, 0, 0, 0});
    std::vector<SpecialKind> const kinds = {kNone, kNone, kNone, kNone, kNone, kNone, kNull};
    ExpectEqual(Ask({domains, ranges, flags, Ints({0, 1, 0, 2, 3, -1, 0}, kinds), Flag(upright)}), expected);
    ExpectEqual(Ask({domains, ranges, flags, Longs({0, 1, 0, 2, int64{1} << 32, INT64_MIN, 0}, kinds),
                     Flag(upright)}),
                expected);
    ExpectEqual(Ask({Tuples({}), Tuples({}), Flags({}), Ints({0, -7}), Flag(upright)}),
                Result({low, low}, {high, high}, {0, 0}, {0, 0}, {0, 0}));
  }
  ExpectEqual(Ask({domains, ranges, flags, Ints({}), Flag(true)}), Result({}, {}, {}, {}, {}));
}

TEST_F(AxisFunctions, RefuseOtherInputs) {
  Value const domains = Tuples({Range(R64(0), R64(1))}), ranges = Tuples({Ends(R64(0), R64(1))});
  Value const flags = Flags({0}), axes = Ints({0}), flag = Flag(true);
  struct {
    std::vector<Value> inputs;
    int error;
  } const cases[] = {
      {{domains, ranges, flags, axes}, 219},
      {{domains, ranges, flags, axes, flag, flag}, 219},
      {{domains, Tuples({}), flags, axes, flag}, 55},
      {{domains, ranges, Flags({}), axes, flag}, 55},
      {{domains, ranges, flags, Reals({0}), flag}, 55},
      {{domains, ranges, Ints({0}), axes, flag}, 55},
      {{domains, ranges, flags, axes, I32(1)}, 55},
      {{R64(0), ranges, flags, axes, flag}, 55},
      {{Tuples({Ends(R64(0), R64(1))}), ranges, flags, axes, flag}, 219},
      {{Tuples({Range(Text(L"a"), R64(1))}), ranges, flags, axes, flag}, 178},
      {{domains, Tuples({Ends(Text(L"a"), R64(1))}), flags, axes, flag}, 178},
      {{domains, Tuples({Tuple({R64(0)})}), flags, axes, flag}, 219},
  };
  int place = 0;
  for (auto const& [inputs, error] : cases) {
    EXPECT_EQ(ErrorOf([&, &given = inputs] { Ask(given); }), error) << "case " << place;
    ++place;
  }
  try {
    Ask({domains});
    ADD_FAILURE() << "a wrong count is accepted";
  } catch (OrtRuntimeException const& wrongCount) {
    EXPECT_TRUE(wrongCount.GetMessage().isEmpty());
  }
}

}  // namespace
