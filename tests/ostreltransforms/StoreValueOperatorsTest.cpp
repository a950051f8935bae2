#include <cmath>
#include <functional>
#include <random>

#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/TestValues.h"

namespace {

using namespace StoreValueOperators;
using namespace TestValues;
using RowDriver::Same;

Value Null(StoreTypeInfo const& type) { return Special(type, kNull); }
Value Instant(int day, int hour = 0) { return factory::MakeDateTime(OrtDateTime(2020, 3, day, hour)); }
Value Date(int day, int hour = 0) { return factory::MakeDate(OrtDateTime(2020, 3, day, hour)); }

using Operator = Value (*)(StoreValue const&, StoreValue const&);

TEST(StoreValueOperators, ComputeWithinOneType) {
  struct {
    Operator apply;
    Value a, b, expected;
  } const cases[] = {
      {Add, I32(5), I32(-7), I32(-2)},
      {Add, I32(INT_MAX), I32(1), I32(INT_MIN)},
      {Add, I64(INT64_MAX), I64(1), I64(INT64_MIN)},
      {Add, R32(16777216.0F), R32(1.0F), R32(16777216.0F)},
      {Add, R64(16777216.0), R64(1.0), R64(16777217.0)},
      {Subtract, I32(INT_MIN), I32(1), I32(INT_MAX)},
      {Subtract, I64(3), I64(5), I64(-2)},
      {Subtract, R32(0.5F), R32(2.0F), R32(-1.5F)},
      {Subtract, R64(kInfinity), R64(kInfinity), R64(kNaN)},
      {Multiply, I32(65536), I32(65537), I32(65536)},
      {Multiply, I64(INT64_MIN), I64(-1), I64(INT64_MIN)},
      {Multiply, R32(3.0F), R32(0.5F), R32(1.5F)},
      {Multiply, R64(1e200), R64(1e200), R64(kInfinity)},
      {Divide, I32(-7), I32(2), I32(-3)},
      {Divide, I64(7), I64(-2), I64(-3)},
      {Divide, R32(1.0F), R32(3.0F), R32(1.0F / 3.0F)},
      {Divide, R64(-1.0), R64(0.0), R64(-kInfinity)},
      {Divide, R64(0.0), R64(0.0), R64(kNaN)},
  };
  std::size_t place = 0;
  for (auto const& [apply, a, b, expected] : cases) ExpectEqual(apply(*a, *b), expected, place++);
}

TEST(StoreValueOperators, CountDaysFromInstants) {
  auto const ticksAfter = [](int64 ticks) {
    return factory::MakeDateTime(OrtDateTime(2020, 3, 1) + OrtTimeSpan::FromTicks(ticks));
  };
  auto const last = factory::MakeDateTime(OrtDateTime::FromValue(UINT64_MAX));
  struct {
    Operator apply;
    Value a, b, expected;
  } const cases[] = {
      {Add, Instant(1), I32(2), Instant(3)},
      {Add, I32(2), Instant(1), Instant(3)},
      {Add, I64(-1), Instant(2, 6), Instant(1, 6)},
      {Add, Instant(1), R32(0.25F), Instant(1, 6)},
      {Add, Instant(1), R64(1.5), Instant(2, 12)},
      {Add, Date(1), I32(1), Instant(2)},
      {Add, R64(0.5), Date(1), Instant(1, 12)},
      {Add, Instant(1), R64(0.5 / 864e6), ticksAfter(1)},
      {Add, Instant(1), R64(-0.5 / 864e6), ticksAfter(-1)},
      {Add, Instant(1), R64(0.49 / 864e6), Instant(1)},
      {Add, Instant(1), R64(kNaN), Instant(1)},
      {Add, Instant(1), R64(-kInfinity), factory::MakeDateTime(OrtDateTime())},
      {Add, last, I64(INT64_MAX), last},
      {Subtract, Instant(3), I32(2), Instant(1)},
      {Subtract, Instant(3), R64(0.5), Instant(2, 12)},
      {Subtract, Date(3), I64(1), Instant(2)},
      {Subtract, Instant(3), Instant(1, 12), R64(1.5)},
      {Subtract, Date(1), Instant(3), R64(-2.0)},
      {Subtract, Date(1), Date(1), R64(0.0)},
  };
  std::size_t place = 0;
  for (auto const& [apply, a, b, expected] : cases) ExpectEqual(apply(*a, *b), expected, place++);
}

TEST(StoreValueOperators, MinAndMaxTakeTheSecondOfTwoTiedOrUnordered) {
  auto const isSigned = [](Value const& zero) { return std::signbit(zero->GetReal64()); };
  EXPECT_TRUE(isSigned(Max(*R64(0.0), *R64(-0.0))));
  EXPECT_TRUE(isSigned(Min(*R64(0.0), *R64(-0.0))));
  EXPECT_FALSE(isSigned(Max(*R64(-0.0), *R64(0.0))));
  struct {
    Value a, b, minimum, maximum;
  } const cases[] = {
      {I32(3), I32(-3), I32(-3), I32(3)},
      {I64(INT64_MIN), I64(INT64_MAX), I64(INT64_MIN), I64(INT64_MAX)},
      {R32(1.5F), R32(2.5F), R32(1.5F), R32(2.5F)},
      {R64(kNaN), R64(1.0), R64(1.0), R64(1.0)},
      {R64(1.0), R64(kNaN), R64(kNaN), R64(kNaN)},
      {Instant(2), Instant(1), Instant(1), Instant(2)},
  };
  std::size_t place = 0;
  for (auto const& [a, b, minimum, maximum] : cases) {
    ExpectEqual(Min(*a, *b), minimum, place);
    ExpectEqual(Max(*a, *b), maximum, place++);
  }
}

TEST(StoreValueOperators, RefuseMixedAndForeignTypes) {
  struct {
    std::function<void()> call;
    int error;
    wchar_t const* message;
  } const cases[] = {
      {[] { Add(*I32(5), *I64(5)); }, 220, L"Int32, Int64"},
      {[] { Subtract(*R32(5), *R64(5)); }, 220, L"Real32, Real64"},
      {[] { Multiply(*Instant(1), *I32(5)); }, 220, L"DateTime, Int32"},
      {[] { Divide(*I32(5), *Text()); }, 220, L"Int32, String"},
      {[] { Min(*Date(1), *Instant(1)); }, 220, L"Date, DateTime"},
      {[] { Interpolate(0.5, *I32(1), *I64(2), false); }, 220, L"Int32, Int64"},
      {[] { InverseInterpolate(*I32(1), *I32(1), *I64(1), false); }, 220, L"Int32, Int64"},
      {[] { InverseInterpolate(*I32(1), *I64(1), *I32(1), false); }, 220, L"Int32, Int64"},
      {[] { Add(*Text(), *Text()); }, 178, L"String"},
      {[] { Add(*Instant(1), *Date(1)); }, 178, L"Date"},
      {[] { Add(*Instant(1), *Text()); }, 178, L"String"},
      {[] { Add(*Text(), *Instant(1)); }, 178, L"String"},
      {[] { Subtract(*I32(5), *Instant(1)); }, 178, L"DateTime"},
      {[] { Subtract(*Instant(1), *Text()); }, 178, L"String"},
      {[] { Multiply(*Instant(1), *Instant(1)); }, 178, L"DateTime"},
      {[] { Max(*Date(1), *Date(2)); }, 178, L"Date"},
      {[] { Min(*Text(), *Text()); }, 178, L"String"},
      {[] { ConvertToDouble(*factory::MakeBool(true)); }, 178, L"Bool"},
      {[] { CompareAsDoubles(*I32(1), *Text()); }, 178, L"String"},
      {[] { Ln(*Instant(1)); }, 178, L"DateTime"},
  };
  std::size_t place = 0;
  for (auto const& [call, error, message] : cases) {
    try {
      call();
      ADD_FAILURE() << "case " << place << " did not throw";
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), error) << "case " << place;
      EXPECT_EQ(exception.GetMessage(), OStringCore(message)) << "case " << place;
    }
    ++place;
  }
  EXPECT_EQ(RowDriver::ErrorOf([] { Add(*Null(StoreTypeInfo::Int32), *I32(1)); }), 55);
}

