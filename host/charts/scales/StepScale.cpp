#include "charts/scales/StepScale.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/document/Readers.h"
#include "charts/scales/ColorPalette.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::StoreTypeInfo;

constexpr int kDefaultSteps = 5;
// Labels of steps whose ends are not round have so many significant digits of the step's width.
constexpr int kLabelDigits = 3;
// Of a step: what rounding makes of a number that stands at a step's end.
constexpr double kRounding = 1e-9;

NodeId MakeNumbers(GraphBuilder& graph, std::string const& name, std::vector<double> const& numbers) {
  return graph.Constant(name, factory::MakeArray<double>(StoreTypeInfo::Real64,
                                                         std::make_unique<std::vector<double>>(numbers)));
}

double Peek(GraphBuilder& graph, NodeId node) { return ort::core::FetchStoreValue<double>(graph.Peek(node)); }

// Steps of one width, and where on their axis the halves of a diverging palette meet. Real64 scalars.
struct Steps {
  int count = 1;
  NodeId low = -1;
  NodeId center = -1;  // that of a palette without halves is the low end
  NodeId high = -1;
  NodeId left = -1;  // number of steps below the centre and above it: both whole, or both with a half
  NodeId right = -1;
  NodeId palette = -1;
  bool isDiverging = false;
};

// The colour of each number's step.
NodeId ColorSteps(GraphBuilder& graph, Steps const& steps, std::string const& name, NodeId numbers) {
  NodeId const above = graph.Map(name + " above low end", "clampMin", numbers, {steps.low});
  NodeId const held = graph.Map(name + " in steps", "clampMax", above, {steps.high});
  NodeId const isLeft = graph.Zip(name + " is left", "less", held, steps.center);
  NodeId const half =
      graph.Map(name + " place in half", "3-invlerp", held, {steps.low, steps.center, steps.high});
  NodeId const step = graph.Zip(name + " step in half", "applySteppingForDivergingPalette", half, isLeft,
                                {steps.left, steps.right});
  NodeId place = step;
  if (steps.isDiverging) {
    NodeId const lower = graph.Zip(name + " place to the left", "multiply", step, graph.Real(0.5));
    NodeId const upper = graph.Zip(name + " place to the right", "add", lower, graph.Real(0.5));
    place = graph.Call(name + " place", "choose", {isLeft, lower, upper});
  } else if (steps.count > 1) {
    // The steps' upper ends, 1/n to 1, stand for the palette's first to last colour.
    NodeId const number = graph.Zip(name + " step number", "multiply", step, graph.Real(steps.count));
    NodeId const index = graph.Zip(name + " step index", "subtract", number, graph.Real(1));
    place = graph.Zip(name + " place", "divide", index, graph.Real(steps.count - 1));
  }
  return graph.Map(name + " colors", "cinterp", place, {steps.palette});
}

// The numbers at places counted in steps from the lowest step's lower end. Both halves end exactly at the
// centre.
NodeId PlaceSteps(GraphBuilder& graph, Steps const& steps, std::string const& name,
                  std::vector<double> const& places) {
  double const left = Peek(graph, steps.left);
  double const right = Peek(graph, steps.right);
  std::vector<double> fractions;
  auto halves = std::make_unique<std::vector<int>>();
  for (double const place : places) {
    bool const isLeft = place < left || right == 0;
    fractions.push_back(isLeft ? place / left : (place - left) / right);
    halves->push_back(isLeft ? 0 : 1);
  }
  auto const half = [&](char const* label, NodeId from, NodeId to) {
    NodeId const range =
        graph.Call(name + label, "makeTuple",
                   {from, to, graph.Int(0), graph.Int(static_cast<int>(ort::core::StoreType::Real64)),
                    graph.Bool(false)});
    return graph.Call(name + label + " as column", "repeat", {range, graph.Int(1)});
  };
  NodeId const ranges = graph.Call(
      name + " halves", "concatenate",
      {half(" left half", steps.low, steps.center), half(" right half", steps.center, steps.high)});
  NodeId const sides =
      graph.Constant(name + " half", factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(halves)));
  return graph.Zip(name, "interpolateIndexedRange", MakeNumbers(graph, name + " fractions", fractions), sides,
                   {ranges});
}

