#include <algorithm>
#include <cmath>
#include <numbers>

#include "charts/marks/Marks.h"
#include "charts/marks/Tooltips.h"
#include "charts/scales/DomainRoom.h"
#include "charts/texts/ComposedTexts.h"

// The mark text: a text at every row that all scales can place.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

constexpr double kFontSize = 11;
constexpr double kLineHeight = 1.2;  // of the font's size
constexpr double kMargin = 2;        // pixels between a text and the end of its pane

TextAnchor FindAnchor(MarkSpec const& mark) {
  if (mark.align == "left") return TextAnchor::Start;
  return mark.align == "right" ? TextAnchor::End : TextAnchor::Middle;
}

// An alphabetic baseline is that of the first line, told from its top.
TextAnchor FindBaseline(MarkSpec const& mark) {
  if (mark.baseline == "top" || mark.baseline == "alphabetic") return TextAnchor::Start;
  return mark.baseline == "bottom" ? TextAnchor::End : TextAnchor::Middle;
}

TextStyle MakeStyle(MarkSpec const& mark) {
  return {.fontSize = mark.fontSize.value_or(kFontSize),
          .isBold = mark.isBold,
          .turn = FindDirection(mark.angle.value_or(0)).turn,
          .along = FindAnchor(mark),
          .across = FindBaseline(mark),
          .isRightToLeft = mark.isRightToLeft};
}

class TextPlan final : public MarkPlan {
 public:
  TextPlan(MarkContext& context, NodeId texts)
      : mark_(context.GetMark()), look_(context.GetLook()), style_(MakeStyle(context.GetMark())) {
    NodeId const x = context.GetPosition(Channel::X);
    NodeId const y = context.GetPosition(Channel::Y);
    color_ = context.GetScaled(Channel::Color);
    NodeId const placed = context.FindPlaced({x, y, color_, texts});
    x_ = context.KeepPlaced("text x", x, placed);
    y_ = context.KeepPlaced("text y", y, placed);
    tooltips_ = context.KeepPlaced("text tooltips", PlanTooltips(context), placed);
    color_ = context.KeepPlaced("text color", color_, placed);
    PlanTextsOfRows(context.GetGraph(), context.KeepPlaced("texts", texts, placed));
  }

  void Build(MarkScene const& scene) const override {
    auto const& x = scene.results[x_]->AsTypedArray<double>();
    auto const& y = scene.results[y_]->AsTypedArray<double>();
    auto const* colors = color_ < 0 ? nullptr : &scene.results[color_]->AsTypedArray<OrtColor>();
    TooltipReader const tooltips(scene.results, tooltips_);
    TextMark look;
    look.angle = FindDirection(mark_.angle.value_or(0)).slant;
    double const angle = mark_.angle.value_or(0) * std::numbers::pi / 180;
    Point const shift{mark_.dx.value_or(0) + ascent_ * std::sin(angle),
                      mark_.dy.value_or(0) - ascent_ * std::cos(angle)};
    ComposedTexts const texts(scene.results[composed_]);
    for (int row = 0; row < x.GetCount(); ++row) {
      if (!texts.HasText(row)) continue;
      look.at = {x.GetElement(row) + shift.x, y.GetElement(row) + shift.y};
      look.color = Fade(colors != nullptr ? colors->GetElement(row) : look_.color, look_.GetFillOpacity());
      look.tooltip = tooltips.Read(row);
      texts.Add(scene.group, row, style_, look, scene.extent);
    }
  }

 private:
  // Lines end where the text says; with a limit, each that is longer is shortened.
  void PlanTextsOfRows(GraphBuilder& graph, NodeId texts) {
    NodeId const any = graph.Real(GuideStyle::kNoLimit);
    double const limit = mark_.limit.value_or(0);
    if (limit > 0) {
      bool const isTurned = style_.turn != TextTurn::None;
      NodeId const length = graph.Real(limit);
      texts = ShortenLines(graph, "texts", texts, style_, mark_.isRightToLeft.value_or(false),
                           {isTurned ? any : length, isTurned ? length : any});
    }
    composed_ = graph.Keep(ComposeTexts(graph, "composed texts", texts, style_, {any, any}));
    if (mark_.baseline == "alphabetic") ascent_ = MeasureAscent(graph, style_);
  }

