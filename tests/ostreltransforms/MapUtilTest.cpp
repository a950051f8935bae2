#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "maps/MapUtil.h"
#include "ostrelsys/OLogicException.h"
#include "ostrelsys/OMath.h"

namespace {

using namespace MercatorProjections;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kHalfWorld = 20037508.342789244;  // metres
constexpr double kEarthEccentricity = 0.0818191908426215;

TEST(MercatorProjections, WrapLongitudes) {
  struct {
    double longitude, wrapped;
  } const cases[] = {{0, 0},     {180, 180}, {-180, -180}, {190, -170}, {-190, 170},
                     {360, 0},   {540, 180}, {-540, -180}, {539, 179},  {725, 5},
                     {-725, -5}, {1e9, -80}, {359.5, -0.5}};
  for (auto const& [longitude, wrapped] : cases) {
    EXPECT_EQ(GetX(longitude), GetX(wrapped)) << longitude;
    EXPECT_EQ(IdentitySpatialProjectorHelper().GetX(longitude), wrapped) << longitude;
    // Rounding may carry the inverse of one end of the map to the other end.
    double const turn = std::remainder(GetInverseOfX(longitude * kHalfWorld / 180) - wrapped, 360.0);
    EXPECT_NEAR(turn, 0, std::fabs(longitude) * 1e-14 + 1e-13) << longitude;
  }
  EXPECT_EQ(GetX(180), kHalfWorld);
  EXPECT_TRUE(std::isnan(GetX(kInfinity)));
  EXPECT_TRUE(std::isnan(GetX(kNaN)));
}

TEST(MercatorProjections, LatitudesAreOddClampedAndZeroAtZero) {
  for (double const e : {0.0, kEarthEccentricity}) {
    EXPECT_EQ(GetY(0, e), 0);
    EXPECT_EQ(GetY(90, e), GetY(85.05112878, e));
    EXPECT_EQ(GetY(-1e300, e), GetY(-85.05112878, e));
    EXPECT_EQ(GetY(-kInfinity, e), -GetY(kInfinity, e));
    EXPECT_TRUE(std::isnan(GetY(kNaN, e)));
    double previous = GetY(-86, e);
    for (double latitude = -85; latitude <= 85; latitude += 0.0625) {
      double const y = GetY(latitude, e);
      EXPECT_GT(y, previous) << latitude;
      EXPECT_EQ(y, -GetY(-latitude, e)) << latitude;
      previous = y;
    }
  }
  EXPECT_NEAR(GetY(90, 0), 20037508.34, 0.005);
  EXPECT_NEAR(GetY(45, 0), 5621521.486192066, 1e-7);
  // J. P. Snyder's numerical example for the ellipsoid, with its axis (Clarke 1866).
  EXPECT_NEAR(GetY(35, 0.0822719) * 6378206.4 / MapProjectorHelper::sEarthRadius, 4139145.6, 0.5);
}

TEST(MercatorProjections, AgreeWithTheirFormulaInLongerPrecision) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> latitudes(-85.05, 85.05);
  for (int i = 0; i < 20000; ++i) {
    double const latitude = latitudes(random);
    for (double const e : {0.0, kEarthEccentricity}) {
      long double const phi = latitude * 3.14159265358979323846264338328L / 180;
      long double const s = e * std::sin(phi);
      long double const y = std::log(std::tan(3.14159265358979323846264338328L / 4 + phi / 2) *
                                     std::pow((1 - s) / (1 + s), e / 2.0L));
      ASSERT_NEAR(GetY(latitude, e), static_cast<double>(y * 6378137.0L), 5e-8) << latitude << " " << e;
    }
  }
}

TEST(MercatorProjections, InverseTakesLatitudesBack) {
  for (double latitude = -85; latitude <= 85; latitude += 0.5) {
    EXPECT_NEAR(GetInverseOfY(GetY(latitude, 0), 0), latitude, 1e-12);
    EXPECT_NEAR(GetInverseOfY(GetY(latitude, kEarthEccentricity), kEarthEccentricity), latitude, 1e-9);
  }
  EXPECT_EQ(GetInverseOfY(kInfinity, 0), 90);
}

TEST(MapProjectors, ComeByKind) {
  auto const mercator = MapUtil::MakeProjector(0, 0.5);
  auto const* const typed = dynamic_cast<MercatorMapProjectorHelper const*>(mercator.get());
  ASSERT_NE(typed, nullptr);
  MercatorMapProjectorHelper copy(0.0);
  copy = *typed;
  EXPECT_EQ(copy.GetEccentricity(), 0.5);
  MapProjectorHelper& base = copy;
  base = MercatorMapProjectorHelper(0.25);
  EXPECT_EQ(copy.GetEccentricity(), 0.5);
  EXPECT_EQ(mercator->GetCoordinate(true, 10), GetX(10));
  EXPECT_EQ(mercator->GetCoordinate(false, 10), GetY(10, 0.5));
  EXPECT_EQ(mercator->GetInverseOf(true, 1e6), GetInverseOfX(1e6));
  EXPECT_EQ(mercator->GetInverseOf(false, 1e6), GetInverseOfY(1e6, 0.5));

  auto const identity = MapUtil::MakeProjector(1, 0.5);
  EXPECT_EQ(identity->GetCoordinate(true, 190), -170);
  EXPECT_EQ(identity->GetCoordinate(false, 190), 190);
  EXPECT_EQ(identity->GetInverseOf(true, 190), 190);
  EXPECT_EQ(identity->GetInverseOf(false, -500), -500);

  for (int const kind : {-1, 2}) {
    try {
      MapUtil::MakeProjector(kind, 0);
      ADD_FAILURE() << kind;
    } catch (OLogicException const& error) {
      EXPECT_EQ(error.GetSource(), "maps/MapUtil");
      EXPECT_EQ(error.GetLine(), 369);
      EXPECT_EQ(error.GetExpression(), "false");
    }
  }
}

