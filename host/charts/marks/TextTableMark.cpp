#include <algorithm>
#include <array>

#include "charts/marks/MarkSpan.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"
#include "charts/texts/ComposedTexts.h"

// The mark textTable: a text in every cell of discrete x and y, wrapped, aligned and shortened to what the
// cell has room for. Of several text fields each begins a line, and the first is bold.
namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::OrtColor;
using ort::core::StoreTypeInfo;

constexpr double kFontSize = 11;
constexpr double kPadding = 4;  // within a cell, pixels

TextTurn FindTurn(MarkContext& context) {
  TextDirection const direction = FindDirection(context.GetMark().angle.value_or(0));
  if (direction.slant == 0) return direction.turn;
  ThrowDocumentError(context.GetCompilation().document, context.GetMark().path + ".angle",
                     "expects one of 0, 90, -90");
}

// The point of a cell at which a text stands by its style.
Point FindPlace(Rect const& cell, TextStyle const& style) {
  double const along = GetShare(style.along);
  double const across = GetShare(style.across);
  switch (style.turn) {
    case TextTurn::Clockwise:
      return {cell.x + (1 - across) * cell.width, cell.y + along * cell.height};
    case TextTurn::Anticlockwise:
      return {cell.x + across * cell.width, cell.y + (1 - along) * cell.height};
    case TextTurn::None:
      break;
  }
  return {cell.x + along * cell.width, cell.y + across * cell.height};
}

Value MakeInts(std::size_t count, auto const& get) {
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(count));
  for (std::size_t row = 0; row < count; ++row) column.GetValues()[row] = static_cast<int>(get(row));
  return column.Finish();
}

class TextTablePlan final : public MarkPlan {
 public:
  explicit TextTablePlan(MarkContext& context) : mark_(context.GetMark()), look_(context.GetLook()) {
    TextTurn const turn = FindTurn(context);
    PlanCells(context);
    color_ = context.GetScaled(Channel::Color);
    if (color_ >= 0) context.GetGraph().Keep(color_);
    PlanTextsOfCells(context, turn);
  }

  void Build(MarkScene const& scene) const override {
    auto const read = [&](NodeId node) { return scene.results[node]->AsTypedArray<double>().GetValues(); };
    auto const x = read(x_.from), x2 = read(x_.to), y = read(y_.from), y2 = read(y_.to);
    auto const* const colors = color_ < 0 ? nullptr : &scene.results[color_]->AsTypedArray<OrtColor>();
    TextMark look;
    for (NodeId const node : composed_) {
      ComposedTexts const texts(scene.results[node]);
      for (int cell = 0; cell < texts.GetCount(); ++cell) {
        if (!texts.HasText(cell) || !IsPlaced(scene, cell)) continue;
        auto const row = static_cast<std::size_t>(cell);
        Rect const room{std::min(x[row], x2[row]) + kPadding, std::min(y[row], y2[row]) + kPadding,
                        std::abs(x2[row] - x[row]) - 2 * kPadding, std::abs(y2[row] - y[row]) - 2 * kPadding};
        look.at = FindPlace(room, styles_[texts.GetStyle(cell)]);
        look.color = Fade(colors != nullptr ? colors->GetElement(cell) : look_.color, look_.opacity);
        texts.Add(scene.group, cell, styles_, look, scene.extent);
      }
    }
  }

 private:
  // The cells are the bands of discrete channels; a channel that is not there has one, the whole pane.
  void PlanCells(MarkContext& context) {
    GraphBuilder& graph = context.GetGraph();
    auto const planSide = [&](Channel channel, char const* name, double length, MarkSpan& span) {
      Encoding const* const encoding = context.GetSpec().Find(channel);
      NodeId const bandwidth = context.GetBandwidth(channel);
      if (encoding != nullptr && bandwidth < 0) {
        ThrowDocumentError(context.GetCompilation().document, encoding->path,
                           "a text table has a cell for each value; use a nominal or ordinal field");
      }
      span = encoding == nullptr ? SpanOfPane(context, channel) : SpanOfPlace(context, channel, {});
      graph.Keep(span.from);
      graph.Keep(span.to);
      NodeId const side = bandwidth < 0 ? graph.Real(length) : bandwidth;
      NodeId const room = graph.Zip(std::string("cell ") + name, "subtract", side, graph.Real(2 * kPadding));
      return graph.Map(std::string("room in ") + name, "clampMin", room, {graph.Real(1)});
    };
    width_ = planSide(Channel::X, "width", context.GetWidth(), x_);
    height_ = planSide(Channel::Y, "height", context.GetHeight(), y_);
  }

