#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtBinaryFunctor.h"
#include "ostrelrtcore/OrtBinarySpecialFunctor.h"
#include "ostrelrtcore/OrtUnaryFunctor.h"
#include "ostrelrtcore/OrtUnarySpecialFunctor.h"

namespace ort::core {
namespace {

using Kinds = std::vector<SpecialKind>;
constexpr auto kNone = SpecialKind::None;
constexpr auto kMissing = SpecialKind::Missing;
constexpr auto kNull = SpecialKind::Null;
Error const lengthsDiffer(259, "");

class ClampMin {
 public:
  explicit ClampMin(double bound) : bound_(bound) {}
  double Apply(double value) const { return value > bound_ ? value : bound_; }

 private:
  double bound_;
};

// Carries state: the sum of all values so far.
struct RunningSum {
  double sum = 0;
  double Apply(double value) { return sum += value; }
};

double Subtract(double a, double b) { return a - b; }
bool IsNegative(double value) { return value < 0; }
std::pair<double, SpecialKind> LnOfPositive(double value, SpecialKind kind) {
  if (kind != kNone || value <= 0) return {0.0, kMissing};
  return {std::log(value), kNone};
}
// Sums up; a special row passes its kind on and leaves the sum alone.
std::pair<double, SpecialKind> AddOrdinary(double a, SpecialKind aKind, double b, SpecialKind bKind) {
  if (bKind != kNone) return {a, bKind};
  return {a + b, aKind == kNull ? kNull : kNone};
}
std::shared_ptr<StoreValue> Count(std::vector<std::shared_ptr<StoreValue>> const& inputs) {
  return factory::MakeInt32(static_cast<int>(inputs.size()));
}

using Clamp = OrtUnaryFunctor<double, double, ClampMin>;
using Sum = OrtUnaryFunctor<double, double, RunningSum>;
using Sign = OrtUnaryFunctor<double, bool, OrtUnaryFunctorGenerator<double, bool, IsNegative>>;
using Ln =
    OrtUnarySpecialFunctor<double, double, OrtUnarySpecialFunctorGenerator<double, double, LnOfPositive>>;
using Minus =
    OrtBinaryFunctor<double, double, double, OrtBinaryFunctorGenerator<double, double, double, Subtract>>;
using Add = OrtBinarySpecialFunctor<double, double, double,
                                    OrtBinarySpecialFunctorGenerator<double, double, double, AddOrdinary>>;

class FunctorAtVectorLevel : public testing::TestWithParam<VectorLevel> {
 protected:
  void SetUp() override { LimitVectorLevel(GetParam()); }
  void TearDown() override { LimitVectorLevel(VectorLevel::Avx512); }
};
INSTANTIATE_TEST_SUITE_P(AllLevels, FunctorAtVectorLevel,
                         testing::Values(VectorLevel::Baseline, VectorLevel::Avx2, VectorLevel::Avx512));

// What a host sees of a functor whose operation it does not know.
template <class Interface, class Functor, class... Args>
std::unique_ptr<Interface> MakeAs(Args... args) {
  std::unique_ptr<OrtFunctor> functor = std::make_unique<Functor>(args...);
  auto* const seen = dynamic_cast<Interface*>(functor.get());
  EXPECT_NE(seen, nullptr);
  functor.release();
  return std::unique_ptr<Interface>(seen);
}

std::vector<double> Numbers(std::size_t count) {
  std::vector<double> numbers(count);
  for (std::size_t i = 0; i < count; ++i) numbers[i] = std::sin(static_cast<double>(i)) * 100;
  if (count > 2) numbers[2] = std::numeric_limits<double>::quiet_NaN();
  if (count > 1) numbers[1] = 5;
  return numbers;
}

TEST_P(FunctorAtVectorLevel, GivesEveryRowWhatApplyGivesIt) {
  auto const clamp = MakeAs<IUnaryFunctor<double, double>, Clamp>(5.0);
  auto const sign = MakeAs<IUnaryFunctor<double, bool>, Sign>();
  auto const ln = MakeAs<IUnarySpecialFunctor<double, double>, Ln>();
  auto const minus = MakeAs<IBinaryFunctor<double, double, double>, Minus>();
  for (std::size_t const count : {0u, 1u, 3u, 8u, 1001u}) {
    auto const input = Numbers(count);
    auto const other = Numbers(count + 7);
    std::span<double const> const second = std::span(other).last(count);
    Kinds kinds(count, kNone);
    for (std::size_t i = 4; i < count; i += 5) kinds[i] = static_cast<SpecialKind>(i % 250 + 1);
    std::vector<double> output(count, 7);
    Kinds outputKinds(count, kNull);

    clamp->ApplyToArray(input, output);
    for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(output[i], input[i] > 5 ? input[i] : 5) << i;
    minus->ApplyToArrays(input, second, output);
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_TRUE(output[i] == input[i] - second[i] || std::isnan(input[i])) << i;
    }
    ln->ApplyToArray(input, kinds, output, outputKinds);
    for (std::size_t i = 0; i < count; ++i) {
      auto const [value, kind] = LnOfPositive(input[i], kinds[i]);
      EXPECT_TRUE(output[i] == value || (std::isnan(output[i]) && std::isnan(value))) << i;
      EXPECT_EQ(outputKinds[i], kind);
    }
    auto const signs = std::make_unique<bool[]>(count + 1);
    sign->ApplyToArray(input, {signs.get(), count});
    for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(signs[i], input[i] < 0);
  }
  EXPECT_EQ(clamp->Apply(std::nan("")), 5.0);
  EXPECT_EQ(ln->Apply(1.0, kNull), std::pair(0.0, kMissing));
}

TEST_P(FunctorAtVectorLevel, MayWriteOverItsInput) {
  auto rows = Numbers(1001);
  std::vector<double> expected(rows.size());
  Clamp clamp(5.0);
  clamp.ApplyToArray(rows, expected);
  clamp.ApplyToArray(rows, rows);
  EXPECT_EQ(rows, expected);
  Minus minus;
  minus.ApplyToArrays(rows, rows, rows);
  EXPECT_EQ(rows, std::vector<double>(1001, 0.0));
  std::iota(rows.begin(), rows.end(), 0.0);
  double last = 0;
  minus.AccumulateForward(last, rows, rows);
  EXPECT_EQ(rows[1000], -500500.0);
  std::vector<double> values = {1, -1};
  Kinds kinds = {kNone, kNone};
  Ln().ApplyToArray(values, kinds, values, kinds);
  EXPECT_EQ(values, (std::vector<double>{0, 0}));
  EXPECT_EQ(kinds, (Kinds{kNone, kMissing}));
}

TEST(Functor, CarriesItsStateFromCallToCall) {
  Sum sum;
  std::vector<double> output(3);
  for (double const start : {0.0, 6.0}) {
    sum.ApplyToArray(std::vector<double>{1, 2, 3}, output);
    EXPECT_EQ(output, (std::vector<double>{start + 1, start + 3, start + 6}));
  }
  EXPECT_EQ(sum.Apply(1), 13.0);
}

TEST(Functor, RefusesViewsOfUnequalLengthBeforeAnyRowIsWritten) {
  std::vector<double> const in(4, 1.0);
  std::vector<double> out(4, 7.0);
  Kinds const kinds(4, kNone);
  Kinds outKinds(4, kNull);
  double accumulator = 3;
  SpecialKind accumulatorKind = kNull;
  std::span<double const> const i4 = in, i3 = i4.first(3);
  std::span<double> const o4 = out, o3 = o4.first(3);
  std::span<SpecialKind const> const k4 = kinds, k3 = k4.first(3);
  std::span<SpecialKind> const p4 = outKinds, p3 = p4.first(3);
  Sum sum;
  Ln ln;
  Minus minus;
  Add add;
  std::function<void()> const calls[] = {
      [&] { sum.ApplyToArray(i4, o3); },
      [&] { sum.ApplyToArray(i3, o4); },
      [&] { sum.ApplyToArray(i4, {}); },
      [&] { sum.ApplyToArray({}, o4); },
      [&] { ln.ApplyToArray(i3, k4, o4, p4); },
      [&] { ln.ApplyToArray(i4, k3, o4, p4); },
      [&] { ln.ApplyToArray(i4, k4, o3, p4); },
      [&] { ln.ApplyToArray(i4, k4, o4, p3); },
      [&] { minus.ApplyToArrays(i3, i4, o4); },
      [&] { minus.ApplyToArrays(i4, i3, o4); },
      [&] { minus.ApplyToArrays(i4, i4, o3); },
      [&] { add.ApplyToArrays(i3, k4, i4, k4, o4, p4); },
      [&] { add.ApplyToArrays(i4, k3, i4, k4, o4, p4); },
      [&] { add.ApplyToArrays(i4, k4, i3, k4, o4, p4); },
      [&] { add.ApplyToArrays(i4, k4, i4, k3, o4, p4); },
      [&] { add.ApplyToArrays(i4, k4, i4, k4, o3, p4); },
      [&] { add.ApplyToArrays(i4, k4, i4, k4, o4, p3); },
      [&] { minus.AccumulateForward(accumulator, i4, o3); },
      [&] { minus.AccumulateBackward(accumulator, i3, o4); },
      [&] { add.AccumulateForward(accumulator, accumulatorKind, i4, k3, o4, p4); },
      [&] { add.AccumulateForward(accumulator, accumulatorKind, i4, k3, {}, {}); },
      [&] { add.AccumulateBackward(accumulator, accumulatorKind, i4, k4, o3, p4); },
      [&] { add.AccumulateBackward(accumulator, accumulatorKind, i4, k4, o4, p3); }};
  for (std::size_t i = 0; i < std::size(calls); ++i)
    EXPECT_EQ(ErrorOf(calls[i]), lengthsDiffer) << "call " << i;
  EXPECT_EQ(out, std::vector<double>(4, 7.0));
  EXPECT_EQ(outKinds, Kinds(4, kNull));
  EXPECT_EQ(accumulator, 3.0);
  EXPECT_EQ(accumulatorKind, kNull);
  EXPECT_EQ(sum.Apply(0), 0.0);
}

TEST(Functor, TakesEmptyViewsWithAndWithoutAPointer) {
  std::vector<double> const reserved = [] {
    std::vector<double> v;
    v.reserve(4);
    return v;
  }();
  Sum sum;
  Add add;
  double accumulator = 2;
  SpecialKind kind = kMissing;
  for (std::span<double const> const input : {std::span<double const>(), std::span<double const>(reserved)}) {
    EXPECT_NO_THROW(sum.ApplyToArray(input, {}));
    EXPECT_NO_THROW(add.ApplyToArrays(input, {}, input, {}, {}, {}));
    EXPECT_NO_THROW(add.AccumulateForward(accumulator, kind, input, {}, {}, {}));
    EXPECT_NO_THROW(Minus().AccumulateBackward(accumulator, input, {}));
  }
  EXPECT_EQ(accumulator, 2.0);
  EXPECT_EQ(kind, kMissing);
}

// Against the definition: row i holds the fold of rows 0 to i, or of rows n-1 down to i.
TEST(Functor, FoldsForwardAndBackward) {
  std::vector<double> const input = {1, 20, 300, 4000};
  auto const minus = MakeAs<IBinaryFunctor<double, double, double>, Minus>();
  struct {
    bool isForward;
    std::vector<double> expected;
    double last;
  } const cases[] = {{true, {-1, -21, -321, -4321}, -4321}, {false, {-4321, -4320, -4300, -4000}, -4321}};
  for (auto const& c : cases) {
    auto const accumulate = c.isForward ? &IBinaryFunctor<double, double, double>::AccumulateForward
                                        : &IBinaryFunctor<double, double, double>::AccumulateBackward;
    std::vector<double> output(4, 7);
    double accumulator = 0;
    (minus.get()->*accumulate)(accumulator, input, output);
    EXPECT_EQ(output, c.expected);
    EXPECT_EQ(accumulator, c.last);
    accumulator = 0;
    (minus.get()->*accumulate)(accumulator, input, {});
    EXPECT_EQ(accumulator, c.last);
  }
}

TEST(Functor, FoldsKindsAlong) {
  std::vector<double> const input = {1, 2, 4};
  Kinds const kinds = {kNone, kMissing, kNone};
  std::vector<double> output(3);
  Kinds outputKinds(3);
  auto const add = MakeAs<IBinarySpecialFunctor<double, double, double>, Add>();
  double sum = 10;
  SpecialKind kind = kNone;
  add->AccumulateForward(sum, kind, input, kinds, output, outputKinds);
  EXPECT_EQ(output, (std::vector<double>{11, 11, 15}));
  EXPECT_EQ(outputKinds, (Kinds{kNone, kMissing, kNone}));
  kind = kNull;
  add->AccumulateBackward(sum, kind, input, kinds, output, outputKinds);
  EXPECT_EQ(output, (std::vector<double>{20, 19, 19}));
  EXPECT_EQ(outputKinds, (Kinds{kNone, kMissing, kNull}));
  EXPECT_EQ(kind, kNone);
}

TEST(Functor, RefusesToFoldWhereTheResultIsNoFirstInput) {
  struct IsLess {
    bool Apply(double a, double b) const { return a < b; }
  };
  OrtBinaryFunctor<double, double, bool, IsLess> less;
  bool accumulator = true;
  std::vector<double> const input = {1};
  EXPECT_FALSE(less.CanAccumulate());
  EXPECT_EQ(ErrorOf([&] { less.AccumulateForward(accumulator, input, {}); }),
            Error(55, "a fold needs an output of the first input's type"));
  EXPECT_TRUE(accumulator);
}

// Loops of their own, after the checks of length.
struct WholeColumn {
  int calls = 0;
  double Apply(double, double) { return -1; }
  void ApplyToArrays(std::span<double const>, std::span<double const> second, std::span<double> output) {
    ++calls;
    std::partial_sum(second.begin(), second.end(), output.begin());
  }
};
struct WholeSpecialColumn {
  std::pair<double, SpecialKind> Apply(double, SpecialKind, double, SpecialKind) { return {-1, kNull}; }
  void ApplyToArrays(std::span<double const>, std::span<SpecialKind const>, std::span<double const> second,
                     std::span<SpecialKind const>, std::span<double> output,
                     std::span<SpecialKind> outputKinds) {
    std::partial_sum(second.begin(), second.end(), output.begin());
    std::ranges::fill(outputKinds, kNone);
  }
};

TEST(Functor, RunsAnOperationsOwnLoopAfterTheChecks) {
  std::vector<double> const first(3), second = {1, 2, 3};
  std::vector<double> output(3);
  Kinds const kinds(3, kNull);
  Kinds outputKinds(3, kNull);
  OrtBinaryFunctor<double, double, double, WholeColumn> plain;
  plain.ApplyToArrays(first, second, output);
  EXPECT_EQ(output, (std::vector<double>{1, 3, 6}));
  EXPECT_EQ(ErrorOf([&] { plain.ApplyToArrays(first, second, {}); }), lengthsDiffer);
  std::ranges::fill(output, 0);
  OrtBinarySpecialFunctor<double, double, double, WholeSpecialColumn> special;
  special.ApplyToArrays(first, kinds, second, kinds, output, outputKinds);
  EXPECT_EQ(output, (std::vector<double>{1, 3, 6}));
  EXPECT_EQ(outputKinds, Kinds(3, kNone));
  EXPECT_EQ(ErrorOf([&] { special.ApplyToArrays(first, kinds, second, kinds, output, {}); }), lengthsDiffer);
}

TEST(Functor, OfAMultinaryFunctionTakesWholeValues) {
  auto const count = MakeAs<IMultinaryFunctor, OrtMultinaryFunctor<Count>>();
  EXPECT_EQ(count->Apply({nullptr, nullptr})->GetInt32(), 2);
}

}  // namespace
}  // namespace ort::core
