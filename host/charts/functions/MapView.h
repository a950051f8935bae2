#pragma once

#include <vector>

namespace ostrel::charts {

/// Degrees.
struct MapPlace {
  double longitude = 0;
  double latitude = 0;
};

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

/// A range of degrees; one of longitudes may go on beyond 180.
struct DegreeRange {
  double low = 0;
  double high = 0;
};

/// A part of a map from a western to an eastern edge, at most one way around it on, and between two
/// latitudes in either order; an eastern edge on the western one's longitude is one way around on.
struct MapSpan {
  MapPlace west;
  MapPlace east;
};

/// A part of a map in worlds, y downwards.
struct MapEdges {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

struct MapBounds {
  DegreeRange longitudes;
  DegreeRange latitudes;
};

/// The longitudes that a pane would show of a map, and the most that it may show.
struct MapZoom {
  DegreeRange longitudes;
  double limit = 360;
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

/// The shortest stretch of longitudes that holds all places, across the date line where that is shorter, and
/// their latitudes as far as the projection reaches. Without places the whole map.
MapBounds FindMapBounds(std::vector<MapPlace> const& places, int projection);
/// The same of parts of a map.
MapBounds FindMapBounds(std::vector<MapSpan> const& spans, int projection);

/// A part's edges in a copy of the world: so many whole worlds east of that of the prime meridian. Parts that
/// meet have the same number for their common edge.
MapEdges ProjectSpan(int projection, MapSpan const& span, double copy);

/// How much of a map a pane shows in one of four zoom levels to each doubling, so that it holds the bounds as
/// far as its shape allows. One world is enough unless the latitudes need a smaller scale.
MapZoom FindMapZoom(MapBounds const& bounds, MapFrame const& frame);

/// A pane over the longitudes, with the middle of the latitudes in its own as far as the map does not end
/// before.
MapView PlaceMap(DegreeRange const& longitudes, DegreeRange const& latitudes, MapFrame const& frame);

}  // namespace ostrel::charts
