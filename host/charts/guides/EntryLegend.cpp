#include "charts/guides/EntryLegend.h"

#include <algorithm>
#include <cmath>

#include "charts/marks/MarkTable.h"
#include "charts/scales/LegendRooms.h"
#include "charts/texts/ComposedTexts.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelsys/Utf.h"
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

// At most as many as a legend shows.
std::vector<Entry> ReadEntries(LegendContent const& legend, Results const& results) {
  MarkLook const& look = legend.layer->look;
  GuideSpec const& spec = legend.scales.front()->encoding.legend;
  int const count = results[legend.scales.front()->entryLabels]->AsColumn().GetCount();
  std::vector<Entry> entries;
  for (int row = 0; row < count && entries.size() < std::size_t{GuideStyle::kMostLegendEntries}; ++row) {
    auto const shows = [&](StyleScale const* scale) { return IsEntryShown(*scale, results, row); };
    if (!std::ranges::all_of(legend.scales, shows)) continue;
    Entry entry{row, look.color, spec.symbolSize.value_or(GuideStyle::kLegendSampleSize), look.opacity,
                spec.symbol.value_or(look.shape)};
    for (StyleScale const* scale : legend.scales) {
      SetStyle(*scale, results, row, entry);
      if (scale->hiddenEntries < 0) continue;
      entry.isHidden = entry.isHidden || results[scale->hiddenEntries]->AsTypedArray<bool>().GetElement(row);
    }
    if (entry.isHidden) entry.opacity *= kFaded;
    entries.push_back(entry);
  }
  return entries;
}

// How many entries are left out, empty for none.
std::string ReadMore(StyleScale const& scale, Results const& results) {
  if (scale.moreEntries < 0) return {};
  auto const& texts = results[scale.moreEntries]->AsTypedArray<ort::core::RIndirectString>();
  return Utf::Utf16ToUtf8(texts.GetElement(0).Get().view());
}

// Draws a list below `top` and gives its bottom.
class EntryBuilder {
 public:
  EntryBuilder(Group& group, TextSetter const& setter, LayerPlan const& layer, StyleScale const& first,
               Extent& extent)
      : group_(group),
        setter_(setter),
        look_(layer.look),
        labelStyle_(first.GetLabelStyle()),
        labelColor_(first.encoding.legend.labelColor.value_or(GuideStyle::FaintTextColor())),
        isOfLines_(GetDefinition(layer.spec->mark).sample == LegendSample::Line &&
                   !first.encoding.legend.symbol),
        extent_(extent) {}

  // In rows of so many, each column's labels behind its widest symbol.
  double AddGrid(std::vector<Entry> const& entries, ComposedTexts const& labels, std::size_t columns,
                 std::string const& more, double top) {
    std::vector<GridColumn> grid(columns, {GetSymbolWidth(0, isOfLines_), 0});
    for (std::size_t i = 0; i < entries.size(); ++i) {
      GridColumn& column = grid[i % columns];
      column.symbol = std::max(column.symbol, GetSymbolWidth(entries[i].size, isOfLines_));
      column.label = std::max(column.label, labels.GetWidth(entries[i].row));
    }
    for (std::size_t begin = 0; begin < entries.size(); begin += columns) {
      std::size_t const end = std::min(begin + columns, entries.size());
      double height = 0;
      for (std::size_t i = begin; i < end; ++i) height = std::max(height, GetHeight(entries[i]));
      double left = 0;
      for (std::size_t i = begin; i < end; ++i) {
        GridColumn const& column = grid[i - begin];
        AddEntry(entries[i], labels, {left, top + height / 2}, column.symbol);
        left += column.symbol + GuideStyle::kLegendLabelPadding + column.label + GuideStyle::kLegendEntryGap;
      }
      top += height + GuideStyle::kLegendRowGap;
    }
    return AddMore(more, {grid.front().symbol + GuideStyle::kLegendLabelPadding, top}) -
           GuideStyle::kLegendRowGap;
  }

  // In lines, each in its room. Lines are stacked upwards there.
  double AddLines(std::vector<Entry> const& entries, ComposedTexts const& labels,
                  ort::core::StoreValue const& rooms, std::string const& more, double top) {
    auto const& columns = rooms.AsNamedValues();
    auto const& x = columns.Get(VisualKey::TextRunXRemote)->AsTypedArray<double>();
    auto const& y = columns.Get(VisualKey::TextRunYRemote)->AsTypedArray<double>();
    double height = 0;
    for (Entry const& entry : entries) height = std::max(height, GetHeight(entry));
    double bottom = top;
    for (Entry const& entry : entries) {
      double const lineTop = top - y.GetElement(entry.row);
      AddEntry(entry, labels, {x.GetElement(entry.row), lineTop + height / 2},
               GetSymbolWidth(entry.size, isOfLines_));
      bottom = std::max(bottom, lineTop + height);
    }
    return AddMore(more, {0, bottom + GuideStyle::kLegendRowGap}) - GuideStyle::kLegendRowGap;
  }

 private:
  struct GridColumn {
    double symbol;
    double label;
  };

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
  double AddMore(std::string const& more, Point at) {
    if (more.empty()) return at.y;
    AddRemark(more, {at.x, at.y + GuideStyle::kLegendRowHeight / 2});
    return at.y + GuideStyle::kLegendRowHeight + GuideStyle::kLegendRowGap;
  }

  void AddLabel(ComposedTexts const& labels, int row, Point at, bool isHidden = false) {
    TextMark look;
    look.at = at;
    look.color = isHidden ? GuideStyle::AxisColor() : labelColor_;
    labels.Add(group_, row, labelStyle_, look, extent_);
  }

  void AddRemark(std::string const& text, Point at) {
    TextMark remark;
    remark.text = text;
    remark.at = at;
    remark.baseline = TextBaseline::Middle;
    remark.font = labelStyle_.MakeFont();
    remark.color = labelColor_;
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
  OrtColor labelColor_;
  bool isOfLines_;
  Extent& extent_;
};

}  // namespace

double AddEntryLegend(LegendContent const& legend, Results const& results, TextSetter const& setter,
                      double top, Group& group, Extent& extent) {
  StyleScale const& first = *legend.scales.front();
  std::vector<Entry> const entries = ReadEntries(legend, results);
  ComposedTexts const labels(results[first.entryTexts]);
  std::string const more = ReadMore(first, results);
  EntryBuilder builder(group, setter, *legend.layer, first, extent);
  if (first.entryRooms >= 0) return builder.AddLines(entries, labels, *results[first.entryRooms], more, top);
  std::size_t const all = std::max<std::size_t>(entries.size(), 1);
  auto const columns = static_cast<std::size_t>(first.encoding.legend.columns.value_or(1));
  return builder.AddGrid(entries, labels, columns == 0 ? all : std::min(columns, all), more, top);
}

}  // namespace ostrel::charts
