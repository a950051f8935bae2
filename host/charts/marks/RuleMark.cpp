#include "charts/marks/MarkSpan.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"
#include "charts/scales/DomainRoom.h"

// The mark rule: a straight line at every row, from end to end of the pane where x or y is not given.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

constexpr double kStrokeWidth = 1;

class RulePlan final : public MarkPlan {
 public:
  RulePlan(MarkContext& context, MarkSpan const& x, MarkSpan const& y) : look_(context.GetLook()) {
    color_ = context.GetScaled(Channel::Color);
    NodeId const tooltips = PlanTooltips(context);
    NodeId const placed = context.FindPlaced({x.from, x.to, y.from, y.to, color_});
    x_ = {context.KeepPlaced("rule x", x.from, placed), context.KeepPlaced("rule x2", x.to, placed)};
    y_ = {context.KeepPlaced("rule y", y.from, placed), context.KeepPlaced("rule y2", y.to, placed)};
    color_ = context.KeepPlaced("rule color", color_, placed);
    tooltips_ = context.KeepPlaced("rule tooltips", tooltips, placed);
  }

  // Rules of one colour that follow one another share a path.
  void Build(MarkScene const& scene) const override {
    auto const read = [&](NodeId node) -> auto const& { return scene.results[node]->AsTypedArray<double>(); };
    auto const& x = read(x_.from);
    auto const& x2 = read(x_.to);
    auto const& y = read(y_.from);
    auto const& y2 = read(y_.to);
    auto const* colors = color_ < 0 ? nullptr : &scene.results[color_]->AsTypedArray<OrtColor>();
    TooltipReader const tooltips(scene.results, tooltips_);
    RuleMarks rules;
    for (int row = 0; row < x.GetCount(); ++row) {
      OrtColor const color =
          Fade(colors != nullptr ? colors->GetElement(row) : look_.color, look_.GetStrokeOpacity());
      if (row > 0 && color != rules.stroke.color) {
        scene.group.nodes.emplace_back(std::move(rules));
        rules = {};
      }
      rules.stroke = {color, look_.paint.strokeWidth, look_.paint.strokeDash};
      rules.rules.push_back(
          {{x.GetElement(row), y.GetElement(row)}, {x2.GetElement(row), y2.GetElement(row)}});
      if (tooltips_ >= 0) rules.tooltips.push_back(tooltips.Read(row));
    }
    if (!rules.rules.empty()) scene.group.nodes.emplace_back(std::move(rules));
  }

  double GetReach() const override { return look_.paint.strokeWidth / 2; }

 private:
  MarkLook look_;
  MarkSpan x_;  // Real64 columns of the placed rows
  MarkSpan y_;
  NodeId color_ = -1;
  NodeId tooltips_ = -1;
};

bool IsGiven(MarkContext& context, Channel channel) { return context.GetSpec().Find(channel) != nullptr; }

// A second end, the other direction's whole pane, or none: the rule is upright or level there.
MarkSpan SpanOfRule(MarkContext& context, Channel channel, Channel second) {
  if (!IsGiven(context, channel)) return SpanOfPane(context, channel);
  NodeId const from = context.GetPosition(channel);
  if (IsGiven(context, second)) return {from, context.GetPosition(second)};
  return {from, from};
}

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  MarkSpan const x = SpanOfRule(context, Channel::X, Channel::X2);
  return std::make_unique<RulePlan>(context, x, SpanOfRule(context, Channel::Y, Channel::Y2));
}

RowReach Reach(MarkContext& context, Channel) {
  return {.thickness = context.GetMark().strokeWidth.value_or(kStrokeWidth)};
}

}  // namespace

MarkDefinition DefineRule() {
  return {.name = "rule",
          .properties = {"stroke", "strokeWidth", "strokeDash", "strokeOpacity"},
          .channels = {Channel::X, Channel::Y, Channel::X2, Channel::Y2, Channel::Color, Channel::Detail,
                       Channel::Tooltip},
          .plan = Plan,
          .reach = Reach,
          .color = 0xFF333333,
          .strokeWidth = kStrokeWidth,
          .sample = LegendSample::Line,
          .constantSize = &MarkSpec::strokeWidth};
}

}  // namespace ostrel::charts
