#include <bit>
#include <cmath>
#include <optional>
#include <random>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

struct Cloud {
  std::vector<double> widths, heights, starts;
  double width = 0, height = 0, scale = 1, gap = 0;
};

// The rule word for word: each candidate of each word against all words placed before.
class PlainCloud {
 public:
  explicit PlainCloud(Cloud const& cloud) : cloud_(cloud) {}

  std::pair<std::vector<double>, std::vector<double>> LayOut() {
    std::vector<double> xs, ys;
    for (std::size_t i = 0; i < cloud_.widths.size(); ++i) {
      auto const found = Place(cloud_.widths[i], cloud_.heights[i], cloud_.starts[i]);
      if (found) placed_.push_back(*found);
      xs.push_back(found ? found->left * cloud_.scale : -(cloud_.widths[i] * cloud_.scale));
      ys.push_back(found ? found->top * cloud_.scale : 0);
    }
    return {xs, ys};
  }

 private:
  struct Box {
    double left, top, right, bottom;
  };

  std::optional<Box> Place(double w, double h, double f) const {
    double const W = cloud_.width, H = cloud_.height;
    double const x0 = (W - w) * f, yc = (H + h) / 2;
    double reach = 0;
    for (auto const& [x, y] : {std::pair{-w, 0.0}, {-w, H + h}, {W, 0.0}, {W, H + h}}) {
      double const distance = std::hypot(x - x0, y - yc);
      if (!std::isfinite(distance)) return {};
      reach = std::max(reach, distance);
    }
    std::optional<double> clipped;
    if (w > W || h > H) clipped = 0;
    int tried = 0;
    for (bool const isWhole : {true, false}) {
      if (isWhole && clipped) continue;
      if (!isWhole && !clipped) return {};
      for (double angle = isWhole ? 0 : *clipped;;) {
        double const r = angle * (5 / (2 * 3.14159265358979323846));
        if (r > reach) break;
        if (tried++ == 10'000'000) return {};
        double const left = x0 + r * std::sin(angle), top = yc + r * std::cos(angle) - h;
        Box const box{left, top, left + w, top + h};
        Box const cut{std::max(box.left, 0.0), std::max(box.top, 0.0), std::min(box.right, W),
                      std::min(box.bottom, H)};
        bool const isCut =
            cut.left != box.left || cut.top != box.top || cut.right != box.right || cut.bottom != box.bottom;
        if (isCut && !clipped) clipped = angle;
        bool const isOut = isWhole ? isCut : cut.right - cut.left <= 0 || cut.bottom - cut.top <= 0;
        if (!isOut && !IsBlocked(box)) return box;
        angle += r == 0 ? 5 : 5 / r;
      }
    }
    return {};
  }

  bool IsBlocked(Box const& box) const {
    double const g = cloud_.gap / 2;
    for (Box const& other : placed_) {
      if (box.left - g < other.right + g && other.left - g < box.right + g &&
          box.top - g < other.bottom + g && other.top - g < box.bottom + g) {
        return true;
      }
    }
    return false;
  }

  Cloud const& cloud_;
  std::vector<Box> placed_;
};

class WordleFunctions : public testing::Test {
 protected:
  WordleFunctions() { OstrelTransforms::RegisterOstrelWordleFunctions(registry_); }

  Value Ask(wchar_t const* name, std::vector<Value> const& inputs) { return Call(registry_, name, inputs); }

  Value LayOut(Cloud const& cloud) {
    return Ask(TransformNames::LAYOUT_WORDLE_CELLS,
               {Reals(cloud.widths), Reals(cloud.heights), Reals(cloud.starts), R64(cloud.width),
                R64(cloud.height), R64(cloud.scale), R64(cloud.gap)});
  }