// Numbers that need more decimals than tell the steps apart are rounded, unless the document has a format.
std::string FindFormat(GraphBuilder& graph, Encoding const& encoding, NodeId boundaries, double width) {
  if (!encoding.legend.format.empty() || !(width > 0) || !std::isfinite(width)) return encoding.legend.format;
  int const decimals = std::max(0, kLabelDigits - 1 - static_cast<int>(std::floor(std::log10(width))));
  double const scale = std::pow(10.0, decimals);
  auto const values = graph.Peek(boundaries);
  auto const isRound = [&](double value) {
    double const scaled = value * scale;
    return std::abs(scaled - std::round(scaled)) <= kRounding * width * scale;
  };
  return std::ranges::all_of(values->AsTypedArray<double>().GetValues(), isRound)
             ? std::string()
             : fmt::format(",.{}f", decimals);
}

std::vector<double> CountUp(double first, int count) {
  std::vector<double> numbers;
  for (int i = 0; i < count; ++i) numbers.push_back(first + i);
  return numbers;
}

class StepPlanner {
 public:
  StepPlanner(Compilation& compilation, ScaleSource const& source)
      : compilation_(compilation),
        graph_(compilation.graph),
        source_(source),
        scale_{.channel = Channel::Color, .encoding = source.encoding} {}

  StyleScale Plan() {
    switch (ResolveScaleType(source_.encoding)) {
      case ScaleType::Threshold:
        PlanThresholds();
        break;
      case ScaleType::BinOrdinal:
        PlanBins();
        break;
      default:
        PlanQuantize();
    }
    return std::move(scale_);
  }

 private:
  ScaleSpec const& Spec() const { return source_.encoding.scale; }

  // A listed colour belongs to its step, whatever the middle.
  bool HasHalves(bool hasMiddle) const { return hasMiddle && Spec().range.empty(); }

  // Of a diverging one so many colours that those of the longer half are its own.
  void PlanPaletteOf(Steps& steps, bool hasMiddle, bool isReversed) {
    int stops = steps.count;
    if (steps.isDiverging)
      stops = 2 * static_cast<int>(std::max(Peek(graph_, steps.left), Peek(graph_, steps.right))) + 1;
    steps.palette =
        PlanPalette(compilation_, source_.encoding, "color", graph_.Int(stops),
                    hasMiddle ? kDivergingScheme : kSequentialScheme, PaletteEnds::Left, isReversed);
  }

  void PlanQuantize() {
    Encoding const& encoding = source_.encoding;
    ScaledField const field = ScaleField(compilation_, source_, {});
    bool const hasMiddle = field.middle >= 0;
    Steps steps;
    steps.count = static_cast<int>(Spec().range.empty() ? Spec().schemeCount.value_or(kDefaultSteps)
                                                        : static_cast<double>(Spec().range.size()));
    // With the lower end as its centre, the domain stays as it is and all steps are above.
    NodeId const center = hasMiddle ? field.middle : field.minimum;
    NodeId const stepping = graph_.Call("color stepping", "adjustDomainForStepping",
                                        {field.minimum, field.maximum, center, graph_.Int(steps.count)});
    auto const get = [&](char const* key) {
      return graph_.Call(std::string("color ") + key, "member", {stepping, graph_.Text(key)});
    };
    steps.low = get("colorMin");
    steps.high = get("colorMax");
    steps.isDiverging = HasHalves(hasMiddle);
    steps.center = steps.isDiverging ? center : steps.low;
    steps.left = steps.isDiverging ? get("nStepsLeft") : graph_.Real(0);
    steps.right = steps.isDiverging ? get("nStepsRight") : graph_.Real(steps.count);
    PlanPaletteOf(steps, hasMiddle, IsReversed(encoding, field));
    for (std::size_t i = 0; i < source_.uses.size(); ++i) {
      scale_.rows.push_back(
          ColorSteps(graph_, steps, "color of row" + source_.uses[i].label, field.rows[i].numbers));
    }
    NodeId const middles = PlaceSteps(graph_, steps, "color step middles", CountUp(0.5, steps.count));
    NodeId const boundaries = PlaceSteps(graph_, steps, "color step ends", CountUp(0, steps.count + 1));
    double const width = (Peek(graph_, steps.high) - Peek(graph_, steps.low)) / steps.count;
    AddLegend(steps, middles, boundaries, CountUp(0, steps.count + 1), width);
  }

  void PlanThresholds() {
    std::vector<double> thresholds;
    for (Literal const& literal : Spec().domain) thresholds.push_back(std::get<double>(literal));
    std::vector<NodeId> numbers;
    for (FieldUse const& use : source_.uses)
      numbers.push_back(FieldNumbers(compilation_, use, "color" + use.label));
    PlanBetween(thresholds, numbers, thresholds, 1);
  }

