#include <cmath>
#include <random>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace RowDriver;
using RowDriver::Special;
using TestValues::I32, TestValues::kMissing, TestValues::kNaN, TestValues::kNone, TestValues::kNull,
    TestValues::R64, TestValues::Range, TestValues::Text, TestValues::Tuple, TestValues::Value;

class ReduceFunctions : public testing::Test {
 protected:
  ReduceFunctions() { OstrelTransforms::RegisterOstrelReduceFunctions(registry_); }
  Factory Find(wchar_t const* name, StoreTypeInfo const& a, StoreTypeInfo const& b,
               std::vector<Value> parameters = {}) {
    return FindFactory(registry_.GetBinaryFunctions(), FunctionKey(OStringCore(name), a, b),
                       std::move(parameters));
  }

  // "isDistinctPrev" over rows of one type.
  template <class T>
  void ExpectDistinct(StoreTypeInfo const& type, std::vector<T> const& rows,
                      std::vector<bool> const& expected) {
    ExpectBinary<bool, T, bool>(Find(TransformNames::IS_DISTINCT_PREV, StoreTypeInfo::Bool, type),
                                std::vector<bool>(rows.size()), rows, expected, State::Carried);
  }
  template <class T>
  void ExpectPreviousNull(StoreTypeInfo const& type) {
    std::vector<SpecialKind> const kinds = {kNone, kMissing,       kNone, kNull,
                                            kNull, SpecialKind(2), kNone, kNone};
    std::vector<bool> const expected = {true, false, true, false, true, true, false, false};
    std::vector<Special<bool>> first, results;
    std::vector<Special<T>> rows;
    for (std::size_t row = 0; row < kinds.size(); ++row) {
      first.emplace_back(false, kNone);
      rows.emplace_back(T(), kinds[row]);
      results.emplace_back(expected[row], kNone);
    }
    ExpectSpecialBinary<bool, T, bool>(
        Find(TransformNames::IS_PREV_VALUE_NULL_OR_MISSING, StoreTypeInfo::Bool, type), first, rows, results,
        State::Carried);
  }

  FunctionRegistry registry_;
};

TEST_F(ReduceFunctions, PlainOnesFollowTheirRows) {
  auto const integer = StoreTypeInfo::Int32, real = StoreTypeInfo::Real64;
  ExpectBinary<int, int, int>(Find(TransformNames::BITOR_REDUCE, integer, integer), {1, INT_MIN}, {6, 1},
                              {7, INT_MIN + 1});
  ExpectBinary<int64, int64, int64>(
      Find(TransformNames::BITOR_REDUCE, StoreTypeInfo::Int64, StoreTypeInfo::Int64), {1, INT64_MIN}, {6, 1},
      {7, INT64_MIN + 1});
  ExpectBinary<int, int, int>(Find(TransformNames::END, integer, integer), {1, 2}, {6, 1}, {6, 1});
  ExpectBinary<float, float, float>(Find(TransformNames::END, StoreTypeInfo::Real32, StoreTypeInfo::Real32),
                                    {1, 2}, {6, -0.0F}, {6, -0.0F});
  ExpectBinary<double, double, double>(Find(TransformNames::WRAP_X_FOR_MAPS, real, real),
                                       {0.1, 0.9, 0, 0, -7.25, 1}, {0.9, 0.1, 0.5, -0.5, 3, kNaN},
                                       {0.9 - 1, 1.1, -0.5, -0.5, -7, kNaN});
}

TEST_F(ReduceFunctions, UniformValueIsTheFirstRunningOne) {
  auto const uniform = Find(TransformNames::TO_UNIFORM_VALUE, StoreTypeInfo::Int32, StoreTypeInfo::Int32);
  ExpectBinary<int, int, int>(uniform, {9, 5, 7, 4}, {5, 5, 8, 4}, {5, 5, 9, 4}, State::Carried);
  auto const functor = uniform();
  int accumulator = -1;
  std::vector<int> const rows = {5, 5, 7, 5, -1};
  std::vector<int> results(rows.size());
  dynamic_cast<IBinaryFunctor<int, int, int>&>(*functor).AccumulateForward(accumulator, rows, results);
  EXPECT_EQ(results, (std::vector<int>{5, 5, -1, -1, -1}));
}

