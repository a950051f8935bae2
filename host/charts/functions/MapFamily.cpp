#include <fmt/format.h>

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

constexpr double kMostWorldsOfSpans = 64;

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
  MapPlace Get(int row) const { return {longitudes_.GetElement(row), latitudes_.GetElement(row)}; }
  MapPoint Project(int projection, int row) const {
    return ProjectDegrees(projection, longitudes_.GetElement(row), latitudes_.GetElement(row));
  }

 private:
  RowKinds longitudeKinds_;
  RowKinds latitudeKinds_;
  ITypedArray<double> const& longitudes_;
  ITypedArray<double> const& latitudes_;
};

// Parts of a map, row by row.
class Spans {
 public:
  Spans(Value const& longitudes, Value const& latitudes, Value const& longitudes2, Value const& latitudes2)
      : west_(longitudes, latitudes), east_(longitudes2, latitudes2) {
    RequireOneLength(west_.GetCount(), east_.GetCount(), "longitudes2");
  }

  int GetCount() const { return west_.GetCount(); }
  bool HasPlace(int row) const { return west_.HasPlace(row) && east_.HasPlace(row); }
  MapSpan Get(int row) const { return {west_.Get(row), east_.Get(row)}; }

 private:
  Degrees west_;
  Degrees east_;
};

Value MakeRange(DegreeRange const& range) {
  return factory::MakeTuple({factory::MakeReal64(range.low), factory::MakeReal64(range.high),
                             factory::MakeInt32(0), factory::MakeInt32(static_cast<int>(StoreType::Real64)),
                             factory::MakeBool(false)});
}

DegreeRange ReadRange(Value const& range, char const* what) {
  auto const& tuple = range->AsTuple();
  DegreeRange const degrees{ReadNumber(tuple.GetMember(0)), ReadNumber(tuple.GetMember(1))};
  if (!(degrees.low <= degrees.high && std::isfinite(degrees.low) && std::isfinite(degrees.high)))
    ThrowError(OrtError_InputKindNotAccepted,
               fmt::format("a range of {} needs two finite ends in order", what));
  return degrees;
}

MapFrame ReadFrame(Value const& projection, Value const& width, Value const& height) {
  MapFrame const frame{ReadProjection(projection), ReadNumber(width), ReadNumber(height)};
  bool const isPane = frame.width > 0 && frame.height > 0 && std::isfinite(frame.width + frame.height);
  if (!isPane) ThrowError(OrtError_InputKindNotAccepted, "a map needs a width and a height above 0");
  return frame;
}

Value MakeNumbers(std::initializer_list<std::pair<char const*, double>> numbers) {
  factory::NamedValues members;
  for (auto const& [name, number] : numbers)
    members.emplace(OStringCore::fromUtf8(name), factory::MakeReal64(number));
  return factory::MakeKeyMap(std::move(members));
}

template <class Place, class Rows>
Value FindBounds(Rows const& rows, Value const& projection) {
  std::vector<Place> places;
  for (int row = 0; row < rows.GetCount(); ++row) {
    if (rows.HasPlace(row)) places.push_back(rows.Get(row));
  }
  MapBounds const bounds = FindMapBounds(places, ReadProjection(projection));
  factory::NamedValues members;
  members.emplace(OStringCore(L"longitudes"), MakeRange(bounds.longitudes));
  members.emplace(OStringCore(L"latitudes"), MakeRange(bounds.latitudes));
  return factory::MakeKeyMap(std::move(members));
}

Value CallMapBounds(Value const& longitudes, Value const& latitudes, Value const& projection) {
  return FindBounds<MapPlace>(Degrees(longitudes, latitudes), projection);
}

Value CallMapSpanBounds(Value const& longitudes, Value const& latitudes, Value const& longitudes2,
                        Value const& latitudes2, Value const& projection) {
  return FindBounds<MapSpan>(Spans(longitudes, latitudes, longitudes2, latitudes2), projection);
}

Value CallMapZoom(Value const& longitudes, Value const& latitudes, Value const& projection,
                  Value const& width, Value const& height) {
  MapZoom const zoom = FindMapZoom({ReadRange(longitudes, "longitudes"), ReadRange(latitudes, "latitudes")},
                                   ReadFrame(projection, width, height));
  return MakeNumbers({{"left", zoom.longitudes.low}, {"right", zoom.longitudes.high}, {"limit", zoom.limit}});
}