  // A row's bin is told by its middle, which rounding does not move to another bin.
  void PlanBins() {
    std::vector<NodeId> middles;
    double low = 0;
    double high = 0;
    double width = 0;
    for (FieldUse const& use : source_.uses) {
      std::string const name = "color" + use.label;
      Encoding end = *use.encoding;
      end.field = use.encoding->endField;
      NodeId const starts = FieldNumbers(compilation_, use, name + " bin start");
      NodeId const ends = FieldNumbers(compilation_, {&end, use.rows, use.label}, name + " bin end");
      NodeId const sum = graph_.Zip(name + " sum of bin ends", "add", starts, ends);
      middles.push_back(graph_.Zip(name + " bin middle", "multiply", sum, graph_.Real(0.5)));
      NodeId const widths = graph_.Zip(name + " bin widths", "subtract", ends, starts);
      double const first = Peek(graph_, graph_.Call(name + " lowest bin", "columnMin", {starts}));
      double const last = Peek(graph_, graph_.Call(name + " highest bin", "columnMax", {ends}));
      bool const isFirst = middles.size() == 1;
      low = isFirst ? first : std::min(low, first);
      high = isFirst ? last : std::max(high, last);
      if (isFirst) width = Peek(graph_, graph_.Call(name + " bin width", "columnMin", {widths}));
    }
    int const count = std::max(1, static_cast<int>(std::lround((high - low) / width)));
    std::vector<double> ends;
    for (int i = 0; i <= count; ++i) ends.push_back(low + (high - low) * i / count);
    PlanBetween({ends.begin() + 1, ends.end() - 1}, middles, ends, 0);
  }

  // Steps between thresholds are counted: the n-th goes from n - 1 to n, whatever its width. The shown ones
  // of the numbers between them begin at the place `firstShown`.
  void PlanBetween(std::vector<double> const& thresholds, std::vector<NodeId> const& numbers,
                   std::vector<double> const& shown, double firstShown) {
    Steps steps;
    steps.count = static_cast<int>(thresholds.size()) + 1;
    bool const hasMiddle = Spec().domainMid.has_value() || IsMidFound(thresholds);
    steps.isDiverging = HasHalves(hasMiddle);
    double const left = steps.isDiverging ? CountBelow(thresholds, Spec().domainMid.value_or(0)) : 0;
    steps.low = graph_.Real(0);
    steps.center = steps.left = graph_.Real(left);
    steps.high = graph_.Real(steps.count);
    steps.right = graph_.Real(steps.count - left);
    PlanPaletteOf(steps, hasMiddle, Spec().reverse.value_or(source_.encoding.isDescending.value_or(false)));
    NodeId const limits = MakeNumbers(graph_, "color thresholds", thresholds);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      std::string const name = "color of row" + source_.uses[i].label;
      NodeId const index = graph_.Call(name + " step index", "thresholdIndex", {numbers[i], limits});
      NodeId const place = graph_.Zip(name + " step middle", "add",
                                      graph_.Map(name + " step", "asReal64", index), graph_.Real(0.5));
      scale_.rows.push_back(ColorSteps(graph_, steps, name, place));
    }
    NodeId const middles = MakeNumbers(graph_, "color step middles", CountUp(0.5, steps.count));
    AddLegend(steps, middles, MakeNumbers(graph_, "color step ends", shown),
              CountUp(firstShown, static_cast<int>(shown.size())), 0);
  }

  bool IsMidFound(std::vector<double> const& thresholds) const {
    return Spec().findsMid.value_or(false) && thresholds.front() <= 0 && thresholds.back() >= 0;
  }

  // A half where the middle lies within a step.
  static double CountBelow(std::vector<double> const& thresholds, double middle) {
    auto const at = std::ranges::lower_bound(thresholds, middle);
    auto const below = static_cast<double>(at - thresholds.begin());
    return at != thresholds.end() && *at == middle ? below + 1 : below + 0.5;
  }

  void AddLegend(Steps const& steps, NodeId middles, NodeId boundaries, std::vector<double> places,
                 double width) {
    for (double& place : places) place /= steps.count;
    scale_.steps = ColorSteps(graph_, steps, "color legend", middles);
    scale_.entryPlaces = MakeNumbers(graph_, "color legend places", places);
    NodeId const format = graph_.Text(FindFormat(graph_, source_.encoding, boundaries, width));
    scale_.entryLabels = graph_.Call("color legend labels", "formatTicks", {boundaries, format});
  }

  Compilation& compilation_;
  GraphBuilder& graph_;
  ScaleSource const& source_;
  StyleScale scale_;
};

}  // namespace

StyleScale PlanStepScale(Compilation& compilation, ScaleSource const& source) {
  return StepPlanner(compilation, source).Plan();
}

}  // namespace ostrel::charts