TEST_F(ReduceFunctions, DistinctRowsDifferFromTheOneBefore) {
  std::vector<bool> const expected = {true, false, true, false, true};
  ExpectDistinct<int>(StoreTypeInfo::Int32, {1, 1, 2, 2, 1}, expected);
  ExpectDistinct<int64>(StoreTypeInfo::Int64, {0, 0, INT64_MIN, INT64_MIN, 0}, expected);
  ExpectDistinct<float>(StoreTypeInfo::Real32, {0.0F, -0.0F, 2, 2, 1}, expected);
  ExpectDistinct<double>(StoreTypeInfo::Real64, {1, kNaN, kNaN, 1, 1}, {true, true, true, true, false});
  std::vector<RIndirectString> texts;
  for (wchar_t const* const text : {L"", L"", L"a", L"a", L"A"}) texts.emplace_back(OStringCore(text));
  ExpectDistinct<RIndirectString>(StoreTypeInfo::String, texts, expected);
}

TEST_F(ReduceFunctions, RowsAfterNullAndMissingOnesAreMarked) {
  ExpectPreviousNull<RIndirectString>(StoreTypeInfo::String);
  ExpectPreviousNull<int>(StoreTypeInfo::Int32);
  ExpectPreviousNull<int64>(StoreTypeInfo::Int64);
  ExpectPreviousNull<float>(StoreTypeInfo::Real32);
  ExpectPreviousNull<double>(StoreTypeInfo::Real64);
  ExpectPreviousNull<OrtDateTime>(StoreTypeInfo::DateTime);
}

// Both piles, one sentence of their rule after the other.
std::vector<Special<double>> Stack(std::vector<Special<double>> const& rows, bool top) {
  double positive = 0, negative = 0;
  std::vector<Special<double>> results;
  for (auto const& [value, kind] : rows) {
    bool const isNegative = kind == kNone ? value < 0 : positive == 0.0;
    double& pile = isNegative ? negative : positive;
    double const bottom = pile;
    pile += value;
    results.emplace_back(top ? pile : bottom, kNone);
  }
  return results;
}

TEST_F(ReduceFunctions, StacksAgreeWithTheirRule) {
  auto const real = StoreTypeInfo::Real64;
  auto const current = Find(TransformNames::CURR_STACK_VALUE, real, real);
  auto const previous = Find(TransformNames::PREV_STACK_VALUE, real, real);
  auto const check = [&](std::vector<Special<double>> const& rows) {
    // What stands in the first input does not matter.
    std::vector<Special<double>> const first(rows.size(), {kNaN, kNull});
    ExpectSpecialBinary<double, double, double>(current, first, rows, Stack(rows, true), State::Carried);
    ExpectSpecialBinary<double, double, double>(previous, first, rows, Stack(rows, false), State::Carried);
  };
  std::vector<Special<double>> const rows = {{3, kNone}, {-2, kNone}, {4, kNone}, {-1, kNone}};
  EXPECT_EQ(Stack(rows, true),
            (std::vector<Special<double>>{{3, kNone}, {-2, kNone}, {7, kNone}, {-3, kNone}}));
  EXPECT_EQ(Stack(rows, false),
            (std::vector<Special<double>>{{0, kNone}, {0, kNone}, {3, kNone}, {-2, kNone}}));
  check(rows);
  check({{0, kNull}, {-3, kNone}, {0, kNull}, {5, kNone}, {0, kMissing}, {2, kNull}, {-5, kNone}});
  check({{-0.0, kNone}, {0, kNull}, {-0.0, kNull}, {1e308, kNone}, {1e308, kNone}, {-1, kNone}, {0, kNull}});
  check({{-1, kNone}, {kNaN, kNone}, {2, kNone}, {-2, kNone}, {0, kNull}, {4, kNull}});
  std::mt19937 random(11);
  std::vector<Special<double>> many;
  for (int row = 0; row < 60; ++row) {
    double const value = static_cast<double>(static_cast<int>(random() % 2001) - 1000) / 7;
    many.emplace_back(value, random() % 5 == 0 ? kNull : kNone);
  }
  check(many);
}

