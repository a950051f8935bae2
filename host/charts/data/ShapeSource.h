#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "charts/data/DataPath.h"
#include "charts/data/DataTable.h"

namespace ostrel::charts {

/// Columns of a table of outlines, one row a point: degrees, and the number of the ring and of the polygon
/// that the point is of. A polygon's first ring is its outer one, further ones are holes.
inline constexpr char const* kShapeLongitude = "longitude";
inline constexpr char const* kShapeLatitude = "latitude";
inline constexpr char const* kShapeRing = "ring";
inline constexpr char const* kShapePolygon = "polygon";

/// Reads the `data` object of outlines: GeoJSON (RFC 7946), the features that `format.property` leads to or
/// the whole document, or with the format {"type": "topojson", "feature": NAME} an object of a topology (M.
/// Bostock and C. Metcalf, "The TopoJSON Format Specification", 2013). Beside the columns above the table has
/// a feature's "id" and its properties "properties.NAME" where they are scalars. Throws DataError for what is
/// malformed and for other geometries than polygons.
DataTable LoadShapes(nlohmann::json const& data, std::string const& jsonPath, DataRoots const& roots);

}  // namespace ostrel::charts