  void ExpectPlain(Cloud const& cloud, std::string const& place) {
    auto const [xs, ys] = PlainCloud(cloud).LayOut();
    Value const got = LayOut(cloud);
    int row = 0;
    for (auto const& [name, expected] : {std::pair{L"x", xs}, {L"y", ys}}) {
      auto const& column = got->AsNamedValues().Get(OStringCore(name))->AsTypedArray<double>();
      ASSERT_EQ(column.GetCount(), static_cast<int>(expected.size())) << place;
      for (row = 0; row < column.GetCount(); ++row) {
        double const a = column.GetElement(row), b = expected[static_cast<std::size_t>(row)];
        if (std::isnan(a) && std::isnan(b)) continue;
        ASSERT_EQ(std::bit_cast<uint64>(a), std::bit_cast<uint64>(b))
            << place << ", word " << row << ": " << a << " and " << b;
      }
    }
  }

  FunctionRegistry registry_;
};

TEST_F(WordleFunctions, FewWordsGoWhereTheRuleTellsThem) {
  struct {
    char const* what;
    Cloud cloud;
    std::vector<double> xs, ys;
  } const cases[] = {
      {"no words", {{}, {}, {}, 100, 50, 1, 0}, {}, {}},
      {"centred", {{20}, {10}, {0.5}, 100, 50, 1, 0}, {40}, {20}},
      {"scaled, from the left and right edge",
       {{20, 10}, {10, 10}, {0, 1}, 100, 50, 2, 0},
       {0, 180},
       {40, 40}},
      {"touching is allowed", {{20, 80}, {10, 10}, {0, 1}, 100, 50, 1, 0}, {0, 20}, {20, 20}},
      {"larger than the bounds", {{120}, {60}, {0.5}, 100, 50, 1, 0}, {-10}, {-5}},
      {"nothing left", {{120, 5}, {60, 5}, {0.5, 0.5}, 100, 50, 2, 0}, {-20, -10}, {-10, 0}},
      {"no reach",
       {{kNaN, 10, kInfinity}, {10, 10, 1}, {0.5, kNaN, 0.5}, 100, 50, 2, 0},
       {-kNaN, -20, -kInfinity},
       {0, 0, 0}},
      {"nowhere", {{1}, {1}, {0.5}, 0, 0, 1, 0}, {-1}, {0}},
      {"a place for a word without extent", {{0, 0}, {0, 0}, {0.5, 0.5}, 0, 0, 1, 0}, {0, 0}, {0, 0}},
  };
  for (auto const& [what, cloud, xs, ys] : cases) {
    ExpectEqual(LayOut(cloud), factory::MakeKeyMap({{L"x", Reals(xs)}, {L"y", Reals(ys)}}), what);
    ExpectPlain(cloud, what);
  }
  // A gap keeps words apart that would have touched.
  auto const gapped = PlainCloud({{20, 80}, {10, 10}, {0, 1}, 100, 50, 1, 0.5}).LayOut();
  EXPECT_NE(gapped.second[1], 20);
}

TEST_F(WordleFunctions, SpecialWordsStaySpecialAndTakeNoRoom) {
  Value const got = Ask(TransformNames::LAYOUT_WORDLE_CELLS,
                        {Reals({9, 20, 20}, {kNull}), Reals({9, 10, 10}, {kMissing, kNone, kMissing}),
                         Reals({0.5, 0.5, 0.5}), R64(100), R64(50), R64(1), R64(0)});
  std::vector<SpecialKind> const kinds = {kNull, kNone, kMissing};
  ExpectEqual(got, factory::MakeKeyMap({{L"x", Reals({0, 40, 0}, kinds)}, {L"y", Reals({0, 20, 0}, kinds)}}));
  ExpectEqual(
      Ask(TransformNames::WORDLE_SCALE, {Reals({9, 20}, {kNull}), Reals({9, 10}, {}), R64(20), R64(100)}),
      R64(1));
}