Value CallMapView(Value const& left, Value const& right, Value const& latitudes, Value const& projection,
                  Value const& width, Value const& height) {
  DegreeRange const shown{ReadNumber(left), ReadNumber(right)};
  if (!(shown.high - shown.low > 0) || !std::isfinite(shown.high - shown.low))
    ThrowError(OrtError_InputKindNotAccepted, "a map's right edge must be east of its left one");
  MapView const view =
      PlaceMap(shown, ReadRange(latitudes, "latitudes"), ReadFrame(projection, width, height));
  return MakeNumbers({{"world", view.world},
                      {"west", view.west},
                      {"north", view.north},
                      {"left", view.left},
                      {"right", view.right},
                      {"bottom", view.bottom},
                      {"top", view.top},
                      {"worldHeight", view.worldHeight},
                      {"shift", view.shift}});
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

template <class T>
Value MakeColumn(StoreTypeInfo const& type, std::vector<T>&& values) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(std::move(values)));
}

Value CallMapSpans(Value const& longitudes, Value const& latitudes, Value const& longitudes2,
                   Value const& latitudes2, Value const& projection, Value const& shown) {
  Spans const spans(longitudes, latitudes, longitudes2, latitudes2);
  int const kind = ReadProjection(projection);
  double const west = ReadNumber(shown->AsTuple().GetMember(0));
  double const east = ReadNumber(shown->AsTuple().GetMember(2));
  if (!(std::abs(east - west) <= kMostWorldsOfSpans))
    ThrowError(OrtError_InputKindNotAccepted, "a map of parts shows at most 64 worlds");
  std::vector<double> left, top, right, bottom;
  std::vector<int> rows;
  for (int row = 0; row < spans.GetCount(); ++row) {
    if (!spans.HasPlace(row)) continue;
    MapSpan const span = spans.Get(row);
    for (double copy = std::floor(west - ProjectSpan(kind, span, 0).right);; ++copy) {
      MapEdges const edges = ProjectSpan(kind, span, copy);
      if (edges.left >= east) break;
      if (edges.right <= west) continue;
      left.push_back(edges.left);
      top.push_back(edges.top);
      right.push_back(edges.right);
      bottom.push_back(edges.bottom);
      rows.push_back(row);
    }
  }
  factory::NamedValues members;
  members.emplace(OStringCore(L"left"), MakeColumn(StoreTypeInfo::Real64, std::move(left)));
  members.emplace(OStringCore(L"top"), MakeColumn(StoreTypeInfo::Real64, std::move(top)));
  members.emplace(OStringCore(L"right"), MakeColumn(StoreTypeInfo::Real64, std::move(right)));
  members.emplace(OStringCore(L"bottom"), MakeColumn(StoreTypeInfo::Real64, std::move(bottom)));
  members.emplace(OStringCore(L"row"), MakeColumn(StoreTypeInfo::Int32, std::move(rows)));
  return factory::MakeKeyMap(std::move(members));
}

}  // namespace

