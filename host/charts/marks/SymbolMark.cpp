#include "charts/marks/SymbolMark.h"

#include <cmath>

#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"

// Symbols: the marks point, circle and square.
namespace ostrel::charts {
namespace {

template <class T>
Varying<T> MakeVarying(Results const& results, NodeId node, T constant) {
  return {constant, node < 0 ? nullptr : results[node]};
}

class SymbolPlan final : public MarkPlan {
 public:
  SymbolPlan(MarkContext& context, NodeId x, NodeId y, MarkLook look) : look_(std::move(look)) {
    color_ = context.GetScaled(Channel::Color);
    size_ = context.GetScaled(Channel::Size);
    opacity_ = context.GetScaled(Channel::Opacity);
    shape_ = context.GetScaled(Channel::Shape);
    tooltips_ = PlanTooltips(context);
    NodeId const placed = context.FindPlaced({x, y, color_, size_, opacity_, shape_});
    x_ = context.KeepPlaced("symbol x", x, placed);
    y_ = context.KeepPlaced("symbol y", y, placed);
    color_ = context.KeepPlaced("symbol color", color_, placed);
    size_ = context.KeepPlaced("symbol size", size_, placed);
    opacity_ = context.KeepPlaced("symbol opacity", opacity_, placed);
    shape_ = context.KeepPlaced("symbol shape", shape_, placed);
    tooltips_ = context.KeepPlaced("symbol tooltips", tooltips_, placed);
  }

  void Build(MarkScene const& scene) const override {
    SymbolMarks marks;
    marks.x = scene.results[x_];
    marks.y = scene.results[y_];
    marks.color = MakeVarying(scene.results, color_, look_.color);
    marks.size = MakeVarying(scene.results, size_, look_.size);
    marks.opacity = MakeVarying(scene.results, opacity_, look_.opacity);
    marks.shape = MakeVarying(scene.results, shape_, look_.shape);
    if (tooltips_ >= 0) marks.tooltips = scene.results[tooltips_];
    marks.paint = look_.paint;
    scene.group.nodes.emplace_back(std::move(marks));
  }

  double GetReach() const override { return (std::sqrt(look_.size) + look_.paint.strokeWidth) / 2; }

 private:
  MarkLook look_;
  NodeId x_;  // Real64 columns of the placed rows
  NodeId y_;
  NodeId color_;  // columns of the placed rows, -1 where the channel has no field
  NodeId size_;
  NodeId opacity_;
  NodeId shape_;
  NodeId tooltips_;
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  return PlanSymbols(context, context.GetPosition(Channel::X), context.GetPosition(Channel::Y),
                     context.GetLook());
}

MarkDefinition Define(char const* name) {
  return {.name = name,
          .properties = WithPaints({"size"}),
          .channels = {Channel::X, Channel::Y, Channel::XOffset, Channel::YOffset, Channel::Color,
                       Channel::Size, Channel::Opacity, Channel::Detail, Channel::Tooltip, Channel::Longitude,
                       Channel::Latitude},
          .plan = Plan,
          .isFilled = true,
          .opacity = 0.7};
}

}  // namespace

std::unique_ptr<MarkPlan> PlanSymbols(MarkContext& context, NodeId x, NodeId y, MarkLook const& look) {
  return std::make_unique<SymbolPlan>(context, x, y, look);
}

std::unique_ptr<MarkPlan> PlanPoints(MarkContext& context, NodeId x, NodeId y) {
  std::shared_ptr<MarkSpec const> const& point = context.GetMark().point;
  return point == nullptr ? nullptr : PlanSymbols(context, x, y, context.ResolveOverlay(*point));
}

MarkDefinition DefinePoint() {
  MarkDefinition point = Define("point");
  point.isFilled = false;
  point.properties.push_back("shape");
  point.channels.push_back(Channel::Shape);
  return point;
}

MarkDefinition DefineCircle() { return Define("circle"); }

MarkDefinition DefineSquare() {
  MarkDefinition square = Define("square");
  square.shape = SymbolShape::Square;
  return square;
}

}  // namespace ostrel::charts
