#pragma once

#include <span>
#include <vector>

namespace ostrel::charts {

/// A point of a map in worlds: 1 is the way around it, 0,0 the meridian's crossing with the equator; y
/// upwards.
struct MapPoint {
  double x = 0;
  double y = 0;
};

/// What is projected, and into which pane: 0 is Mercator, 1 takes degrees as they are; pixels.
struct MapFrame {
  int projection = 0;
  double width = 0;
  double height = 0;
};

/// Which part of a map is shown.
struct MapView {
  double world = 0;  ///< pixels of the way around it
  double west = 0;   ///< worlds, at the pane's left edge
  double north = 0;  ///< worlds, at the pane's upper edge
  double left = 0;   ///< degrees at the pane's left and right edge, any whole turns away
  double right = 0;
  double bottom = 0;  ///< degrees at the projection's own lower and upper edge
  double top = 0;
  double worldHeight = 0;  ///< pixels between these two
  double shift = 0;        ///< pixels from the projection's upper edge down to the pane's
};

MapPoint ProjectDegrees(int projection, double longitude, double latitude);

/// The view that holds all points with a margin: over the shortest stretch of longitudes, across the date
/// line where that is shorter, in one of four zoom levels to each doubling. The whole map without points.
MapView FitMap(std::vector<MapPoint> const& points, MapFrame const& frame);

}  // namespace ostrel::charts