TEST_F(ReduceFunctions, StacksMayOverwriteTheirInput) {
  auto const real = StoreTypeInfo::Real64;
  auto const functor = Find(TransformNames::CURR_STACK_VALUE, real, real)();
  std::vector<double> rows = {3, 0, -2, 4};
  std::vector<SpecialKind> kinds = {kNone, kNull, kNone, kNone};
  dynamic_cast<IBinarySpecialFunctor<double, double, double>&>(*functor).ApplyToArrays(rows, kinds, rows,
                                                                                       kinds, rows, kinds);
  EXPECT_EQ(rows, (std::vector<double>{3, 3, -2, 7}));
  EXPECT_EQ(kinds, std::vector<SpecialKind>(4, kNone));
}

TEST_F(ReduceFunctions, NewValuesAreNumberedInOrder) {
  auto const number = Find(TransformNames::INC_ON_NEW, StoreTypeInfo::Int32, StoreTypeInfo::Int32);
  auto const check = [&](std::vector<int> const& rows, std::vector<int> const& expected) {
    ExpectBinary<int, int, int>(number, std::vector<int>(rows.size(), 99), rows, expected, State::Carried);
  };
  check({5, 5, 9, 5, 2}, {0, 0, 1, 0, 2});
  check({1, 0, 0, -1, 1, INT_MIN, INT_MAX}, {0, 1, 1, 2, 0, 3, 4});
}

TEST_F(ReduceFunctions, AxesAreFolded) {
  auto const size = Find(TransformNames::MAX_AXIS_SIZE, StoreTypeInfo::Real64, StoreTypeInfo::Tuple)();
  auto& largest = dynamic_cast<IBinaryFunctor<double, Value, double>&>(*size);
  std::vector<Value> const ranges = {Range(R64(2), R64(5)), Range(R64(-10), I32(-4)), Range(R64(1), R64(1))};
  std::vector<double> sizes(ranges.size());
  double running = 0.0;
  largest.AccumulateForward(running, ranges, sizes);
  EXPECT_EQ(sizes, (std::vector<double>{3, 6, 6}));
  Value const missing = TestValues::Special(StoreTypeInfo::Real64);
  EXPECT_EQ(largest.Apply(1, Range(missing, R64(-4))), 4);
  EXPECT_EQ(largest.Apply(kNaN, Range(R64(1), R64(2))), 1);
  EXPECT_TRUE(std::isnan(largest.Apply(5, Range(R64(kNaN), R64(2)))));
  EXPECT_EQ(ErrorOf([&] { largest.Apply(1, Range(Text(L"a"), R64(2))); }), 178);

  auto const locked = Find(TransformNames::IS_AXIS_LOCKED, StoreTypeInfo::Bool, StoreTypeInfo::Tuple);
  Value const open = Range(R64(1), R64(2), 2), fixed = Range(R64(1), R64(2), 3);
  ExpectBinary<bool, Value, bool>(locked, {false, false, true}, {open, fixed, open}, {false, true, true});
  auto const functor = locked();
  auto& isLocked = dynamic_cast<IBinaryFunctor<bool, Value, bool>&>(*functor);
  EXPECT_EQ(ErrorOf([&] { isLocked.Apply(false, Tuple({R64(1), R64(2)})); }), 219);
  EXPECT_EQ(ErrorOf([&] { isLocked.Apply(false, Tuple({R64(1), R64(2), R64(3)})); }), 55);
}

}  // namespace
