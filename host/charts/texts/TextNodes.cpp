#include "charts/texts/TextNodes.h"

#include <cmath>

#include "ostreltransforms/VisualKey.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
namespace VisualKey = runtime::VisualKey;
using ort::core::RIndirectString;
using ort::core::StoreTypeInfo;

constexpr int kRegular = 400;
constexpr int kBold = 700;

Value MakeInts(std::vector<TextStyle> const& styles, auto const& get) {
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(styles.size()));
  for (std::size_t row = 0; row < styles.size(); ++row)
    column.GetValues()[row] = static_cast<int>(get(styles[row]));
  return column.Finish();
}

Value MakeSizes(std::vector<TextStyle> const& styles) {
  auto sizes = std::make_unique<std::vector<double>>();
  for (TextStyle const& style : styles) sizes->push_back(style.fontSize);
  return factory::MakeArray<double>(StoreTypeInfo::Real64, std::move(sizes));
}

NodeId Compose(GraphBuilder& graph, std::string const& name, TextRuns const& runs, TextBox const& box) {
  return graph.Call(name, "composeText",
                    {runs.firstRuns, runs.counts, runs.texts, runs.styles, runs.styleTable, box.width,
                     box.height, graph.Int(box.fit), graph.Int(static_cast<int>(box.wrap))});
}

Value MeasureFont(GraphBuilder& graph, double size, bool isBold) {
  return graph.Peek(graph.Call("font metrics", "measureFont", {MakeLabelFont(graph, size, isBold)}));
}

}  // namespace

TextFont TextStyle::MakeFont() const { return {kFontFamily, fontSize, isBold ? kBold : kRegular, false}; }

NodeId MakeTextStyles(GraphBuilder& graph, std::vector<TextStyle> const& styles) {
  RIndirectString const family(OStringCore::fromUtf8(kFontFamily));
  factory::NamedValues columns;
  columns.emplace(VisualKey::Font, factory::MakeConstantArray<RIndirectString>(
                                       StoreTypeInfo::String, family, static_cast<int>(styles.size())));
  columns.emplace(VisualKey::FontSize, MakeSizes(styles));
  columns.emplace(VisualKey::FontWeight,
                  MakeInts(styles, [](TextStyle const& style) { return style.isBold ? kBold : kRegular; }));
  columns.emplace(VisualKey::HAlign, MakeInts(styles, [](TextStyle const& style) { return style.along; }));
  columns.emplace(VisualKey::VAlign, MakeInts(styles, [](TextStyle const& style) { return style.across; }));
  columns.emplace(VisualKey::TextOrientation,
                  MakeInts(styles, [](TextStyle const& style) { return style.turn; }));
  return graph.Call("styles of texts", "updateTextStyleTable",
                    {graph.Constant("fonts", factory::MakeTable(std::move(columns)))});
}

TextRuns MakeSingleRuns(GraphBuilder& graph, std::string const& name, NodeId texts, TextStyle const& style) {
  NodeId const count = graph.Call(name + " number", "count", {texts});
  return {.firstRuns = graph.Call(name + " first runs", "sequence", {graph.Int(0), graph.Int(1), count}),
          .counts = graph.Call(name + " runs", "repeat", {graph.Int(1), count}),
          .texts = texts,
          .styles = graph.Call(name + " styles", "repeat", {graph.Int(0), count}),
          .styleTable = MakeTextStyles(graph, {style})};
}

TextDirection FindDirection(double angle) {
  double const rest = std::remainder(angle, 360);
  if (rest == 90) return {TextTurn::Clockwise, 0};
  if (rest == -90) return {TextTurn::Anticlockwise, 0};
  return {TextTurn::None, rest};
}

TextBox MakeBox(GraphBuilder& graph, TextStyle const& style, double length, int lineCount,
                runtime::WrapMode wrap) {
  NodeId const along = graph.Real(length);
  NodeId const across = graph.Real(MeasureLines(graph, style, lineCount));
  bool const isTurned = style.turn != TextTurn::None;
  return {.width = isTurned ? across : along, .height = isTurned ? along : across, .wrap = wrap};
}

