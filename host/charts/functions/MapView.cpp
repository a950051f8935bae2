#include "charts/functions/MapView.h"

#include <algorithm>
#include <cmath>

#include "maps/MapUtil.h"

namespace ostrel::charts {
namespace {

// About ten kilometres, for points that are nearly one.
constexpr double kLeastExtent = 1.0 / 4096;
constexpr double kLatitudeLimit = 85.05112878;
constexpr int kStepsPerLevel = 4;
constexpr double kHighestLevel = 24;
constexpr double kMostWorlds = 32;
// A level may show this little less than was asked for.
constexpr double kLevelTolerance = 1.0102;
constexpr double kTurn = 360;

double TopLatitude(int projection) { return projection == 0 ? kLatitudeLimit : 90; }

double ProjectLatitude(int projection, double latitude) { return ProjectDegrees(projection, 0, latitude).y; }

// What the largest gap of a circle leaves.
DegreeRange FindStretch(std::vector<double> longitudes) {
  if (longitudes.empty()) return {-kTurn / 2, kTurn / 2};
  std::ranges::sort(longitudes);
  double gap = longitudes.front() + kTurn - longitudes.back();
  DegreeRange stretch{longitudes.front(), longitudes.back()};
  for (std::size_t i = 1; i < longitudes.size(); ++i) {
    if (longitudes[i] - longitudes[i - 1] <= gap) continue;
    gap = longitudes[i] - longitudes[i - 1];
    stretch = {longitudes[i], longitudes[i - 1] + kTurn};
  }
  return stretch;
}

}  // namespace

MapPoint ProjectDegrees(int projection, double longitude, double latitude) {
  if (projection != 0) {
    IdentitySpatialProjectorHelper const identity;
    return {identity.GetX(longitude) / kTurn, identity.GetY(latitude) / kTurn};
  }
  static double const world = MercatorProjections::GetX(180) - MercatorProjections::GetX(-180);
  return {MercatorProjections::GetX(longitude) / world, MercatorProjections::GetY(latitude, 0) / world};
}

MapBounds FindMapBounds(std::vector<MapPlace> const& places, int projection) {
  IdentitySpatialProjectorHelper const wrap;
  double const top = TopLatitude(projection);
  std::vector<double> longitudes;
  DegreeRange latitudes = places.empty() ? DegreeRange{-top, top} : DegreeRange{top, -top};
  for (MapPlace const& place : places) {
    longitudes.push_back(wrap.GetX(place.longitude));
    double const latitude = std::clamp(place.latitude, -top, top);
    latitudes = {std::min(latitudes.low, latitude), std::max(latitudes.high, latitude)};
  }
  return {FindStretch(std::move(longitudes)), latitudes};
}

MapZoom FindMapZoom(MapBounds const& bounds, MapFrame const& frame) {
  auto const [low, high] = bounds.latitudes;
  int const width = std::max(1, static_cast<int>(std::lround(frame.width)));
  int const height = std::max(1, static_cast<int>(std::lround(frame.height)));
  double const share = static_cast<double>(width) / height;
  double const lengthwise = (bounds.longitudes.high - bounds.longitudes.low) / kTurn;
  double const upright = ProjectLatitude(frame.projection, high) - ProjectLatitude(frame.projection, low);
  double const xExtent = std::max({lengthwise, upright * share, kLeastExtent}) * kLevelTolerance;
  double const scale = MapUtil::ComputeScale(xExtent, xExtent / share, width, height);
  double const level =
      MapUtil::ComputeScaleLevel(scale, 1.0, kStepsPerLevel, 1, kHighestLevel, false, 1.0).scale;
  double const shown = std::min(frame.width / level, kMostWorlds) * kTurn;
  double const middle = (bounds.longitudes.low + bounds.longitudes.high) / 2;
  double const needed = std::min(upright * share, kMostWorlds) * kTurn;
  return {{middle - shown / 2, middle + shown / 2}, std::max(kTurn, needed)};
}

MapView PlaceMap(DegreeRange const& longitudes, DegreeRange const& latitudes, MapFrame const& frame) {
  MapView view;
  view.left = longitudes.low;
  view.right = longitudes.high;
  view.west = view.left / kTurn;
  view.world = frame.width / (view.right - view.left) * kTurn;
  view.top = TopLatitude(frame.projection);
  view.bottom = -view.top;
  double const limit = ProjectLatitude(frame.projection, view.top);
  double const middle =
      (ProjectLatitude(frame.projection, latitudes.low) + ProjectLatitude(frame.projection, latitudes.high)) /
      2;
  double const shownHeight = frame.height / view.world;
  double const reach = std::max(0.0, limit - shownHeight / 2);
  view.north = std::clamp(middle, -reach, reach) + shownHeight / 2;
  view.worldHeight = 2 * limit * view.world;
  view.shift = (limit - view.north) * view.world;
  return view;
}

}  // namespace ostrel::charts