  // A cell's runs are its texts with line ends between them: one column of each, end to end, put in order.
  void PlanTextsOfCells(MarkContext& context, TextTurn turn) {
    GraphBuilder& graph = context.GetGraph();
    std::vector<NodeId> columns;
    for (Encoding const& encoding : context.GetSpec().encodings) {
      if (encoding.channel != Channel::Text) continue;
      if (!columns.empty()) columns.push_back(context.Repeat("line ends", graph.Text("\n")));
      columns.push_back(PlanTexts(context, encoding));
    }
    if (columns.empty()) {
      ThrowDocumentError(context.GetCompilation().document, context.GetSpec().path + ".encoding",
                         "a text table has nothing to say; give the channel text");
    }
    std::size_t const runs = columns.size();
    auto const cells = static_cast<std::size_t>(context.GetRows().GetRowCount());
    MakeStyles(runs, turn);
    NodeId const texts = runs == 1 ? columns[0] : graph.Call("all texts", "concatenate", columns);
    NodeId const order = graph.Constant("cell by cell", MakeInts(cells * runs, [&](std::size_t run) {
                                          return run % runs * cells + run / runs;
                                        }));
    NodeId const fromRight = graph.Call("cells from the right", "readsFromRight", {columns[0]});
    composed_ = ComposeByDirection(
        graph, "composed cells",
        {.firstRuns =
             graph.Constant("first runs", MakeInts(cells, [&](std::size_t cell) { return cell * runs; })),
         .counts = graph.Constant("runs of cells", MakeInts(cells, [&](std::size_t) { return runs; })),
         .texts = graph.Call("breakable runs", "hintBreaks", {graph.Call("runs", "take", {texts, order})}),
         .styles = PlanStyles(graph, cells, runs, fromRight),
         .styleTable = MakeTextStyles(graph, styles_)},
        mark_.isRightToLeft.value_or(false) ? fromRight : -1,
        {width_, height_, FindFitStyle(), runtime::WordWrap});
    for (NodeId const node : composed_) graph.Keep(node);
  }

  // A style for each run of a cell, and where texts begin by their own direction, once more for those that
  // are read from the right.
  void MakeStyles(std::size_t runs, TextTurn turn) {
    auto const add = [&](std::size_t run, bool beginsRight) {
      TextAnchor const begin = beginsRight ? TextAnchor::End : TextAnchor::Start;
      styles_.push_back({.fontSize = mark_.fontSize.value_or(kFontSize),
                         .isBold = mark_.isBold || (runs > 1 && run == 0),
                         .turn = turn,
                         .along = FindAnchor(mark_.align, "left", "center", "right", begin),
                         .across = FindAnchor(mark_.baseline, "top", "middle", "bottom", TextAnchor::Start),
                         .isRightToLeft = mark_.isRightToLeft});
    };
    for (std::size_t run = 0; run < runs; ++run) add(run, mark_.isRightToLeft.value_or(false));
    if (!BeginsByText()) return;
    for (std::size_t run = 0; run < runs; ++run) add(run, true);
  }

  bool BeginsByText() const { return mark_.align.empty() && !mark_.isRightToLeft; }

  NodeId PlanStyles(GraphBuilder& graph, std::size_t cells, std::size_t runs, NodeId fromRight) {
    auto const number = [&](std::size_t first) {
      return graph.Constant("styles",
                            MakeInts(cells * runs, [&](std::size_t run) { return first + run % runs; }));
    };
    if (!BeginsByText()) return number(0);
    NodeId const cellOfRun =
        graph.Constant("cells of runs", MakeInts(cells * runs, [&](std::size_t run) { return run / runs; }));
    return graph.Call(
        "styles by direction", "choose",
        {graph.Call("runs from the right", "take", {fromRight, cellOfRun}), number(runs), number(0)});
  }

  static TextAnchor FindAnchor(std::string const& place, char const* start, char const* middle,
                               char const* end, TextAnchor otherwise) {
    if (place == middle) return TextAnchor::Middle;
    return place == start ? TextAnchor::Start : place == end ? TextAnchor::End : otherwise;
  }

  runtime::TextFitStyle FindFitStyle() const {
    using namespace runtime;
    constexpr std::pair<char const*, TextFitStyle> kNames[] = {
        {"overflow", Overflow}, {"hide", HideIfOverflow}, {"truncate", Truncate}, {"pounds", PoundFill}};
    for (auto const& [name, style] : kNames) {
      if (mark_.fit == name) return style;
    }
    return DotsRight;
  }

  bool IsPlaced(MarkScene const& scene, int row) const {
    std::array const nodes = {x_.from, y_.from, color_};
    return std::ranges::none_of(
        nodes, [&](NodeId node) { return node >= 0 && scene.results[node]->AsColumn().IsSpecial(row); });
  }

  MarkSpec mark_;
  MarkLook look_;
  MarkSpan x_;  // Real64 columns of all rows
  MarkSpan y_;
  NodeId width_ = -1;  // Real64 scalars: the room within a cell
  NodeId height_ = -1;
  NodeId color_ = -1;             // column of all rows, -1 where the channel has no field
  std::vector<NodeId> composed_;  // each cell is empty in all nodes but one
  std::vector<TextStyle> styles_;
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) { return std::make_unique<TextTablePlan>(context); }

}  // namespace

MarkDefinition DefineTextTable() {
  return {.name = "textTable",
          .properties = {"angle", "align", "baseline", "fontSize", "fontWeight", "fill", "fit", "dir"},
          .channels = {Channel::X, Channel::Y, Channel::Color, Channel::Text, Channel::Detail},
          .plan = Plan,
          .bandGap = 0,
          .isFilled = true,
          .color = 0xFF333333};
}

}  // namespace ostrel::charts