BuiltinFamily MapFamily() {
  KeySegmentType const real = Segment(StoreType::Real64);
  KeySegmentType const numbers = ArrayOf(StoreType::Real64);
  KeySegmentType const kind = Segment(StoreType::Int32);
  KeySegmentType const keyMap = Segment(StoreType::KeyMap);
  KeySegmentType const range = Segment(StoreType::Tuple);
  return {
      "maps",
      {
          {.name = "mapBounds",
           .inputs = {"longitudes", "latitudes", "projection"},
           .help =
               "The shortest range of longitudes that holds all places, across the date line where that is "
               "shorter (then it ends beyond 180), and their range of latitudes as far as the projection "
               "reaches (0 is Mercator, 1 takes degrees as they are); without places the whole map.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [170, -170]}}, )"
                      R"({"Array": {"type": "Real64", "values": [-5, 5]}}, {"Int32": 1}])",
           .registrations = {Multinary<CallMapBounds>({numbers, numbers, kind}, keyMap)}},
          {.name = "mapSpanBounds",
           .inputs = {"longitudes", "latitudes", "longitudes2", "latitudes2", "projection"},
           .help = "The same as mapBounds for parts of a map between a western and an eastern edge and two "
                   "latitudes in either order.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [170]}}, )"
                      R"({"Array": {"type": "Real64", "values": [-5]}}, )"
                      R"({"Array": {"type": "Real64", "values": [-170]}}, )"
                      R"({"Array": {"type": "Real64", "values": [5]}}, {"Int32": 1}])",
           .registrations = {Multinary<CallMapSpanBounds>({numbers, numbers, numbers, numbers, kind},
                                                          keyMap)}},
          {.name = "mapZoom",
           .inputs = {"longitudes", "latitudes", "projection", "width", "height"},
           .help =
               "The longitudes \"left\" and \"right\" that a pane would show in one of four zoom levels to "
               "each doubling so as to hold the ranges, and \"limit\", the most degrees that it may show: a "
               "whole turn, or more where the latitudes need it.",
           .example =
               R"("inputs": [{"Tuple": [{"Real64": -160}, {"Real64": 170}, {"Int32": 0}, {"Int32": 4}, )"
               R"({"Bool": false}]}, {"Tuple": [{"Real64": -50}, {"Real64": 60}, {"Int32": 0}, )"
               R"({"Int32": 4}, {"Bool": false}]}, {"Int32": 1}, {"Real64": 200}, {"Real64": 100}])",
           .registrations = {Multinary<CallMapZoom>({range, range, kind, real, real}, keyMap)}},
          {.name = "mapView",
           .inputs = {"left", "right", "latitudes", "projection", "width", "height"},
           .help =
               "A pane between two longitudes, with the middle of the latitudes in its own where the map "
               "does not end before: \"world\", the pixels of the way around it; \"west\" and \"north\" of "
               "the pane in such ways; its edges \"left\" and \"right\" and the projection's own, "
               "\"bottom\" and \"top\", in degrees; \"worldHeight\" and \"shift\", the pixels between "
               "those and down to the pane.",
           .example = R"("inputs": [{"Real64": 165}, {"Real64": 195}, {"Tuple": [{"Real64": -5}, )"
                      R"({"Real64": 5}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}, {"Int32": 1}, )"
                      R"({"Real64": 200}, {"Real64": 100}])",
           .registrations = {Multinary<CallMapView>({real, real, range, kind, real, real}, keyMap)}},
          {.name = "mapPixels",
           .inputs = {"longitudes", "latitudes", "projection", "view"},
           .help = "Where places lie in a pane with a view as mapView gives it, in pixels \"x\" and \"y\", "
                   "of all copies of the world in that of the prime meridian.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0, 90]}}, )"
                      R"({"Array": {"type": "Real64", "values": [0, 45]}}, {"Int32": 1}, {"KeyMap": )"
                      R"({"world": {"Real64": 360}, "west": {"Real64": -0.5}, "north": {"Real64": 0.25}}}])",
           .registrations = {Multinary<CallMapPixels>({numbers, numbers, kind, keyMap}, keyMap)}},
          {.name = "mapSpans",
           .inputs = {"longitudes", "latitudes", "longitudes2", "latitudes2", "projection", "shown"},
           .help =
               "Where parts of a map, as mapSpanBounds takes them, lie on it: the edges \"left\", \"top\", "
               "\"right\" and \"bottom\" in worlds, 0 at the prime meridian and the equator, and \"row\", "
               "for every copy of a part that the shown edges (a tuple of the same four) hold some of from "
               "west to east.",
           .example =
               R"("inputs": [{"Array": {"type": "Real64", "values": [90]}}, )"
               R"({"Array": {"type": "Real64", "values": [90]}}, )"
               R"({"Array": {"type": "Real64", "values": [-90]}}, )"
               R"({"Array": {"type": "Real64", "values": [0]}}, {"Int32": 1}, )"
               R"({"Tuple": [{"Real64": -0.5}, {"Real64": -0.25}, {"Real64": 0.5}, {"Real64": 0.25}]}])",
           .registrations = {Multinary<CallMapSpans>({numbers, numbers, numbers, numbers, kind, range},
                                                     keyMap)}},
      }};
}

}  // namespace ostrel::charts
