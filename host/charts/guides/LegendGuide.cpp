#include "charts/guides/LegendGuide.h"

#include <algorithm>

#include "charts/guides/EntryLegend.h"
#include "charts/guides/RampLegend.h"
#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

using Texts = ort::core::ITypedArray<ort::core::RIndirectString>;

Texts const& ReadLabels(StyleScale const& scale, Results const& results) {
  return results[scale.entryLabels]->AsTypedArray<ort::core::RIndirectString>();
}

// Two categorical scales share a legend when they show the same values of a field.
bool ShareLegend(StyleScale const& first, StyleScale const& second, Results const& results) {
  if (!first.isCategorical || !second.isCategorical || first.encoding.field != second.encoding.field)
    return false;
  Texts const& labels = ReadLabels(first, results);
  Texts const& others = ReadLabels(second, results);
  if (labels.GetCount() != others.GetCount()) return false;
  for (int row = 0; row < labels.GetCount(); ++row) {
    if (labels.GetElement(row).Get() != others.GetElement(row).Get()) return false;
  }
  return true;
}

std::vector<LegendContent> CollectLegends(ChartPlan const& plan, std::optional<std::size_t> pane,
                                          Results const& results) {
  std::vector<LegendContent> legends;
  for (auto const& [scale, layer, ownPane] : plan.styles) {
    if (ownPane != pane) continue;
    GuideSpec const& spec = scale.encoding.legend;
    if (spec.isHidden) continue;
    auto const shares = [&, &style = scale](LegendContent const& legend) {
      return ShareLegend(*legend.scales.front(), style, results);
    };
    auto const shared = std::ranges::find_if(legends, shares);
    if (shared != legends.end()) {
      shared->scales.push_back(&scale);
    } else {
      legends.push_back({&plan.panes[pane.value_or(0)].layers[layer], {&scale}});
    }
  }
  return legends;
}

std::string GetSide(LegendContent const& legend) {
  std::string const& side = legend.scales.front()->encoding.legend.orient;
  return side.empty() ? "right" : side;
}

double BuildLegend(LegendContent const& legend, Results const& results, TextSetter const& setter, double top,
                   Group& group, Extent& extent) {
  StyleScale const& first = *legend.scales.front();
  if (first.title.composed >= 0) {
    GuideSpec const& spec = first.encoding.legend;
    top = AddTitle(group, results, first.title, {0, top}, spec.titleColor.value_or(GuideStyle::TextColor()),
                   extent)
              .Bottom() +
          spec.titlePadding.value_or(GuideStyle::kLegendTitlePadding);
  }
  return first.IsRamp() ? AddRampLegend(first, results, top, group, extent)
                        : AddEntryLegend(legend, results, setter, top, group, extent);
}

// Groups of legends, and the room that they take up together, from (0, 0) on.
struct SideLegends {
  std::vector<Group> groups;
  Rect room;

  void MoveBy(Point shift) {
    for (Group& group : groups) group.origin = {group.origin.x + shift.x, group.origin.y + shift.y};
    room.x += shift.x;
    room.y += shift.y;
  }
};

Group MakeGroup() {
  Group group;
  group.role = "legend";
  return group;
}

// One below the other.
SideLegends StackLegends(std::vector<LegendContent> const& legends, Results const& results,
                         TextSetter const& setter) {
  Group group = MakeGroup();
  Extent extent({});
  double top = 0;
  for (LegendContent const& legend : legends) {
    if (top > 0) top += GuideStyle::kLegendGap;
    top = BuildLegend(legend, results, setter, top, group, extent);
  }
  SideLegends side{.groups = {}, .room = extent.GetRect()};
  side.groups.push_back(std::move(group));
  return side;
}

// Side by side, in as many lines as they need.
SideLegends AlignLegends(std::vector<LegendContent> const& legends, Results const& results,
                         TextSetter const& setter, double width) {
  SideLegends side;
  Extent all({});
  Point next;
  for (LegendContent const& legend : legends) {
    Group group = MakeGroup();
    Extent extent({});
    BuildLegend(legend, results, setter, 0, group, extent);
    Rect const room = extent.GetRect();
    if (next.x > 0 && next.x + room.width > width)
      next = {0, all.GetRect().Bottom() + GuideStyle::kLegendGap};
    group.origin = {next.x - room.x, next.y - room.y};
    all.Add({next.x, next.y, room.width, room.height});
    next.x += room.width + GuideStyle::kLegendGap;
    side.groups.push_back(std::move(group));
  }
  side.room = all.GetRect();
  return side;
}

}  // namespace

void AddLegends(ChartPlan const& plan, std::optional<std::size_t> pane, Rect const& beside,
                Results const& results, TextSetter const& setter, Group& parent, Extent& extent) {
  using GuideStyle::kLegendOffset;
  std::vector<LegendContent> const legends = CollectLegends(plan, pane, results);
  for (std::string const name : {"right", "left", "top", "bottom"}) {
    std::vector<LegendContent> there;
    std::ranges::copy_if(legends, std::back_inserter(there),
                         [&name](LegendContent const& legend) { return GetSide(legend) == name; });
    if (there.empty()) continue;
    bool const isAcross = there.front().scales.front()->encoding.legend.IsHorizontal();
    SideLegends side = isAcross ? AlignLegends(there, results, setter, pane ? plan.width : plan.GetWidth())
                                : StackLegends(there, results, setter);
    double const offset = there.front().scales.front()->encoding.legend.offset.value_or(kLegendOffset);
    Point place;
    if (name == "right") place.x = beside.Right() + offset;
    if (name == "left") place.x = beside.x - offset - side.room.Right();
    if (name == "top") place.y = beside.y - offset - side.room.Bottom();
    if (name == "bottom") place.y = beside.Bottom() + offset;
    side.MoveBy(place);
    extent.Add(side.room);
    for (Group& group : side.groups) parent.nodes.emplace_back(std::make_unique<Group>(std::move(group)));
  }
}

}  // namespace ostrel::charts
