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

// What the largest gap of a circle leaves. The stretches begin within the circle.
DegreeRange FindStretch(std::vector<DegreeRange> stretches) {
  if (stretches.empty()) return {-kTurn / 2, kTurn / 2};
  std::ranges::sort(stretches, {}, &DegreeRange::low);
  double end = stretches.front().low;
  // What goes on beyond the circle's end covers its beginning.
  for (DegreeRange const& stretch : stretches) end = std::max(end, stretch.high - kTurn);
  double const first = stretches.front().low;
  double gap = 0;
  DegreeRange found{first, first + kTurn};
  for (DegreeRange const& stretch : stretches) {
    if (&stretch != &stretches.front() && stretch.low - end > gap) {
      gap = stretch.low - end;
      found = {stretch.low, end + kTurn};
    }
    end = std::max(end, stretch.high);
  }
  return first + kTurn - end >= gap ? DegreeRange{first, end} : found;
}

// The latitudes of places as far as the projection reaches, or all.
class Latitudes {
 public:
  explicit Latitudes(int projection) : top_(TopLatitude(projection)) {}

  void Add(MapPlace const& place) {
    double const latitude = std::clamp(place.latitude, -top_, top_);
    range_ = {std::min(range_.low, latitude), std::max(range_.high, latitude)};
  }
  DegreeRange Get() const { return range_.low <= range_.high ? range_ : DegreeRange{-top_, top_}; }

 private:
  double top_;
  DegreeRange range_{top_, -top_};
};

double Wrap(double longitude) { return IdentitySpatialProjectorHelper().GetX(longitude); }

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
  std::vector<DegreeRange> stretches;
  Latitudes latitudes(projection);
  for (MapPlace const& place : places) {
    double const longitude = Wrap(place.longitude);
    stretches.push_back({longitude, longitude});
    latitudes.Add(place);
  }
  return {FindStretch(std::move(stretches)), latitudes.Get()};
}

MapBounds FindMapBounds(std::vector<MapSpan> const& spans, int projection) {
  std::vector<DegreeRange> stretches;
  Latitudes latitudes(projection);
  for (MapSpan const& span : spans) {
    double const west = Wrap(span.west.longitude);
    double const east = Wrap(span.east.longitude);
    stretches.push_back({west, east > west ? east : east + kTurn});
    latitudes.Add(span.west);
    latitudes.Add(span.east);
  }
  return {FindStretch(std::move(stretches)), latitudes.Get()};
}

MapEdges ProjectSpan(int projection, MapSpan const& span, double copy) {
  MapPoint const west = ProjectDegrees(projection, span.west.longitude, span.west.latitude);
  MapPoint const east = ProjectDegrees(projection, span.east.longitude, span.east.latitude);
  double const copyOfEast = east.x > west.x ? copy : copy + 1;
  return {west.x + copy, -std::max(west.y, east.y), east.x + copyOfEast, -std::min(west.y, east.y)};
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
