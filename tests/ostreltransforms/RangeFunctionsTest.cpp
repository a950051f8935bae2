#include <cmath>

#include "ostreltransforms/RangeCalls.h"
#include "ostreltransforms/setvaluemulti/PixelRoom.h"

namespace {

using namespace TestValues;
using namespace OstrelTransforms;
using RowDriver::ErrorOf;
namespace Names = TransformNames;

class RangeFunctions : public RangeCalls {};

TEST_F(RangeFunctions, ColumnsAreWidenedByValuesAndShares) {
  double const e = std::exp(1.0);
  struct {
    Value range;
    double least, greatest, below, above;
    bool stopsAtZero, keepsLogarithms;
    Value expected;
  } const cases[] = {
      {Real(0, 10), 2, 8, 0, 0, false, false, Real(0, 10)},
      {Range(I32(0), I64(10)), 2, 8, 0, 0, false, false, Range(I32(0), I64(10))},
      {Range(I32(0), I64(10)), 2, 20, 0, 0, false, false, Real(0, 20)},
      {Real(0, 10), -10, kNaN, 0.25, 0.5, false, false, Real(-15, 20)},
      {Real(0, 10), kNaN, kNaN, 0.5, 0.5, true, false, Real(0, 15)},
      {Real(-10, 0), kNaN, kNaN, 0.5, 0.5, true, false, Real(-15, 0)},
      {Real(10, 0), kNaN, 20, 0, 0, false, false, Real(0, 20)},
      {Real(10, 0, 4), -5, 20, 0, 0, false, false, Real(-5, 10, 4)},
      {Real(0, 10, 3), -5, 20, 1, 1, false, false, Real(0, 10, 3)},
      {Real(0, 10, 6), -5, 20, 1, 1, false, false, Real(0, 40, 6)},
      {Real(0, 10, 9), -5, 20, 1, 1, false, false, Real(-20, 10, 9)},
      {Range(Missing(), Missing()), 2, 8, 0, 0.5, false, false, Real(2, 11)},
      {Range(Missing(), R64(3)), 5, kNaN, 0, 0, false, false, Real(3, 5)},
      {Real(10, kInfinity, 4), 5, 6, 0, 0, false, false, Real(10, 20, 4)},
      {Range(Missing(), Missing()), kNaN, kInfinity, 1, 1, false, false, Range(Missing(), Missing())},
      {Real(5, 5), kNaN, kNaN, 0, 0, false, false, Real(0, 10)},
      {Range(R64(5), R64(5), 0, 5), kNaN, kNaN, 1, 1, false, false, Range(R64(5), R64(5), 0, 5)},
      {Real(-1e308, 1e308), kNaN, kNaN, 1, 1, false, false, Real(-1e308, 1e308)},
      {Log(1, e), kNaN, kNaN, 1, 0, true, false, Log(1 / e, e)},
      {Log(1, e), kNaN, kNaN, 0, 1, false, true, Log(0, 2)},
      {Log(-4, e), 1, -7, 0, 0, false, true, Log(0, 1)},
      {Range(Date(10), Date(12), 0, 7), 9, 14, 0.2, 0.2, false, false, Range(Date(8), Date(15), 0, 7)},
      {Range(Date(10), Date(10), 0, 6), kNaN, kNaN, 0, 0, true, false, Range(Date(9), Date(11), 0, 6)},
  };
  for (auto const& c : cases) {
    ExpectEqual(Ask(Names::EXTEND_RANGE_COLUMN,
                    {Tuples({c.range}), Reals({c.least}), Reals({c.greatest}), R64(c.below), R64(c.above),
                     Flag(c.stopsAtZero), Flag(c.keepsLogarithms)}),
                Tuples({c.expected}), "case " + std::to_string(&c - cases));
  }
}

// The least room is met from below: with a little less of it, something sticks out.
TEST_F(RangeFunctions, RoomIsEnoughAndNoMoreThanThat) {
  using PixelRoom::Item;
  using PixelRoom::Room;
  double const length = 200;
  int enough = 0;
  for (int run = 0; run < 2000; ++run) {
    std::vector<Item> items(static_cast<std::size_t>(1 + Below(6)));
    for (Item& item : items) item = {Uniform(-0.3, 1.3), Uniform(0, 60), Uniform(0, 60)};
    auto const lacks = [&](double rest) {
      double lower = 0, upper = 0;
      for (Item const& item : items) {
        lower = std::max(lower, item.before - item.position * rest);
        upper = std::max(upper, item.after - (1 - item.position) * rest);
      }
      return lower + upper + rest - length;
    };
    Room const room = PixelRoom::Find(items, length);
    double const rest = length - room.lower - room.upper;
    double leastLack = lacks(length);
    for (double tried = 1; tried < length; tried += 0.5) leastLack = std::min(leastLack, lacks(tried));
    if (leastLack > 0) continue;
    ++enough;
    EXPECT_LE(lacks(rest), 1e-9) << "run " << run;
    for (double more = 0.01; rest + more < length; more *= 2)
      EXPECT_GT(lacks(rest + more), 0) << "run " << run;
  }
  EXPECT_GT(enough, 500);
  Room const tooWide = PixelRoom::Find(std::vector<Item>{{0.5, 900, 150}}, length);
  EXPECT_EQ(tooWide.lower, length);
  EXPECT_EQ(tooWide.upper, 50);
}

TEST_F(RangeFunctions, NothingSticksOutOnceTheRangeIsExtended) {
  for (int run = 0; run < 400; ++run) {
    bool const isLog = run % 2 == 0, isReversed = run % 3 == 0, areLines = run % 5 == 0;
    Ends const range = {Uniform(1, 10), Uniform(20, 90)};
    double const length = Uniform(200, 900), gap = Uniform(0, 4);
    int const side = Below(3) - 1;
    std::size_t const count = static_cast<std::size_t>(Below(8));
    std::vector<double> values(count), halves(count), labels(count);
    for (double& value : values) value = areLines ? Uniform(0.5, 120) : Uniform(range.minimum, range.maximum);
    for (double& half : halves) half = Uniform(0, 12);
    for (double& label : labels) label = Uniform(0, 60);
    Value const domain = Range(R64(range.minimum), R64(range.maximum), 0, 4, isLog);
    Value lower, upper;
    if (areLines) {
      std::vector<double> thicknesses;
      for (double const half : halves) thicknesses.push_back(2 * half);
      Value const room =
          Ask(Names::CALC_REFLINE_OVERFLOW,
              {Reals(values), Reals(thicknesses), Reals(labels), Ints(std::vector<int>(count, side)),
               R64(gap), Flag(true), domain, R64(length), Flag(isReversed)});
      lower = room->AsNamedValues().Get(L"lower");
      upper = room->AsNamedValues().Get(L"upper");
    } else {
      Value const room =
          Ask(Names::CALC_PIXEL_OVERFLOW, {Reals(values), Reals(halves), Reals(labels), I32(side), R64(gap),
                                           domain, R64(length), Flag(isReversed)});
      lower = room->AsTuple().GetMember(0);
      upper = room->AsTuple().GetMember(1);
    }
    Value const extended =
        Ask(Names::EXTEND_RANGE_WITH_OVERFLOW, {domain, lower, upper, R64(length), R64(1)});
    Ends ends = ReadEnds(extended);
    EXPECT_LE(ends.minimum, range.minimum);
    EXPECT_GE(ends.maximum, range.maximum);
    if (isLog) ends = {std::log(ends.minimum), std::log(ends.maximum)};
    for (std::size_t i = 0; i < count; ++i) {
      double const fraction = ends.GetFraction(isLog ? std::log(values[i]) : values[i]);
      double const pixel = length * (isReversed ? 1 - fraction : fraction);
      double const beside = halves[i] + gap + labels[i], centred = std::max(halves[i], labels[i] / 2);
      double const before = side == 0 ? centred : side < 0 ? beside : halves[i];
      double const after = side == 0 ? centred : side < 0 ? halves[i] : beside;
      EXPECT_GE(pixel - before, -1e-6) << "run " << run;
      EXPECT_LE(pixel + after, length + 1e-6) << "run " << run;
    }
  }
}

TEST_F(RangeFunctions, OverflowCountsWhatIsDrawn) {
  auto const ask = [&](Value const& values, Value const& labels, Value const& range, double length) {
    return Ask(Names::CALC_PIXEL_OVERFLOW, {values, Reals(std::vector<double>(2, 4)), labels, I32(1), R64(2),
                                            range, R64(length), Flag(false)});
  };
  auto const pair = [](double lower, double upper) { return Tuple({R64(lower), R64(upper)}); };
  Value const ends = Reals({0, 10}), labels = Reals({30, 30});
  ExpectEqual(ask(ends, labels, Real(0, 10), 200), pair(4, 36));
  ExpectEqual(ask(ends, labels, Real(0, 10, 3), 200), pair(0, 0));
  ExpectEqual(ask(ends, labels, Real(0, 10, 4), 200), pair(0, 36));
  ExpectEqual(ask(ends, Reals({30, 30}, {kNone, kNull}), Real(0, 10), 200), pair(4, 4));
  ExpectEqual(ask(Reals({0, 11}), labels, Real(0, 10), 200), pair(4, 0));
  ExpectEqual(ask(Reals({0, 10}, {kNone, kNull}), labels, Real(0, 10), 200), pair(4, 0));
  ExpectEqual(ask(ends, Reals({kInfinity, -3}), Real(0, 10), 200), pair(4, 4));
  for (double const length : {0.0, -1.0, kNaN, kInfinity})
    ExpectEqual(ask(ends, labels, Real(0, 10), length), pair(0, 0));
  ExpectEqual(ask(ends, labels, Range(Missing(), R64(1)), 200), pair(0, 0));
}

TEST_F(RangeFunctions, OverflowIsLimitedToAShare) {
  struct {
    Value range, lower, upper;
    double length;
    Value share, expected;
  } const cases[] = {
      {Real(0, 10), R64(0), R64(20), 100, R64(0.5), Real(0, 12.5)},
      {Real(0, 10), Missing(), R64(20), 100, Missing(), Real(0, 12.5)},
      {Real(0, 10), R64(60), R64(20), 100, Missing(), Real(-7.5, 12.5)},
      {Real(0, 10), R64(kInfinity), R64(-4), 100, R64(0.5), Real(-10, 10)},
      {Real(0, 10), R64(20), R64(20), 100, R64(0), Real(0, 10)},
      {Real(0, 10, 7), R64(20), R64(50), 100, Missing(), Real(0, 20, 7)},
      {Real(0, 10, 10), R64(20), R64(50), 100, Missing(), Real(0, 10, 10)},
      {Real(0, 10), R64(20), R64(50), kNaN, Missing(), Real(0, 10)},
      {Real(5, 5), R64(50), Missing(), 100, Missing(), Real(-10, 10)},
      {Range(Missing(), R64(1)), R64(50), R64(1), 100, Missing(), Range(Missing(), R64(1))},
      {Log(-1, 1), R64(50), R64(1), 100, Missing(), Log(-1, 1)},
      {Range(Date(10), Date(20), 0, 7), R64(0), R64(50), 100, Missing(), Range(Date(10), Date(30), 0, 7)},
  };
  for (auto const& c : cases) {
    ExpectEqual(Ask(Names::EXTEND_RANGE_WITH_OVERFLOW, {c.range, c.lower, c.upper, R64(c.length), c.share}),
                c.expected, "case " + std::to_string(&c - cases));
  }
}

TEST_F(RangeFunctions, DegreesStayOnTheMap) {
  auto const y = [&](Value range, double degrees) {
    return Ask(Names::EXTEND_Y_RANGES_BY_DEGREE, {Tuples({std::move(range)}), R64(degrees)});
  };
  ExpectEqual(y(Real(10, 89), 2), Tuples({Real(8, 90)}));
  ExpectEqual(y(Real(-95, 10), 2), Tuples({Real(-95, 12)}));
  ExpectEqual(y(Log(10, 20), 2), Tuples({Log(10, 20)}));
  auto const x = [&](Value range, double degrees, bool wraps, std::vector<Value> const& latitudes = {}) {
    return Ask(Names::EXTEND_X_RANGES_BY_DEGREE,
               {Tuples({std::move(range)}), R64(degrees), Tuples(latitudes), Flag(wraps)});
  };
  ExpectEqual(x(Real(170, 179), 5, false), Tuples({Real(165, 180)}));
  ExpectEqual(x(Real(170, 179), 5, true), Tuples({Real(165, 184)}));
  ExpectEqual(x(Real(170, -170), 5, true), Tuples({Real(165, 195)}));
  ExpectEqual(x(Real(170, -170), 5, false), Tuples({Real(-175, 175)}));
  ExpectEqual(x(Real(-90, 90), 170, true), Tuples({Real(-180, 180)}));
  ExpectEqual(x(Real(-90, 90, 4), 300, true), Tuples({Real(-90, 270, 4)}));
  ExpectEqual(x(Real(0, 0), 5, true), Tuples({Real(-5, 5)}));
  ExpectEqual(x(Real(0, 10), 2, true, {Range(Missing(), R64(1))}), Tuples({Real(-2, 12)}));
  Ends const north = ReadEnds(x(Real(0, 10), 2, true, {Real(55, 65)}), 0);
  EXPECT_NEAR(north.minimum, -4, 1e-12);
  EXPECT_NEAR(north.maximum, 14, 1e-12);
  EXPECT_NEAR(ReadEnds(x(Real(0, 10), 1, true, {Real(85, 95)}), 0).maximum, 10 + 11.592, 1e-3);
}

// Whatever the ranges, a call gives a column of as many rows or an error with a code.
TEST_F(RangeFunctions, OddRangesGiveAResultOrACode) {
  Value const ends[] = {R64(0),         R64(-3),
                        R64(7),         R64(kNaN),
                        R64(kInfinity), R64(-kInfinity),
                        R64(1e308),     Missing(),
                        R64(-1e308),    R64(5e-324),
                        I64(4),         I32(-4),
                        Date(40000),    Special(StoreTypeInfo::Date, kNull)};
  auto const odd = [&] { return ends[static_cast<std::size_t>(Below(std::size(ends)))]; };
  double const numbers[] = {0, 1, -1, 20, kNaN, kInfinity, -kInfinity, 1e308, 5e-324};
  auto const number = [&] { return numbers[static_cast<std::size_t>(Below(std::size(numbers)))]; };
  int results = 0;
  for (int run = 0; run < 3000; ++run) {
    int const types[] = {1, 2, 4, 6, 7, 5};
    auto const range = [&] { return Range(odd(), odd(), Below(12), types[Below(6)], Below(4) == 0); };
    Value const ranges = Tuples({range(), range(), range()});
    auto const column = [&] { return Reals({number(), number(), number()}); };
    auto const flags = [&] { return Flags({1, static_cast<uint8>(Below(2)), 1}); };
    auto const groups = [&] { return Ints({Below(2), Below(2), 0}); };
    auto const share = [&] { return Below(2) == 0 ? Missing() : R64(number()); };
    std::pair<wchar_t const*, std::vector<Value>> const calls[] = {
        {Names::EXTEND_RANGE_COLUMN,
         {ranges, column(), column(), R64(number()), R64(0.1), Flag(true), Flag(Below(2) == 0)}},
        {Names::EXTEND_RANGE_WITH_OVERFLOW, {range(), R64(number()), R64(number()), R64(number()), share()}},
        {Names::CALC_PIXEL_OVERFLOW,
         {column(), column(), column(), I32(Below(3) - 1), R64(number()), range(), R64(number()),
          Flag(true)}},
        {Names::CALC_REFLINE_OVERFLOW,
         {column(), column(), column(), Ints({-1, 0, 1}), R64(number()), Flag(true), range(), R64(number()),
          Flag(true)}},
        {Names::EXTEND_X_RANGES_BY_DEGREE, {ranges, R64(number()), ranges, Flag(Below(2) == 0)}},
        {Names::EXTEND_Y_RANGES_BY_DEGREE, {ranges, R64(number())}},
        {Names::ZERO_ALIGN_FOLDED_AXES, {ranges, groups(), flags(), flags(), Flag(Below(2) == 0)}},
        {Names::SYNC_FOLDED_AXES,
         {AxisTable({0, 1}, {{number(), number()}, {number(), 3}}), groups(), ranges, groups(), Ints({0, 1}),
          R64(number()), share(), Flag(true)}},
        {Names::ADJUST_AXES_FOR_LOCKED_SCALES,
         {ranges, column(), flags(), groups(), flags(), flags(), Reals({0, 1, kNaN}), R64(number()),
          R64(number()), Flag(true), ranges, Flag(true), column(), column(), share()}},
        {Names::ADJUST_DOMAIN_FOR_STEPPING, {odd(), odd(), odd(), I32(Below(4))}},
        {Names::RANGE_UNITS_PER_PIXEL, {ranges, flags(), column(), column(), R64(number())}},
        {Names::RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH, {odd(), odd(), I32(Below(12))}},
    };
    for (auto const& [name, inputs] : calls) {
      Value got;
      int const error = ErrorOf([&, &called = name, &given = inputs] { got = Ask(called, given); });
      if (error >= 0) continue;
      ++results;
      bool const isColumn = got->GetStoreType() == StoreType::Array;
      EXPECT_EQ(isColumn ? got->AsColumn().GetCount() : 3, 3);
    }
  }
  EXPECT_GT(results, 15000);
}

TEST_F(RangeFunctions, RefuseOtherInputs) {
  Value const one = Tuples({Real(0, 1)}), none = Tuples({}), text = Tuples({Range(Text(L"a"), R64(1))});
  Value const number = R64(1), flag = Flag(true), column = Reals({1}), empty = Reals({});
  Value const flags = Flags({1}), ints = Ints({1}), table = AxisTable({1}, {{0, 0}});
  auto const locked = [&](Value ratio, Value least, Value anchors, Value lower) {
    return std::vector<Value>{one,   column, flags, ints, flags, flags, anchors, ratio,
                              least, flag,   none,  flag, lower, empty, number};
  };
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
    int error;
  } const cases[] = {
      {Names::EXTEND_RANGE_COLUMN, {one, column, column, number, number, flag}, 219},
      {Names::EXTEND_RANGE_COLUMN, {one, column, empty, number, number, flag, flag}, 259},
      {Names::EXTEND_RANGE_COLUMN, {one, column, ints, number, number, flag, flag}, 55},
      {Names::EXTEND_RANGE_COLUMN, {one, column, column, R64(-1), number, flag, flag}, 2},
      {Names::EXTEND_RANGE_COLUMN, {text, column, column, number, number, flag, flag}, 178},
      {Names::EXTEND_RANGE_COLUMN,
       {Tuples({Tuple({number, number})}), column, column, number, number, flag, flag},
       219},
      {Names::EXTEND_RANGE_WITH_OVERFLOW, {Real(0, 1), number, number, number}, 219},
      {Names::EXTEND_RANGE_WITH_OVERFLOW, {Real(0, 1), number, number, number, R64(1.5)}, 2},
      {Names::EXTEND_RANGE_WITH_OVERFLOW, {number, number, number, number, number}, 55},
      {Names::CALC_PIXEL_OVERFLOW, {column, column, column, I32(0), number, Real(0, 1), number}, 219},
      {Names::CALC_PIXEL_OVERFLOW, {column, column, empty, I32(0), number, Real(0, 1), number, flag}, 259},
      {Names::CALC_REFLINE_OVERFLOW, {column, column, column, ints, number, flag, Real(0, 1), number}, 219},
      {Names::CALC_REFLINE_OVERFLOW,
       {column, column, column, Ints({}), number, flag, Real(0, 1), number, flag},
       259},
      {Names::EXTEND_X_RANGES_BY_DEGREE, {one, number, none}, 219},
      {Names::EXTEND_X_RANGES_BY_DEGREE, {one, number, Tuples({Real(0, 1), Real(0, 1)}), flag}, 259},
      {Names::EXTEND_X_RANGES_BY_DEGREE, {one, R64(kNaN), none, flag}, 2},
      {Names::EXTEND_Y_RANGES_BY_DEGREE, {one}, 219},
      {Names::EXTEND_Y_RANGES_BY_DEGREE, {one, R64(-1)}, 2},
      {Names::ZERO_ALIGN_FOLDED_AXES, {one, ints, flags, flags}, 219},
      {Names::ZERO_ALIGN_FOLDED_AXES, {one, ints, flags, Flags({}), flag}, 259},
      {Names::SYNC_FOLDED_AXES, {table, ints, one, ints, ints, number, number}, 219},
      {Names::SYNC_FOLDED_AXES, {table, Ints({}), one, ints, ints, number, number, flag}, 259},
      {Names::SYNC_FOLDED_AXES,
       {factory::MakeTable(factory::NamedValues{{L"UniqueID", ints}}), ints, one, ints, ints, number, number,
        flag},
       219},
      {Names::ADJUST_AXES_FOR_LOCKED_SCALES, {one}, 219},
      {Names::ADJUST_AXES_FOR_LOCKED_SCALES, locked(R64(0), number, column, empty), 2},
      {Names::ADJUST_AXES_FOR_LOCKED_SCALES, locked(number, R64(-1), column, empty), 2},
      {Names::ADJUST_AXES_FOR_LOCKED_SCALES, locked(number, number, Reals({1.5}), empty), 2},
      {Names::ADJUST_AXES_FOR_LOCKED_SCALES, locked(number, number, column, Reals({1, 2})), 259},
      {Names::ADJUST_DOMAIN_FOR_STEPPING, {number, number, number}, 219},
      {Names::ADJUST_DOMAIN_FOR_STEPPING, {number, number, number, I32(0)}, 2},
      {Names::ADJUST_DOMAIN_FOR_STEPPING, {number, Text(L"a"), number, I32(3)}, 178},
      {Names::RANGE_UNITS_PER_PIXEL, {one, flags, column, column}, 219},
      {Names::RANGE_UNITS_PER_PIXEL, {one, flags, column, empty, number}, 259},
      {Names::RANGE_UNITS_PER_PIXEL, {one, flags, column, column, R64(0)}, 2},
      {Names::RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH, {number, number}, 219},
      {Names::RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH, {number, Text(L"a"), I32(4)}, 178},
  };
  for (auto const& c : cases)
    EXPECT_EQ(ErrorOf([&] { Ask(c.name, c.inputs); }), c.error) << "case " << (&c - cases);
}

