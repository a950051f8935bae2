#include <bit>
#include <cmath>
#include <random>

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/PlainPacking.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;
using Numbers = std::vector<double>;

class BubbleFunctions : public testing::Test {
 protected:
  BubbleFunctions() { OstrelTransforms::RegisterOstrelBubbleFunctions(registry_); }
  Value Ask(wchar_t const* name, std::vector<Value> const& inputs) { return Call(registry_, name, inputs); }
  Value Layout(Numbers const& sizes) { return Ask(TransformNames::LAYOUT_BUBBLES, {Reals(sizes)}); }

  FunctionRegistry registry_;
};

Value Centres(Numbers const& x, Numbers const& y) {
  return factory::MakeKeyMap({{L"x", Reals(x)}, {L"y", Reals(y)}});
}

Numbers RowsOf(Value const& layout, wchar_t const* name) {
  auto const column = layout->AsNamedValues().Get(OStringCore(name));
  auto const rows = column->AsTypedArray<double>().GetValues();
  return {rows.begin(), rows.end()};
}

TEST_F(BubbleFunctions, FewCirclesStandWhereTheyShould) {
  struct {
    Value sizes;
    Value expected;
  } const cases[] = {
      {Reals({}), Centres({}, {})},
      {Reals({3}), Centres({-3}, {0})},
      {Reals({3, 0.5}), Centres({-3, 0.5}, {0, 0})},
      {Reals({0, kNaN, 3, -1, -kInfinity, 0.5}), Centres({0, 0, -3, 0, 0, 0.5}, {0, 0, 0, 0, 0, 0})},
      {Reals({2, 7, 1}, {kNone, kNull, kNone}), Centres({-2, 0, 1}, {0, 0, 0})},
      {factory::MakeConstantArray<double>(StoreTypeInfo::Real64, 2, 2), Centres({-2, 2}, {0, 0})},
      {factory::MakeConstantArray<uint64>(StoreTypeInfo::Real64, 2, kNull), Centres({0, 0}, {0, 0})},
  };
  for (auto const& [sizes, expected] : cases) {
    ExpectEqual(Ask(TransformNames::LAYOUT_BUBBLES, {sizes}), expected);
  }
  Value const three = Layout({1, 1, 1});
  EXPECT_NEAR(RowsOf(three, L"x")[2], 0, 1e-15);
  EXPECT_NEAR(RowsOf(three, L"y")[2], std::sqrt(3.0), 1e-15);
}

TEST_F(BubbleFunctions, OtherInputsAreRefused) {
  Value const sizes = Reals({1, 2}), layout = Centres({0, 1}, {0, 1});
  Value const scale = factory::MakeKeyMap({{L"xScale", R64(1)}, {L"yScale", R64(1)}});
  auto const* const pack = TransformNames::LAYOUT_BUBBLES;
  auto const* const toPixels = TransformNames::PIXELSCALE_BUBBLES;
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
    int code;
    wchar_t const* message;
  } const cases[] = {
      {pack, {}, 219, L"0 inputs given, 1 needed"},
      {pack, {sizes, sizes}, 219, L"2 inputs given, 1 needed"},
      {pack, {nullptr}, 55, L"a null pointer was given"},
      {pack, {R64(1)}, 55, L"Real64 read as Array"},
      {pack, {Longs({1})}, 55, L"a column of Real64 is needed, one of Int64 was given"},
      {toPixels, {layout, sizes}, 219, L"2 inputs given, 3 needed"},
      {toPixels, {layout, sizes, factory::MakeKeyMap({{L"xScale", R64(1)}})}, 219, L"yScale"},
      {toPixels, {factory::MakeKeyMap({{L"x", sizes}}), sizes, scale}, 219, L"y"},
      {toPixels, {Centres({0, 1}, {0}), sizes, scale}, 259, L"y"},
      {toPixels, {layout, Reals({1}), scale}, 259, L"x"},
      {toPixels, {sizes, sizes, scale}, 55, L"Array read as Table or KeyMap"},
      {toPixels,
       {factory::MakeKeyMap({{L"x", Ints({1, 2})}, {L"y", sizes}}), sizes, scale},
       55,
       L"a column of Real64 is needed, one of Int32 was given"},
      {toPixels,
       {layout, sizes, factory::MakeKeyMap({{L"xScale", I32(1)}, {L"yScale", R64(1)}})},
       55,
       L"Int32 read as Real64"},
  };
  for (auto const& [name, inputs, code, message] : cases) {
    try {
      Ask(name, inputs);
      ADD_FAILURE() << "no error " << code << ": " << OStringCore(message).toUtf8();
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), code);
      EXPECT_EQ(error.GetMessage().toUtf8(), OStringCore(message).toUtf8());
    }
  }
}

using Random = std::mt19937_64;
struct Sizes {
  char const* name;
  double (*draw)(Random& random, std::size_t row);
};

double Uniform(Random& random) { return std::uniform_real_distribution()(random); }

