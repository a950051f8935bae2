#include "charts/guides/LegendGuide.h"

#include <cmath>

#include "ostrelrtcore/Factory.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::OrtColor;
using ort::core::StoreTypeInfo;

// What one line of a legend shows.
struct Entry {
  std::string label;
  OrtColor color;
  double size;
  double opacity;
  SymbolShape shape;
};

// One legend: its title and the scales that share it.
struct LegendContent {
  std::string title;
  std::vector<StyleScale const*> scales;
};

std::string LegendTitle(Encoding const& encoding) {
  if (encoding.legend.title.isGiven) return encoding.legend.title.text;
  if (encoding.title.isGiven) return encoding.title.text;
  return encoding.field;
}

std::vector<LegendContent> CollectLegends(ChartPlan const& plan) {
  std::vector<LegendContent> legends;
  for (StyleScale const& scale : plan.styles) {
    if (scale.encoding->legend.isHidden) continue;
    auto const shares = [&](LegendContent const& legend) {
      StyleScale const& first = *legend.scales.front();
      return first.isCategorical && scale.isCategorical && first.encoding->field == scale.encoding->field;
    };
    auto const shared = std::ranges::find_if(legends, shares);
    if (shared != legends.end()) {
      shared->scales.push_back(&scale);
    } else {
      legends.push_back({LegendTitle(*scale.encoding), {&scale}});
    }
  }
  return legends;
}

std::vector<Entry> ReadEntries(LegendContent const& legend, Results const& results, MarkLook const& look) {
  auto const& labels =
      results[legend.scales.front()->entryLabels]->AsTypedArray<ort::core::RIndirectString>();
  std::vector<Entry> entries;
  for (int row = 0; row < labels.GetCount(); ++row) {
    Entry entry{labels.GetElement(row).Get().toUtf8(), look.color, 100, look.opacity, look.shape};
    for (StyleScale const* scale : legend.scales) {
      auto const& styles = results[scale->entries];
      switch (scale->channel) {
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
    entries.push_back(std::move(entry));
  }
  return entries;
}

// Draws one legend below `top` and gives its bottom.
class LegendBuilder {
 public:
  LegendBuilder(Group& group, TextSetter const& setter, MarkLook const& look, bool isOfLines, Extent& extent)
      : group_(group), setter_(setter), look_(look), isOfLines_(isOfLines), extent_(extent) {}

  double AddTitle(std::string const& text, double top) {
    if (text.empty()) return top;
    TextMark title;
    title.text = text;
    title.at = {0, top};
    title.baseline = TextBaseline::Top;
    title.font = setter_.MakeFont(GuideStyle::kTitleFontSize, true);
    setter_.Add(group_, std::move(title), extent_);
    return top + GuideStyle::kTitleFontSize + 8;
  }

  double AddEntries(std::vector<Entry> const& entries, double top) {
    double widest = 10;
    for (Entry const& entry : entries) widest = std::max(widest, std::sqrt(entry.size));
    if (isOfLines_) widest = 16;
    for (Entry const& entry : entries) {
      double const rowHeight = std::max(std::sqrt(entry.size), GuideStyle::kLabelFontSize + 2);
      double const middle = top + rowHeight / 2;
      AddSample(entry, {widest / 2, middle}, widest);
      AddLabel(entry.label, {widest + 6, middle});
      top += rowHeight + GuideStyle::kLegendRowGap;
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
    auto const& places = results[scale.entryPlaces]->AsTypedArray<double>();
    auto const& labels = results[scale.entryLabels]->AsTypedArray<ort::core::RIndirectString>();
    for (int row = 0; row < places.GetCount(); ++row) {
      if (places.IsSpecial(row)) continue;
      double const y = top + kGradientLength * (1 - places.GetElement(row));
      RuleMarks tick{{{{kGradientThickness, y}, {kGradientThickness + 3, y}}}, {AxisColor(), 1, {}}};
      group_.nodes.emplace_back(std::move(tick));
      AddLabel(labels.GetElement(row).Get().toUtf8(), {kGradientThickness + 6, y});
    }
    return top + kGradientLength;
  }

 private:
  void AddLabel(std::string const& text, Point at) {
    TextMark label;
    label.text = text;
    label.at = at;
    label.baseline = TextBaseline::Middle;
    label.font = setter_.MakeFont(GuideStyle::kLabelFontSize);
    label.color = GuideStyle::FaintTextColor();
    setter_.Add(group_, std::move(label), extent_);
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

Group BuildLegends(ChartPlan const& plan, Results const& results, MarkLook const& look, Point at,
                   TextSetter const& setter, Extent& extent) {
  Group group;
  group.role = "legend";
  group.origin = at;
  LegendBuilder builder(group, setter, look, plan.lines.has_value(), extent);
  double top = 0;
  for (LegendContent const& legend : CollectLegends(plan)) {
    if (top > 0) top += GuideStyle::kLegendGap;
    top = builder.AddTitle(legend.title, top);
    StyleScale const& first = *legend.scales.front();
    top = first.entryPlaces >= 0 ? builder.AddGradient(first, results, top)
                                 : builder.AddEntries(ReadEntries(legend, results, look), top);
  }
  return group;
}

}  // namespace ostrel::charts
