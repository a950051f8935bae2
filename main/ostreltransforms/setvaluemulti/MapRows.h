#pragma once

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/MappedImages.h"
#include "ostreltransforms/setvaluemulti/WrappedMaps.h"

// The family's rows about maps.
namespace OstrelTransforms {

inline constexpr Row kWrapMaps = Multinary<WrapMaps>(
    {.name = TransformNames::WRAP_MAPS,
     .inputs = {{"longitudes", ArrayOf(StoreType::Real64)},
                {"latitudes", ArrayOf(StoreType::Real64)},
                "left",
                "right",
                "bottom",
                "top",
                "projection",
                "eccentricity",
                "width",
                "height",
                "reach"},
     .output = StoreType::KeyMap,
     .help =
         "Where marks stand on a map that shows any stretch of longitudes: once in every copy of the world "
         "that shows their place.",
     .details =
         R"(- `longitudes`, `latitudes`: of the marks, in degrees
- `left`, `right`: the longitudes at the map's edges in degrees, any whole turns away; a right edge that is not east
  of the left one is taken as many worlds on as are needed
- `bottom`, `top`: the latitudes at the map's edges in degrees
- `projection`, `eccentricity`: 0 is Mercator with an eccentricity, 1 takes degrees as they are
- `width`, `height`: of the map, in pixels
- `reach`: marks whose place is outside of the map by no more than this are kept as well, in pixels; below 0 it
  counts as 0

With X and Y for the projection and W = X(180) - X(-180), a longitude t whole turns away from its place between -180
and 180 lies at U = X + t W, and the copies of a mark stand, for every whole number k, at

    x = (X(longitude) + k W - U(left)) / (U(right) - U(left)) * width
    y = (Y(top) - Y(latitude)) / (Y(top) - Y(bottom)) * height

of which the result has those within the map and its reach: columns `x`, `y` (pixels from the left top corner) and `row`
(of the mark), by rows and from left to right; and the number `WrapCount` of worlds that the map shows a part of.
Marks with a special row or a place that is not finite stand nowhere. Edges and sizes that are not
finite, a map without extent and one of more than 64 worlds throw 2, columns of different lengths 259.)",
     .example = R"("inputs": [{"Array": {"type": "Real64", "values": [175, -175, 0]}}, )"
                R"({"Array": {"type": "Real64", "values": [0, 10, 20]}}, {"Real64": 90}, {"Real64": 270}, )"
                R"({"Real64": -45}, {"Real64": 45}, {"Int32": 1}, {"Real64": 0}, {"Real64": 360}, )"
                R"({"Real64": 180}, {"Real64": 0}])"});

inline constexpr Row kUpdateToSizeForMappedImages = Multinary<UpdateToSizeForMappedImages>(
    {.name = TransformNames::UPDATE_TO_SIZE_FOR_MAPPED_IMAGES,
     .inputs = {{"lefts", ArrayOf(StoreType::Real64)},
                {"tops", ArrayOf(StoreType::Real64)},
                {"rights", ArrayOf(StoreType::Real64)},
                {"bottoms", ArrayOf(StoreType::Real64)},
                {"shown", StoreType::Tuple},
                {"pane", StoreType::Tuple},
                "usesWholePixels"},
     .output = StoreType::KeyMap,
     .help =
         "Where images that lie on a map are drawn, and how large, when the map shows another part or gets "
         "another size.",
     .details =
         R"(- `lefts`, `tops`, `rights`, `bottoms`: the edges of each image in map units (projected, so that images are not bent),
  counted in any direction
- `shown`: a tuple of the left, top, right and bottom edge of the part that is shown, in map units
- `pane`: a tuple of the left, top, right and bottom edge of where it is shown, in pixels
- `usesWholePixels`: edges come to stand on the nearest whole pixel, halves up

An edge e stands at pane.left + (e - shown.left) / (shown.right - shown.left) * (pane.right - pane.left), and
accordingly from top to bottom. Edges are rounded and not sizes: tiles that meet on the map meet in the picture.
The result holds the columns `x`, `y` (left top corner), `width` and `height` in pixels with a row an image; edges the
wrong way round are exchanged. An image with a special edge is special with the kind of the first, and with
kind 1 where an edge's place is not finite, as all are when nothing is shown. Columns of different lengths throw 259, a
tuple of less than four members 219.)",
     .example =
         R"("inputs": [{"Array": {"type": "Real64", "values": [-180, 0]}}, )"
         R"({"Array": {"type": "Real64", "values": [90, 90]}}, )"
         R"({"Array": {"type": "Real64", "values": [0, 180]}}, )"
         R"({"Array": {"type": "Real64", "values": [-90, -90]}}, )"
         R"({"Tuple": [{"Real64": -90}, {"Real64": 45}, {"Real64": 90}, {"Real64": -45}]}, )"
         R"({"Tuple": [{"Int32": 0}, {"Int32": 0}, {"Int32": 301}, {"Int32": 150}]}, {"Bool": true}])"});

}  // namespace OstrelTransforms