// Each draws one row's size.
constexpr Sizes kSizes[] = {
    {"equal", [](Random&, std::size_t) { return 1.0; }},
    {"lognormal", [](Random& random, std::size_t) { return std::lognormal_distribution()(random); }},
    {"one giant and many tiny", [](Random&, std::size_t row) { return row == 7 ? 1000.0 : 0.5; }},
    {"a giant now and then", [](Random& random, std::size_t) { return random() % 50 == 0 ? 300.0 : 1.0; }},
    {"few different", [](Random& random, std::size_t) { return static_cast<double>(random() % 3); }},
    {"mostly zeros", [](Random& random, std::size_t) { return random() % 100 == 0 ? 2.5 : 0.0; }},
    {"growing", [](Random&, std::size_t row) { return static_cast<double>(row); }},
    {"shrinking", [](Random&, std::size_t row) { return 1e4 / static_cast<double>(row + 1); }},
    {"of all magnitudes", [](Random& random, std::size_t) { return std::exp(40 * Uniform(random) - 20); }},
    {"below the tolerance", [](Random& random, std::size_t) { return 0.01 * Uniform(random); }},
    {"about the tolerance", [](Random& random, std::size_t) { return 0.0158 + 1e-3 * Uniform(random); }},
    {"so large that sums are inexact", [](Random& random, std::size_t) { return 1e9 * Uniform(random); }},
    {"any bits", [](Random& random, std::size_t) { return std::bit_cast<double>(random()); }},
    {"denormal squares",
     [](Random& random, std::size_t) { return static_cast<double>(random() % 7) * 3e-163; }},
    {"denormal", [](Random& random, std::size_t) { return static_cast<double>(random() % 9) * 5e-324; }},
    {"ordinary and not",
     [](Random& random, std::size_t row) {
       constexpr double kOdd[] = {kNaN, kInfinity, -kInfinity, 5e-324, -1, 1e300, 1e-170, 1e154};
       return row > 60 && random() % 20 == 0 ? kOdd[random() % std::size(kOdd)] : 1 + Uniform(random);
     }},
};

bool IsSame(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::bit_cast<uint64>(a) == std::bit_cast<uint64>(b);
}

TEST_F(BubbleFunctions, CentresAreThePlainRulesBitForBit) {
  for (Sizes const& sizes : kSizes) {
    for (unsigned seed = 0; seed < 60; ++seed) {
      Random random(seed);
      Numbers radii(seed < 50 ? random() % 80 : 1500);
      for (std::size_t row = 0; row < radii.size(); ++row) radii[row] = sizes.draw(random, row);
      PlainPacking const expected(radii);
      Value const got = Layout(radii);
      Numbers const x = RowsOf(got, L"x"), y = RowsOf(got, L"y");
      ASSERT_EQ(x.size(), radii.size());
      ASSERT_EQ(y.size(), radii.size());
      for (std::size_t row = 0; row < radii.size(); ++row) {
        ASSERT_TRUE(IsSame(x[row], expected.x[row]) && IsSame(y[row], expected.y[row]))
            << sizes.name << ", seed " << seed << ", row " << row << ": " << x[row] << ", " << y[row]
            << " and not " << expected.x[row] << ", " << expected.y[row];
      }
    }
  }
}

// With squares that dwarf the tolerance.
TEST_F(BubbleFunctions, CirclesDoNotOverlapAndTouchOthers) {
  Random random(5);
  Numbers radii(700);
  for (double& radius : radii) radius = 100 * std::lognormal_distribution()(random);
  Value const layout = Layout(radii);
  Numbers const x = RowsOf(layout, L"x"), y = RowsOf(layout, L"y");
  for (std::size_t i = 0; i < radii.size(); ++i) {
    int touched = 0;
    for (std::size_t j = 0; j < radii.size(); ++j) {
      if (i == j) continue;
      double const gap = std::hypot(x[i] - x[j], y[i] - y[j]) - radii[i] - radii[j];
      EXPECT_GT(gap, -1e-4) << i << " and " << j;
      if (gap < 1e-6) ++touched;
    }
    EXPECT_GE(touched, 2) << i;
  }
}

TEST_F(BubbleFunctions, PixelsFollowTheScale) {
  auto const real = StoreTypeInfo::Real64;
  struct {
    Value layout, sizes;
    double xScale, yScale;
    Value x, y, size;
  } const cases[] = {
      {Centres({-1, 2}, {0.5, 0}), Reals({1, 2}), 10, 10, Reals({-10, 20}), Reals({5, 0}), Reals({20, 40})},
      {Centres({-1, 2}, {0.5, 0}), Reals({1, 2}), 10, -4, Reals({-10, 20}), Reals({-2, 0}), Reals({8, 16})},
      {Centres({1}, {1}), Reals({3}), -2, 5, Reals({-2}), Reals({5}), Reals({12})},
      {Centres({0, 0, 0}, {0, 0, 0}), Reals({kNaN, -5, 0}), 2, 2, Reals({0, 0, 0}), Reals({0, 0, 0}),
       Reals({0, 0, 0})},
      {factory::MakeKeyMap({{L"x", Reals({0, 1}, {kNull})}, {L"y", Reals({3, 4})}}),
       Reals({5, 0}, {kNone, kMissing}), 2, 2, Reals({0, 2}, {kNull}), Reals({6, 8}),
       Reals({20, 0}, {kNone, kMissing})},
      {factory::MakeKeyMap({{L"x", factory::MakeConstantArray<uint64>(real, 2, kNull)},
                            {L"y", factory::MakeConstantArray<double>(real, 1.5, 2)}}),
       factory::MakeConstantArray<double>(real, 2, 2), 2, 2, Reals({0, 0}, {kNull, kNull}), Reals({3, 3}),
       Reals({8, 8})},
      {Centres({}, {}), Reals({}), 1, 1, Reals({}), Reals({}), Reals({})},
  };
  int place = 0;
  for (auto const& [layout, sizes, xScale, yScale, x, y, size] : cases) {
    Value const scale = factory::MakeKeyMap({{L"xScale", R64(xScale)}, {L"yScale", R64(yScale)}});
    ExpectEqual(Ask(TransformNames::PIXELSCALE_BUBBLES, {layout, sizes, scale}),
                factory::MakeKeyMap({{L"x", x}, {L"y", y}, {L"size", size}}),
                "case " + std::to_string(place++));
  }
}

}  // namespace
