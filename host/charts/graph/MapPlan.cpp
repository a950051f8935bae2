#include "charts/graph/MapPlan.h"

#include "charts/data/ShapeSource.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {
namespace {

// Marks whose place is a little outside of a pane reach into it.
constexpr double kReach = 20;

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
    DegreeColumns const degrees = ReadDegrees(spec, rows);
    points_.push_back(degrees);
    plan_.sources.push_back(
        {spec.Find(Channel::Longitude), graph_.Keep(degrees.longitudes), rows.GetRowCount()});
    plan_.sources.push_back(
        {spec.Find(Channel::Latitude), graph_.Keep(degrees.latitudes), rows.GetRowCount()});
  }

  void PlanView() {
    std::vector<DegreeColumns> const& fitted = points_.empty() ? outlines_ : points_;
    std::vector<NodeId> longitudes;
    std::vector<NodeId> latitudes;
    for (DegreeColumns const& degrees : fitted) {
      longitudes.push_back(degrees.longitudes);
      latitudes.push_back(degrees.latitudes);
    }
    plan_.projection = graph_.Int(compilation_.document.projection == Projection::Mercator ? 0 : 1);
    plan_.view = graph_.Call("map view", "mapView",
                             {graph_.Call("longitudes", "concatenate", longitudes),
                              graph_.Call("latitudes", "concatenate", latitudes), plan_.projection,
                              graph_.Real(width_), graph_.Real(height_)});
    plan_.world = graph_.Keep(View("world"));
    plan_.height = graph_.Keep(View("worldHeight"));
    plan_.shift = graph_.Keep(View("shift"));
  }

  void PlaceLayer(LayerSpec const& spec, std::size_t layer, PaneCell& cell) {
    if (GetDefinition(spec.mark).isMap) return;
    auto const& rows = cell.layers[layer];
    DegreeColumns const degrees = ReadDegrees(spec, *rows);
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
  DegreeColumns ReadDegrees(LayerSpec const& spec, LayerRows& rows) {
    auto const read = [&](Channel channel, char const* name) {
      return FieldNumbers(compilation_, {spec.Find(channel), &rows, ""}, name);
    };
    return {read(Channel::Longitude, "longitude"), read(Channel::Latitude, "latitude")};
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