TEST(StoreValueOperatorsDeathTest, IntegerDivisionFaultsLikeTheMachine) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(Divide(*I32(1), *I32(0)), "");
  EXPECT_DEATH(Divide(*I64(INT64_MIN), *I64(-1)), "");
}

TEST(StoreValueOperators, ConvertAndCompare) {
  EXPECT_EQ(ConvertToDouble(*I64(-5)), -5.0);
  EXPECT_EQ(ConvertToDouble(*R32(0.1F)), double{0.1F});
  EXPECT_EQ(ConvertToDouble(*Date(1, 12)), 43891.5);
  EXPECT_EQ(ConvertToDouble(*Instant(1, 12)), 43891.5);
  EXPECT_EQ(CompareAsDoubles(*I32(1), *R64(1.0)), 0);
  EXPECT_EQ(CompareAsDoubles(*I32(1), *R64(1.5)), -1);
  EXPECT_EQ(CompareAsDoubles(*R32(2), *I64(1)), 1);
  EXPECT_EQ(CompareAsDoubles(*Date(1), *R64(43892)), -1);
  EXPECT_EQ(CompareAsDoubles(*R64(kNaN), *I32(1)), 1);
  EXPECT_EQ(CompareAsDoubles(*I32(1), *R64(kNaN)), 1);

  Value const value = R64(2.5);
  Value const copy = Cast(*value, StoreType::Real64);
  EXPECT_NE(copy, value);
  ExpectEqual(copy, value, 0);
  ExpectEqual(Cast(*value, StoreType::Int32), I32(3), 1);
  ExpectEqual(Cast(*Null(StoreTypeInfo::Real64), StoreType::Int64), Null(StoreTypeInfo::Int64), 2);
}

