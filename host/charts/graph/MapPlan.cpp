#include "charts/graph/MapPlan.h"

#include "charts/data/ShapeSource.h"
#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {
namespace {

// Marks whose place is a little outside of a pane reach into it.
constexpr double kReach = 20;
// Of the places' extents on each side; what lies at an edge has room for its mark.
constexpr double kMargin = 0.05;

struct DegreeColumns {
  NodeId longitudes = -1;
  NodeId latitudes = -1;
};

class MapPlanner {
 public:
  MapPlanner(Compilation& compilation, double width, double height)
      : compilation_(compilation), graph_(compilation.graph), width_(width), height_(height) {}

  void AddLayer(LayerSpec const& spec, LayerRows& rows) {
    if (GetDefinition(spec.mark).isMap) {
      outlines_.push_back(
          {rows.GetNumbers(graph_, kShapeLongitude).node, rows.GetNumbers(graph_, kShapeLatitude).node});
      return;
    }
    DegreeColumns const degrees = AddDegrees(spec, rows, Channel::Longitude, Channel::Latitude);
    if (!GetDefinition(spec.mark).coversMap) {
      points_.push_back(degrees);
      return;
    }
    spans_.push_back(degrees);
    eastSpans_.push_back(AddDegrees(spec, rows, Channel::Longitude2, Channel::Latitude2));
  }

  void PlanView() {
    plan_.projection = graph_.Int(compilation_.document.projection == Projection::Mercator ? 0 : 1);
    NodeId const bounds = FindBounds();
    NodeId const x = Widen("longitude", bounds, [&](NodeId ranges, NodeId degrees) {
      NodeId const none = graph_.Call("no latitudes", "head", {ranges, graph_.Int(0)});
      return graph_.Call("longitudes with margin", "extendXRangesByDegree",
                         {ranges, degrees, none, graph_.Bool(true)});
    });
    NodeId const y = Widen("latitude", bounds, [&](NodeId ranges, NodeId degrees) {
      return graph_.Call("latitudes with margin", "extendYRangesByDegree", {ranges, degrees});
    });
    PlanEdges(x, y);
    plan_.world = graph_.Keep(View("world"));
    plan_.height = graph_.Keep(View("worldHeight"));
    plan_.shift = graph_.Keep(View("shift"));
  }

  void PlaceLayer(LayerSpec const& spec, std::size_t layer, PaneCell& cell) {
    if (GetDefinition(spec.mark).isMap || GetDefinition(spec.mark).coversMap) return;
    auto const& rows = cell.layers[layer];
    DegreeColumns const degrees = ReadDegrees(spec, *rows, Channel::Longitude, Channel::Latitude);
    NodeId const copies = graph_.Call(
        "copies on the map", "wrapMaps",
        {degrees.longitudes, degrees.latitudes, View("left"), View("right"), View("bottom"), View("top"),
         plan_.projection, graph_.Real(0), graph_.Real(width_), plan_.height, graph_.Real(kReach)});
    NodeId const selected = graph_.Call("rows on the map", "member", {copies, graph_.Text("row")});
    NodeId const x = graph_.Call("map x", "member", {copies, graph_.Text("x")});
    NodeId const y =
        graph_.Zip("map y", "subtract",
                   graph_.Call("map y from the top", "member", {copies, graph_.Text("y")}), plan_.shift);
    cell.places[layer] = {graph_.Keep(x), graph_.Keep(y)};
    cell.layers[layer] = std::make_shared<LayerRows>(graph_, rows, selected, "map ");
  }

  MapPlan const& GetPlan() const { return plan_; }

 private:
  // Of all points, else of all images, else of all outlines.
  NodeId FindBounds() {
    if (points_.empty() && !spans_.empty()) {
      DegreeColumns const west = Concatenate("west ", spans_);
      DegreeColumns const east = Concatenate("east ", eastSpans_);
      return graph_.Call(
          "map bounds", "mapSpanBounds",
          {west.longitudes, west.latitudes, east.longitudes, east.latitudes, plan_.projection});
    }
    DegreeColumns const places = Concatenate("", points_.empty() ? outlines_ : points_);
    return graph_.Call("map bounds", "mapBounds", {places.longitudes, places.latitudes, plan_.projection});
  }

