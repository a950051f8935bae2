#include "charts/guides/LegendGuide.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/functions/LabelVisibility.h"
#include "charts/guides/StepLegend.h"
#include "charts/marks/MarkTable.h"
#include "charts/texts/ComposedTexts.h"
#include "ostrelrtcore/Factory.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::OrtColor;
using ort::core::StoreTypeInfo;

// Of symbols whose size no field tells, in square pixels.
constexpr double kSampleSize = 100;

// How much of its opacity an entry keeps whose marks are hidden.
constexpr double kFaded = 0.25;

// What one line of a legend shows.
struct Entry {
  int row;  // of its label
  OrtColor color;
  double size;
  double opacity;
  SymbolShape shape;
  bool isHidden = false;
};

// One legend: the scales that share it, of which the first one tells title and labels.
struct LegendContent {
  LayerPlan const* layer;
  std::vector<StyleScale const*> scales;
};

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

// Whether an entry's value lies in its scale's domain and gives something to see.
bool IsEntryShown(LegendContent const& legend, Results const& results, int row) {
  // A round value at an end of the domain may miss it by rounding.
  constexpr double kPlaceTolerance = 1e-9;
  for (StyleScale const* scale : legend.scales) {
    if (results[scale->entries]->AsColumn().IsSpecial(row)) return false;
    if (scale->channel == Channel::Size &&
        !(results[scale->entries]->AsTypedArray<double>().GetElement(row) > 0))
      return false;
    if (scale->entryPlaces < 0) continue;
    auto const& places = results[scale->entryPlaces]->AsTypedArray<double>();
    double const place = places.GetElement(row);
    if (places.IsSpecial(row) || !(place >= -kPlaceTolerance && place <= 1 + kPlaceTolerance)) return false;
  }
  return true;
}

void SetStyle(StyleScale const& scale, Results const& results, int row, Entry& entry) {
  auto const& styles = results[scale.entries];
  switch (scale.channel) {
    case Channel::Color:
      entry.color = styles->AsTypedArray<OrtColor>().GetElement(row);
      break;
    case Channel::Size:
      entry.size = styles->AsTypedArray<double>().GetElement(row);
      break;
    case Channel::Opacity:
      entry.opacity = styles->AsTypedArray<double>().GetElement(row);
      break;
    case Channel::Shape:
      entry.shape = static_cast<SymbolShape>(styles->AsTypedArray<int>().GetElement(row));
      break;
    default:
      break;
  }
}

struct Entries {
  std::vector<Entry> shown;
  int moreCount = 0;
};

Entries ReadEntries(LegendContent const& legend, Results const& results) {
  MarkLook const& look = legend.layer->look;
  int const count = ReadLabels(*legend.scales.front(), results).GetCount();
  Entries entries;
  for (int row = 0; row < count; ++row) {
    if (!IsEntryShown(legend, results, row)) continue;
    if (entries.shown.size() == GuideStyle::kMostLegendEntries) {
      ++entries.moreCount;
      continue;
    }
    Entry entry{row, look.color, kSampleSize, look.opacity, look.shape};
    for (StyleScale const* scale : legend.scales) {
      SetStyle(*scale, results, row, entry);
      if (scale->hiddenEntries < 0) continue;
      entry.isHidden = entry.isHidden || results[scale->hiddenEntries]->AsTypedArray<bool>().GetElement(row);
    }
    if (entry.isHidden) entry.opacity *= kFaded;
    entries.shown.push_back(std::move(entry));
  }
  return entries;
}

// A count with its thousands set off, as in labels.
std::string DescribeMore(int count) {
  std::string digits = std::to_string(count);
  for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3) {
    digits.insert(static_cast<std::size_t>(at), ",");
  }
  return fmt::format("\u2026 {} more", digits);
}

// Draws one legend below `top` and gives its bottom.
class LegendBuilder {
 public:
  LegendBuilder(Group& group, TextSetter const& setter, LayerPlan const& layer, Extent& extent)
      : group_(group),
        setter_(setter),
        look_(layer.look),
        isOfLines_(GetDefinition(layer.spec->mark).sample == LegendSample::Line),
        extent_(extent) {}

  double AddTitle(TitleText const& title, Results const& results, double top) {
    if (title.composed < 0) return top;
    Rect const room = charts::AddTitle(group_, results, title, {0, top}, GuideStyle::TextColor(), extent_);
    return room.Bottom() + GuideStyle::kLegendTitlePadding;
  }

  double AddEntries(Entries const& entries, ComposedTexts const& labels, double top) {
    double widest = 10;
    for (Entry const& entry : entries.shown) widest = std::max(widest, std::sqrt(entry.size));
    if (isOfLines_) widest = 16;
    double const least = GuideStyle::kLabelFontSize + 2;
    for (Entry const& entry : entries.shown) {
      double const rowHeight = isOfLines_ ? least : std::max(std::sqrt(entry.size), least);
      double const middle = top + rowHeight / 2;
      AddSample(entry, {widest / 2, middle}, widest);
      AddLabel(labels, entry.row, {widest + 6, middle}, entry.isHidden);
      top += rowHeight + GuideStyle::kLegendRowGap;
    }
    if (entries.moreCount > 0) {
      AddRemark(DescribeMore(entries.moreCount), {widest + 6, top + least / 2});
      top += least + GuideStyle::kLegendRowGap;
    }
    return top - GuideStyle::kLegendRowGap;
  }