// Sizes of a kind; the mean area is 1.
std::vector<double> MakeSizes(int kind, std::size_t count, std::mt19937& random) {
  std::lognormal_distribution<double> lognormal(-0.5, 1);
  std::uniform_real_distribution<double> uniform(-0.5, 2.5);
  double const odd[] = {kNaN, kInfinity, -kInfinity, 1e-310, 5e-324, 0, -0.0, -1, 40, -40, 1, 0.5, 2};
  std::vector<double> sizes;
  for (std::size_t i = 0; i < count; ++i) {
    switch (kind) {
      case 0:
        sizes.push_back(1);
        break;
      case 1:
        sizes.push_back(lognormal(random));
        break;
      case 2:
        sizes.push_back(i == 0 ? 0.6 * std::sqrt(static_cast<double>(count)) : 0.6);
        break;
      case 3:
        sizes.push_back(i % 3 == 0 ? 1 : 0);
        break;
      case 4:
        sizes.push_back(uniform(random));
        break;
      default:
        sizes.push_back(odd[random() % std::size(odd)]);
        break;
    }
  }
  return sizes;
}

TEST_F(WordleFunctions, AnyCloudIsThatOfThePlainRule) {
  std::mt19937 random(5);
  auto const pick = [&random](std::initializer_list<double> values) {
    return values.begin()[random() % values.size()];
  };
  for (int round = 0; round < 120; ++round) {
    int const kind = round % 6;
    std::size_t const count = random() % (round % 5 == 0 ? 300 : 60);
    Cloud cloud{.widths = MakeSizes(kind, count, random),
                .heights = MakeSizes(kind, count, random),
                .starts = {},
                .width = pick({200, 120, 77.7, 20}),
                .height = pick({200, 100, 33.3, 20}),
                .scale = pick({1, 2.5, -1}),
                .gap = pick({0, 0, 0, 1.5, -1.5, kInfinity, -kInfinity, kNaN})};
    double const share = pick({0.3, 0.45, 0.8, 3});
    double const unit = std::sqrt(cloud.width * cloud.height * share / static_cast<double>(count + 1));
    for (double& width : cloud.widths) width *= unit;
    for (double& height : cloud.heights) height *= unit;
    double const start = pick({0.5, 0.25, 0, 1, -0.2, 1.3, 7, 7});
    std::uniform_real_distribution<double> uniform(-0.1, 1.1);
    for (std::size_t i = 0; i < count; ++i) cloud.starts.push_back(start == 7 ? uniform(random) : start);
    ExpectPlain(cloud, "round " + std::to_string(round));
    if (HasFatalFailure()) return;
  }
}

TEST_F(WordleFunctions, CloudsOfManyWordsAreThoseOfThePlainRule) {
  std::mt19937 random(6);
  for (double const share : {0.45, 1.2}) {
    for (bool const isCentred : {true, false}) {
      constexpr std::size_t kCount = 400;
      Cloud cloud{.widths = MakeSizes(1, kCount, random),
                  .heights = MakeSizes(1, kCount, random),
                  .starts = std::vector<double>(kCount, 0.5),
                  .width = 500,
                  .height = 500};
      double const unit = std::sqrt(500 * 500 * share / kCount);
      std::uniform_real_distribution<double> uniform(0, 1);
      for (std::size_t i = 0; i < kCount; ++i) {
        cloud.widths[i] *= unit * 1.5;
        cloud.heights[i] *= unit / 1.5;
        if (!isCentred) cloud.starts[i] = uniform(random);
      }
      ExpectPlain(cloud, "share " + std::to_string(share));
    }
  }
}

