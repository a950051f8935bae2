#include "charts/marks/Marks.h"
#include "charts/marks/Series.h"
#include "charts/marks/SymbolMark.h"
#include "charts/marks/Tooltips.h"

// The mark line: lines through the rows of each group, in the order of x or of the channel order.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

struct LineColumns {
  NodeId x = -1;  // Real64 columns; special where a line breaks
  NodeId y = -1;
  NodeId group = -1;     // Int32 column; -1 for a single line
  NodeId color = -1;     // Color column; -1 where the channel has no field
  NodeId tooltips = -1;  // String column; -1 without: a line tells its first row's
};

class LinePlan final : public MarkPlan {
 public:
  LinePlan(LineColumns const& columns, MarkLook look, LineInterpolation interpolation,
           std::unique_ptr<MarkPlan> points)
      : columns_(columns),
        look_(std::move(look)),
        interpolation_(interpolation),
        points_(std::move(points)) {}

  void Build(MarkScene const& scene) const override {
    Results const& results = scene.results;
    PointReader const points{results[columns_.x]->AsTypedArray<double>(),
                             results[columns_.y]->AsTypedArray<double>()};
    auto const* groups = columns_.group < 0 ? nullptr : &results[columns_.group]->AsTypedArray<int>();
    auto const* colors = columns_.color < 0 ? nullptr : &results[columns_.color]->AsTypedArray<OrtColor>();
    TooltipReader const tooltips(results, columns_.tooltips);
    LineMark line;
    auto const finish = [&] {
      if (!line.points.empty()) scene.group.nodes.emplace_back(std::move(line));
    };
    for (int row = 0; row < points.x.GetCount(); ++row) {
      bool const isNew =
          row == 0 || (groups != nullptr && groups->GetElement(row) != groups->GetElement(row - 1));
      if (isNew) {
        finish();
        line = Begin(colors != nullptr ? colors->GetElement(row) : look_.color);
        line.tooltip = tooltips.Read(row);
      }
      line.points.push_back(points.Read(row));
    }
    finish();
    if (points_) points_->Build(scene);
  }

  double GetReach() const override { return look_.paint.strokeWidth / 2; }

 private:
  LineMark Begin(OrtColor color) const {
    LineMark line;
    line.interpolation = interpolation_;
    line.stroke = {color, look_.paint.strokeWidth, look_.paint.strokeDash};
    line.opacity = look_.GetStrokeOpacity();
    return line;
  }

  LineColumns columns_;
  MarkLook look_;
  LineInterpolation interpolation_;
  std::unique_ptr<MarkPlan> points_;  // null without symbols
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  GraphBuilder& graph = context.GetGraph();
  CheckSeriesChannels(context);
  NodeId const x = context.GetPosition(Channel::X);
  NodeId const y = context.GetPosition(Channel::Y);
  LineColumns lines{
      .x = x, .y = y, .color = context.GetScaled(Channel::Color), .tooltips = PlanTooltips(context)};
  lines.group = FindSeries(context);
  SortSeries(context, FindDirection(context), lines.color,
             {&lines.x, &lines.y, &lines.group, &lines.color, &lines.tooltips}, lines.group);
  for (NodeId const column : {lines.x, lines.y, lines.group, lines.color, lines.tooltips}) {
    if (column >= 0) graph.Keep(column);
  }
  return std::make_unique<LinePlan>(lines, context.GetLook(), context.GetMark().interpolation,
                                    PlanPoints(context, x, y));
}

}  // namespace

MarkDefinition DefineLine() {
  return {.name = "line",
          .properties = {"stroke", "strokeWidth", "strokeDash", "strokeOpacity", "interpolate", "point"},
          .channels = {Channel::X, Channel::Y, Channel::Color, Channel::Opacity, Channel::Detail,
                       Channel::Order, Channel::Tooltip},
          .plan = Plan,
          .joinsRows = true,
          .sample = LegendSample::Line,
          .gap = "the line breaks there",
          .constantSize = &MarkSpec::strokeWidth};
}

}  // namespace ostrel::charts
