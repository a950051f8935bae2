#include "charts/scales/StyleScale.h"

#include <algorithm>
#include <cmath>

#include "charts/document/Readers.h"
#include "charts/guides/GuideStyle.h"
#include "charts/scales/ColorPalette.h"
#include "charts/scales/GuideValues.h"
#include "charts/scales/StepScale.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::StoreTypeInfo;

constexpr char const* kCategoricalScheme = "tableau10";
// Enough to follow ramps of up to 30 colours.
constexpr int kSchemeStops = 33;
constexpr double kLegendTickCount = 5;
constexpr double kMostBins = 1'000;  // that a legend lists

double GetLabelSize(Encoding const& encoding) {
  return encoding.legend.labelFontSize.value_or(GuideStyle::kLabelFontSize);
}

bool IsContinuous(Encoding const& encoding) { return ResolveScaleType(encoding) != ScaleType::Ordinal; }

// Indices that start again from 0 where they reach the count.
NodeId WrapIndices(GraphBuilder& graph, std::string const& name, NodeId indices, NodeId count) {
  NodeId const place =
      graph.Zip(name + " places", "remainder", graph.Map(name + " index", "asReal64", indices),
                graph.Map(name + " count", "asReal64", count));
  return graph.Map(name + " wrapped", "toInt32", place);
}

// The values that a continuous legend shows: their labels, and their places in the domain. Gives the places
// held within the domain.
NodeId PlanEntries(Compilation& compilation, Encoding const& encoding, ScaledField const& field,
                   StyleScale& scale) {
  GraphBuilder& graph = compilation.graph;
  std::string const name = field.name + " legend";
  GuideValues const values = PlanGuideValues(compilation, encoding, field,
                                             {.name = name,
                                              .place = ".legend.values",
                                              .values = encoding.legend.values,
                                              .format = encoding.legend.format,
                                              .count = encoding.legend.tickCount.value_or(kLegendTickCount),
                                              .length = GuideStyle::kGradientLength,
                                              .isHorizontal = encoding.legend.RunsAcross(),
                                              .font = MakeLabelFont(graph, GetLabelSize(encoding))});
  scale.entryLabels = values.labels;
  NodeId const scaled = ToScaleSpace(graph, field, name, values.numbers);
  scale.entryPlaces = ToFraction(graph, field, name + " place", scaled, false);
  return ToFraction(graph, field, name, scaled, true);
}

// Bins, of which a legend shows each with the style of its middle.
bool HasBins(Encoding const& encoding) {
  return encoding.bin && !encoding.startField.empty() && encoding.legend.values.empty();
}

NodeId PlanBinEntries(Compilation& compilation, ScaleSource const& source, ScaledField const& field,
                      StyleScale& scale) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = *source.uses.front().encoding;
  LayerRows& rows = *source.uses.front().rows;
  std::string const name = source.name + " bin";
  NodeId const starts = rows.GetNumbers(graph, encoding.startField).node;
  NodeId const widths =
      graph.Zip(name + " widths", "subtract", rows.GetNumbers(graph, encoding.endField).node, starts);
  auto const find = [&](char const* what, char const* function, NodeId column) {
    return ort::core::FetchStoreValue<double>(graph.Peek(graph.Call(name + what, function, {column})));
  };
  double const width = find(" width", "columnMin", widths);
  double const lowest = find(" lowest", "columnMin", starts);
  double const highest = find(" highest", "columnMax", starts);
  double const bins = std::round((highest - lowest) / width) + 1;
  if (!(bins <= kMostBins)) return PlanEntries(compilation, encoding, field, scale);
  auto const count = static_cast<int>(bins);
  auto const placeAt = [&](char const* what, double shift) {
    auto numbers = std::make_unique<std::vector<double>>();
    for (int bin = 0; bin < count; ++bin) numbers->push_back(lowest + (bin + shift) * width);
    return graph.Constant(name + what, factory::MakeArray<double>(StoreTypeInfo::Real64, std::move(numbers)));
  };
  auto const format = [&](NodeId numbers) {
    return graph.Call(name + " texts", "formatNumbers", {numbers, graph.Text(encoding.legend.format)});
  };
  scale.entryLabels =
      graph.Call(name + " labels", "joinTexts",
                 {format(placeAt(" starts", 0)), graph.Text(" \u2013 "), format(placeAt(" ends", 1))});
  NodeId const middles = ToScaleSpace(graph, field, name, placeAt(" middles", 0.5));
  scale.entryPlaces = ToFraction(graph, field, name + " place", middles, false);
  return ToFraction(graph, field, name, middles, true);
}