TEST_F(WordleFunctions, AnyInputEndsSoon) {
  constexpr std::size_t kCount = 5000;
  std::vector<double> const ones(kCount, 1), zeros(kCount, 0), halves(kCount, 0.5);
  std::vector<double> const odd = {kNaN, kInfinity, -kInfinity, 1e-310, -40, 70, 0};
  // Thousands of words without extent; more words than there is room for; no gap is wide enough.
  for (auto const& [sizes, gap] :
       {std::pair{zeros, 0.0}, {zeros, 1.0}, {ones, 40.0}, {ones, kInfinity}, {ones, -kInfinity}}) {
    Value const cloud = LayOut({sizes, sizes, halves, 1000, 1000, 1, gap});
    ExpectEqual(cloud, LayOut({sizes, sizes, halves, 1000, 1000, 1, gap}));
  }
  for (double const width : odd) {
    for (double const height : odd) {
      for (double const gap : odd) {
        ExpectPlain({{1, 3, 2}, {1, 0, 2}, {0.5, 0.5, 0.1}, width, height, 1, gap}, "odd numbers");
      }
    }
  }
  // The second word runs out of candidates long before it is at the end of its reach.
  ExpectPlain({{1, 2, 1e9}, {1, 2, 1}, {0.5, 0.5, 0.5}, 1e5, 1e5, 1, kInfinity}, "far");
}

TEST_F(WordleFunctions, ScaleFillsTheBoundsAsFarAsTheLargestWordsFit) {
  struct {
    std::vector<double> widths, heights;
    double width, height, expected;
  } const cases[] = {
      {{}, {}, 100, 50, 1},
      {{}, {}, 0, 50, 1},
      {{10}, {10}, 100, 100, std::sqrt(60.0)},
      {{1, 1, 1, 1}, {1, 1, 1, 1}, 2, 10, std::sqrt(3.0)},
      {{50}, {1}, 100, 100, 2},
      {{1}, {40}, 100, 100, 2.5},
      {{0, -3, kNaN, kInfinity}, {0, 5, 1, 1}, 100, 100, 20},
      {{0, 0}, {0, -1}, 100, 100, 1},
      {{1e200, 1e200}, {1e200, 1e200}, 1e200, 1e200, std::sqrt(0.3)},
      {{1}, {1}, 0, 100, 0},
      {{1}, {1}, kNaN, 100, 0},
      {{1}, {1}, kInfinity, kInfinity, 1},
  };
  int place = 0;
  for (auto const& [widths, heights, width, height, expected] : cases) {
    Value const got =
        Ask(TransformNames::WORDLE_SCALE, {Reals(widths), Reals(heights), R64(width), R64(height)});
    EXPECT_DOUBLE_EQ(FetchStoreValue<double>(got), expected) << "case " << place;
    ++place;
  }
}

TEST_F(WordleFunctions, WrongInputsAreRefused) {
  Value const one = Reals({1}), two = Reals({1, 2}), real = R64(1);
  std::vector<Value> const layout = {one, one, one, real, real, real, real};
  auto const errorOf = [&](std::size_t place, Value const& input) {
    auto inputs = layout;
    inputs[place] = input;
    return ErrorOf([&] { Ask(TransformNames::LAYOUT_WORDLE_CELLS, inputs); });
  };
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::LAYOUT_WORDLE_CELLS, layout); }), -1);
  for (std::size_t const place : {0, 1, 2}) {
    EXPECT_EQ(errorOf(place, two), 259);
    EXPECT_EQ(errorOf(place, Ints({1})), 55);
    EXPECT_EQ(errorOf(place, nullptr), 55);
  }
  for (std::size_t const place : {3, 4, 5, 6}) {
    EXPECT_EQ(errorOf(place, I32(1)), 55);
    EXPECT_EQ(errorOf(place, Special(StoreTypeInfo::Real64)), 55);
  }
  for (std::size_t const count : {6, 8}) {
    auto inputs = layout;
    inputs.resize(count, real);
    EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::LAYOUT_WORDLE_CELLS, inputs); }), 219);
  }
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::WORDLE_SCALE, {one, one, real}); }), 219);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::WORDLE_SCALE, {one, two, real, real}); }), 259);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::WORDLE_SCALE, {one, one, real, I32(1)}); }), 55);
}

}  // namespace
