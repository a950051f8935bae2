#include <cmath>

#include "ostreltransforms/RangeCalls.h"
#include "ostreltransforms/setvaluemulti/FoldedAxes.h"

namespace {

using namespace TestValues;
using namespace OstrelTransforms;
using RowDriver::ErrorOf;
namespace Names = TransformNames;

class AxisAlignment : public RangeCalls {};

// No position of the zeros leaves the axes a greater product of shares.
TEST_F(AxisAlignment, CommonZeroWastesLeast) {
  using FoldedAxes::Reach;
  for (int run = 0; run < 500; ++run) {
    std::vector<Reach> axes(static_cast<std::size_t>(1 + Below(5)));
    for (Reach& axis : axes) axis = {Below(4) == 0 ? 0 : Uniform(0, 9), Uniform(0.1, 9)};
    auto const product = [&](double zero) {
      double shares = 1;
      for (Reach const& axis : axes) {
        double const length = std::max(axis.before > 0 ? axis.before / zero : 0, axis.after / (1 - zero));
        shares *= (axis.before + axis.after) / length;
      }
      return shares;
    };
    auto const zero = FoldedAxes::FindCommonZero(axes);
    ASSERT_TRUE(zero);
    for (double other = 0.001; other < 1; other += 0.001)
      EXPECT_LE(product(other), product(*zero) * (1 + 1e-12)) << "run " << run << " at " << other;
    for (Reach const& axis : axes) {
      Reach const moved = FoldedAxes::MoveZero(axis, *zero);
      EXPECT_GE(moved.before, axis.before);
      EXPECT_GE(moved.after, axis.after);
      EXPECT_NEAR(moved.GetZero(), *zero, 1e-12);
    }
  }
}

TEST_F(AxisAlignment, ZerosOfAPaneStandAtOneHeight) {
  Value const ranges =
      Tuples({Real(0, 100), Real(-5, 15), Real(20, 40), Real(-999, 1), Real(0, 8), Log(1, 10), Real(-3, 3)});
  auto const align = [&](Value const& column, Value const& panes, bool includesZero) {
    auto const count = static_cast<std::size_t>(column->AsColumn().GetCount());
    std::vector<uint8> folded(count, 1), reversed(count, 0);
    if (count > 6) folded[6] = 0;
    return Ask(Names::ZERO_ALIGN_FOLDED_AXES,
               {column, panes, Flags(folded), Flags(reversed), Flag(includesZero)});
  };
  Value const aligned = align(ranges, Ints({0, 0, 1, 2, 2, 0, 0}), false);
  double const low = ReadEnds(aligned, 0).minimum;
  EXPECT_NEAR(low, -100.0 / 3, 1e-12);
  ExpectEqual(aligned, Tuples({Real(low, 100), Real(-5, 15), Real(20, 40), Real(-999, 999), Real(-8, 8),
                               Log(1, 10), Real(-3, 3)}));
  ExpectEqual(align(Tuples({Real(20, 40), Real(-10, 10)}), Longs({4, 4}), true),
              Tuples({Real(-40, 40), Real(-10, 10)}));
  // Fixed ends: the other axis gives way, or none can.
  ExpectEqual(align(Tuples({Real(0, 100, 3), Real(-5, 15)}), Ints({0, 0}), true),
              Tuples({Real(0, 100, 3), Real(-5, 15)}));
  ExpectEqual(align(Tuples({Real(-50, 50, 10), Real(-5, 15)}), Ints({0, 0}), true),
              Tuples({Real(-50, 50, 10), Real(-15, 15)}));
  ExpectEqual(align(Tuples({Real(-10, 30, 6), Real(-15, 5)}), Ints({0, 0}), true),
              Tuples({Real(-10, 30, 6), Real(-15, 45)}));
  // A reversed axis hangs from above.
  ExpectEqual(Ask(Names::ZERO_ALIGN_FOLDED_AXES, {Tuples({Real(0, 10), Real(-10, 10)}), Ints({1, 1}),
                                                  Flags({1, 1}), Flags({1, 0}), Flag(true)}),
              Tuples({Real(-10, 10), Real(-10, 10)}));
  ExpectEqual(Ask(Names::ZERO_ALIGN_FOLDED_AXES, {Tuples({Real(-10, 30), Real(-10, 30)}), Ints({1, 1}),
                                                  Flags({1, 1}), Flags({1, 0}), Flag(true)}),
              Tuples({Real(-30, 30), Real(-30, 30)}));
}

TEST_F(AxisAlignment, FoldedAxesShareOneRange) {
  Value const table = AxisTable({7, 8, 8}, {{0, 20}, {0, 10}, {0, 50}});
  auto const sync = [&](Value const& ranges, Value const& folded, bool includesZero) {
    return Ask(Names::SYNC_FOLDED_AXES,
               {table, Ints({7, 8}), ranges, Ints({0, 0}), folded, R64(100), Missing(), Flag(includesZero)});
  };
  Value const both = Ints({7, 8});
  // The shorter bars' labels have room beside the longer bars.
  ExpectEqual(sync(Tuples({Real(0, 80), Real(0, 20)}), both, true), Tuples({Real(0, 100), Real(0, 100)}));
  ExpectEqual(sync(Tuples({Real(0, 80), Real(0, 60)}), both, true), Tuples({Real(0, 120), Real(0, 120)}));
  ExpectEqual(sync(Tuples({Real(5, 80), Real(0, 20)}), Ints({7, 9}), true),
              Tuples({Real(0, 100), Real(0, 20)}));
  ExpectEqual(sync(Tuples({Real(0, 80, 5), Real(0, 90)}), both, true), Tuples({Real(0, 80, 5), Real(0, 80)}));
  ExpectEqual(sync(Tuples({Range(Missing(), Missing()), Real(0, 50)}), both, true),
              Tuples({Real(0, 100), Real(0, 100)}));
  ExpectEqual(sync(Tuples({Range(Missing(), Missing()), Range(Missing(), R64(1))}), both, true),
              Tuples({Range(Missing(), Missing()), Range(Missing(), R64(1))}));
  Value const dates = Tuples({Range(Date(10), Date(18), 0, 6), Range(Date(12), Date(14), 0, 7)});
  ExpectEqual(sync(dates, both, false),
              Tuples({Range(Date(10), Date(20), 0, 6), Range(Date(10), Date(20), 0, 7)}));
  EXPECT_EQ(ErrorOf([&] { sync(Tuples({Real(1, 80), Log(1, 60)}), both, true); }), 220);
  EXPECT_EQ(ErrorOf([&] { sync(Tuples({Range(Date(10), Date(18), 0, 6), Real(1, 60)}), both, true); }), 220);
  ExpectEqual(sync(Tuples({Real(1, 80), Log(1, 60)}), Ints({7}), false),
              Tuples({Real(1, 1 + 79 / 0.8), Log(1, 60)}));
}

class LockedScales : public RangeCalls {
 protected:
  struct Axes {
    std::vector<Value> ranges;
    std::vector<double> lengths;
    std::vector<int> groups;
    std::vector<uint8> isHorizontal;
    std::vector<double> anchors;
    double ratio = 1;
    double leastUnits = 0;
    bool roundsUp = false;
    std::vector<Value> limits = {};
    bool stopsAtZero = false;
    std::vector<double> lower = {}, upper = {};
  };
  Value Adjust(Axes const& axes) {
    std::vector<uint8> const locked(axes.ranges.size(), 1), reversed(axes.ranges.size(), 0);
    return Ask(
        Names::ADJUST_AXES_FOR_LOCKED_SCALES,
        {Tuples(axes.ranges), Reals(axes.lengths), Flags(locked), Ints(axes.groups), Flags(axes.isHorizontal),
         Flags(reversed), Reals(axes.anchors), R64(axes.ratio), R64(axes.leastUnits), Flag(axes.roundsUp),
         Tuples(axes.limits), Flag(axes.stopsAtZero), Reals(axes.lower), Reals(axes.upper), Missing()});
  }
};

TEST_F(LockedScales, UnitsAgreeAndNoRangeIsCut) {
  for (int run = 0; run < 300; ++run) {
    std::size_t const count = static_cast<std::size_t>(1 + Below(6));
    Axes axes;
    axes.ratio = Uniform(0.5, 2);
    axes.leastUnits = run % 3 == 0 ? 0.5 : 0;
    axes.roundsUp = run % 4 == 0;
    axes.stopsAtZero = run % 2 == 0;
    for (std::size_t i = 0; i < count; ++i) {
      double const low = Uniform(-5, 10);
      axes.ranges.push_back(Real(low, low + Uniform(1, 50)));
      axes.lengths.push_back(Uniform(100, 500));
      axes.groups.push_back(Below(2));
      axes.isHorizontal.push_back(static_cast<uint8>(Below(2)));
      axes.anchors.push_back(Uniform(0, 1));
      axes.limits.push_back(Real(Uniform(-20, 0), Uniform(60, 90)));
      axes.lower.push_back(Uniform(0, 20));
      axes.upper.push_back(Uniform(0, 20));
    }
    Value const adjusted = Adjust(axes);
    Value const units = Ask(Names::RANGE_UNITS_PER_PIXEL, {adjusted, Flags(axes.isHorizontal),
                                                           Reals(axes.lengths), Reals(axes.lengths), R64(1)});
    for (std::size_t i = 0; i < count; ++i) {
      Ends const before = ReadEnds(axes.ranges[i]), after = ReadEnds(adjusted, i);
      auto const get = [&](std::size_t row) {
        double const own = units->AsTypedArray<double>().GetElement(static_cast<int>(row));
        return axes.isHorizontal[row] ? own : own / axes.ratio;
      };
      double const own = get(i) * (axes.isHorizontal[i] ? 1 : axes.ratio);
      EXPECT_LE(after.minimum, before.minimum - axes.lower[i] * own * (1 - 1e-9)) << run;
      EXPECT_GE(after.maximum, before.maximum + axes.upper[i] * own * (1 - 1e-9)) << run;
      for (std::size_t j = 0; j < i; ++j) {
        double const quotient = axes.groups[i] == axes.groups[j] ? get(i) / get(j) : 1;
        EXPECT_NEAR(quotient, 1, 1e-9) << run;
      }
    }
  }
}

TEST_F(LockedScales, RangesGrowWhereTheyMay) {
  auto const limited = [](Value limits) { return std::vector<Value>{Real(0, 40), std::move(limits)}; };
  Value const first = Real(0, 40);
  Axes const plain = {{first, Real(0, 10)}, {100, 100}, {3, 3}, {1, 1}, {0.5, 0.5}};
  auto const expectSecond = [&](Axes const& axes, Value second, char const* what) {
    ExpectEqual(Adjust(axes), Tuples({first, std::move(second)}), what);
  };
  expectSecond(plain, Real(-15, 25), "middle");
  Axes axes = plain;
  axes.anchors = {0.5, 0};
  expectSecond(axes, Real(0, 40), "start");
  axes = plain;
  axes.stopsAtZero = true;
  expectSecond(axes, Real(0, 40), "zero");
  axes = plain;
  axes.limits = limited(Real(-5, 100));
  expectSecond(axes, Real(-5, 35), "limits");
  axes.limits = limited(Real(3, 100));
  expectSecond(axes, Real(0, 40), "limits inside the range");
  axes.limits = limited(Real(-5, 30));
  expectSecond(axes, Real(-15, 25), "limits too short");
  for (auto const& [mode, expected] :
       {std::pair(4, Real(0, 40, 4)), std::pair(5, Real(-30, 10, 5)), std::pair(3, Real(0, 10, 3))}) {
    axes = plain;
    axes.ranges[1] = Real(0, 10, mode);
    expectSecond(axes, expected, "fixed");
  }
  axes = plain;
  axes.groups = {3, 4};
  expectSecond(axes, Real(0, 10), "other group");
  axes = plain;
  axes.ratio = 2;
  axes.isHorizontal = {1, 0};
  expectSecond(axes, Real(-35, 45), "ratio");
  axes = plain;
  axes.roundsUp = true;
  ExpectEqual(Adjust(axes), Tuples({Real(-5, 45), Real(-20, 30)}));
  axes = plain;
  axes.lengths = {100, 0};
  expectSecond(axes, Real(0, 10), "no pixels");
  axes = plain;
  axes.ranges[1] = Range(Missing(), R64(4));
  expectSecond(axes, Range(Missing(), R64(4)), "no range");
}

TEST_F(AxisAlignment, UnitsFollowDirectionAndScale) {
  Value const ranges = Tuples({Real(0, 10), Real(10, 0), Log(1, std::exp(2)), Range(Date(3), Date(5), 0, 7),
                               Real(4, 4), Range(Missing(), R64(1)), Real(0, 10)});
  ExpectEqual(
      Ask(Names::RANGE_UNITS_PER_PIXEL,
          {ranges, Flags({1, 0, 1, 0, 1, 1, 1}), Reals({50, 1, 50, 1, 50, 50, 0}),
           Reals({1, 25, 1, 25, 1, 1, 1}), R64(2)}),
      Reals({0.1, 0.2, 0.02, 0.04, 0, 0, 0}, {kNone, kNone, kNone, kNone, kNone, kMissing, kMissing}));
}

TEST_F(AxisAlignment, SteppedDomainsHoldAllWithTheNarrowestSteps) {
  auto const ask = [&](Value minimum, Value maximum, Value centre, int steps) {
    return Ask(Names::ADJUST_DOMAIN_FOR_STEPPING,
               {std::move(minimum), std::move(maximum), std::move(centre), I32(steps)});
  };
  auto const result = [](Value minimum, Value maximum, double left, double right) {
    return factory::MakeKeyMap({{L"colorMin", std::move(minimum)},
                                {L"colorMax", std::move(maximum)},
                                {L"nStepsLeft", R64(left)},
                                {L"nStepsRight", R64(right)}});
  };
  auto const reals = [&](double minimum, double maximum, double left, double right) {
    return result(R64(minimum), R64(maximum), left, right);
  };
  ExpectEqual(ask(R64(-5), R64(5), R64(0), 4), reals(-5, 5, 2, 2));
  ExpectEqual(ask(R64(-5), R64(5), R64(0), 5), reals(-5, 5, 2.5, 2.5));
  ExpectEqual(ask(I32(5), I64(-5), Missing(), 1), reals(-5, 5, 0.5, 0.5));
  ExpectEqual(ask(R64(-1), R64(8), R64(0), 4), reals(-8.0 / 3.5 * 0.5, 8, 0.5, 3.5));
  ExpectEqual(ask(R64(2), R64(10), R64(0), 5), reals(0, 10, 0, 5));
  ExpectEqual(ask(R64(2), R64(10), R64(20), 5), reals(2, 20, 5, 0));
  ExpectEqual(ask(R64(2), R64(10), Missing(), 5), reals(2, 10, 0, 5));
  ExpectEqual(ask(R64(3), R64(3), R64(3), 3), reals(3, 3, 1.5, 1.5));
  ExpectEqual(ask(Date(3), Date(9), Date(5), 3), reals(3, 9, 1, 2));
  for (Value const& odd : {Missing(), R64(kNaN), R64(kInfinity)})
    ExpectEqual(ask(odd, R64(1), R64(0), 5), result(Missing(), Missing(), 0, 5));
  ExpectEqual(ask(R64(0), R64(1), R64(kNaN), 5), result(Missing(), Missing(), 0, 5));

  for (int run = 0; run < 500; ++run) {
    double const low = Uniform(-20, 5), high = Uniform(low, 20), centre = Uniform(low, high);
    int const steps = 1 + Below(12);
    Value const got = ask(R64(low), R64(high), R64(centre), steps);
    auto const get = [&](wchar_t const* name) { return got->AsNamedValues().Get(name)->GetReal64(); };
    double const left = get(L"nStepsLeft"), right = get(L"nStepsRight");
    double const width = (get(L"colorMax") - get(L"colorMin")) / steps;
    EXPECT_EQ(left + right, steps);
    EXPECT_LE(get(L"colorMin"), low);
    EXPECT_GE(get(L"colorMax"), high);
    EXPECT_NEAR(centre - get(L"colorMin"), left * width, 1e-9);
    for (int halves = 0; halves <= 2 * steps; ++halves) {
      double const other =
          std::max((centre - low) / (halves * 0.5), (high - centre) / (steps - halves * 0.5));
      EXPECT_GE(other, width * (1 - 1e-9)) << "run " << run << ", " << halves << " half steps";
    }
  }
}

TEST_F(AxisAlignment, EndsGetATypeThatHoldsBoth) {
  int64 const large = (int64{1} << 53) + 1;
  Value const day = factory::MakeDate(OrtDateTime::FromDouble(3.5));
  struct {
    Value minimum, maximum;
    int fieldType;
    Value expected;
  } const cases[] = {
      {I32(1), I32(2), 4, Tuple({I32(1), I32(2)})},
      {I32(1), I64(2), 1, Tuple({I64(1), I64(2)})},
      {I32(1), R32(2.5F), 4, Tuple({R64(1), R64(2.5)})},
      {I64(large), R64(1e17), 4, Tuple({R64(0x1p53), R64(1e17)})},
      {R64(1), I64(large), 4, Tuple({R64(1), R64(0x1p53 + 2)})},
      {R64(1), I64(INT64_MAX), 4, Tuple({R64(1), R64(0x1p63)})},
      {I64(INT64_MAX), R64(1e19), 4, Tuple({R64(0x1p63 - 1024), R64(1e19)})},
      {I64(INT64_MIN), R64(1), 4, Tuple({R64(-0x1p63), R64(1)})},
      {I64(-large), R64(1), 4, Tuple({R64(-0x1p53 - 2), R64(1)})},
      {day, Date(4), 6, Tuple({Date(3.5), Date(4)})},
      {day, R64(4), 7, Tuple({Date(3.5), Date(4)})},
      {I32(2), day, 4, Tuple({R64(2), R64(3.5)})},
      {Missing(), I32(4), 4, Tuple({Special(StoreTypeInfo::Int32), I32(4)})},
      {day, Special(StoreTypeInfo::Real64, kNull), 4, Tuple({day, Special(StoreTypeInfo::Date, kNull)})},
      {Special(StoreTypeInfo::Int32), Missing(), 4, Tuple({Missing(), Missing()})},
  };
  for (auto const& c : cases) {
    ExpectEqual(Ask(Names::RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH, {c.minimum, c.maximum, I32(c.fieldType)}),
                c.expected, "case " + std::to_string(&c - cases));
  }
}

}  // namespace