void KeepAll(GraphBuilder& graph, StyleScale const& scale) {
  for (NodeId const node : scale.rows) graph.Keep(node);
  for (NodeId const node :
       {scale.entryLabels, scale.entryTexts, scale.entries, scale.hiddenEntries, scale.shownEntries,
        scale.moreEntries, scale.entryPlaces, scale.palette, scale.steps}) {
    if (node >= 0) graph.Keep(node);
  }
}

StyleScale PlanCategoricalColor(Compilation& compilation, ScaleSource const& source) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  CategoryField const field = IndexCategories(compilation, source);
  char const* const scheme = encoding.type == FieldType::Ordinal ? kSequentialScheme : kCategoricalScheme;
  NodeId const palette = PlanPalette(compilation, encoding, "color", field.count, scheme, PaletteEnds::Left,
                                     encoding.scale.reverse.value_or(false));
  NodeId const wide = graph.Map("color palette values", "toInt64", palette);
  NodeId const size = graph.Call("color palette size", "count", {palette});
  auto const lookUp = [&](std::string const& name, NodeId indices) {
    // A palette shorter than the domain is used again from its start.
    NodeId const place = WrapIndices(graph, name, indices, size);
    return graph.Map(name + " colors", "toColor",
                     graph.Map(name + " values", "arrayLookupInt64", place, {wide}));
  };
  StyleScale scale{.channel = Channel::Color, .encoding = encoding, .isCategorical = true};
  for (std::size_t i = 0; i < source.uses.size(); ++i)
    scale.rows.push_back(lookUp("color row" + source.uses[i].label, field.indices[i]));
  CategoryEntries const entries = ListEntries(graph, field, encoding, encoding.legend.values);
  scale.entryLabels = entries.labels;
  scale.entries = lookUp("color legend", entries.indices);
  return scale;
}

StyleScale PlanContinuousColor(Compilation& compilation, ScaleSource const& source) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  ScaledField const field = ScaleField(compilation, source, {});
  StyleScale scale{.channel = Channel::Color, .encoding = encoding};
  char const* const scheme = field.middle >= 0 ? kDivergingScheme : kSequentialScheme;
  scale.palette = PlanPalette(compilation, encoding, "color", graph.Int(kSchemeStops), scheme,
                              PaletteEnds::Taken, IsReversed(encoding, field));
  for (std::size_t i = 0; i < source.uses.size(); ++i) {
    std::string const& label = source.uses[i].label;
    NodeId const fraction =
        ToFraction(graph, field, "color" + label, field.rows[i].scaled, encoding.scale.clamp.value_or(false));
    std::string const name = "row colors" + label;
    scale.rows.push_back(graph.Map(name, "cinterp", fraction, {scale.palette}));
  }
  NodeId const places = PlanEntries(compilation, encoding, field, scale);
  scale.entries = graph.Map("color legend colors", "cinterp", places, {scale.palette});
  return scale;
}

struct Extent {
  double low;
  double high;
};

// The range of a numeric channel: the document's own, or the given one.
Extent ReadExtent(Compilation const& compilation, Encoding const& encoding, Extent extent) {
  auto const& range = encoding.scale.range;
  if (range.empty()) return extent;
  auto const* low = std::get_if<double>(&range[0]);
  auto const* high = range.size() == 2 ? std::get_if<double>(&range[1]) : nullptr;
  if (low == nullptr || high == nullptr) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.range", "expects two numbers");
  }
  return {*low, *high};
}

// Values at even distances from end to end of the range.
StyleScale PlanDiscreteNumbers(Compilation& compilation, ScaleSource const& source, Extent extent) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  CategoryField const field = IndexCategories(compilation, source);
  if (encoding.scale.reverse.value_or(false)) std::swap(extent.low, extent.high);
  int const gaps = graph.Peek(field.count)->GetInt32() - 1;
  double const step = gaps > 0 ? (extent.high - extent.low) / gaps : 0;
  double const first = gaps > 0 ? extent.low : (extent.low + extent.high) / 2;
  auto const place = [&](std::string const& name, NodeId indices) {
    NodeId const number = graph.Map(name + " numbers", "asReal64", indices);
    return graph.Zip(name, "add", graph.Zip(name + " from first", "multiply", number, graph.Real(step)),
                     graph.Real(first));
  };
  StyleScale scale{.channel = encoding.channel, .encoding = encoding, .isCategorical = true};
  for (std::size_t i = 0; i < source.uses.size(); ++i)
    scale.rows.push_back(place(source.name + " of rows" + source.uses[i].label, field.indices[i]));
  CategoryEntries const entries = ListEntries(graph, field, encoding, encoding.legend.values);
  scale.entryLabels = entries.labels;
  scale.entries = place(source.name + " of legend", entries.indices);
  return scale;
}

