#include <cmath>

#include "charts/functions/ChartFamilies.h"
#include "charts/functions/MapView.h"
#include "ostrelrtcore/builtins/Columns.h"

/// Maps: which part of the world a pane shows, and where outlines lie in it. Degrees in special rows, and
/// those that are not finite, have no place.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

double ReadNumber(Value const& value) { return FetchStoreValue<double>(value); }

int ReadProjection(Value const& value) {
  int const projection = FetchStoreValue<int>(value);
  if (projection != 0 && projection != 1) ThrowError(OrtError_WrongValueKind, "a projection is 0 or 1");
  return projection;
}

// Longitudes and latitudes, row by row.
class Degrees {
 public:
  Degrees(Value const& longitudes, Value const& latitudes)
      : longitudeKinds_(RequireColumn(*longitudes, StoreType::Real64, "longitudes")),
        latitudeKinds_(RequireColumn(*latitudes, StoreType::Real64, "latitudes")),
        longitudes_(longitudes->AsTypedArray<double>()),
        latitudes_(latitudes->AsTypedArray<double>()) {
    RequireOneLength(longitudes_.GetCount(), latitudes_.GetCount(), "latitudes");
  }

  int GetCount() const { return longitudes_.GetCount(); }
  bool HasPlace(int row) const {
    return longitudeKinds_[row] == SpecialKind::None && latitudeKinds_[row] == SpecialKind::None &&
           std::isfinite(longitudes_.GetElement(row)) && std::isfinite(latitudes_.GetElement(row));
  }
  MapPoint Project(int projection, int row) const {
    return ProjectDegrees(projection, longitudes_.GetElement(row), latitudes_.GetElement(row));
  }

 private:
  RowKinds longitudeKinds_;
  RowKinds latitudeKinds_;
  ITypedArray<double> const& longitudes_;
  ITypedArray<double> const& latitudes_;
};

Value CallMapView(Value const& longitudes, Value const& latitudes, Value const& projection,
                  Value const& width, Value const& height) {
  Degrees const degrees(longitudes, latitudes);
  MapFrame const frame{ReadProjection(projection), ReadNumber(width), ReadNumber(height)};
  bool const isPane = frame.width > 0 && frame.height > 0 && std::isfinite(frame.width + frame.height);
  if (!isPane) ThrowError(OrtError_InputKindNotAccepted, "a map needs a width and a height above 0");
  std::vector<MapPoint> points;
  for (int row = 0; row < degrees.GetCount(); ++row) {
    if (degrees.HasPlace(row)) points.push_back(degrees.Project(frame.projection, row));
  }
  MapView const view = FitMap(points, frame);
  factory::NamedValues members;
  auto const add = [&](char const* name, double value) {
    members.emplace(OStringCore::fromUtf8(name), factory::MakeReal64(value));
  };
  add("world", view.world);
  add("west", view.west);
  add("north", view.north);
  add("left", view.left);
  add("right", view.right);
  add("bottom", view.bottom);
  add("top", view.top);
  add("worldHeight", view.worldHeight);
  add("shift", view.shift);
  return factory::MakeKeyMap(std::move(members));
}

Value CallMapPixels(Value const& longitudes, Value const& latitudes, Value const& projection,
                    Value const& view) {
  Degrees const degrees(longitudes, latitudes);
  int const kind = ReadProjection(projection);
  auto const member = [&](char const* name) {
    return ReadNumber(view->AsNamedValues().Get(OStringCore::fromUtf8(name)));
  };
  double const world = member("world");
  double const west = member("west");
  double const north = member("north");
  int const count = degrees.GetCount();
  auto x = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
  auto y = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
  for (int row = 0; row < count; ++row) {
    auto const at = static_cast<std::size_t>(row);
    bool const hasPlace = degrees.HasPlace(row);
    MapPoint const point = hasPlace ? degrees.Project(kind, row) : MapPoint{west, north};
    x.GetValues()[at] = (point.x - west) * world;
    y.GetValues()[at] = (north - point.y) * world;
    if (hasPlace) continue;
    x.SetSpecial(row, SpecialKind::Missing);
    y.SetSpecial(row, SpecialKind::Missing);
  }
  factory::NamedValues members;
  members.emplace(OStringCore::fromUtf8("x"), x.Finish());
  members.emplace(OStringCore::fromUtf8("y"), y.Finish());
  return factory::MakeKeyMap(std::move(members));
}

}  // namespace

BuiltinFamily MapFamily() {
  KeySegmentType const real = Segment(StoreType::Real64);
  KeySegmentType const numbers = ArrayOf(StoreType::Real64);
  KeySegmentType const kind = Segment(StoreType::Int32);
  KeySegmentType const keyMap = Segment(StoreType::KeyMap);
  return {
      "maps",
      {
          {.name = "mapView",
           .inputs = {"longitudes", "latitudes", "projection", "width", "height"},
           .help =
               "The part of a map (0 is Mercator, 1 takes degrees as they are) that shows all places in a "
               "pane: \"world\", the pixels of the way around it; \"west\" and \"north\" of the pane in such "
               "ways; its edges \"left\" and \"right\" and the projection's own, \"bottom\" and \"top\", in "
               "degrees; \"worldHeight\" and \"shift\", the pixels between those and down to the pane.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [170, -170]}}, )"
                      R"({"Array": {"type": "Real64", "values": [-5, 5]}}, {"Int32": 1}, {"Real64": 200}, )"
                      R"({"Real64": 100}])",
           .registrations = {Multinary<CallMapView>({numbers, numbers, kind, real, real}, keyMap)}},
          {.name = "mapPixels",
           .inputs = {"longitudes", "latitudes", "projection", "view"},
           .help = "Where places lie in a pane with a view as mapView gives it, in pixels \"x\" and \"y\", "
                   "of all "
                   "copies of the world in that of the prime meridian.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0, 90]}}, )"
                      R"({"Array": {"type": "Real64", "values": [0, 45]}}, {"Int32": 1}, {"KeyMap": )"
                      R"({"world": {"Real64": 360}, "west": {"Real64": -0.5}, "north": {"Real64": 0.25}}}])",
           .registrations = {Multinary<CallMapPixels>({numbers, numbers, kind, keyMap}, keyMap)}},
      }};
}

}  // namespace ostrel::charts
