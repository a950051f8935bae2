#include "charts/graph/TitlePlan.h"

#include <algorithm>

#include "charts/guides/GuideStyle.h"
#include "ostrelrtcore/Factory.h"

namespace ostrel::charts {
namespace {

using ort::core::RIndirectString;

constexpr int kMostHeaderLines = 2;

TextAnchor ToAnchor(TextPlace place) {
  if (place == TextPlace::Middle) return TextAnchor::Middle;
  return place == TextPlace::Start ? TextAnchor::Start : TextAnchor::End;
}

// What labels may take of the space between panes.
double FindGap(std::optional<double> spacing) {
  constexpr double kLabelGap = 6;
  return std::max(spacing.value_or(GuideStyle::kPaneGap) - kLabelGap, 0.0);
}

Value MakeTexts(std::vector<std::string> const& texts) {
  auto column = std::make_unique<std::vector<RIndirectString>>();
  for (std::string const& text : texts) column->emplace_back(OStringCore::fromUtf8(text));
  return ort::core::factory::MakeArray<RIndirectString>(ort::core::StoreTypeInfo::String, std::move(column));
}

// Labels run along their panes' edge, or are turned by the document's angle to stand on it.
TitleText PlanLabels(GraphBuilder& graph, std::string const& name, PaneHeader const& header, TextStyle style,
                     double labelRoom) {
  bool const isAbove = style.turn == TextTurn::None;
  if (auto const angle = header.encoding->header.labelAngle) style.turn = FindDirection(*angle).turn;
  bool const runsAlong = (style.turn == TextTurn::None) == isAbove;
  if (!runsAlong) {
    style.along = style.turn == TextTurn::Clockwise ? TextAnchor::End
                  : isAbove                         ? TextAnchor::Start
                                                    : TextAnchor::End;
    style.across = TextAnchor::Middle;
  } else if (style.turn == TextTurn::Clockwise) {
    style.across = TextAnchor::Start;
  }
  NodeId const texts = graph.Constant(name + " labels", MakeTexts(header.labels));
  NodeId const breakable = graph.Call(name + " breakable", "hintBreaks", {texts});
  TextBox const box = MakeBox(graph, style, runsAlong ? labelRoom : GuideStyle::kLabelLimit, kMostHeaderLines,
                              runtime::WordWrap);
  return {graph.Keep(ComposeTexts(graph, name + " headers", breakable, style, box)), style};
}

// A header stands above panes, or left of them and reads upwards.
void PlanHeader(GraphBuilder& graph, std::string const& name, PaneHeader& header, bool isAbove,
                double labelRoom, double gridLength) {
  HeaderSpec const& spec = header.encoding->header;
  if (spec.isHidden) return;
  TextStyle style{.fontSize = GuideStyle::kLabelFontSize,
                  .turn = isAbove ? TextTurn::None : TextTurn::Anticlockwise,
                  .along = TextAnchor::Middle,
                  .across = TextAnchor::End};
  if (spec.labels.value_or(true)) header.composedLabels = PlanLabels(graph, name, header, style, labelRoom);
  TitleSpec const& given = spec.title.isGiven ? spec.title : header.encoding->title;
  style.fontSize = GuideStyle::kTitleFontSize;
  style.isBold = true;
  header.title =
      ComposeTitle(graph, name + " title", given.isGiven ? given.text : DefaultTitle(*header.encoding), style,
                   std::max(gridLength, GuideStyle::kLeastTitleLength));
}

}  // namespace

void PlanTitles(Compilation& compilation, ChartPlan& plan) {
  GraphBuilder& graph = compilation.graph;
  double const width = plan.GetWidth();
  double const height = plan.GetHeight();
  double const length = std::max(width, GuideStyle::kLeastChartTitleLength);
  ChartTitleSpec const& look = compilation.document.config.title;
  TextStyle style{.fontSize = look.fontSize.value_or(GuideStyle::kChartTitleFontSize),
                  .isBold = look.isBold.value_or(true),
                  .along = ToAnchor(look.anchor.value_or(TextPlace::Start)),
                  .across = TextAnchor::End};
  plan.title = ComposeTitle(graph, "title", compilation.document.title, style, length);
  style.fontSize = look.subtitleFontSize.value_or(GuideStyle::kTitleFontSize);
  style.isBold = look.isSubtitleBold.value_or(false);
  plan.subtitle = ComposeTitle(graph, "subtitle", compilation.document.subtitle, style, length);
  PaneSpacing const& spacing = plan.grid.spacing;
  double const rowRoom = plan.height + FindGap(spacing.rows);
  double const columnRoom = plan.width + FindGap(spacing.columns);
  if (plan.grid.rows) PlanHeader(graph, "row", *plan.grid.rows, false, rowRoom, height);
  if (plan.grid.columns) PlanHeader(graph, "column", *plan.grid.columns, true, columnRoom, width);
  if (plan.grid.panes) PlanHeader(graph, "pane", *plan.grid.panes, true, columnRoom, width);
}

}  // namespace ostrel::charts
