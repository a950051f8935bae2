#include "charts/guides/EntryLegend.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/marks/MarkTable.h"
#include "charts/scales/LegendRooms.h"
#include "charts/texts/ComposedTexts.h"
#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/VisualKey.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
namespace VisualKey = runtime::VisualKey;
using ort::core::OrtColor;
using ort::core::StoreTypeInfo;

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

// Whether an entry's value lies in its scale's domain and gives something to see.
bool IsEntryShown(LegendContent const& legend, Results const& results, int row) {
  for (StyleScale const* scale : legend.scales) {
    if (results[scale->entries]->AsColumn().IsSpecial(row)) return false;
    if (scale->channel == Channel::Size &&
        !(results[scale->entries]->AsTypedArray<double>().GetElement(row) > 0))
      return false;
    if (scale->entryPlaces < 0) continue;
    if (!IsInDomain(results[scale->entryPlaces]->AsTypedArray<double>(), row)) return false;
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
  int const count = results[legend.scales.front()->entryLabels]->AsColumn().GetCount();
  Entries entries;
  for (int row = 0; row < count; ++row) {
    if (!IsEntryShown(legend, results, row)) continue;
    if (entries.shown.size() == GuideStyle::kMostLegendEntries) {
      ++entries.moreCount;
      continue;
    }
    Entry entry{row, look.color, GuideStyle::kLegendSampleSize, look.opacity, look.shape};
    for (StyleScale const* scale : legend.scales) {
      SetStyle(*scale, results, row, entry);
      if (scale->hiddenEntries < 0) continue;
      entry.isHidden = entry.isHidden || results[scale->hiddenEntries]->AsTypedArray<bool>().GetElement(row);
    }
    if (entry.isHidden) entry.opacity *= kFaded;
    entries.shown.push_back(entry);
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

// Draws a list below `top` and gives its bottom.
class EntryBuilder {
 public:
  EntryBuilder(Group& group, TextSetter const& setter, LayerPlan const& layer, TextStyle const& labelStyle,
               Extent& extent)
      : group_(group),
        setter_(setter),
        look_(layer.look),
        labelStyle_(labelStyle),
        isOfLines_(GetDefinition(layer.spec->mark).sample == LegendSample::Line),
        extent_(extent) {}

  // One below the other, all labels behind the widest symbol.
  double AddColumn(Entries const& entries, ComposedTexts const& labels, double top) {
    double widest = GetSymbolWidth(0, isOfLines_);
    for (Entry const& entry : entries.shown)
      widest = std::max(widest, GetSymbolWidth(entry.size, isOfLines_));
    for (Entry const& entry : entries.shown) {
      double const height = GetHeight(entry);
      AddEntry(entry, labels, {0, top + height / 2}, widest);
      top += height + GuideStyle::kLegendRowGap;
    }
    return AddMore(entries.moreCount, {widest + GuideStyle::kLegendLabelPadding, top}) -
           GuideStyle::kLegendRowGap;
  }

  // In lines, each in its room. Lines are stacked upwards there.
  double AddLines(Entries const& entries, ComposedTexts const& labels, ort::core::StoreValue const& rooms,
                  double top) {
    auto const& columns = rooms.AsNamedValues();
    auto const& x = columns.Get(VisualKey::TextRunXRemote)->AsTypedArray<double>();
    auto const& y = columns.Get(VisualKey::TextRunYRemote)->AsTypedArray<double>();
    double height = 0;
    for (Entry const& entry : entries.shown) height = std::max(height, GetHeight(entry));
    double bottom = top;
    for (Entry const& entry : entries.shown) {
      double const lineTop = top - y.GetElement(entry.row);
      AddEntry(entry, labels, {x.GetElement(entry.row), lineTop + height / 2},
               GetSymbolWidth(entry.size, isOfLines_));
      bottom = std::max(bottom, lineTop + height);
    }
    return AddMore(entries.moreCount, {0, bottom + GuideStyle::kLegendRowGap}) - GuideStyle::kLegendRowGap;
  }

 private:
  double GetHeight(Entry const& entry) const {
    return isOfLines_ ? GuideStyle::kLegendRowHeight
                      : std::max(std::sqrt(entry.size), GuideStyle::kLegendRowHeight);
  }

  void AddEntry(Entry const& entry, ComposedTexts const& labels, Point middle, double symbolWidth) {
    AddSample(entry, {middle.x + symbolWidth / 2, middle.y}, symbolWidth);
    AddLabel(labels, entry.row, {middle.x + symbolWidth + GuideStyle::kLegendLabelPadding, middle.y},
             entry.isHidden);
  }

  // How many entries are left out, if any; gives where the next line would be.
  double AddMore(int count, Point at) {
    if (count == 0) return at.y;
    AddRemark(DescribeMore(count), {at.x, at.y + GuideStyle::kLegendRowHeight / 2});
    return at.y + GuideStyle::kLegendRowHeight + GuideStyle::kLegendRowGap;
  }

  void AddLabel(ComposedTexts const& labels, int row, Point at, bool isHidden = false) {
    TextMark look;
    look.at = at;
    look.color = isHidden ? GuideStyle::AxisColor() : GuideStyle::FaintTextColor();
    labels.Add(group_, row, labelStyle_, look, extent_);
  }

  void AddRemark(std::string const& text, Point at) {
    TextMark remark;
    remark.text = text;
    remark.at = at;
    remark.baseline = TextBaseline::Middle;
    remark.font = labelStyle_.MakeFont();
    remark.color = GuideStyle::FaintTextColor();
    setter_.Add(group_, remark, extent_);
  }

  void AddSample(Entry const& entry, Point middle, double width) {
    if (isOfLines_) {
      LineMark line;
      line.points = {{middle.x - width / 2, middle.y}, {middle.x + width / 2, middle.y}};
      line.stroke = {entry.color, look_.paint.strokeWidth, look_.paint.strokeDash};
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
    symbol.paint = look_.paint;
    group_.nodes.emplace_back(std::move(symbol));
  }

  Group& group_;
  TextSetter const& setter_;
  MarkLook const& look_;
  TextStyle labelStyle_;
  bool isOfLines_;
  Extent& extent_;
};

}  // namespace

double AddEntryLegend(LegendContent const& legend, Results const& results, TextSetter const& setter,
                      double top, Group& group, Extent& extent) {
  StyleScale const& first = *legend.scales.front();
  Entries const entries = ReadEntries(legend, results);
  ComposedTexts const labels(results[first.entryTexts]);
  EntryBuilder builder(group, setter, *legend.layer, first.GetLabelStyle(), extent);
  return first.entryRooms < 0 ? builder.AddColumn(entries, labels, top)
                              : builder.AddLines(entries, labels, *results[first.entryRooms], top);
}

}  // namespace ostrel::charts
