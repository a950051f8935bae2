#include "charts/scene/SceneBuilder.h"

#include <cmath>

#include "charts/guides/LegendGuide.h"
#include "charts/scene/PaneBuilder.h"
#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

void AddTitles(ChartPlan const& plan, Results const& results, Group& plot, Extent& extent) {
  using namespace GuideStyle;
  Group titles;
  titles.role = "title";
  double bottom = extent.GetRect().y - kChartTitlePadding;
  auto const add = [&](TitleText const& title, ort::core::OrtColor color) {
    if (title.composed >= 0)
      bottom = AddTitle(titles, results, title, {0, bottom}, color, extent).y - kTitleLineGap;
  };
  add(plan.subtitle, FaintTextColor());
  add(plan.title, TextColor());
  if (!titles.nodes.empty()) plot.nodes.emplace_back(std::make_unique<Group>(std::move(titles)));
}

}  // namespace

Scene BuildScene(ChartDocument const& document, ChartPlan const& plan, Results const& results,
                 TextSetter const& setter) {
  Extent extent(Rect{0, 0, plan.width, plan.height});
  Group plot;
  plot.role = "plot";
  BuildPanes(plan, results, setter, plot, extent);
  AddLegends(plan, std::nullopt, extent.GetRect(), results, setter, plot, extent);
  AddTitles(plan, results, plot, extent);

  Rect const used = extent.GetRect();
  Scene scene;
  double const padding = document.padding.value_or(GuideStyle::kOuterPadding);
  plot.origin = {std::ceil(padding - used.x) + GuideStyle::kPixelShift,
                 std::ceil(padding - used.y) + GuideStyle::kPixelShift};
  scene.width = std::ceil(plot.origin.x + used.Right() + padding);
  scene.height = std::ceil(plot.origin.y + used.Bottom() + padding);
  scene.title = document.title.empty() ? document.name : document.title;
  scene.description = document.description;
  if (!document.background.empty())
    scene.background = ReadColor(document, "$.background", document.background);
  scene.root.nodes.emplace_back(std::make_unique<Group>(std::move(plot)));
  return scene;
}

}  // namespace ostrel::charts