TEST(MapUtil, ComputeScaleRefusesOneSideOnly) {
  struct {
    double a, b;
    int width, height;
    double expected;
  } const cases[] = {
      {10, 10, 100, 100, 10},     {10, 10, 103, 100, kNaN}, {10, 10, 101, 100, 10.1},
      {10, 10, 100, 103, 10},     {10, 10, 100, 900, 10},   {10, 10, 102, 100, kNaN},
      {0, 10, 100, 100, 0},       {10, -0.0, 100, 100, 0},  {10, 10, 0, 100, 0},
      {10, 10, 100, 0, 0},        {-10, 10, 100, 100, -10}, {-10, 10, 103, 100, kNaN},
      {kNaN, 10, 100, 100, kNaN},
  };
  for (auto const& [a, b, width, height, expected] : cases) {
    double const scale = MapUtil::ComputeScale(a, b, width, height);
    EXPECT_TRUE(scale == expected || (std::isnan(scale) && std::isnan(expected)))
        << a << " " << b << " " << width << " " << height << ": " << scale;
  }
}

double Log2(double x) { return std::log(x) / std::log(2.0); }

TEST(MapUtil, ComputeScaleLevelTakesTheStepBelowOrJustAbove) {
  double const base = 0.25;
  struct {
    double scale;
    int steps;
    double maximum;
    bool snap;
    double ratio;
    MapScaleLevel expected;
  } const cases[] = {
      {base, 4, 20, false, 0.5, {0, 256, base, false}},
      {base, 4, 20, true, 0.5, {0, 256, base, false}},
      // Between levels 2 and 3: the ratio decides.
      {base * 5, 1, 20, false, 1.0, {2, 256, base * 4, false}},
      {base * 5, 1, 20, false, 0.625, {3, 256, base * 8, false}},
      {base * 5, 1, 20, false, 0.626, {2, 256, base * 4, false}},
      {base * 7.95, 1, 20, false, 5.0, {3, 256, base * 8, false}},
      {base * 7.9, 1, 20, false, 5.0, {2, 256, base * 4, false}},
      {base * 3, 2, 20, false, 1.0, {1.5, 256, std::exp2(1.5) * base, false}},
      {base * 3, 2, 20, true, 1.0, {1, 362, std::exp2(1 + Log2(362.0 / 256)) * base, false}},
      {base * 300, 1, 4, false, 0.5, {4, 256, base * 16, true}},
      {base * 16, 1, 4, true, 0.5, {4, 256, base * 16, true}},
      {base / 5, 1, 20, false, 0.1, {0, 256, base, false}},
      {base / 5, 1, -3, false, 0.1, {0, 256, base, true}},
      {base * 5, 1, 2.5, true, 0.1, {2, 362, std::exp2(2 + Log2(362.0 / 256)) * base, true}},
  };
  std::size_t place = 0;
  for (auto const& [scale, steps, maximum, snap, ratio, expected] : cases) {
    auto const got = MapUtil::ComputeScaleLevel(scale, base, steps, 256, maximum, snap, ratio);
    EXPECT_EQ(got.level, expected.level) << "case " << place;
    EXPECT_EQ(got.size, expected.size) << "case " << place;
    EXPECT_EQ(got.scale, expected.scale) << "case " << place;
    EXPECT_EQ(got.clamped, expected.clamped) << "case " << place++;
  }
  EXPECT_EQ(MapScaleLevel(), (MapScaleLevel{-1.0, -1, -1.0, false}));
}

TEST(MapUtil, ComputeScaleLevelSurvivesWhatHasNoLogarithm) {
  auto const level = [](double scale, double base, int steps, int size, bool snap) {
    return MapUtil::ComputeScaleLevel(scale, base, steps, size, 20, snap, 0.5);
  };
  EXPECT_TRUE(std::isnan(level(-1, 1, 1, 256, true).level));
  EXPECT_EQ(level(0, 1, 1, 256, false).level, 0);
  EXPECT_TRUE(level(1, 0, 1, 256, false).clamped);
  EXPECT_TRUE(std::isnan(level(1, 1, 0, 256, true).scale));
  EXPECT_EQ(level(3, 1, 2, std::numeric_limits<int>::max(), true).size, std::numeric_limits<int>::max());
  EXPECT_EQ(level(3, 1, 2, 0, true).size, 0);
}

}  // namespace