StyleScale PlanNumericScale(Compilation& compilation, ScaleSource const& source, bool includesZero,
                            Extent extent) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  std::string const& name = source.name;
  extent = ReadExtent(compilation, encoding, extent);
  if (!IsContinuous(encoding)) return PlanDiscreteNumbers(compilation, source, extent);
  ScaledField const field = ScaleField(compilation, source, {.includesZero = includesZero});
  if (IsReversed(encoding, field)) std::swap(extent.low, extent.high);
  StyleScale scale{.channel = encoding.channel, .encoding = encoding};
  std::string const ofRows = name + " of rows";
  for (std::size_t i = 0; i < source.uses.size(); ++i) {
    std::string const& label = source.uses[i].label;
    NodeId const fraction =
        ToFraction(graph, field, name + label, field.rows[i].scaled, encoding.scale.clamp.value_or(true));
    scale.rows.push_back(ToRange(graph, ofRows + label, fraction, extent.low, extent.high));
  }
  NodeId const places = HasBins(encoding) ? PlanBinEntries(compilation, source, field, scale)
                                          : PlanEntries(compilation, encoding, field, scale);
  scale.entries = ToRange(graph, name + " of legend", places, extent.low, extent.high);
  return scale;
}

// Int32 column of SymbolShape values: the document's own, or all.
NodeId MakeShapes(GraphBuilder& graph, Encoding const& encoding) {
  auto shapes = std::make_unique<std::vector<int>>();
  auto const names = SymbolShapeNames();
  for (Literal const& literal : encoding.scale.range) {
    auto const found = std::ranges::find(names, std::get<std::string>(literal),
                                         [](auto const& word) { return std::string(word.name); });
    shapes->push_back(static_cast<int>(found->value));
  }
  for (auto const& word : names) {
    if (encoding.scale.range.empty()) shapes->push_back(static_cast<int>(word.value));
  }
  if (encoding.scale.reverse.value_or(false)) std::ranges::reverse(*shapes);
  return graph.Constant("shapes", factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(shapes)));
}

StyleScale PlanSizeScale(Compilation& compilation, ScaleSource const& source) {
  bool const isLog = ResolveScaleType(source.encoding) == ScaleType::Log;
  bool const hasCenter = source.encoding.scale.domainMid.has_value();
  return PlanNumericScale(compilation, source, !isLog && !hasCenter,
                          {FindSmallestSymbol(source.encoding), kLargestSymbol});
}

StyleScale PlanShapeScale(Compilation& compilation, ScaleSource const& source) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  CategoryField const field = IndexCategories(compilation, source);
  NodeId const shapes = MakeShapes(graph, encoding);
  NodeId const count = graph.Call("shape number", "count", {shapes});
  auto const lookUp = [&](std::string const& name, NodeId indices) {
    // As with colours, the shapes start again where they end.
    return graph.Call(name, "take", {shapes, WrapIndices(graph, name, indices, count)});
  };
  StyleScale scale{.channel = Channel::Shape, .encoding = encoding, .isCategorical = true};
  for (std::size_t i = 0; i < source.uses.size(); ++i)
    scale.rows.push_back(lookUp("row shapes" + source.uses[i].label, field.indices[i]));
  CategoryEntries const entries = ListEntries(graph, field, encoding, encoding.legend.values);
  scale.entryLabels = entries.labels;
  scale.entries = lookUp("shape legend", entries.indices);
  return scale;
}

// Entries whose value lies in the domain and gives something to see; -1 for all.
NodeId PlanShownEntries(GraphBuilder& graph, ScaleSource const& source, StyleScale const& scale) {
  // What a round value at an end of the domain, 0 or 1, may miss it by.
  constexpr double kPlaceTolerance = 1e-9;
  std::string const name = source.name + " legend entry";
  NodeId shown = -1;
  auto const require = [&](NodeId holds) {
    shown = shown < 0 ? holds : graph.Zip(name + " is shown", "and", shown, holds);
  };
  auto const compare = [&](char const* what, char const* test, NodeId column, double limit) {
    require(graph.Zip(name + what, test, column, graph.Real(limit)));
  };
  bool const mayMiss = scale.entryPlaces >= 0 || !source.encoding.legend.values.empty();
  if (mayMiss && scale.entries >= 0)
    require(graph.Map(name + " has style", "not", graph.Map(name + " has none", "isSpecial", scale.entries)));
  if (scale.entryPlaces >= 0) {
    compare(" is above the domain's begin", "greaterOrEqual", scale.entryPlaces, -kPlaceTolerance);
    compare(" is below the domain's end", "lessOrEqual", scale.entryPlaces, 1 + kPlaceTolerance);
  }
  if (mayMiss && scale.channel == Channel::Size) compare(" has size", "greater", scale.entries, 0);
  return shown;
}