  double AddGradient(StyleScale const& scale, Results const& results, double top) {
    using namespace GuideStyle;
    GradientMark gradient{{0, top, kGradientThickness, kGradientLength}, {}};
    auto const& palette = results[scale.palette]->AsTypedArray<int>();
    for (int i = 0; i < palette.GetCount(); ++i) gradient.colors.push_back(OrtColor(palette.GetElement(i)));
    Rect room = gradient.rect;
    room.x += group_.origin.x;
    room.y += group_.origin.y;
    extent_.Add(room);
    group_.nodes.emplace_back(std::move(gradient));
    AddGradientLabels(scale, results, top);
    return top + kGradientLength;
  }

 private:
  void AddGradientLabels(StyleScale const& scale, Results const& results, double top) {
    using namespace GuideStyle;
    auto const& places = results[scale.entryPlaces]->AsTypedArray<double>();
    ComposedTexts const labels(results[scale.entryTexts]);
    std::vector<double> heights;
    std::vector<int> rows;
    for (int row = 0; row < places.GetCount(); ++row) {
      if (!IsEntryShown({nullptr, {&scale}}, results, row)) continue;
      heights.push_back(top + kGradientLength * (1 - places.GetElement(row)));
      rows.push_back(row);
    }
    std::vector<double> const sizes(heights.size(), kLabelFontSize);
    auto const shown = VisibleLabels(heights, sizes, kLegendRowGap, LabelStrategy::Greedy);
    for (std::size_t i = 0; i < heights.size(); ++i) {
      if (shown[i] == 0) continue;
      RuleMarks tick{{{{kGradientThickness, heights[i]}, {kGradientThickness + 3, heights[i]}}},
                     {AxisColor(), 1, {}}};
      group_.nodes.emplace_back(std::move(tick));
      AddLabel(labels, rows[i], {kGradientThickness + 6, heights[i]});
    }
  }

  void AddLabel(ComposedTexts const& labels, int row, Point at, bool isHidden = false) {
    TextMark look;
    look.at = at;
    look.color = isHidden ? GuideStyle::AxisColor() : GuideStyle::FaintTextColor();
    labels.Add(group_, row, kLegendLabelStyle, look, extent_);
  }

  void AddRemark(std::string const& text, Point at) {
    TextMark remark;
    remark.text = text;
    remark.at = at;
    remark.baseline = TextBaseline::Middle;
    remark.font = kLegendLabelStyle.MakeFont();
    remark.color = GuideStyle::FaintTextColor();
    setter_.Add(group_, remark, extent_);
  }

  void AddSample(Entry const& entry, Point middle, double width) {
    if (isOfLines_) {
      LineMark line;
      line.points = {{middle.x - width / 2, middle.y}, {middle.x + width / 2, middle.y}};
      line.stroke = {entry.color, look_.strokeWidth, look_.strokeDash};
      line.opacity = entry.opacity;
      group_.nodes.emplace_back(std::move(line));
      return;
    }
    SymbolMarks symbol;
    symbol.x = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, middle.x, 1);
    symbol.y = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, middle.y, 1);
    symbol.size = {entry.size, nullptr};
    symbol.color = {entry.color, nullptr};
    symbol.opacity = {entry.opacity, nullptr};
    symbol.shape = {entry.shape, nullptr};
    symbol.isFilled = look_.isFilled;
    symbol.strokeWidth = look_.strokeWidth;
    group_.nodes.emplace_back(std::move(symbol));
  }

  Group& group_;
  TextSetter const& setter_;
  MarkLook const& look_;
  bool isOfLines_;
  Extent& extent_;
};

}  // namespace

Group BuildLegends(ChartPlan const& plan, std::optional<std::size_t> pane, Results const& results, Point at,
                   TextSetter const& setter, Extent& extent) {
  Group group;
  group.role = "legend";
  group.origin = at;
  double top = 0;
  for (LegendContent const& legend : CollectLegends(plan, pane, results)) {
    LegendBuilder builder(group, setter, *legend.layer, extent);
    if (top > 0) top += GuideStyle::kLegendGap;
    StyleScale const& first = *legend.scales.front();
    top = builder.AddTitle(first.title, results, top);
    if (first.steps >= 0) {
      top = AddStepLegend(first, results, top, group, extent);
      continue;
    }
    top = first.palette >= 0 ? builder.AddGradient(first, results, top)
                             : builder.AddEntries(ReadEntries(legend, results),
                                                  ComposedTexts(results[first.entryTexts]), top);
  }
  return group;
}

}  // namespace ostrel::charts
