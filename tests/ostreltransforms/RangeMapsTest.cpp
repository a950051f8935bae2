#include <climits>
#include <cmath>

#include "maps/MapUtil.h"
#include "ostrelsys/OLogicException.h"
#include "ostreltransforms/RangeUtilities.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/map/RangeMaps.h"

namespace {

using namespace OstrelTransforms;
using namespace TestValues;
using RangeUtilities::Ends;
using RowDriver::ErrorOf;

Value Instant(int day, int hour = 0) { return factory::MakeDateTime(OrtDateTime(2020, 3, day, hour)); }
Value Date(int day, int hour = 0) { return factory::MakeDate(OrtDateTime(2020, 3, day, hour)); }

TEST(RangeMaps, ExtendPointRangesOpensPoints) {
  struct {
    Value range, expected;
  } const cases[] = {
      {Range(R64(5), R64(5)), Range(R64(0), R64(10))},
      {Range(I64(-2), I64(-2), 7, 2), Range(I64(-4), I64(0), 7, 2)},
      {Range(R64(0), R64(0)), Range(R64(-1), R64(1))},
      {Range(R32(3), R32(3), 0, 3), Range(R32(0), R32(6), 0, 3)},
      {Range(I32(0), I32(0), 0, 1), Range(I32(-1), I32(1), 0, 1)},
      {Range(R64(3), R64(7)), Range(R64(3), R64(7))},
      {Range(R64(kNaN), R64(kNaN)), Range(R64(kNaN), R64(kNaN))},
      {Range(R64(1), R64(1), 0, 4, true), Range(R64(-1), R64(1), 0, 4, true)},
      {Range(I32(1), I32(100), 0, 1, true), Range(R64(0), R64(std::log(100)), 0, 1, true)},
      {Range(R64(-5), R64(0), 0, 4, true), Range(R64(-1), R64(1), 0, 4, true)},
      {Range(Instant(2), Instant(2), 0, 7), Range(Instant(1), Instant(3), 0, 7)},
      {Range(Date(2, 6), Date(2, 6), 0, 6), Range(Instant(1, 6), Instant(3, 6), 0, 6)},
      {Range(Date(2), Date(3), 0, 6), Range(Date(2), Date(3), 0, 6)},
      {Range(R64(5), R64(5), 0, 5), Range(R64(5), R64(5), 0, 5)},
      {Range(R64(5), R64(5), 0, 260), Range(R64(5), R64(5), 0, 260)},
      {Range(Special(StoreTypeInfo::Real64), R64(5)), Range(Special(StoreTypeInfo::Real64), R64(5))},
  };
  std::size_t place = 0;
  for (auto const& [range, expected] : cases) ExpectEqual(ExtendPointRanges(range), expected, place++);
  Value const special = Special(StoreTypeInfo::Real64);
  EXPECT_EQ(ErrorOf([&] { ExtendPointRanges(Range(special, special)); }), 55);
}

TEST(RangeMaps, ClearRangesClearsTheEndsThatTheModeLeavesOpen) {
  Value const noMinimum = Special(StoreTypeInfo::Int32), noMaximum = Special(StoreTypeInfo::Real64);
  for (int mode = -1; mode <= 12; ++mode) {
    Value const minimum = I32(1), maximum = R64(9);
    Value const range = Range(minimum, maximum, mode);
    Value const cleared = ClearRanges(range);
    if (mode == 3 || mode == 10) {
      EXPECT_EQ(cleared, range);
      continue;
    }
    bool const keepsMaximum = mode == 5 || mode == 8 || mode == 9;
    bool const keepsMinimum = mode == 4 || mode == 6 || mode == 7;
    ExpectEqual(cleared, Range(keepsMinimum ? minimum : noMinimum, keepsMaximum ? maximum : noMaximum, mode),
                static_cast<std::size_t>(mode));
  }
}

TEST(RangeMaps, PadRangeTableMovesEachEndInItsOwnType) {
  Value const null = Special(StoreTypeInfo::Int64, SpecialKind::Null);
  struct {
    double below, above;
    Value range, expected;
  } const cases[] = {
      {0.25, 2, Range(R64(1), R64(9)), Range(R64(0.75), R64(11))},
      {0.5, 2.4, Range(I32(1), I64(9)), Range(I32(0), I64(11))},
      {-0.5, -2.5, Range(I32(1), I32(9)), Range(I32(2), I32(6))},
      {0.5, 0.5, Range(R32(1), R32(2)), Range(R32(0.5F), R32(2.5F))},
      {1, 0.5, Range(Date(2), Date(2), 0, 6), Range(Date(1), Date(2, 12), 0, 6)},
      {0.25, 1, Range(Instant(2), Instant(2), 0, 7), Range(Instant(1, 18), Instant(3), 0, 7)},
      {1, 1, Range(null, R64(1)), Range(null, R64(2))},
      {1, 1, Range(R64(1), R64(2), 0, 4, true), Range(R64(0), R64(3), 0, 4, true)},
      {0, 0, Range(I64(INT64_MAX), Text()), Range(I64(INT64_MAX), Text())},
      {1, 1, Range(I32(INT_MIN), I32(INT_MAX)), Range(I32(INT_MIN), I32(INT_MAX))},
      {1e30, kInfinity, Range(I64(0), I64(5)), Range(I64(INT64_MIN), I64(INT64_MAX))},
      {kNaN, kNaN, Range(I32(1), Instant(1)), Range(Special(StoreTypeInfo::Int32), Instant(1))},
  };
  std::size_t place = 0;
  for (auto const& [below, above, range, expected] : cases) {
    ExpectEqual(PadRangeTableFunctor(below, above).Apply(range), expected, place++);
  }
  EXPECT_EQ(ErrorOf([] { PadRangeTableFunctor(1, 0).Apply(Range(Text(), R64(1))); }), 178);
}

TEST(RangeMaps, ExpandMinAndMaxNeverNarrows) {
  auto const expand = [](Value const& minimum, Value const& maximum, Value const& range) {
    return ExpandMinAndMaxFunctor(minimum, maximum).Apply(range);
  };
  Value const zero = R64(0), hundred = R64(100);
  ExpectEqual(expand(zero, hundred, Range(R64(10), R64(20), 3)), Range(zero, hundred, 3), 0);
  ExpectEqual(expand(zero, hundred, Range(I32(0), I64(100))), Range(zero, hundred), 1);
  for (Value const& range : {Range(R64(-5), R64(20)), Range(R64(5), R64(101)), Range(R64(kNaN), R64(5))}) {
    EXPECT_EQ(expand(zero, hundred, range), range);
  }
  EXPECT_EQ(ErrorOf([&] { expand(zero, hundred, Range(Special(StoreTypeInfo::Real64), hundred)); }), 55);
  EXPECT_EQ(ErrorOf([&] { expand(zero, hundred, Range(Text(), hundred)); }), 178);
}

TEST(RangeMaps, ExpandAroundPointProjectsHalfASizeEachWay) {
  using namespace MercatorProjections;
  auto const expand = [](double point, double halfSize, int kind, bool isX) {
    return ExpandAroundPointFunctor(R64(-7), I32(7), halfSize, kind, 0.0, isX)
        .Apply(Range(R64(point), Text(), 8, 7, true));
  };
  auto const range = [](double low, double high) { return Range(R64(low), R64(high), 8, 7, true); };
  ExpectEqual(expand(0, 2, 0, true), Range(R64(-7), I32(7), 8, 7, true), 0);
  ExpectEqual(expand(-0.0, 2, 99, true), Range(R64(-7), I32(7), 8, 7, true), 1);
  ExpectEqual(expand(5, 2, 1, true), range(3, 7), 2);
  ExpectEqual(expand(5, 2, 1, false), range(3, 7), 3);
  double const x = GetX(10), y = GetY(10, 0);
  ExpectEqual(expand(x, 2, 0, true), range(GetX(GetInverseOfX(x) - 2), GetX(GetInverseOfX(x) + 2)), 4);
  ExpectEqual(expand(y, 2, 0, false),
              range(GetY(GetInverseOfY(y, 0) - 2, 0), GetY(GetInverseOfY(y, 0) + 2, 0)), 5);
  // Over the date line: a low end that wrapped mirrors the high one, a high end that wrapped falls on the
  // low.
  ExpectEqual(expand(-179, 2, 1, true), range(-181, -177), 6);
  ExpectEqual(expand(179, 2, 1, true), range(177, 177), 7);
  ExpectEqual(expand(179, 2, 1, false), range(177, 181), 8);
  // Both ends wrapped: nothing is mended.
  ExpectEqual(expand(5, 180, 1, true), range(-175, -175), 9);
  EXPECT_THROW(expand(5, 2, 2, true), OLogicException);
}

TEST(RangeUtilities, RefuseWhatIsNoRange) {
  auto const tuple = [](std::vector<Value> members) { return factory::MakeTuple(std::move(members)); };
  struct {
    Value range;
    int error;
  } const cases[] = {
      {nullptr, 55},
      {R64(1), 55},
      {tuple({R64(1), R64(1)}), 219},
      {tuple({R64(1), R64(1), R64(1), I32(4), factory::MakeBool(false)}), 55},
      {tuple({R64(1), R64(1), I32(1), I32(4)}), 219},
  };
  for (auto const& [range, error] : cases) {
    EXPECT_EQ(ErrorOf([&, &value = range] { ClearRanges(value); }), error);
  }
}

TEST(RangeUtilities, BuilderPadsBothEndsByItsFurtherAmount) {
  Value const source = Range(R64(1), R64(1), 5, 2, true);
  ExpectEqual(RangeUtilities::MakeRange({I32(1), R64(2)}, source->AsTuple(), 0.5),
              Range(I32(0), R64(2.5), 5, 2, true), 0);
  Value const minimum = R64(-0.0);
  EXPECT_EQ(RangeUtilities::MakeRange({minimum, R64(2)}, source->AsTuple())->AsTuple().GetMember(0), minimum);
}

}  // namespace
