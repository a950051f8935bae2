#include <cmath>
#include <random>
#include <stdexcept>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace RowDriver;
using RowDriver::Special;
using TestValues::Column, TestValues::Flag, TestValues::I32, TestValues::I64, TestValues::kInfinity,
    TestValues::kMissing, TestValues::kNaN, TestValues::kNone, TestValues::kNull, TestValues::R64,
    TestValues::Range, TestValues::Reals, TestValues::Text, TestValues::Tuple, TestValues::Tuples,
    TestValues::Value;

class ZipWithFunctions : public testing::Test {
 protected:
  ZipWithFunctions() { OstrelTransforms::RegisterOstrelZipWithFunctions(registry_); }
  Factory Find(wchar_t const* name, StoreTypeInfo const& a, StoreTypeInfo const& b,
               std::vector<Value> parameters = {}) {
    return FindFactory(registry_.GetBinaryFunctions(), FunctionKey(OStringCore(name), a, b),
                       std::move(parameters));
  }
  Factory FindReal(wchar_t const* name, StoreTypeInfo const& b, std::vector<Value> parameters = {}) {
    return Find(name, StoreTypeInfo::Real64, b, std::move(parameters));
  }

  FunctionRegistry registry_;
};

TEST_F(ZipWithFunctions, MinAndMaxGiveTheSecondOnATieAndBesideNaN) {
  std::vector<double> const a = {kNaN, 1, 0.0, -0.0, 3, -kInfinity, kNaN, 5};
  std::vector<double> const b = {1, kNaN, -0.0, 0.0, 4, kInfinity, kNaN, -5};
  auto const real = StoreTypeInfo::Real64;
  ExpectBinary<double, double, double>(Find(TransformNames::MIN_ZIPWITH, real, real), a, b,
                                       {1, kNaN, -0.0, 0.0, 3, -kInfinity, kNaN, -5});
  ExpectBinary<double, double, double>(Find(TransformNames::MAX_ZIPWITH, real, real), a, b,
                                       {1, kNaN, -0.0, 0.0, 4, kInfinity, kNaN, 5});
  auto const integer = StoreTypeInfo::Int64;
  std::vector<int64> const x = {1, INT64_MIN, 7}, y = {2, INT64_MAX, 7};
  ExpectBinary<int64, int64, int64>(Find(TransformNames::MIN_ZIPWITH, integer, integer), x, y, x);
  ExpectBinary<int64, int64, int64>(Find(TransformNames::MAX_ZIPWITH, integer, integer), x, y, y);
}

TEST_F(ZipWithFunctions, IntegersAreCombinedByTheirBits) {
  auto const integer = StoreTypeInfo::Int32;
  std::vector<int> const a = {-1, 2, INT_MIN, 0}, b = {1, -1, 0, INT_MIN};
  ExpectBinary<int, int, int>(Find(TransformNames::BITOR_ZIPWITH, integer, integer), a, b,
                              {-1, -1, INT_MIN, INT_MIN});
  ExpectBinary<int, int, int64>(Find(TransformNames::CONCAT_INTEGERS, integer, integer), a, b,
                                {0x00000001FFFFFFFF, -4294967294, 0x80000000, INT64_MIN});
}

