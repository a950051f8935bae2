#include <limits>

#include "charts/marks/Marks.h"
#include "charts/marks/SymbolMark.h"

// The mark line: lines through the rows of each group, in the order of x or of the channel order.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

struct LineColumns {
  NodeId x = -1;  // Real64 columns; special where a line breaks
  NodeId y = -1;
  NodeId group = -1;  // Int32 column; -1 for a single line
  NodeId color = -1;  // Color column; -1 where the channel has no field
};

struct PointReader {
  ort::core::ITypedArray<double> const& x;
  ort::core::ITypedArray<double> const& y;

  Point Read(int row) const {
    if (x.IsSpecial(row) || y.IsSpecial(row)) {
      double const nan = std::numeric_limits<double>::quiet_NaN();
      return {nan, nan};
    }
    return {x.GetElement(row), y.GetElement(row)};
  }
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
      }
      line.points.push_back(points.Read(row));
    }
    finish();
    if (points_) points_->Build(scene);
  }

  double GetReach() const override { return look_.strokeWidth / 2; }

 private:
  LineMark Begin(OrtColor color) const {
    LineMark line;
    line.interpolation = interpolation_;
    line.stroke = {color, look_.strokeWidth, look_.strokeDash};
    line.opacity = look_.opacity;
    return line;
  }

  LineColumns columns_;
  MarkLook look_;
  LineInterpolation interpolation_;
  std::unique_ptr<MarkPlan> points_;  // null without symbols
};

void CheckChannels(MarkContext& context) {
  ChartDocument const& document = context.GetCompilation().document;
  if (PlacedChannel const* const opacity = context.Find(Channel::Opacity)) {
    ThrowDocumentError(document, opacity->encoding->path,
                       "a line has one width and opacity; use \"color\" or \"detail\"");
  }
  PlacedChannel const* const color = context.Find(Channel::Color);
  if (color != nullptr && ResolveScaleType(*color->encoding) != ScaleType::Ordinal) {
    ThrowDocumentError(document, color->encoding->path + ".type",
                       "a line has one color; use \"nominal\" or \"ordinal\"");
  }
}

// The columns whose equal rows make up one line.
std::vector<NodeId> FindGroups(MarkContext& context) {
  std::vector<NodeId> columns;
  for (Encoding const& encoding : context.GetSpec().encodings) {
    bool const splits = encoding.channel == Channel::Color || encoding.channel == Channel::Detail;
    if (splits && !encoding.field.empty())
      columns.push_back(context.GetRows().GetColumn(context.GetGraph(), encoding.field).node);
  }
  return columns;
}

// A line runs along x, but along y where that alone is no quantity.
NodeId FindDirection(MarkContext& context) {
  PlacedChannel const* const x = context.Find(Channel::X);
  PlacedChannel const* const y = context.Find(Channel::Y);
  auto const isQuantity = [](PlacedChannel const& channel) {
    ScaleType const type = channel.position->scaleType;
    return type != ScaleType::Time && type != ScaleType::Ordinal;
  };
  if (x != nullptr && y != nullptr && isQuantity(*x) && !isQuantity(*y)) return y->numbers;
  return x == nullptr ? -1 : x->numbers;
}

// The channel order's numbers, or its values as they stand.
NodeId OrderColumn(MarkContext& context, Encoding const& order) {
  bool const isNumber = order.type == FieldType::Quantitative || order.type == FieldType::Temporal;
  if (isNumber) return FieldNumbers(context.GetCompilation(), {&order, &context.GetRows(), ""}, "order");
  return context.GetRows().GetColumn(context.GetGraph(), order.field).node;
}

// The rows in the order in which lines run through them, line after line.
void SortRows(MarkContext& context, LineColumns& lines) {
  GraphBuilder& graph = context.GetGraph();
  NodeId order = -1;
  NodeId isDescending = -1;
  if (Encoding const* const encoding = context.GetSpec().Find(Channel::Order)) {
    order = OrderColumn(context, *encoding);
    isDescending = graph.Bool(encoding->isDescending.value_or(false));
  } else {
    order = FindDirection(context);
  }
  auto const change = [&](auto const& function) {
    for (NodeId* column : {&lines.x, &lines.y, &lines.group, &lines.color, &order}) {
      if (*column >= 0) *column = function(*column);
    }
  };
  if (lines.color >= 0) {
    NodeId const placed = context.FindPlaced({lines.color});
    change([&](NodeId column) { return graph.Call("coloured rows", "filter", {column, placed}); });
  }
  std::vector<NodeId> keys;
  for (NodeId const key : {lines.group, order, isDescending}) {
    if (key >= 0) keys.push_back(key);
  }
  if (keys.empty()) return;
  NodeId const drawingOrder = graph.Call("drawing order", "sortIndices", keys);
  change([&](NodeId column) { return graph.Call("in drawing order", "take", {column, drawingOrder}); });
}

// Symbols on a line are filled and as opaque as the line.
MarkLook LookOfPoints(MarkLook look) {
  look.isFilled = true;
  look.size = 30;
  return look;
}

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  GraphBuilder& graph = context.GetGraph();
  CheckChannels(context);
  NodeId const x = context.GetPosition(Channel::X);
  NodeId const y = context.GetPosition(Channel::Y);
  LineColumns lines{.x = x, .y = y, .color = context.GetScaled(Channel::Color)};
  if (auto const groups = FindGroups(context); !groups.empty())
    lines.group = graph.Call("line of row", "groupIndex", groups);
  SortRows(context, lines);
  for (NodeId const column : {lines.x, lines.y, lines.group, lines.color}) {
    if (column >= 0) graph.Keep(column);
  }
  MarkLook const& look = context.GetLook();
  auto points = context.GetMark().hasPoints ? PlanSymbols(context, x, y, LookOfPoints(look)) : nullptr;
  return std::make_unique<LinePlan>(lines, look, context.GetMark().interpolation, std::move(points));
}

}  // namespace

MarkDefinition DefineLine() {
  return {
      .name = "line",
      .properties = {"stroke", "strokeWidth", "strokeDash", "interpolate", "point"},
      .channels = {Channel::X, Channel::Y, Channel::Color, Channel::Opacity, Channel::Detail, Channel::Order},
      .plan = Plan,
      .sample = LegendSample::Line,
      .gap = "the line breaks there"};
}

}  // namespace ostrel::charts
