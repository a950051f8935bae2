#include <algorithm>
#include <array>

#include "charts/marks/MarkSpan.h"
#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"
#include "ostreltransforms/VisualKey.h"
#include "string/TextFitStyle.h"

// The mark textTable: a text in every cell of discrete x and y, wrapped, aligned and shortened to what the
// cell has room for. Of several text fields each begins a line, and the first is bold.
namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
namespace VisualKey = runtime::VisualKey;
using ort::core::OrtColor;
using ort::core::RIndirectString;
using ort::core::StoreTypeInfo;

constexpr double kFontSize = 11;
constexpr double kPadding = 4;  // within a cell, pixels
constexpr int kBold = 700;
constexpr int kRegular = 400;
constexpr int kWordWrap = 2;

// How the style table names the ways to turn a text.
enum class Turn { None = 0, Anticlockwise = 2, Clockwise = 3 };

Turn FindTurn(MarkContext& context) {
  double const angle = context.GetMark().angle.value_or(0);
  if (angle == 0) return Turn::None;
  if (angle == 90) return Turn::Clockwise;
  if (angle == -90 || angle == 270) return Turn::Anticlockwise;
  ThrowDocumentError(context.GetCompilation().document, context.GetMark().path + ".angle",
                     "expects one of 0, 90, -90");
}

// The share of a cell's free room that is left before its text.
double FindShare(std::string const& place, char const* middle, char const* end) {
  return place == middle ? 0.5 : place == end ? 1.0 : 0.0;
}

Value MakeInts(std::size_t count, auto const& get) {
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(count));
  for (std::size_t row = 0; row < count; ++row) column.GetValues()[row] = static_cast<int>(get(row));
  return column.Finish();
}

class TextTablePlan final : public MarkPlan {
 public:
  explicit TextTablePlan(MarkContext& context)
      : mark_(context.GetMark()), look_(context.GetLook()), turn_(FindTurn(context)) {
    PlanCells(context);
    color_ = context.GetScaled(Channel::Color);
    if (color_ >= 0) context.GetGraph().Keep(color_);
    PlanTextsOfCells(context);
  }