TEST_F(ZipWithFunctions, FlagsAndLimitsChooseWhatIsMoved) {
  auto const flag = StoreTypeInfo::Bool, real = StoreTypeInfo::Real64;
  ExpectBinary<double, bool, double>(FindReal(TransformNames::ADD_TO_RIGHT, flag, {R64(0.5)}),
                                     {1, 1, -0.0, kNaN}, {false, true, true, false}, {1.5, 1, -0.0, kNaN});
  ExpectBinary<OrtColor, bool, OrtColor>(
      Find(TransformNames::ADJUST_TOTAL_COLOR, StoreTypeInfo::Color, flag, {factory::MakeColor(OrtColor(7))}),
      {OrtColor(1), OrtColor(2)}, {true, false}, {OrtColor(7), OrtColor(2)});
  ExpectBinary<double, int, double>(
      FindReal(TransformNames::CALC_MARK_HALF_SIZE, StoreTypeInfo::Int32, {R64(3)}), {4, -1, kInfinity},
      {9, 0, -9}, {6, -1.5, kInfinity});
  ExpectBinary<double, double, double>(FindReal(TransformNames::ADJUST_LEFT_WRAPPED, real, {R64(2)}),
                                       {3, 2, 1, kNaN, 2.5}, {10, 10, -0.0, 10, kNaN},
                                       {10.5, 10, -0.0, 10, kNaN});
  EXPECT_EQ(ErrorOf(FindReal(TransformNames::ADD_TO_RIGHT, flag)), 55);
  EXPECT_EQ(ErrorOf(FindReal(TransformNames::ADJUST_LEFT_WRAPPED, real, {I32(2)})), 55);
}

TEST_F(ZipWithFunctions, TuplesGiveOneOfTwoMembers) {
  auto const iif = Find(TransformNames::IIF, StoreTypeInfo::Bool, StoreTypeInfo::Tuple);
  ExpectBinary<bool, Value, int>(iif, {true, false}, {Tuple({I32(1), I32(2)}), Tuple({I32(1), I32(2)})},
                                 {1, 2});
  auto const right = FindReal(TransformNames::ADJUST_RIGHT_WRAPPED, StoreTypeInfo::Tuple, {R64(2)});
  Value const ends = Tuple({R64(10), R64(20)});
  ExpectBinary<double, Value, double>(right, {3, 2, kNaN, kInfinity}, {ends, ends, ends, ends},
                                      {12, 20, 20, 12});

  auto const choose = [&](bool flag, Value const& tuple) {
    auto const functor = iif();
    return dynamic_cast<IBinaryFunctor<bool, Value, int>&>(*functor).Apply(flag, tuple);
  };
  // Only the member that is asked for is read.
  EXPECT_EQ(choose(true, Tuple({I32(1), Text(L"a")})), 1);
  EXPECT_EQ(ErrorOf([&] { choose(false, Tuple({I32(1), Text(L"a")})); }), 55);
  EXPECT_EQ(ErrorOf([&] { choose(false, Tuple({I32(1)})); }), 219);
  EXPECT_EQ(ErrorOf([&] { choose(true, I32(1)); }), 55);
  EXPECT_EQ(ErrorOf([&] { choose(true, nullptr); }), 55);
}

TEST_F(ZipWithFunctions, DivisionMarksWhatHasNoQuotient) {
  auto const real = StoreTypeInfo::Real64;
  ExpectSpecialBinary<double, double, double>(
      Find(TransformNames::DIVIDE_SPECIAL, real, real),
      {{1, kNone}, {1, kNone}, {6, kNone}, {6, kNull}, {6, kNone}, {kNaN, kNone}, {0, kNone}, {-0.0, kNone}},
      {{0, kNone}, {-0.0, kNone}, {4, kNone}, {4, kNone}, {4, kNull}, {1, kNone}, {kNaN, kNone}, {2, kNone}},
      {{0, kMissing},
       {0, kMissing},
       {1.5, kNone},
       {0, kMissing},
       {0, kMissing},
       {kNaN, kNone},
       {kNaN, kNone},
       {-0.0, kNone}});
}

TEST_F(ZipWithFunctions, RunningSumAddsTheFirstAmountOfEachRun) {
  auto const sum = Find(TransformNames::GROUP_BY_RUNNING_SUM, StoreTypeInfo::Int32, StoreTypeInfo::Real32);
  ExpectBinary<int, float, float>(sum, {7, 7, 3, 3, 3, 9, 7}, {2, 2, 5, 5, 5, 1, 4}, {2, 2, 7, 7, 7, 8, 12},
                                  State::Carried);
  // Key -1 is "no row yet": the next row begins anew.
  ExpectBinary<int, float, float>(sum, {7, -1, -1, 3, 3}, {2, 5, 1, 4, 9}, {2, 7, 1, 4, 4}, State::Carried);
}