TEST(StoreValueOperators, LnGivesZeroOutsideItsDomain) {
  struct {
    Value x;
    double expected;
  } const cases[] = {
      {I32(0), 0}, {I64(-3), 0},          {R64(kNaN), 0},          {R64(-0.0), 0},
      {R64(1), 0}, {R32(2), std::log(2)}, {I64(10), std::log(10)}, {R64(kInfinity), kInfinity}};
  for (auto const& [x, expected] : cases) {
    Value const ln = Ln(*x);
    ASSERT_EQ(ln->GetStoreType(), StoreType::Real64);
    EXPECT_TRUE(Same(ln->GetReal64(), expected)) << ln->GetReal64();
  }
  ExpectEqual(Ln(*Null(StoreTypeInfo::String)), Null(StoreTypeInfo::String), 0);
}

TEST(StoreValueOperators, InterpolateCastsToTheRangesType) {
  struct {
    double fraction;
    Value from, to;
    bool linearOnly;
    Value expected;
  } const cases[] = {
      {0.5, R64(0), R64(10), false, R64(5)},
      {0.25, I32(0), I32(10), false, I32(3)},
      {-1, I64(10), I64(20), false, I64(0)},
      {0.5, Instant(1), Instant(2), false, Instant(1, 12)},
      {0.5, Date(1), Date(2), false, Date(1, 12)},
      {7, I32(4), I32(4), false, I32(4)},
      {0.5, R64(kNaN), R64(kNaN), false, R64(kNaN)},
      // More than a million apart: weighed, which cannot overflow, unless told otherwise.
      {0.5, R64(-1.7e308), R64(1.7e308), false, R64(0)},
      {0.5, R64(-1.7e308), R64(1.7e308), true, R64(kInfinity)},
      {0.3, R64(0), R64(5e6), false, R64(0.0 * 0.7 + 5e6 * 0.3)},
  };
  std::size_t place = 0;
  for (auto const& [fraction, from, to, linearOnly, expected] : cases) {
    ExpectEqual(Interpolate(fraction, *from, *to, linearOnly), expected, place++);
  }
}

TEST(StoreValueOperators, InverseInterpolateFindsThePlaceInARange) {
  struct {
    Value x, from, to;
    bool linearOnly;
    double expected;
  } const cases[] = {
      {I32(5), I32(0), I32(10), false, 0.5},
      {I32(5), I32(7), I32(7), false, 0},
      {R64(kNaN), R64(0), R64(0), false, 0},
      {Instant(1, 12), Instant(1), Instant(2), false, 0.5},
      {Date(3), Date(1), Date(2), true, 2},
      {R64(1e6), R64(0), R64(5e6), false, 0.2},
      {R64(3e6), R64(1e6), R64(5e6), false, (3e6 / 1e6 - 1) / (5e6 / 1e6 - 1)},
      {R64(-2e6), R64(-4e6), R64(0), false, (-2e6 / -4e6 - 1) / (0 / -4e6 - 1)},
      {R64(1), R64(-1.7e308), R64(1.7e308), false, 0.5},
      {R64(1), R64(-1.7e308), R64(1.7e308), true, 0},  // the distance is infinite
      // Integers wrap in the linear form: -2147483648 to 2147483647 is a distance of -1.
      {I32(0), I32(INT_MIN), I32(INT_MAX), true, 2147483648.0},
      {I32(0), I32(INT_MIN), I32(INT_MAX), false, (0.0 - 1) / (2147483647.0 / -2147483648.0 - 1)},
  };
  std::size_t place = 0;
  for (auto const& [x, from, to, linearOnly, expected] : cases) {
    ExpectEqual(InverseInterpolate(*x, *from, *to, linearOnly), R64(expected), place++);
  }
}

TEST(StoreValueOperators, InterpolationAndItsInverseMeet) {
  std::mt19937_64 random(11);
  std::uniform_real_distribution<double> bound(-3e6, 3e6), inside(0, 1);
  for (int i = 0; i < 2000; ++i) {
    Value const from = R64(bound(random)), to = R64(bound(random));
    double const fraction = inside(random);
    for (bool const linearOnly : {false, true}) {
      Value const x = Interpolate(fraction, *from, *to, linearOnly);
      EXPECT_NEAR(InverseInterpolate(*x, *from, *to, linearOnly)->GetReal64(), fraction, 1e-7)
          << from->GetReal64() << " to " << to->GetReal64();
    }
  }
}

TEST(StoreValueOperators, TellTypeClassesApart) {
  for (int code = 0; code <= 15; ++code) {
    auto const type = static_cast<StoreType>(code);
    EXPECT_EQ(IsNumeric(type), code >= 1 && code < 5) << code;
    EXPECT_EQ(IsTemporal(type), code >= 6 && code < 8) << code;
  }
  EXPECT_TRUE(IsNumeric(*R32(1)));
  EXPECT_TRUE(IsTemporal(*Date(1)));
  EXPECT_FALSE(IsNumeric(*Text()));
}

}  // namespace
