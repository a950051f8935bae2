#include "charts/marks/RectMark.h"

#include "charts/marks/CornerRounding.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"
#include "charts/transforms/ChannelFields.h"

// Rectangles: the marks bar, rect and tick.
namespace ostrel::charts {
namespace {

constexpr double kBarGap = 0.1;
constexpr double kTickGap = 0.25;
constexpr double kTickThickness = 1;
constexpr double kTickLength = 15;
constexpr double kTickOpacity = 0.7;
constexpr double kBarThickness = 5;
constexpr double kGapBetweenBins = 1;
constexpr double kBarOfNoPlace = 18;

template <class T>
Varying<T> MakeVarying(Results const& results, NodeId node, T constant) {
  return {constant, node < 0 ? nullptr : results[node]};
}

class RectPlan final : public MarkPlan {
 public:
  RectPlan(MarkContext& context, MarkSpan const& x, MarkSpan const& y)
      : look_(context.GetLook()),
        rounding_(MakeRounding(context)),
        isSeamless_(GetDefinition(context.GetMark()).bandGap == 0 && look_.paint.isFilled &&
                    look_.paint.other.GetA() == 0 && !rounding_) {
    color_ = context.GetScaled(Channel::Color);
    opacity_ = context.GetScaled(Channel::Opacity);
    tooltips_ = PlanTooltips(context);
    NodeId const placed = context.FindPlaced({x.from, x.to, y.from, y.to, color_, opacity_});
    x_ = {context.KeepPlaced("rectangle x", x.from, placed),
          context.KeepPlaced("rectangle x2", x.to, placed)};
    y_ = {context.KeepPlaced("rectangle y", y.from, placed),
          context.KeepPlaced("rectangle y2", y.to, placed)};
    color_ = context.KeepPlaced("rectangle color", color_, placed);
    opacity_ = context.KeepPlaced("rectangle opacity", opacity_, placed);
    tooltips_ = context.KeepPlaced("rectangle tooltips", tooltips_, placed);
  }

  void Build(MarkScene const& scene) const override {
    RectMarks marks;
    marks.x = scene.results[x_.from];
    marks.x2 = scene.results[x_.to];
    marks.y = scene.results[y_.from];
    marks.y2 = scene.results[y_.to];
    marks.color = MakeVarying(scene.results, color_, look_.color);
    marks.opacity = MakeVarying(scene.results, opacity_, look_.opacity);
    marks.paint = look_.paint;
    marks.isSeamless = isSeamless_;
    if (rounding_) marks.corners = RoundCorners(*rounding_, marks);
    if (tooltips_ >= 0) marks.tooltips = scene.results[tooltips_];
    scene.group.nodes.emplace_back(std::move(marks));
  }