TEST_F(RangeFunctions, SpecialRowsAndEmptyColumnsStay) {
  Value const ranges = Column(StoreTypeInfo::Tuple, std::vector<Value>{Real(0, 1), Value()}, {kNone, kNull});
  Value const two = Reals({1, 1}), flags = Flags({1, 1}), ints = Ints({1, 1}), flag = Flag(false);
  Value const none = Tuples({}), noReals = Reals({}), noInts = Ints({}), noFlags = Flags({}),
              table = AxisTable({}, {});
  auto const each = [&](Value const& tuples, Value const& reals, Value const& integers, Value const& bools) {
    std::vector<std::pair<wchar_t const*, std::vector<Value>>> const calls = {
        {Names::EXTEND_RANGE_COLUMN, {tuples, reals, reals, R64(0), R64(0), flag, flag}},
        {Names::EXTEND_X_RANGES_BY_DEGREE, {tuples, R64(0), none, flag}},
        {Names::EXTEND_Y_RANGES_BY_DEGREE, {tuples, R64(0)}},
        {Names::ZERO_ALIGN_FOLDED_AXES, {tuples, integers, bools, bools, flag}},
        {Names::SYNC_FOLDED_AXES, {table, integers, tuples, integers, ints, R64(1), R64(0), flag}},
        {Names::ADJUST_AXES_FOR_LOCKED_SCALES,
         {tuples, reals, bools, integers, bools, bools, reals, R64(1), Missing(), flag, none, flag, noReals,
          noReals, Missing()}},
    };
    for (auto const& [name, inputs] : calls)
      ExpectEqual(Ask(name, inputs), tuples, OStringCore(name).toUtf8());
  };
  each(ranges, two, ints, flags);
  each(none, noReals, noInts, noFlags);
}

}  // namespace
