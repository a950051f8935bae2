#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "charts/functions/MapView.h"

namespace ostrel::charts {
namespace {

std::vector<MapPoint> ProjectAll(int projection, std::vector<std::pair<double, double>> const& degrees) {
  std::vector<MapPoint> points;
  for (auto const& [longitude, latitude] : degrees)
    points.push_back(ProjectDegrees(projection, longitude, latitude));
  return points;
}

/// The shortest stretch of the circle from one of the points on that holds all of them.
double ShortestStretch(std::vector<MapPoint> const& points) {
  double shortest = 1;
  for (MapPoint const& start : points) {
    double length = 0;
    for (MapPoint const& point : points) {
      double const ahead = point.x - start.x;
      length = std::max(length, ahead - std::floor(ahead));
    }
    shortest = std::min(shortest, length);
  }
  return shortest;
}

TEST(MapView, ShowsAllPointsAcrossTheDateLineToo) {
  struct {
    int projection;
    std::vector<std::pair<double, double>> degrees;
    double left, right, north;  // degrees, and worlds
  } const cases[] = {
      // 20 degrees of longitude and 10 of latitude, with a margin.
      {1, {{170, -5}, {-170, 5}}, 168.110, 191.890, 0.01652},
      {1, {{-10, 40}, {10, 50}}, -11.892, 11.892, 0.14152},
      {0, {{170, -5}, {-170, 5}}, 168.110, 191.890, 0.01652},
      // Without points the whole world; its copies fill the pane.
      {1, {}, -198.9, 198.9, 0.2762},
  };
  for (auto const& c : cases) {
    MapView const view = FitMap(ProjectAll(c.projection, c.degrees), {c.projection, 200, 100});
    EXPECT_NEAR(view.left, c.left, 5) << c.left;
    EXPECT_NEAR(view.right, c.right, 5) << c.right;
    EXPECT_NEAR(view.north, c.north, 0.01) << c.left;
  }
}

TEST(MapView, HoldsRandomPointsInLevelsOfAQuarter) {
  std::mt19937 random(7);
  for (int round = 0; round < 2'000; ++round) {
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::uniform_real_distribution<double> latitude(-80, 80);
    std::uniform_real_distribution<double> spread(0, 1);
    double const wide = std::pow(spread(random), 3);
    double const east = longitude(random);
    MapFrame const frame{round % 2, 50 + 900 * spread(random), 50 + 900 * spread(random)};
    std::vector<MapPoint> points;
    for (int i = round % 9; i >= 0; --i)
      points.push_back(
          ProjectDegrees(frame.projection, east + wide * longitude(random), latitude(random) * wide));
    MapView const view = FitMap(points, frame);
    SCOPED_TRACE(round);
    double const level = std::log2(view.world) * 4;
    EXPECT_NEAR(level, std::round(level), 1e-9);
    for (MapPoint const& point : points) {
      double const ways = point.x - view.west;
      EXPECT_LE((ways - std::floor(ways)) * view.world, frame.width + 1e-6);
      double const y = (view.north - point.y) * view.world;
      EXPECT_GE(y, -1e-6);
      EXPECT_LE(y, frame.height + 1e-6);
    }
    // Two steps of zoom further not all of the points would be seen, or the highest level is reached.
    auto const [low, high] = std::ranges::minmax(points, {}, &MapPoint::y);
    bool const isTight = ShortestStretch(points) * 1.1 * view.world * std::exp2(0.5) > frame.width ||
                         (high.y - low.y) * 1.1 * view.world * std::exp2(0.5) > frame.height;
    bool const isPoint = std::min(frame.width, frame.height) / view.world <= 1.0 / 2048;
    EXPECT_TRUE(isTight || isPoint);
  }
}

TEST(MapView, StaysInTheProjectionsSquare) {
  MapView const north = FitMap(ProjectAll(0, {{0, 84.9}, {0, 20}}), {0, 300, 200});
  EXPECT_NEAR(north.shift, 0, 1e-6);
  // A pane higher than the world is wide shows the whole of it in the middle.
  MapView const tall = FitMap(ProjectAll(0, {{-170, 0}, {0, 60}, {100, -60}}), {0, 100, 900});
  EXPECT_LT(tall.worldHeight, 900);
  EXPECT_NEAR(tall.shift, (tall.worldHeight - 900) / 2, 1e-6);
}

}  // namespace
}  // namespace ostrel::charts