// The rule for steps, one sentence after the other.
double Step(double a, bool isLeft, double nLeft, double nRight) {
  double steps = isLeft ? nLeft : nRight;
  bool const half = std::fabs(std::fmod(steps, 1.0)) > 0.25;
  double x = a * steps;
  if (!isLeft) x = half ? x + 0.5 : x + 1.0;
  double f = std::floor(x);
  if (!half) return f / steps;
  if (std::floor(steps) < f) f = std::floor(steps);
  if (f < 0.0) f = 0.0;
  steps -= 0.5;
  if (steps < 0.25) return isLeft ? 1.0 : 0.0;
  return f / steps;
}

TEST_F(ZipWithFunctions, SteppingAgreesWithItsRule) {
  auto const apply = TransformNames::APPLY_STEPPING_FOR_DIVERGING_PALETTE;
  auto const make = [&](double left, double right) {
    return FindReal(apply, StoreTypeInfo::Bool, {R64(left), R64(right)});
  };
  ExpectBinary<double, bool, double>(make(4, 4), {0.5, 0.5}, {true, false}, {0.5, 0.75});
  ExpectBinary<double, bool, double>(make(0.5, 4.5), {0.3, 0, 1, 9, -3}, {true, false, false, false, false},
                                     {1, 0, 1, 1, 0});
  double const counts[] = {0, 0.5, 0.7, 1, 2.25, 2.26, 3.5, 5, -1.5, kNaN, kInfinity};
  std::mt19937 random(3);
  std::uniform_real_distribution<double> position(-0.5, 1.5);
  for (double const left : counts) {
    for (double const right : counts) {
      std::vector<double> a = {0, -0.0, 1, kNaN, kInfinity, -kInfinity};
      std::vector<bool> b;
      std::vector<double> expected;
      while (a.size() < 20) a.push_back(position(random));
      for (double const x : a) {
        b.push_back(random() % 2 == 0);
        expected.push_back(Step(x, b.back(), left, right));
      }
      SCOPED_TRACE(testing::Message() << left << " steps left, " << right << " right");
      ExpectBinary<double, bool, double>(make(left, right), a, b, expected);
    }
  }
}

TEST_F(ZipWithFunctions, PanesHaveBoundsOfTheirOwn) {
  auto const panes = [&](Value const& lower, Value const& upper) {
    return FindReal(TransformNames::INVLERP_MULTI_PANE, StoreTypeInfo::Int32, {lower, upper});
  };
  auto const made = panes(Reals({0, 10}), Reals({4, 10, 9}));
  ExpectSpecialBinary<double, int, double>(
      made, {{1, kNone}, {5, kNone}, {8, kNull}, {5, kNull}, {kNaN, kNone}, {1, kNone}},
      {{0, kNone}, {1, kNone}, {0, kNone}, {1, kNone}, {0, kNone}, {0, kNull}},
      {{0.25, kNone}, {0, kMissing}, {0, kNull}, {0, kMissing}, {kNaN, kNone}, {0.25, kNone}});
  auto const functor = made();
  auto& interpolate = dynamic_cast<IBinarySpecialFunctor<double, int, double>&>(*functor);
  for (int const pane : {-1, 2, INT_MAX, INT_MIN}) {
    try {
      interpolate.Apply(1, kNone, pane, kNone);
      ADD_FAILURE() << pane;
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), 55);
      EXPECT_EQ(error.GetMessage().toUtf8(),
                "pane " + std::to_string(pane) + " is not one of the 2 that have bounds");
    }
  }
  EXPECT_EQ(ErrorOf(panes(Reals({0}), TestValues::Ints({0}))), 55);
  EXPECT_EQ(ErrorOf(panes(Reals({0}), R64(0))), 55);
}

