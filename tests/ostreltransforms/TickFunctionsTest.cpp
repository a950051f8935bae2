#include <cmath>
#include <random>
#include <stdexcept>

#include "ostreltransforms/Callbacks.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/LogTicks.h"
#include "ostreltransforms/setvaluemulti/SlotGaps.h"

namespace {

using namespace TestValues;
using namespace OstrelTransforms;
using RowDriver::ErrorOf;

// The rules of ticks, one sentence after the other.
double Tick(std::span<double const> set, int j, unsigned k, double scale, double base) {
  auto const n = static_cast<unsigned>(set.size());
  unsigned const q = k / n, r = k % n;
  double const power = scale * std::pow(base, static_cast<int>(q) + j);
  return r == 0 ? power : power * set[r - 1];
}
std::vector<double> Ticks(LogTicks::Domain const& d, std::span<double const> set) {
  int j = 0;
  if (d.minimum > 0) {
    while (Tick(set, j, 0, d.scale, d.base) > d.minimum) --j;
    while (d.minimum > Tick(set, j, 1, d.scale, d.base)) ++j;
  }
  std::vector<double> ticks;
  for (unsigned k = 0;; ++k) {
    double const v = Tick(set, j - 1, k, d.scale, d.base);
    if (v >= d.minimum - 2.220446049250313e-16) ticks.push_back(v);
    if (!(v < d.maximum)) return ticks;
  }
}

TEST(LogTicks, AgreeWithTheirRule) {
  auto const sets = LogTicks::GetMultiplierSets();
  ASSERT_EQ(sets.size(), 6U);
  std::size_t const counts[] = {23, 13, 7, 3, 2, 1};
  std::mt19937 random(2);
  std::uniform_real_distribution<double> exponent(-6, 6);
  for (std::size_t i = 0; i < sets.size(); ++i) {
    EXPECT_EQ(sets[i].size(), counts[i]);
    EXPECT_EQ(sets[i].back(), 10);
    for (int round = 0; round < 200; ++round) {
      double const a = std::pow(10, exponent(random)), b = std::pow(10, exponent(random));
      LogTicks::Domain const domain{std::min(a, b) - (round % 8 == 0 ? b : 0), std::max(a, b),
                                    round % 3 == 0 ? 0.7 : 1, round % 5 == 0 ? 2.0 : 10};
      auto const ticks = LogTicks::MakeTicks(domain, sets[i]);
      ASSERT_TRUE(ticks);
      EXPECT_EQ(*ticks, Ticks(domain, sets[i]));
      EXPECT_GE(ticks->back(), domain.maximum);
    }
  }
}

TEST(LogTicks, BeginAndEndAtTheDomain) {
  double const ten[] = {10};
  struct {
    double minimum, maximum;
    std::vector<double> expected;
  } const cases[] = {
      {1, 1000, {1, 10, 100, 1000}},
      {1, 999, {1, 10, 100, 1000}},
      {1 + 1e-16, 100, {1, 10, 100}},
      {1.0000001, 100, {10, 100}},
      {0, 10, {0.1, 1, 10}},
      {-5, -1, {0.1}},
      {10, 10, {10}},
      {100, 1, {}},
  };
  for (auto const& [minimum, maximum, expected] : cases) {
    EXPECT_EQ(LogTicks::MakeTicks({minimum, maximum, 1, 10}, ten), expected) << minimum << " " << maximum;
  }
}

TEST(LogTicks, TooManyAreRefused) {
  double const base[] = {1.0001};
  EXPECT_FALSE(LogTicks::MakeTicks({0, 1e300, 1, 1.0001}, base));
  EXPECT_FALSE(LogTicks::MakeTicks({1e100, 1e101, 1, 1.0001}, base));
  EXPECT_FALSE(LogTicks::MakeTicks({1e-300, 1, 1, 1.0001}, base));
  EXPECT_TRUE(LogTicks::MakeTicks({1, 2, 1, 1.0001}, base));
}

class TickFunctions : public testing::Test {
 protected:
  TickFunctions() {
    RegisterOstrelSetValueMultiFunctions(registry_);
    // Ten pixels a character; a font is as high as its size.
    SetRuntimeFunctionCallbacks(
        [](double value, IStoreTuple const&) { return OStringCore(std::to_wstring(int(value)).c_str()); },
        [](OStringCore const& text, Value const&) { return 10.0F * static_cast<float>(text.length()); },
        [](Value const& font) { return font; }, {});
  }
  ~TickFunctions() override { SetRuntimeFunctionCallbacks({}, {}, {}, {}); }