  void Build(MarkScene const& scene) const override {
    auto const read = [&](NodeId node) { return scene.results[node]->AsTypedArray<double>().GetValues(); };
    auto const x = read(x_.from), x2 = read(x_.to), y = read(y_.from), y2 = read(y_.to);
    auto const* const colors = color_ < 0 ? nullptr : &scene.results[color_]->AsTypedArray<OrtColor>();
    auto const& columns = scene.results[composed_]->AsNamedValues();
    auto const ints = [&](OStringCore const& name) {
      return columns.Get(name)->AsTypedArray<int>().GetValues();
    };
    auto const offsets = ints(VisualKey::TextRunOffset), counts = ints(VisualKey::TextRunCount);
    auto const widths = columns.Get(VisualKey::Width)->AsTypedArray<double>().GetValues();
    auto const heights = columns.Get(VisualKey::Height)->AsTypedArray<double>().GetValues();
    auto const styles = ints(VisualKey::TextStyleID);
    auto const texts = columns.Get(VisualKey::TextRun)->AsTypedArray<RIndirectString>().GetValues();
    auto const runX = columns.Get(VisualKey::TextRunX)->AsTypedArray<double>().GetValues();
    auto const runY = columns.Get(VisualKey::TextRunY)->AsTypedArray<double>().GetValues();

    TextMark mark;
    mark.angle = turn_ == Turn::None ? 0 : turn_ == Turn::Clockwise ? 90 : -90;
    for (std::size_t row = 0; row < counts.size(); ++row) {
      if (!IsPlaced(scene, static_cast<int>(row))) continue;
      Rect const cell{std::min(x[row], x2[row]) + kPadding, std::min(y[row], y2[row]) + kPadding,
                      std::abs(x2[row] - x[row]) - 2 * kPadding, std::abs(y2[row] - y[row]) - 2 * kPadding};
      Point const begin = FindBegin(cell, widths[row], heights[row]);
      mark.color =
          Fade(colors != nullptr ? colors->GetElement(static_cast<int>(row)) : look_.color, look_.opacity);
      for (int i = offsets[row]; i < offsets[row] + counts[row]; ++i) {
        auto const run = static_cast<std::size_t>(i);
        mark.text = texts[run].Get().toUtf8();
        mark.at = {begin.x + runX[run], begin.y + runY[run]};
        mark.font = scene.setter.MakeFont(mark_.fontSize.value_or(kFontSize), IsBold(styles[run]));
        scene.setter.Add(scene.group, mark, scene.extent);
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
  void PlanTextsOfCells(MarkContext& context) {
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
    isBoldFirst_ = runs > 1;
    auto const cells = static_cast<std::size_t>(context.GetRows().GetRowCount());
    NodeId const texts = runs == 1 ? columns[0] : graph.Call("all texts", "concatenate", columns);
    NodeId const order = graph.Constant("cell by cell", MakeInts(cells * runs, [&](std::size_t run) {
                                          return run % runs * cells + run / runs;
                                        }));
    composed_ = graph.Keep(graph.Call(
        "composed cells", "composeText",
        {graph.Constant("first runs", MakeInts(cells, [&](std::size_t cell) { return cell * runs; })),
         graph.Constant("runs of cells", MakeInts(cells, [&](std::size_t) { return runs; })),
         graph.Call("breakable runs", "hintBreaks", {graph.Call("runs", "take", {texts, order})}),
         graph.Constant("styles", MakeInts(cells * runs, [&](std::size_t run) { return run % runs; })),
         graph.Call("styles of texts", "updateTextStyleTable", {graph.Constant("fonts", MakeStyles(runs))}),
         width_, height_, graph.Int(FindFitStyle()), graph.Int(kWordWrap)}));
  }

  bool IsBold(int style) const { return mark_.isBold || (isBoldFirst_ && style == 0); }

  Value MakeStyles(std::size_t runs) const {
    int const align = mark_.align == "center" ? 1 : mark_.align == "right" ? 2 : 0;
    int const count = static_cast<int>(runs);
    auto const repeat = [&](int value) {
      return factory::MakeConstantArray<int>(StoreTypeInfo::Int32, value, count);
    };
    factory::NamedValues columns;
    columns.emplace(VisualKey::Font,
                    factory::MakeConstantArray<RIndirectString>(
                        StoreTypeInfo::String, RIndirectString(OStringCore::fromUtf8(kFontFamily)), count));
    columns.emplace(
        VisualKey::FontSize,
        factory::MakeConstantArray<double>(StoreTypeInfo::Real64, mark_.fontSize.value_or(kFontSize), count));
    columns.emplace(VisualKey::FontWeight, MakeInts(runs, [&](std::size_t run) {
                      return IsBold(static_cast<int>(run)) ? kBold : kRegular;
                    }));
    columns.emplace(VisualKey::HAlign, repeat(align));
    columns.emplace(VisualKey::TextOrientation, repeat(static_cast<int>(turn_)));
    return factory::MakeTable(std::move(columns));
  }

  int FindFitStyle() const {
    using namespace runtime;
    constexpr std::pair<char const*, TextFitStyle> kNames[] = {
        {"overflow", Overflow}, {"hide", HideIfOverflow}, {"truncate", Truncate}, {"pounds", PoundFill}};
    for (auto const& [name, style] : kNames) {
      if (mark_.fit == name) return style;
    }
    // What is left out is where reading ends.
    return mark_.isRightToLeft ? DotsLeft : DotsRight;
  }

  bool IsPlaced(MarkScene const& scene, int row) const {
    std::array const nodes = {x_.from, y_.from, color_};
    return std::ranges::none_of(
        nodes, [&](NodeId node) { return node >= 0 && scene.results[node]->AsColumn().IsSpecial(row); });
  }

  // Where the composer's box begins, so that the lines stand at the top, in the middle or at the bottom.
  Point FindBegin(Rect const& cell, double width, double height) const {
    double const share = FindShare(mark_.baseline, "middle", "bottom");
    if (turn_ == Turn::None) return {cell.x, cell.y + share * std::max(0.0, cell.height - height)};
    double const room = share * std::max(0.0, cell.width - width);
    return {cell.x + (turn_ == Turn::Clockwise ? -room : room), cell.y};
  }

  MarkSpec mark_;
  MarkLook look_;
  Turn turn_;
  MarkSpan x_;  // Real64 columns of all rows
  MarkSpan y_;
  NodeId width_ = -1;  // Real64 scalars: the room within a cell
  NodeId height_ = -1;
  NodeId color_ = -1;     // column of all rows, -1 where the channel has no field
  NodeId composed_ = -1;  // what composeText gives
  bool isBoldFirst_ = false;
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