// "\u2026 1,234 more" where a legend has more entries than it shows.
NodeId PlanMoreEntries(GraphBuilder& graph, StyleScale const& scale) {
  int shown = 0;
  if (scale.shownEntries < 0) {
    shown = graph.Peek(scale.entryLabels)->AsColumn().GetCount();
  } else {
    auto const& rows = graph.Peek(scale.shownEntries)->AsTypedArray<bool>();
    for (int row = 0; row < rows.GetCount(); ++row)
      shown += !rows.IsSpecial(row) && rows.GetElement(row) ? 1 : 0;
  }
  if (scale.IsRamp() || shown <= GuideStyle::kMostLegendEntries) return -1;
  NodeId const count = graph.Constant(
      "further entries",
      factory::MakeConstantArray<double>(StoreTypeInfo::Real64, shown - GuideStyle::kMostLegendEntries, 1));
  return graph.Call("further entries told", "joinTexts",
                    {graph.Text("\u2026 "),
                     graph.Call("further entries counted", "formatNumbers", {count, graph.Text(",d")}),
                     graph.Text(" more")});
}

// Each label on one line, shortened to the legend's limit.
NodeId ComposeLabels(GraphBuilder& graph, ScaleSource const& source, StyleScale const& scale) {
  // Of all values of a field a legend shows the first ones; of others it may pass some over.
  bool const isAll = scale.isCategorical && source.encoding.legend.values.empty();
  NodeId const labels = isAll ? graph.Call(source.name + " legend labels shown", "head",
                                           {scale.entryLabels, graph.Int(GuideStyle::kMostLegendEntries)})
                              : scale.entryLabels;
  double const limit = source.encoding.legend.labelLimit.value_or(GuideStyle::kLabelLimit);
  TextStyle const style = scale.GetLabelStyle();
  return ComposeTexts(graph, source.name + " legend texts", labels, style,
                      MakeBox(graph, style, limit > 0 ? limit : GuideStyle::kNoLimit, 1));
}

StyleScale PlanScale(Compilation& compilation, ScaleSource const& source) {
  switch (source.encoding.channel) {
    case Channel::Size:
      return PlanSizeScale(compilation, source);
    case Channel::Opacity:
      return PlanNumericScale(compilation, source, false, {0.3, 0.8});
    case Channel::Shape:
      return PlanShapeScale(compilation, source);
    default:
      if (IsStepped(ResolveScaleType(source.encoding))) return PlanStepScale(compilation, source);
      return IsContinuous(source.encoding) ? PlanContinuousColor(compilation, source)
                                           : PlanCategoricalColor(compilation, source);
  }
}

}  // namespace

TextStyle StyleScale::GetLabelStyle() const {
  TextStyle style{.fontSize = GetLabelSize(encoding)};
  (IsRamp() && encoding.legend.RunsAcross() ? style.along : style.across) = TextAnchor::Middle;
  return style;
}

double FindSmallestSymbol(Encoding const& encoding) {
  constexpr double kSmallestSymbol = 9;
  ScaleType const type = ResolveScaleType(encoding);
  return type == ScaleType::Log || type == ScaleType::Ordinal ? kSmallestSymbol : 0;
}

bool IsEntryShown(StyleScale const& scale, Results const& results, int row) {
  if (scale.shownEntries < 0) return true;
  auto const& shown = results[scale.shownEntries]->AsTypedArray<bool>();
  return !shown.IsSpecial(row) && shown.GetElement(row);
}

StyleScale PlanStyleScale(Compilation& compilation, ScaleSource const& source) {
  StyleScale scale = PlanScale(compilation, source);
  scale.shownEntries = PlanShownEntries(compilation.graph, source, scale);
  scale.moreEntries = PlanMoreEntries(compilation.graph, scale);
  scale.entryTexts = ComposeLabels(compilation.graph, source, scale);
  GuideSpec const& legend = source.encoding.legend;
  double const limit = legend.titleLimit.value_or(GuideStyle::kLabelLimit);
  scale.title = ComposeTitle(compilation.graph, source.name + " legend title", legend.title.text,
                             {.fontSize = legend.titleFontSize.value_or(GuideStyle::kTitleFontSize),
                              .isBold = legend.isTitleBold.value_or(true)},
                             limit > 0 ? limit : GuideStyle::kNoLimit);
  if (auto const& hidden = source.encoding.legend.hidden; !hidden.empty())
    scale.hiddenEntries =
        FindListed(compilation.graph, source.name + " entry is hidden", scale.entryLabels, hidden);
  KeepAll(compilation.graph, scale);
  return scale;
}

}  // namespace ostrel::charts
