#include <algorithm>
#include <cmath>

#include "charts/data/ShapeSource.h"
#include "charts/marks/MarkContext.h"
#include "charts/marks/Marks.h"

// The mark geoshape: outlines of a map, in every copy of the world that a pane shows.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

class GeoshapePlan final : public MarkPlan {
 public:
  explicit GeoshapePlan(MarkContext& context) : look_(context.GetLook()), width_(context.GetWidth()) {
    GraphBuilder& graph = context.GetGraph();
    LayerRows& rows = context.GetRows();
    auto const numbers = [&](char const* field) { return rows.GetNumbers(graph, field).node; };
    MapPlan const& map = *context.GetMap();
    NodeId const pixels =
        graph.Call("outlines", "mapPixels",
                   {numbers(kShapeLongitude), numbers(kShapeLatitude), map.projection, map.view});
    ring_ = graph.Keep(numbers(kShapeRing));
    polygon_ = graph.Keep(numbers(kShapePolygon));
    // Each point stands in the copy of the world in which it is nearest to the one before.
    NodeId const x = graph.Call("outline x", "member", {pixels, graph.Text("x")});
    NodeId const turns =
        graph.Scan("outline in one piece", "wrap_x_for_maps",
                   graph.Zip("outline x in worlds", "divide", x, map.world), ring_, graph.Real(0));
    x_ = graph.Keep(graph.Zip("outline x in pixels", "multiply", turns, map.world));
    y_ = graph.Keep(graph.Call("outline y", "member", {pixels, graph.Text("y")}));
    world_ = map.world;
    height_ = map.height;
    shift_ = map.shift;
    color_ = context.GetScaled(Channel::Color);
  }

  void Build(MarkScene const& scene) const override {
    auto const& polygons = scene.results[polygon_]->AsTypedArray<ort::core::int64>();
    double const world = ort::core::FetchStoreValue<double>(scene.results[world_]);
    for (int row = 0; row < polygons.GetCount();) {
      int const begin = row;
      while (row < polygons.GetCount() && polygons.GetElement(row) == polygons.GetElement(begin)) ++row;
      AddCopies(scene, MakeShape(scene.results, begin, row), world);
    }
  }

 private:
  ShapeMark MakeShape(Results const& results, int begin, int end) const {
    auto const& x = results[x_]->AsTypedArray<double>();
    auto const& y = results[y_]->AsTypedArray<double>();
    auto const& rings = results[ring_]->AsTypedArray<ort::core::int64>();
    ShapeMark shape;
    OrtColor color = look_.color;
    if (color_ >= 0) {
      auto const& colors = results[color_]->AsTypedArray<OrtColor>();
      color = colors.IsSpecial(begin) ? OrtColor(0) : colors.GetElement(begin);
    }
    shape.fill = look_.paint.GetFill(color);
    shape.stroke = look_.paint.GetStroke(color);
    shape.opacity = look_.GetFillOpacity();
    shape.strokeOpacity = look_.GetStrokeOpacity();
    for (int row = begin; row < end; ++row) {
      if (row == begin || rings.GetElement(row) != rings.GetElement(row - 1)) shape.rings.emplace_back();
      if (!x.IsSpecial(row)) shape.rings.back().push_back({x.GetElement(row), y.GetElement(row)});
    }
    for (auto& ring : shape.rings) CloseAroundPole(results, ring);
    return shape;
  }

  // A ring around the world is closed along the projection's edge at its pole.
  void CloseAroundPole(Results const& results, std::vector<Point>& ring) const {
    auto const read = [&](NodeId node) { return ort::core::FetchStoreValue<double>(results[node]); };
    if (ring.empty() || std::abs(ring.back().x - ring.front().x) < read(world_) / 2) return;
    double const top = -read(shift_);
    double const bottom = top + read(height_);
    double sum = 0;
    for (Point const& point : ring) sum += point.y;
    double const edge = sum / static_cast<double>(ring.size()) > (top + bottom) / 2 ? bottom : top;
    double const start = ring.front().x;
    ring.push_back({ring.back().x, edge});
    ring.push_back({start, edge});
  }

  // One world beside the other, from the pane's left to its right edge.
  void AddCopies(MarkScene const& scene, ShapeMark const& shape, double world) const {
    double low = width_;
    double high = 0;
    for (auto const& ring : shape.rings) {
      for (Point const& point : ring) {
        low = std::min(low, point.x);
        high = std::max(high, point.x);
      }
    }
    for (double k = std::ceil(-high / world); low + k * world <= width_; ++k) {
      ShapeMark copy = shape;
      for (auto& ring : copy.rings) {
        for (Point& point : ring) point.x += k * world;
      }
      scene.group.nodes.emplace_back(std::move(copy));
    }
  }

  MarkLook look_;
  double width_;
  NodeId x_ = -1;  // Real64 columns, pixels
  NodeId y_ = -1;
  NodeId ring_ = -1;  // Int64 columns
  NodeId polygon_ = -1;
  NodeId world_ = -1;  // Real64 scalars of the map
  NodeId height_ = -1;
  NodeId shift_ = -1;
  NodeId color_ = -1;  // Color column; -1 where the channel has no field
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) { return std::make_unique<GeoshapePlan>(context); }

}  // namespace

MarkDefinition DefineGeoshape() {
  MarkDefinition definition{
      .name = "geoshape", .properties = WithPaints({}), .channels = {Channel::Color}, .plan = Plan};
  definition.isMap = true;
  definition.isFilled = true;
  definition.strokeWidth = 1;
  return definition;
}

}  // namespace ostrel::charts