 private:
  MarkLook look_;
  std::optional<CornerRounding> rounding_;
  bool isSeamless_;
  MarkSpan x_;  // Real64 columns of the placed rows
  MarkSpan y_;
  NodeId color_;  // columns of the placed rows, -1 where the channel has no field
  NodeId opacity_;
  NodeId tooltips_;
};

// How broad a mark is on a channel where the document says: by width or height, or else in pixels by another
// property.
BreadthSpec FindBreadth(MarkContext& context, Channel channel, std::optional<double> pixels) {
  MarkSpec const& mark = context.GetMark();
  bool const isX = channel == Channel::X;
  BreadthSpec const& breadth = isX ? mark.width : mark.height;
  if (!breadth.IsGiven()) return {pixels, std::nullopt};
  bool const isInterval = context.GetSpec().Find(isX ? Channel::X2 : Channel::Y2) != nullptr;
  if (breadth.band && !isInterval && context.GetBandwidth(channel) < 0) {
    ThrowDocumentError(context.GetCompilation().document, mark.path + (isX ? ".width" : ".height"),
                       "is a share of discrete values, bins or units of time; give pixels");
  }
  return breadth;
}

std::unique_ptr<MarkPlan> PlanBars(MarkContext& context) {
  MarkSpec const& mark = context.GetMark();
  bool const isHorizontal = IsHorizontal(mark, context.GetSpec().encodings);
  Channel const measure = isHorizontal ? Channel::X : Channel::Y;
  Channel const place = isHorizontal ? Channel::Y : Channel::X;
  if ((isHorizontal ? mark.width : mark.height).IsGiven()) {
    ThrowDocumentError(context.GetCompilation().document, mark.path + (isHorizontal ? ".width" : ".height"),
                       isHorizontal ? "of bars to the right follows from x; use height"
                                    : "of upright bars follows from y; use width");
  }
  bool const isPlaced = context.Find(place) != nullptr;
  PlaceRules const rules{FindBreadth(context, place, mark.size), isPlaced ? kBarThickness : kBarOfNoPlace,
                         kGapBetweenBins};
  MarkSpan const along = SpanOfMeasure(context, measure);
  MarkSpan const across = SpanOfPlace(context, place, rules);
  return isHorizontal ? PlanRects(context, along, across) : PlanRects(context, across, along);
}

MarkSpan SpanOfRect(MarkContext& context, Channel channel) {
  if (context.GetSpec().Find(channel) == nullptr) return SpanOfPane(context, channel);
  return SpanOfPlace(context, channel, {FindBreadth(context, channel, std::nullopt)});
}

std::unique_ptr<MarkPlan> PlanRectangles(MarkContext& context) {
  return PlanRects(context, SpanOfRect(context, Channel::X), SpanOfRect(context, Channel::Y));
}

// A tick is thin along its measure.
std::unique_ptr<MarkPlan> PlanTicks(MarkContext& context) {
  MarkSpec const& mark = context.GetMark();
  bool const isHorizontal = IsHorizontal(mark, context.GetSpec().encodings);
  auto const span = [&](Channel channel, bool isThin) {
    std::optional<double> const pixels = isThin      ? mark.thickness.value_or(kTickThickness)
                                         : mark.size ? mark.size
                                                     : mark.bandSize;
    return SpanOfPlace(context, channel, {FindBreadth(context, channel, pixels), kTickLength});
  };
  MarkSpan const x = span(Channel::X, isHorizontal);
  return PlanRects(context, x, span(Channel::Y, !isHorizontal));
}

MarkDefinition Define(char const* name) {
  return {
      .name = name,
      .properties = WithPaints({"orient", "width", "height", "cornerRadius", "cornerRadiusTopLeft",
                                "cornerRadiusTopRight", "cornerRadiusBottomRight", "cornerRadiusBottomLeft"}),
      .channels = {Channel::X, Channel::Y, Channel::X2, Channel::Y2, Channel::XOffset, Channel::YOffset,
                   Channel::Color, Channel::Opacity, Channel::Detail, Channel::Tooltip},
      .plan = PlanBars,
      .isFilled = true,
      .strokeWidth = 1,
      .shape = SymbolShape::Square};
}

}  // namespace

std::unique_ptr<MarkPlan> PlanRects(MarkContext& context, MarkSpan const& x, MarkSpan const& y) {
  return std::make_unique<RectPlan>(context, x, y);
}

MarkDefinition DefineBar() {
  MarkDefinition bar = Define("bar");
  bar.properties.insert(bar.properties.end(), {"size", "cornerRadiusEnd"});
  bar.constantSize = &MarkSpec::size;
  bar.channels.push_back(Channel::Order);
  bar.isStacked = true;
  bar.bandGap = kBarGap;
  bar.thickness = kBarThickness;
  bar.coversIntervals = true;
  return bar;
}

MarkDefinition DefineRect() {
  MarkDefinition rect = Define("rect");
  rect.plan = PlanRectangles;
  rect.bandGap = 0;
  rect.coversIntervals = true;
  return rect;
}

MarkDefinition DefineTick() {
  MarkDefinition tick = Define("tick");
  tick.constantSize = &MarkSpec::size;
  tick.properties.insert(tick.properties.end(), {"size", "bandSize", "thickness"});
  tick.plan = PlanTicks;
  tick.bandGap = kTickGap;
  tick.opacity = kTickOpacity;
  return tick;
}

}  // namespace ostrel::charts
