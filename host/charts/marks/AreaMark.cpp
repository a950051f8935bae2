#include "charts/marks/MarkSpan.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Series.h"
#include "charts/marks/SymbolMark.h"
#include "charts/marks/Tooltips.h"
#include "charts/transforms/ChannelFields.h"

// The mark area: what lies between the rows of each series and their base line.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

struct AreaColumns {
  NodeId place = -1;  // Real64 columns; special where an area breaks
  NodeId from = -1;
  NodeId to = -1;
  NodeId group = -1;     // Int32 column; -1 for a single area
  NodeId color = -1;     // Color column; -1 where the channel has no field
  NodeId tooltips = -1;  // String column; -1 without: an area tells its first row's
};

class AreaPlan final : public MarkPlan {
 public:
  AreaPlan(AreaColumns const& columns, MarkContext& context, bool isHorizontal,
           std::unique_ptr<MarkPlan> points)
      : columns_(columns),
        look_(context.GetLook()),
        mark_(context.GetMark()),
        isHorizontal_(isHorizontal),
        points_(std::move(points)) {
    if (mark_.line) lineLook_ = context.ResolveOverlay(*mark_.line);
  }

  void Build(MarkScene const& scene) const override {
    auto const read = [&](NodeId node) -> auto const& { return scene.results[node]->AsTypedArray<double>(); };
    PointReader const ends{read(columns_.place), read(columns_.to)};
    PointReader const bases{read(columns_.place), read(columns_.from)};
    auto const* groups = columns_.group < 0 ? nullptr : &scene.results[columns_.group]->AsTypedArray<int>();
    auto const* colors =
        columns_.color < 0 ? nullptr : &scene.results[columns_.color]->AsTypedArray<OrtColor>();
    TooltipReader const tooltips(scene.results, columns_.tooltips);
    AreaMark area;
    std::vector<LineMark> lines;
    for (int row = 0; row < ends.x.GetCount(); ++row) {
      bool const isNew =
          row > 0 && groups != nullptr && groups->GetElement(row) != groups->GetElement(row - 1);
      if (isNew) Finish(area, scene.group, lines);
      if (area.points.empty()) {
        auto const rowColor = colors == nullptr ? std::nullopt : std::optional(colors->GetElement(row));
        Begin(rowColor, area, lines);
        area.tooltip = tooltips.Read(row);
      }
      area.points.push_back(Turned(ends.Read(row)));
      area.basePoints.push_back(Turned(bases.Read(row)));
    }
    Finish(area, scene.group, lines);
    for (LineMark& line : lines) scene.group.nodes.emplace_back(std::move(line));
    if (points_) points_->Build(scene);
  }

 private:
  Point Turned(Point point) const { return isHorizontal_ ? Point{point.y, point.x} : point; }

  // Without a colour of the row, those of the document.
  void Begin(std::optional<OrtColor> rowColor, AreaMark& area, std::vector<LineMark>& lines) const {
    OrtColor const color = rowColor.value_or(look_.color);
    area.interpolation = mark_.interpolation;
    area.fill = look_.paint.GetFill(color);
    area.stroke = look_.paint.GetStroke(color);
    area.opacity = look_.GetFillOpacity();
    area.strokeOpacity = look_.GetStrokeOpacity();
    if (!mark_.line) return;
    LineMark& line = lines.emplace_back();
    line.interpolation = area.interpolation;
    line.stroke = {rowColor.value_or(lineLook_.color), lineLook_.paint.strokeWidth,
                   lineLook_.paint.strokeDash};
    line.opacity = lineLook_.GetStrokeOpacity();
  }

  // Lines are drawn over all areas.
  void Finish(AreaMark& area, Group& group, std::vector<LineMark>& lines) const {
    if (area.points.empty()) return;
    if (mark_.line) lines.back().points = area.points;
    group.nodes.emplace_back(std::move(area));
    area = {};
  }

  AreaColumns columns_;
  MarkLook look_;
  MarkLook lineLook_;
  MarkSpec mark_;
  bool isHorizontal_;
  std::unique_ptr<MarkPlan> points_;  // null without symbols
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  CheckSeriesChannels(context);
  bool const isHorizontal = IsHorizontal(context.GetMark(), context.GetSpec().encodings);
  Channel const place = isHorizontal ? Channel::Y : Channel::X;
  MarkSpan const span = SpanOfMeasure(context, isHorizontal ? Channel::X : Channel::Y);
  AreaColumns columns{.place = context.GetPosition(place),
                      .from = span.from,
                      .to = span.to,
                      .group = FindSeries(context),
                      .color = context.GetScaled(Channel::Color),
                      .tooltips = PlanTooltips(context)};
  auto points = isHorizontal ? PlanPoints(context, columns.to, columns.place)
                             : PlanPoints(context, columns.place, columns.to);
  PlacedChannel const* const placed = context.Find(place);
  std::vector<NodeId*> const all = {&columns.place, &columns.from,  &columns.to,
                                    &columns.group, &columns.color, &columns.tooltips};
  SortSeries(context, placed == nullptr ? -1 : placed->numbers, columns.color, all, columns.group);
  for (NodeId* column : all) {
    if (*column >= 0) context.GetGraph().Keep(*column);
  }
  return std::make_unique<AreaPlan>(columns, context, isHorizontal, std::move(points));
}

}  // namespace

MarkDefinition DefineArea() {
  return {.name = "area",
          .properties = WithPaints({"interpolate", "line", "point", "orient"}),
          .channels = {Channel::X, Channel::Y, Channel::X2, Channel::Y2, Channel::Color, Channel::Opacity,
                       Channel::Detail, Channel::Order, Channel::Tooltip},
          .plan = Plan,
          .isStacked = true,
          .joinsRows = true,
          .isFilled = true,
          .strokeWidth = 1,
          .shape = SymbolShape::Square,
          .gap = "the area breaks there"};
}

}  // namespace ostrel::charts