  DegreeColumns Concatenate(std::string const& label, std::vector<DegreeColumns> const& columns) {
    std::vector<NodeId> longitudes;
    std::vector<NodeId> latitudes;
    for (DegreeColumns const& degrees : columns) {
      longitudes.push_back(degrees.longitudes);
      latitudes.push_back(degrees.latitudes);
    }
    return {graph_.Call(label + "longitudes", "concatenate", longitudes),
            graph_.Call(label + "latitudes", "concatenate", latitudes)};
  }

  // A range of the bounds with a margin.
  template <class Extend>
  NodeId Widen(std::string const& name, NodeId bounds, Extend const& extend) {
    NodeId const range = graph_.Call(name + " range", "member", {bounds, graph_.Text(name + "s")});
    auto const end = [&](char const* label, int place) {
      return graph_.Call(name + label, "member", {range, graph_.Int(place)});
    };
    NodeId const length = graph_.Zip(name + " length", "subtract", end(" end", 1), end(" start", 0));
    NodeId const degrees = graph_.Zip(name + " margin", "multiply", length, graph_.Real(kMargin));
    NodeId const ranges = graph_.Call(name + " ranges", "repeat", {range, graph_.Int(1)});
    return graph_.Call(name + "s of the map", "element", {extend(ranges, degrees), graph_.Int(0)});
  }

  // What a zoom level shows beyond the limit is taken off both edges alike, so that no place is shown twice.
  void PlanEdges(NodeId longitudes, NodeId latitudes) {
    NodeId const width = graph_.Real(width_);
    NodeId const height = graph_.Real(height_);
    NodeId const zoom =
        graph_.Call("map zoom", "mapZoom", {longitudes, latitudes, plan_.projection, width, height});
    auto const read = [&](char const* name) {
      return graph_.Call(std::string("zoom ") + name, "member", {zoom, graph_.Text(name)});
    };
    NodeId const shown = graph_.Zip("shown longitudes", "subtract", read("right"), read("left"));
    NodeId const left = graph_.Zip("left edge", "adjustLeftWrapped", shown, read("left"), {read("limit")});
    NodeId const right =
        graph_.Zip("right edge", "adjustRightWrapped", shown,
                   graph_.Call("edges", "makeTuple", {left, read("right")}), {read("limit")});
    plan_.view =
        graph_.Call("map view", "mapView", {left, right, latitudes, plan_.projection, width, height});
  }

  DegreeColumns ReadDegrees(LayerSpec const& spec, LayerRows& rows, Channel longitude, Channel latitude) {
    auto const read = [&](Channel channel) {
      return FieldNumbers(compilation_, {spec.Find(channel), &rows, ""}, NameOf(channel));
    };
    return {read(longitude), read(latitude)};
  }

  // The same of all rows, and those without are told of.
  DegreeColumns AddDegrees(LayerSpec const& spec, LayerRows& rows, Channel longitude, Channel latitude) {
    DegreeColumns const degrees = ReadDegrees(spec, rows, longitude, latitude);
    plan_.sources.push_back({spec.Find(longitude), graph_.Keep(degrees.longitudes), rows.GetRowCount()});
    plan_.sources.push_back({spec.Find(latitude), graph_.Keep(degrees.latitudes), rows.GetRowCount()});
    return degrees;
  }

  NodeId View(char const* member) {
    return graph_.Call(std::string("map ") + member, "member", {plan_.view, graph_.Text(member)});
  }

  Compilation& compilation_;
  GraphBuilder& graph_;
  double width_;
  double height_;
  MapPlan plan_;
  std::vector<DegreeColumns> points_;
  std::vector<DegreeColumns> spans_;  // one corner of each layer's images
  std::vector<DegreeColumns> eastSpans_;
  std::vector<DegreeColumns> outlines_;
};

}  // namespace

MapPlan PlanMap(Compilation& compilation, std::vector<std::shared_ptr<LayerRows>> const& layers, double width,
                double height, PaneGrid& grid) {
  MapPlanner planner(compilation, width, height);
  auto const& specs = compilation.document.layers;
  for (std::size_t i = 0; i < specs.size(); ++i) planner.AddLayer(specs[i], *layers[i]);
  planner.PlanView();
  for (PaneCell& cell : grid.cells) {
    cell.places.resize(specs.size());
    for (std::size_t i = 0; i < specs.size(); ++i) planner.PlaceLayer(specs[i], i, cell);
  }
  return planner.GetPlan();
}

}  // namespace ostrel::charts