TEST_F(ZipWithFunctions, IndexedRangesAreInterpolated) {
  auto const make = [&](std::vector<Value> parameters) {
    return FindReal(TransformNames::INTERPOLATE_INDEXED_RANGE, StoreTypeInfo::Int32, std::move(parameters));
  };
  auto const day = [](int number) { return factory::MakeDateTime(OrtDateTime::FromDouble(number)); };
  auto const made = make({Tuples(
      {Range(R64(0), R64(10)), Range(I32(0), R64(std::log(100)), 0, 4, true), Range(day(4), day(6), 0, 7)})});
  ExpectBinary<double, int, double>(made, {0.5, 0.5, 0.5, 0.5, -1, 0.25, kNaN}, {0, 1, 3, -1, 0, 2, 0},
                                    {5, std::exp(0.5 * std::log(100)), 0, 0, -10, 4.5, kNaN});
  try {
    make({})();
    ADD_FAILURE() << "nothing was thrown";
  } catch (std::out_of_range const& error) {
    EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
  }
  Value const ranges = Tuples({});
  EXPECT_EQ(ErrorOf(make({ranges, ranges})), 55);
  EXPECT_EQ(ErrorOf(make({nullptr})), 55);
  EXPECT_EQ(ErrorOf(make({Reals({1})})), 55);
  EXPECT_EQ(ErrorOf(make({Tuples({Range(Text(L"a"), R64(1))})})), 178);
  EXPECT_EQ(ErrorOf(make({Tuples({Tuple({R64(0), R64(1)})})})), 219);
}

TEST_F(ZipWithFunctions, RangesAreExtendedToZero) {
  auto const functor =
      Find(TransformNames::EXTEND_RANGES_TO_INCLUDE_ZERO, StoreTypeInfo::Tuple, StoreTypeInfo::Bool)();
  auto& extend = dynamic_cast<IBinaryFunctor<Value, bool, Value>&>(*functor);
  Value const missing = TestValues::Special(StoreTypeInfo::Real64);
  double const e3 = std::exp(std::log(3.0)), e8 = std::exp(std::log(8.0));
  struct {
    Value range, expected;
  } const cases[] = {
      {Range(R64(3), R64(8)), Range(R64(0), R64(8))},
      {Range(R64(-8), R64(-3)), Range(R64(-8), R64(0))},
      {Range(R64(-8), R64(3), 5, 2), Range(R64(-8), R64(3), 5, 2)},
      {Range(I32(3), I64(8), 1, 1), Range(R64(0), R64(8), 1, 1)},
      {Range(R64(8), R64(-3)), Range(R64(8), R64(0))},
      {Range(missing, R64(8)), Range(R64(0), R64(8))},
      {Range(R64(-8), missing), Range(R64(-8), R64(0))},
      {Range(R64(kNaN), R64(8)), Range(R64(kNaN), R64(8))},
      {Range(R64(3), R64(8), 0, 4, true), Range(R64(1), R64(e8), 0, 4, true)},
      {Range(R64(0.3), R64(0.5), 0, 4, true), Range(R64(std::exp(std::log(0.3))), R64(1), 0, 4, true)},
      // Not the logarithm that is 0 for everything that is not above zero.
      {Range(R64(0), R64(3), 0, 4, true), Range(R64(0), R64(e3), 0, 4, true)},
      {Range(R64(-1), R64(3), 0, 4, true), Range(R64(kNaN), R64(e3), 0, 4, true)},
  };
  int place = 0;
  for (auto const& [range, expected] : cases) {
    TestValues::ExpectEqual(extend.Apply(range, true), expected, "case " + std::to_string(place++));
    EXPECT_EQ(extend.Apply(range, false), range);
  }
  for (Value const& range : {Range(R64(3), R64(8), 3), Range(R64(3), R64(8), 10), Range(R64(3), R64(8), 0, 6),
                             Range(Text(L"a"), Text(L"b"), 0, 7)}) {
    EXPECT_EQ(extend.Apply(range, true), range);
  }
  EXPECT_EQ(ErrorOf([&] { extend.Apply(Range(Text(L"a"), R64(1)), true); }), 178);
  EXPECT_EQ(ErrorOf([&] { extend.Apply(R64(1), false); }), 55);
}

}  // namespace
