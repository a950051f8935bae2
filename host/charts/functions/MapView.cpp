#include "charts/functions/MapView.h"

#include <algorithm>
#include <cmath>

#include "maps/MapUtil.h"

namespace ostrel::charts {
namespace {

// Of the points' extents; what lies at an edge has room for its mark.
constexpr double kMargin = 1.1;
// About ten kilometres, for points that are nearly one.
constexpr double kLeastExtent = 1.0 / 4096;
constexpr double kLatitudeLimit = 85.05112878;
constexpr int kStepsPerLevel = 4;
constexpr double kHighestLevel = 24;
constexpr double kMostWorlds = 32;
// A level may show this little less than was asked for.
constexpr double kLevelTolerance = 1.02;

struct Stretch {
  double start = -0.5;
  double length = 1;
};

// The shortest stretch of a circle of length 1 that holds all values: what its largest gap leaves.
Stretch FindStretch(std::vector<double> values) {
  if (values.empty()) return {};
  std::ranges::sort(values);
  double gap = values.front() + 1 - values.back();
  Stretch stretch{values.front(), 1 - gap};
  for (std::size_t i = 1; i < values.size(); ++i) {
    if (values[i] - values[i - 1] <= gap) continue;
    gap = values[i] - values[i - 1];
    stretch = {values[i], 1 - gap};
  }
  return stretch;
}

// Pixels of the world at which the extents fill a pane as far as its shape allows.
double FitScale(double xExtent, double yExtent, MapFrame const& frame) {
  int const width = std::max(1, static_cast<int>(std::lround(frame.width)));
  int const height = std::max(1, static_cast<int>(std::lround(frame.height)));
  xExtent = std::max(xExtent, yExtent * width / height);
  yExtent = xExtent * height / width;
  double const scale = MapUtil::ComputeScale(xExtent, yExtent, width, height);
  double const level =
      MapUtil::ComputeScaleLevel(scale, 1.0, kStepsPerLevel, 1, kHighestLevel, false, 1.0).scale;
  return std::max(level, frame.width / kMostWorlds);
}

}  // namespace

MapPoint ProjectDegrees(int projection, double longitude, double latitude) {
  if (projection != 0) {
    IdentitySpatialProjectorHelper const identity;
    return {identity.GetX(longitude) / 360, identity.GetY(latitude) / 360};
  }
  static double const world = MercatorProjections::GetX(180) - MercatorProjections::GetX(-180);
  return {MercatorProjections::GetX(longitude) / world, MercatorProjections::GetY(latitude, 0) / world};
}

MapView FitMap(std::vector<MapPoint> const& points, MapFrame const& frame) {
  MapView view;
  view.top = frame.projection == 0 ? kLatitudeLimit : 90;
  view.bottom = -view.top;
  double const limit = ProjectDegrees(frame.projection, 0, view.top).y;

  std::vector<double> xs;
  double low = points.empty() ? -limit : limit;
  double high = -low;
  for (MapPoint const& point : points) {
    xs.push_back(point.x);
    low = std::min(low, point.y);
    high = std::max(high, point.y);
  }
  Stretch const stretch = FindStretch(std::move(xs));
  double const xExtent = std::clamp(stretch.length * kMargin, kLeastExtent, kLevelTolerance);
  double const yExtent = std::clamp((high - low) * kMargin, kLeastExtent, 2 * limit * kLevelTolerance);
  view.world = FitScale(xExtent, yExtent, frame);

  double const shownWidth = frame.width / view.world;
  double const shownHeight = frame.height / view.world;
  double const reach = std::max(0.0, limit - shownHeight / 2);
  view.west = stretch.start + stretch.length / 2 - shownWidth / 2;
  view.north = std::clamp((low + high) / 2, -reach, reach) + shownHeight / 2;
  view.left = view.west * 360;
  view.right = (view.west + shownWidth) * 360;
  view.worldHeight = 2 * limit * view.world;
  view.shift = (limit - view.north) * view.world;
  return view;
}

}  // namespace ostrel::charts
