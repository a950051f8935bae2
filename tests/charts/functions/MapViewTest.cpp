#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "charts/functions/MapView.h"

namespace ostrel::charts {
namespace {

using Places = std::vector<MapPlace>;

/// The shortest stretch of the circle from one of the places on that holds all of them.
double ShortestStretch(Places const& places) {
  double shortest = 360;
  for (MapPlace const& start : places) {
    double length = 0;
    for (MapPlace const& place : places) {
      double const ahead = place.longitude - start.longitude;
      length = std::max(length, ahead - std::floor(ahead / 360) * 360);
    }
    shortest = std::min(shortest, length);
  }
  return shortest;
}

/// What is shown is trimmed to the limit around its middle.
MapView Fit(MapBounds const& bounds, MapFrame const& frame) {
  MapZoom const zoom = FindMapZoom(bounds, frame);
  double const middle = (zoom.longitudes.low + zoom.longitudes.high) / 2;
  double const shown = std::min(zoom.longitudes.high - zoom.longitudes.low, zoom.limit);
  return PlaceMap({middle - shown / 2, middle + shown / 2}, bounds.latitudes, frame);
}

TEST(MapView, BoundsAreShortestAcrossTheDateLineToo) {
  struct {
    int projection;
    Places places;
    DegreeRange longitudes, latitudes;
  } const cases[] = {
      {1, {{170, -5}, {-170, 5}}, {170, 190}, {-5, 5}},
      {1, {{-10, 40}, {10, 50}}, {-10, 10}, {40, 50}},
      {0, {{530, 88}, {-170, 5}}, {170, 190}, {5, 85.05112878}},
      {1, {{7, 8}}, {7, 7}, {8, 8}},
      {1, {}, {-180, 180}, {-90, 90}},
      {0, {}, {-180, 180}, {-85.05112878, 85.05112878}},
  };
  for (auto const& c : cases) {
    MapBounds const bounds = FindMapBounds(c.places, c.projection);
    EXPECT_EQ(bounds.longitudes.low, c.longitudes.low);
    EXPECT_EQ(bounds.longitudes.high, c.longitudes.high);
    EXPECT_EQ(bounds.latitudes.low, c.latitudes.low);
    EXPECT_EQ(bounds.latitudes.high, c.latitudes.high);
  }
}

TEST(MapView, BoundsOfPartsLeaveOutTheirLargestGap) {
  struct {
    std::vector<DegreeRange> parts;
    DegreeRange longitudes;
  } const cases[] = {
      {{{-180, 180}}, {-180, 180}},
      {{{-180, 0}, {0, 180}}, {-180, 180}},
      {{{10, 20}, {40, 30}}, {40, 390}},
      {{{10, 20}, {30, 40}}, {10, 40}},
      {{{170, -170}, {-175, -165}}, {170, 195}},
      {{{350, 370}}, {-10, 10}},
      {{{0, -10}, {100, 80}}, {0, 360}},
  };
  for (auto const& c : cases) {
    std::vector<MapSpan> spans;
    for (DegreeRange const& part : c.parts) spans.push_back({{part.low, 5}, {part.high, -95}});
    MapBounds const bounds = FindMapBounds(spans, 1);
    EXPECT_EQ(bounds.longitudes.low, c.longitudes.low) << c.parts[0].low;
    EXPECT_EQ(bounds.longitudes.high, c.longitudes.high) << c.parts[0].low;
    EXPECT_EQ(bounds.latitudes.low, -90);
    EXPECT_EQ(bounds.latitudes.high, 5);
  }
}

TEST(MapView, HoldsRandomPlacesInLevelsOfAQuarter) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> longitude(-180, 180);
  std::uniform_real_distribution<double> latitude(-80, 80);
  std::uniform_real_distribution<double> spread(0, 1);
  for (int round = 0; round < 2'000; ++round) {
    double const wide = std::pow(spread(random), 3);
    double const east = longitude(random);
    MapFrame const frame{round % 2, std::round(50 + 900 * spread(random)),
                         std::round(50 + 900 * spread(random))};
    Places places;
    for (int i = round % 9; i >= 0; --i)
      places.push_back({east + wide * longitude(random), latitude(random) * wide});
    MapBounds const bounds = FindMapBounds(places, frame.projection);
    EXPECT_NEAR(bounds.longitudes.high - bounds.longitudes.low, ShortestStretch(places), 1e-9);
    MapZoom const zoom = FindMapZoom(bounds, frame);
    MapView const view = Fit(bounds, frame);
    SCOPED_TRACE(round);
    double const level = std::log2(frame.width / (zoom.longitudes.high - zoom.longitudes.low) * 360) * 4;
    EXPECT_NEAR(level, std::round(level), 1e-6);
    double lowest = 1;
    double highest = -1;
    for (MapPlace const& place : places) {
      MapPoint const point = ProjectDegrees(frame.projection, place.longitude, place.latitude);
      lowest = std::min(lowest, point.y);
      highest = std::max(highest, point.y);
      double const ways = point.x - view.west;
      EXPECT_LE((ways - std::floor(ways + 1e-9)) * view.world, frame.width + 1e-6);
      double const y = (view.north - point.y) * view.world;
      EXPECT_GE(y, -1e-6);
      EXPECT_LE(y, frame.height + 1e-6);
    }
    // Two steps of zoom further not all of the places would be seen, or the highest level is reached.
    bool const isTight = ShortestStretch(places) / 360 * view.world * std::exp2(0.5) * 1.02 > frame.width ||
                         (highest - lowest) * view.world * std::exp2(0.5) * 1.02 > frame.height;
    bool const isPoint = std::min(frame.width, frame.height) / view.world <= 1.0 / 2048;
    EXPECT_TRUE(isTight || isPoint || view.right - view.left == 360);
    // One world is enough but where the latitudes need more.
    bool const isHigh = (highest - lowest) * frame.width / frame.height > 1;
    EXPECT_TRUE(isHigh || view.right - view.left <= 360 + 1e-9);
  }
}

TEST(MapView, StaysInTheProjectionsSquare) {
  auto const fit = [](Places const& places, MapFrame const& frame) {
    return Fit(FindMapBounds(places, frame.projection), frame);
  };
  MapView const north = fit({{0, 84.9}, {0, 20}}, {0, 300, 200});
  EXPECT_NEAR(north.shift, 0, 1e-6);
  // A pane higher than the world is wide shows the whole of it in the middle.
  MapView const tall = fit({{-170, 0}, {0, 60}, {100, -60}}, {0, 100, 900});
  EXPECT_LT(tall.worldHeight, 900);
  EXPECT_NEAR(tall.shift, (tall.worldHeight - 900) / 2, 1e-6);
}

}  // namespace
}  // namespace ostrel::charts