  std::vector<Value> Inputs(double minimum, double maximum, int length, bool isHorizontal = true, int gap = 5,
                            double scale = 1, double base = 10) {
    return {R64(minimum),
            R64(maximum),
            I32(length),
            Flag(isHorizontal),
            I32(gap),
            Tuple({Text(L"")}),
            Tuple({Text(L"font"), R64(12)}),
            R64(scale),
            R64(base)};
  }
  Value Ask(std::vector<Value> const& inputs) {
    return Call(registry_, TransformNames::CALC_LOG_TICKS, inputs);
  }
  int CountTicks(std::vector<Value> const& inputs) { return Ask(inputs)->AsColumn().GetCount(); }

  FunctionRegistry registry_;
};

TEST_F(TickFunctions, PositionsRunFromTheMinimumToTheMaximum) {
  double const log1000 = std::log10(1000.0);
  ExpectEqual(Ask(Inputs(1, 1000, 0)), Reals({0, 1 / log1000, 2 / log1000, 1}));
  ExpectEqual(Ask(Inputs(10, 10, 0)), Reals({0.5}));
  // The logarithm of a minimum that is not above 0 counts as 0.
  ExpectEqual(Ask(Inputs(-1, 100, 0)), Reals({-0.5, 0, 0.5, 1}));
  ExpectEqual(Ask(Inputs(1, 8, 0, true, 5, 1, 2)),
              Reals({0, std::log10(2.0) / std::log10(8.0), std::log10(4.0) / std::log10(8.0), 1}));
  std::vector<Value> noFormat = Inputs(1, 1000, 500);
  noFormat[5] = R64(1);
  EXPECT_EQ(CountTicks(noFormat), 4);
}

// The densest set whose labels keep the gap. At 1000 pixels for one decade the nearest two of the finest set,
// 6.5 and 7, stand 32.2 pixels apart, and a label of one digit is 10 wide and 12 high.
TEST_F(TickFunctions, LabelsKeepTheirGap) {
  struct {
    int length;
    bool isHorizontal;
    int gap;
    int expected;
  } const cases[] = {
      {1000, true, 5, 24},    {1000, true, 22, 24},  {1000, true, 23, 14},  {300, true, 5, 14},
      {200, true, 5, 8},      {100, true, 5, 4},     {60, true, 5, 2},      {30, true, 5, 2},
      {1, true, 5, 2},        {1000, false, 20, 24}, {1000, false, 21, 14}, {1, true, INT_MAX, 2},
      {1, true, INT_MIN, 24},
  };
  for (auto const& [length, isHorizontal, gap, expected] : cases) {
    EXPECT_EQ(CountTicks(Inputs(1, 10, length, isHorizontal, gap)), expected) << length << " " << gap;
  }
}

TEST_F(TickFunctions, RefuseAxesWithoutTicks) {
  for (auto const& inputs : {Inputs(kNaN, 1, 1), Inputs(1, kInfinity, 1), Inputs(1, 2, 1, true, 5, 0),
                             Inputs(1, 2, 1, true, 5, -1), Inputs(1, 2, 1, true, 5, 1, 1),
                             Inputs(1, 2, 1, true, 5, kNaN), Inputs(0, 1e300, 0, true, 5, 1, 1.0001)}) {
    EXPECT_EQ(ErrorOf([&] { Ask(inputs); }), 2);
  }
  std::vector<Value> inputs = Inputs(1, 2, 1);
  inputs[2] = R64(1);
  EXPECT_EQ(ErrorOf([&] { Ask(inputs); }), 55);
  inputs.pop_back();
  try {
    Ask(inputs);
    ADD_FAILURE() << "nothing was thrown";
  } catch (std::out_of_range const& error) {
    EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
  }
}

TEST_F(TickFunctions, FrequencyIsTheFirstThatExceedsTheLimit) {
  auto const frequency = [&](int a, float factor, int b, Value const& candidates) {
    return Call(registry_, TransformNames::TEMPORAL_TICK_FREQUENCY, {I32(a), R32(factor), I32(b), candidates})
        ->GetInt32();
  };
  EXPECT_EQ(frequency(3, 2, 7, Ints({1, 3, 4, 6})), 4);
  EXPECT_EQ(frequency(7, 2, 3, Ints({1, 3, 4, 6})), 4);
  EXPECT_EQ(frequency(3, 2, 8, Ints({1, 3, 4, 6})), 6);
  EXPECT_EQ(frequency(3, 2, 99, Ints({1, 3, 4, 6})), 0);
  EXPECT_EQ(frequency(3, 2, 7, Ints({})), 0);
  EXPECT_EQ(frequency(-9, 1, -5, Ints({0, -1}, {kNull})), -1);
  EXPECT_EQ(frequency(0, static_cast<float>(kNaN), 0, Ints({1})), 0);
  // In single precision 2^24 + 1 is not above 2^24.
  EXPECT_EQ(frequency(1 << 24, 1, 0, Ints({(1 << 24) + 1, (1 << 24) + 2})), (1 << 24) + 2);
  EXPECT_EQ(ErrorOf([&] { frequency(1, 1, 1, Reals({1})); }), 55);
}

// The rule of gaps, one slot at a time.
std::pair<int, int> WalkGaps(std::vector<int> const& slots) {
  int const n = static_cast<int>(slots.size());
  int s = 0;
  while (s < n && slots[static_cast<std::size_t>(s)] != 0) ++s;
  if (s == n) return {0, 0};
  std::pair<int, int> best{0, 0};
  for (;;) {
    int e = s + 1;
    while (e % n != s && slots[static_cast<std::size_t>(e % n)] == 0) ++e;
    if (e % n == s) return best;
    if (best.second - best.first < e - s) best = {s, (e - 1) % n};
    while (e < n && slots[static_cast<std::size_t>(e)] != 0) ++e;
    if (e >= n) return best;
    s = e;
  }
}

TEST_F(TickFunctions, GapsAgreeWithTheirRule) {
  struct {
    std::vector<int> slots;
    std::pair<int, int> expected;
  } const cases[] = {
      {{1, 0, 0, 1, 0}, {1, 2}},
      {{0, 0, 1, 0, 0, 0, 1}, {3, 5}},
      {{0, 0, 0}, {0, 0}},
      {{1, 1}, {0, 0}},
      {{}, {0, 0}},
      {{0}, {0, 0}},
      {{0, 1, 0}, {2, 0}},
      {{0, -1, 0, 5}, {2, 2}},
      {{1, 0, 1, 0}, {3, 3}},
      {{0, 0, 1, 0, 1}, {0, 1}},
  };
  for (auto const& [slots, expected] : cases) {
    EXPECT_EQ(SlotGaps::FindLargest(slots), expected) << testing::PrintToString(slots);
  }
  for (unsigned count = 1; count <= 10; ++count) {
    for (unsigned bits = 0; bits < 1U << count; ++bits) {
      std::vector<int> slots;
      for (unsigned i = 0; i < count; ++i) slots.push_back(static_cast<int>(bits >> i & 1));
      ASSERT_EQ(SlotGaps::FindLargest(slots), WalkGaps(slots)) << testing::PrintToString(slots);
    }
  }
  auto const find = [&](std::vector<Value> const& inputs) {
    return Call(registry_, TransformNames::FIND_LARGEST_GAP, inputs);
  };
  ExpectEqual(find({Ints({0, 0, 1, 0, 0, 0, 1})}), Tuple({I32(3), I32(5)}));
  EXPECT_EQ(ErrorOf([&] { find({}); }), 219);
  EXPECT_EQ(ErrorOf([&] { find({Ints({}), Ints({})}); }), 219);
  EXPECT_EQ(ErrorOf([&] { find({Reals({})}); }), 55);
}

}  // namespace