  MarkSpec mark_;
  MarkLook look_;
  TextStyle style_;
  double ascent_ = 0;  // from an alphabetic baseline to the line's top
  NodeId x_ = -1;      // columns of the placed rows
  NodeId y_ = -1;
  NodeId color_ = -1;  // -1 where the channel has no field
  NodeId tooltips_ = -1;
  NodeId composed_ = -1;
};

// The text of each row.
NodeId FindTexts(MarkContext& context) {
  Encoding const* const text = context.GetSpec().Find(Channel::Text);
  auto const isText = [](Encoding const& encoding) { return encoding.channel == Channel::Text; };
  if (std::ranges::count_if(context.GetSpec().encodings, isText) > 1) {
    ThrowDocumentError(context.GetCompilation().document, text->path,
                       "several texts are for the mark textTable only; give one field");
  }
  auto const* const constant =
      text == nullptr ? &context.GetMark().text : std::get_if<std::string>(&text->value);
  if (constant == nullptr || (text != nullptr && !text->field.empty())) return PlanTexts(context, *text);
  if (constant->empty()) {
    ThrowDocumentError(context.GetCompilation().document, context.GetMark().path,
                       "has nothing to say; give the channel text");
  }
  return context.Repeat("text", context.GetGraph().Text(*constant));
}

std::unique_ptr<MarkPlan> Plan(MarkContext& context) {
  return std::make_unique<TextPlan>(context, FindTexts(context));
}

// To the right or upwards 1, the other way -1, to both sides 0.
int FindSide(MarkSpec const& mark, bool isHorizontal) {
  // A turned text takes the room that it would need to either side.
  if (mark.angle.value_or(0) != 0) return 0;
  if (isHorizontal) return mark.align == "left" ? 1 : mark.align == "right" ? -1 : 0;
  return mark.baseline == "top" ? -1 : mark.baseline == "bottom" || mark.baseline == "alphabetic" ? 1 : 0;
}

RowReach Reach(MarkContext& context, Channel channel) {
  GraphBuilder& graph = context.GetGraph();
  MarkSpec const& mark = context.GetMark();
  bool const isHorizontal = channel == Channel::X;
  double const size = mark.fontSize.value_or(kFontSize);
  double const angle = mark.angle.value_or(0) * std::numbers::pi / 180;
  double const across = std::abs(isHorizontal ? std::sin(angle) : std::cos(angle));
  double const along = std::abs(isHorizontal ? std::cos(angle) : std::sin(angle));
  NodeId const widths =
      graph.Call("text widths", "measureTexts", {FindTexts(context), MakeLabelFont(graph, size)});
  int const side = FindSide(mark, isHorizontal);
  double const offset = isHorizontal ? mark.dx.value_or(0) : -mark.dy.value_or(0);
  double const both = side == 0 ? 2 : 1;
  double const shift = kMargin + (side == 0 ? std::abs(offset) : std::max(offset * side, 0.0));
  double const isTurned = angle != 0 ? 2 : 1;
  NodeId const turned = graph.Zip("text widths along", "multiply", widths, graph.Real(along * isTurned));
  NodeId const labels = graph.Zip("text extents", "add", turned,
                                  graph.Real(across * isTurned * size * kLineHeight + both * shift));
  return {.labels = labels, .side = side};
}

}  // namespace

MarkDefinition DefineText() {
  return {
      .name = "text",
      .properties = {"dx", "dy", "angle", "align", "baseline", "fontSize", "fontWeight", "text", "fill",
                     "fillOpacity", "limit", "dir"},
      .channels = {Channel::X, Channel::Y, Channel::XOffset, Channel::YOffset, Channel::Color, Channel::Text,
                   Channel::Detail, Channel::Tooltip, Channel::Longitude, Channel::Latitude},
      .plan = Plan,
      .reach = Reach,
      .endsWithMap = false,
      .isFilled = true,
      .color = 0xFF333333,
      .constantSize = &MarkSpec::fontSize};
}

}  // namespace ostrel::charts
