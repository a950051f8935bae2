#include "charts/scene/SceneBuilder.h"

#include <cmath>

#include "charts/guides/LegendGuide.h"
#include "charts/scene/PaneBuilder.h"
#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

void AddTitles(ChartTitleSpec const& look, ChartPlan const& plan, Results const& results, Group& plot,
               Extent& extent) {
  using namespace GuideStyle;
  Group titles;
  titles.role = "title";
  double bottom = extent.GetRect().y - look.offset.value_or(kChartTitlePadding);
  // Along the single pane, or along all panes with what stands around them.
  Rect const used = plan.grid.IsSingle() ? Rect{0, 0, plan.width, 0} : extent.GetRect();
  TextPlace const anchor = look.anchor.value_or(TextPlace::Start);
  double const start = plan.grid.IsSingle() || look.anchor ? used.x : 0;
  double const x = anchor == TextPlace::Start    ? start
                   : anchor == TextPlace::Middle ? used.x + used.width / 2
                                                 : used.Right();
  auto const add = [&](TitleText const& title, ort::core::OrtColor color) {
    if (title.composed >= 0)
      bottom = AddTitle(titles, results, title, {x, bottom}, color, extent).y -
               look.subtitlePadding.value_or(kTitleLineGap);
  };
  add(plan.subtitle, look.subtitleColor.value_or(FaintTextColor()));
  add(plan.title, look.color.value_or(TextColor()));
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
  AddTitles(document.config.title, plan, results, plot, extent);

  Rect const used = extent.GetRect();
  Scene scene;
  using GuideStyle::kOuterPadding;
  PaddingSpec const padding =
      document.padding.value_or(PaddingSpec{kOuterPadding, kOuterPadding, kOuterPadding, kOuterPadding});
  plot.origin = {std::ceil(padding.left - used.x) + GuideStyle::kPixelShift,
                 std::ceil(padding.top - used.y) + GuideStyle::kPixelShift};
  scene.width = std::ceil(plot.origin.x + used.Right() + padding.right);
  scene.height = std::ceil(plot.origin.y + used.Bottom() + padding.bottom);
  scene.title = document.title.empty() ? document.name : document.title;
  scene.description = document.description;
  scene.background = document.background.value_or(scene.background);
  scene.root.nodes.emplace_back(std::make_unique<Group>(std::move(plot)));
  return scene;
}

}  // namespace ostrel::charts
