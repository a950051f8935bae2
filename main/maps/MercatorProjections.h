#pragma once

#include "ostreltransforms/Export.h"

// The Mercator projection of degrees to metres, on a sphere of the earth's equatorial radius; latitudes may
// be those of an ellipsoid with an eccentricity (0 is the sphere). Source: J. P. Snyder, "Map Projections: A
// Working Manual", U.S. Geological Survey Professional Paper 1395 (1987), sections 7 and 3.
namespace MercatorProjections {

// Metres east of the prime meridian. Longitudes are first wrapped into -180 to 180; both ends stay.
OSTREL_API double GetX(double longitude);
// Metres north of the equator. Latitudes beyond 85.05112878 degrees, where the sphere's map is a square,
// count as that limit. Odd, and exactly 0 at 0.
OSTREL_API double GetY(double latitude, double eccentricity);
// Degrees, wrapped into -180 to 180.
OSTREL_API double GetInverseOfX(double x);
// Degrees; latitudes beyond the limit come back as they are.
OSTREL_API double GetInverseOfY(double y, double eccentricity);

}  // namespace MercatorProjections
