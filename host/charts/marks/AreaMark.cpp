#include "charts/marks/MarkSpan.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Series.h"
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
  AreaPlan(AreaColumns const& columns, MarkLook look, MarkSpec const& mark, bool isHorizontal)
      : columns_(columns), look_(std::move(look)), mark_(mark), isHorizontal_(isHorizontal) {}

  void Build(MarkScene const& scene) const override {
    auto const read = [&](NodeId node) -> auto const& { return scene.results[node]->AsTypedArray<double>(); };
    PointReader const ends{read(columns_.place), read(columns_.to)};
    PointReader const bases{read(columns_.place), read(columns_.from)};
    auto const* groups = columns_.group < 0 ? nullptr : &scene.results[columns_.group]->AsTypedArray<int>();
    auto const* colors =
        columns_.color < 0 ? nullptr : &scene.results[columns_.color]->AsTypedArray<OrtColor>();
    TooltipReader const tooltips(scene.results, columns_.tooltips);
    AreaMark area;
    for (int row = 0; row < ends.x.GetCount(); ++row) {
      bool const isNew =
          row > 0 && groups != nullptr && groups->GetElement(row) != groups->GetElement(row - 1);
      if (isNew) Finish(area, scene.group);
      area.fill = colors != nullptr ? colors->GetElement(row) : look_.color;
      if (area.points.empty()) area.tooltip = tooltips.Read(row);
      area.points.push_back(Turned(ends.Read(row)));
      area.basePoints.push_back(Turned(bases.Read(row)));
    }
    Finish(area, scene.group);
  }

 private:
  Point Turned(Point point) const { return isHorizontal_ ? Point{point.y, point.x} : point; }

  void Finish(AreaMark& area, Group& group) const {
    if (area.points.empty()) return;
    area.interpolation = mark_.interpolation;
    area.opacity = look_.opacity;
    LineMark line;
    if (mark_.hasLine) {
      line.points = area.points;
      line.interpolation = area.interpolation;
      line.stroke = {area.fill, look_.strokeWidth, {}};
    }
    group.nodes.emplace_back(std::move(area));
    if (mark_.hasLine) group.nodes.emplace_back(std::move(line));
    area = {};
  }

  AreaColumns columns_;
  MarkLook look_;
  MarkSpec mark_;
  bool isHorizontal_;
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
  PlacedChannel const* const placed = context.Find(place);
  std::vector<NodeId*> const all = {&columns.place, &columns.from,  &columns.to,
                                    &columns.group, &columns.color, &columns.tooltips};
  SortSeries(context, placed == nullptr ? -1 : placed->numbers, columns.color, all, columns.group);
  for (NodeId* column : all) {
    if (*column >= 0) context.GetGraph().Keep(*column);
  }
  return std::make_unique<AreaPlan>(columns, context.GetLook(), context.GetMark(), isHorizontal);
}

}  // namespace

MarkDefinition DefineArea() {
  return {.name = "area",
          .properties = {"fill", "strokeWidth", "interpolate", "line", "orient"},
          .channels = {Channel::X, Channel::Y, Channel::X2, Channel::Y2, Channel::Color, Channel::Opacity,
                       Channel::Detail, Channel::Order, Channel::Tooltip},
          .plan = Plan,
          .isStacked = true,
          .joinsRows = true,
          .isFilled = true,
          .shape = SymbolShape::Square,
          .gap = "the area breaks there"};
}

}  // namespace ostrel::charts