TitleText ComposeTitle(GraphBuilder& graph, std::string const& name, std::string const& text,
                       TextStyle const& style, double length, int mostLines) {
  if (text.empty()) return {};
  NodeId const texts = graph.Call(name + " text", "repeat", {graph.Text(text), graph.Int(1)});
  NodeId const breakable = graph.Call(name + " breakable", "hintBreaks", {texts});
  TextBox const box = MakeBox(graph, style, length, mostLines, runtime::WordWrap);
  return {graph.Keep(ComposeTexts(graph, name, breakable, style, box)), style};
}

NodeId ComposeTexts(GraphBuilder& graph, std::string const& name, NodeId texts, TextStyle const& style,
                    TextBox const& box) {
  return Compose(graph, name, MakeSingleRuns(graph, name, texts, style), box);
}

NodeId ShortenLines(GraphBuilder& graph, std::string const& name, NodeId texts, TextStyle const& style,
                    bool linesFromRight, TextBox const& box) {
  NodeId const table = MakeTextStyles(graph, {style});
  auto const shorten = [&](runtime::TextFitStyle fit) {
    return graph.Call(name + " of short lines", "shortenLines",
                      {texts, table, box.width, box.height, graph.Int(fit)});
  };
  NodeId const shortened = shorten(box.fit);
  if (!linesFromRight || box.fit != runtime::DotsRight) return shortened;
  NodeId const fromRight = graph.Call(name + " from the right", "readsFromRight", {texts});
  return graph.Call(name + " by direction", "choose", {fromRight, shortened, shorten(runtime::DotsLeft)});
}

std::vector<NodeId> ComposeByDirection(GraphBuilder& graph, std::string const& name, TextRuns const& runs,
                                       NodeId fromRight, TextBox const& box) {
  if (fromRight < 0 || box.fit != runtime::DotsRight) return {Compose(graph, name, runs, box)};
  auto const compose = [&](char const* which, NodeId ofRight, NodeId ofLeft, runtime::TextFitStyle fit) {
    TextRuns some = runs;
    some.counts = graph.Call(name + which, "choose", {fromRight, ofRight, ofLeft});
    return Compose(graph, name, some, {box.width, box.height, fit, box.wrap});
  };
  return {compose(" from the right", runs.counts, graph.Int(0), runtime::DotsRight),
          compose(" from the left", graph.Int(0), runs.counts, runtime::DotsLeft)};
}

NodeId ComposeInShapes(GraphBuilder& graph, std::string const& name, NodeId texts, TextShapes const& shapes,
                       std::vector<TextStyle> const& styles, int mostLines, double share,
                       runtime::TextFitStyle fit) {
  NodeId const breakable = graph.Call(name + " breakable", "hintBreaks", {texts});
  NodeId const table = MakeTextStyles(graph, styles);
  NodeId const boxes = graph.Call(name + " boxes", "fitTextBoxes",
                                  {breakable, shapes.widths, shapes.heights, graph.Bool(shapes.isRound),
                                   table, graph.Int(mostLines), graph.Real(share)});
  auto const member = [&](OStringCore const& column, char const* what) {
    return graph.Call(name + what, "member", {boxes, graph.Text(column.toUtf8())});
  };
  return graph.Call(
      name, "composeInBoxes",
      {breakable, member(VisualKey::TextStyleID, " styles"), table, member(VisualKey::Width, " box widths"),
       member(VisualKey::Height, " box heights"), graph.Int(fit), graph.Int(runtime::WordWrap)});
}

double MeasureLines(GraphBuilder& graph, TextStyle const& style, int lineCount) {
  auto const metrics = MeasureFont(graph, style.fontSize, style.isBold);
  auto const& members = metrics->AsNamedValues();
  return lineCount * members.Get(OStringCore(L"height"))->GetReal64() +
         (lineCount - 1) * members.Get(OStringCore(L"leading"))->GetReal64();
}

double MeasureAscent(GraphBuilder& graph, TextStyle const& style) {
  auto const metrics = MeasureFont(graph, style.fontSize, style.isBold);
  return metrics->AsNamedValues().Get(OStringCore(L"ascent"))->GetReal64();
}

NodeId MakeLabelFont(GraphBuilder& graph, double size, bool isBold) {
  return graph.Constant(
      "label font",
      factory::MakeTuple({factory::MakeString(OStringCore::fromUtf8(kFontFamily)), factory::MakeReal64(size),
                          factory::MakeInt32(isBold ? kBold : kRegular), factory::MakeInt32(0)}));
}

}  // namespace ostrel::charts
