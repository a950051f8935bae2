#include "charts/scales/ScaledField.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "charts/data/ConvertColumn.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

using ort::core::StoreType;
namespace factory = ort::core::factory;

// Vega-Lite counts ten intervals where a document does not say how many.
constexpr double kNiceCount = 10;
constexpr double kDefaultLogBase = 10;

// What is further from 0 counts as infinite: no domain's length may exceed the range of doubles.
constexpr double kLargestNumber = 1e307;

struct NumberExtent {
  double lowest = std::numeric_limits<double>::infinity();
  double highest = -std::numeric_limits<double>::infinity();
  bool IsEmpty() const { return lowest > highest; }
};

NumberExtent FindExtent(DataColumn const& numbers, bool isLog) {
  NumberExtent extent;
  auto const scan = [&](auto const& rows) {
    for (int row = 0; row < rows.GetCount(); ++row) {
      auto const value = static_cast<double>(rows.GetElement(row));
      // The slot of a special row holds 0.
      if ((isLog && value <= 0) || (value == 0 && rows.IsSpecial(row))) continue;
      extent.lowest = std::min(extent.lowest, value);
      extent.highest = std::max(extent.highest, value);
    }
  };
  if (numbers.GetType() == StoreType::Real64) scan(numbers.values->AsTypedArray<double>());
  if (numbers.GetType() == StoreType::Int64) scan(numbers.values->AsTypedArray<ort::core::int64>());
  return extent;
}

// Infinite rows have no place on any scale.
DataColumn WithoutInfinities(DataColumn column) {
  if (column.GetType() != StoreType::Real64) return column;
  auto const& rows = column.values->AsTypedArray<double>();
  auto const values = rows.GetValues();
  auto const isInfinite = [](double value) { return !(std::abs(value) <= kLargestNumber); };
  if (std::ranges::none_of(values, isInfinite)) return column;
  auto builder =
      factory::MakeColumnBuilder<double>(ort::core::StoreTypeInfo::Real64, static_cast<int>(values.size()));
  for (int row = 0; row < rows.GetCount(); ++row) {
    double const value = rows.GetElement(row);
    bool const isPlaced = !rows.IsSpecial(row) && !isInfinite(value);
    builder.GetValues()[static_cast<std::size_t>(row)] = isPlaced ? value : 0;
    if (!isPlaced) builder.SetSpecial(row, ort::core::SpecialKind::Missing);
  }
  column.name += " (finite)";
  column.values = builder.Finish();
  return column;
}

// Day numbers.
NodeId MakeDayNumbers(Compilation& compilation, Encoding const& encoding, std::string const& name) {
  GraphBuilder& graph = compilation.graph;
  DataColumn const dates = ConvertToDate(compilation.table.Get(encoding.field));
  RequireValues(compilation.table, dates);
  NodeId instants = graph.Input(encoding.field + " (dates)", dates.values);
  if (dates.GetType() == StoreType::Date) instants = graph.Map(name + " instants", "toDateTime", instants);
  return graph.Map(name + " day numbers", "toReal64", instants);
}

// An Int64 or Real64 column without infinities.
DataColumn ReadNumbers(Compilation const& compilation, Encoding const& encoding) {
  DataColumn const& column = compilation.table.Get(encoding.field);
  bool const isNumeric = column.GetType() == StoreType::Real64 || column.GetType() == StoreType::Int64;
  DataColumn numbers = isNumeric ? column : ConvertToNumber(column);
  if (!isNumeric) numbers.name += " (numbers)";
  if (column.GetType() == StoreType::String) {
    try {
      RequireValues(compilation.table, numbers);
    } catch (DataError const&) {
      ThrowDocumentError(compilation.document, encoding.path + ".type",
                         fmt::format("field '{}' of {} holds text, not numbers; use \"nominal\"",
                                     encoding.field, compilation.table.sourceName));
    }
  }
  numbers = WithoutInfinities(std::move(numbers));
  if (FindExtent(numbers, false).IsEmpty()) {
    ThrowDocumentError(
        compilation.document, encoding.path + ".field",
        fmt::format("field '{}' of {} has no finite number", encoding.field, compilation.table.sourceName));
  }
  return numbers;
}

// The ends as a range tuple: minimum, maximum, mode, field type, log flag.
NodeId MakeRange(GraphBuilder& graph, std::string const& name, NodeId minimum, NodeId maximum,
                 StoreType type) {
  return graph.Call(name + " data range", "makeTuple",
                    {minimum, maximum, graph.Int(0), graph.Int(static_cast<int>(type)), graph.Bool(false)});
}

NodeId GetEnd(GraphBuilder& graph, std::string const& name, NodeId domain, int position, char const* label) {
  return graph.Call(fmt::format("{} {}", name, label), "member", {domain, graph.Int(position)});
}

// Of a log scale only positive rows count.
NodeId KeepPositive(GraphBuilder& graph, ScaledField const& field) {
  NodeId const isUnplaced = graph.Map(field.name + " is not positive", "isSpecial", field.scaled);
  NodeId const isPlaced = graph.Map(field.name + " is positive", "not", isUnplaced);
  return graph.Call(field.name + " positive numbers", "filter", {field.numbers, isPlaced});
}

// The ends of the data; a single instant is widened by a day to either side.
void SetTimeDomain(GraphBuilder& graph, ScaledField& field) {
  auto const find = [&](char const* label, char const* function) {
    return graph.Map(field.name + label + " date", "toDateTime",
                     graph.Call(field.name + label, function, {field.numbers}));
  };
  NodeId const range = MakeRange(graph, field.name, find(" lowest", "columnMin"),
                                 find(" highest", "columnMax"), StoreType::DateTime);
  NodeId const domain = graph.Map(field.name + " range", "extendPointRanges", range);
  field.minimum =
      graph.Map(field.name + " minimum", "toReal64", GetEnd(graph, field.name, domain, 0, "start"));
  field.maximum = graph.Map(field.name + " maximum", "toReal64", GetEnd(graph, field.name, domain, 1, "end"));
}

// The ends that the document gives, the lower one first.
void SetGivenDomain(Compilation& compilation, Encoding const& encoding, ScaledField& field) {
  double low = ReadFieldNumber(compilation, encoding, encoding.scale.domain[0], ".scale.domain");
  double high = ReadFieldNumber(compilation, encoding, encoding.scale.domain[1], ".scale.domain");
  field.isReversed = low > high;
  if (field.isReversed) std::swap(low, high);
  if (low < -kLargestNumber || high > kLargestNumber) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.domain",
                       "expects numbers from -1e307 to 1e307");
  }
  field.hasNegatives = field.hasNegatives || low < 0;
  field.minimum = compilation.graph.Real(low);
  field.maximum = compilation.graph.Real(high);
}

// One end that the document gives must leave room for the data's other one.
void CheckGivenEnds(Compilation const& compilation, Encoding const& encoding, NumberExtent extent) {
  ScaleSpec const& scale = encoding.scale;
  if (scale.zero == true) extent = {std::min(extent.lowest, 0.0), std::max(extent.highest, 0.0)};
  auto const refuse = [&](char const* property, double given, char const* where, double end,
                          char const* other) {
    ThrowDocumentError(compilation.document, fmt::format("{}.scale.{}", encoding.path, property),
                       fmt::format("{} is not {} of field '{}', {}; give {} as well", given, where,
                                   encoding.field, end, other));
  };
  if (scale.domainMin && !scale.domainMax && *scale.domainMin >= extent.highest)
    refuse("domainMin", *scale.domainMin, "below the largest value", extent.highest, "domainMax");
  if (scale.domainMax && !scale.domainMin && *scale.domainMax <= extent.lowest)
    refuse("domainMax", *scale.domainMax, "above the least value", extent.lowest, "domainMin");
}

void SetDataDomain(GraphBuilder& graph, Encoding const& encoding, NumberExtent const& extent,
                   ScaledField& field) {
  bool const isLog = field.scaleType == ScaleType::Log;
  NodeId const rows = isLog ? KeepPositive(graph, field) : field.numbers;
  field.minimum = graph.Call(field.name + " lowest", "columnMin", {rows});
  field.maximum = graph.Call(field.name + " highest", "columnMax", {rows});
  if (isLog && extent.lowest == extent.highest) {
    NodeId const base = graph.Real(encoding.scale.base.value_or(kDefaultLogBase));
    field.minimum = graph.Zip(field.name + " below", "divide", field.minimum, base);
    field.maximum = graph.Zip(field.name + " above", "multiply", field.maximum, base);
  }
}

// Takes in 0, widens a single point, and rounds the ends, as the document or the channel wants it.
void WidenDomain(GraphBuilder& graph, Encoding const& encoding, DomainRules const& rules,
                 ScaledField& field) {
  ScaleSpec const& scale = encoding.scale;
  bool const isLog = field.scaleType == ScaleType::Log;
  bool const isOpen = scale.domain.empty() && !scale.domainMin && !scale.domainMax;
  std::string const& name = field.name;
  NodeId domain = MakeRange(graph, name, field.minimum, field.maximum, StoreType::Real64);
  if (!isLog && scale.zero.value_or(rules.includesZero && isOpen))
    domain = graph.Zip(name + " range with zero", "extendRangesToIncludeZero", domain, graph.Bool(true));
  domain = graph.Map(name + " range", "extendPointRanges", domain);
  if (scale.niceCount || scale.nice.value_or(rules.isNice && isOpen)) {
    NodeId const low = GetEnd(graph, name, domain, 0, "range start");
    NodeId const high = GetEnd(graph, name, domain, 1, "range end");
    domain = isLog ? graph.Call(name + " domain", "niceLogDomain",
                                {low, high, graph.Real(scale.base.value_or(kDefaultLogBase))})
                   : graph.Call(name + " domain", "niceLinearDomain",
                                {low, high, graph.Real(scale.niceCount.value_or(kNiceCount))});
  }
  field.minimum = scale.domainMin ? graph.Real(*scale.domainMin) : GetEnd(graph, name, domain, 0, "minimum");
  field.maximum = scale.domainMax ? graph.Real(*scale.domainMax) : GetEnd(graph, name, domain, 1, "maximum");
}

void PlanTime(Compilation& compilation, Encoding const& encoding, ScaledField& field) {
  if (encoding.scale.niceCount || encoding.scale.nice.value_or(false)) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.nice",
                       "is not supported on a time scale; use domain with two dates");
  }
  field.numbers = field.scaled = MakeDayNumbers(compilation, encoding, field.name);
  if (encoding.scale.domain.empty()) {
    SetTimeDomain(compilation.graph, field);
  } else {
    SetGivenDomain(compilation, encoding, field);
  }
}

void CheckLog(Compilation const& compilation, Encoding const& encoding, NumberExtent const& extent) {
  if (!(encoding.scale.base.value_or(kDefaultLogBase) > 1)) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.base",
                       "expects a number above 1; use reverse to turn the scale round");
  }
  if (extent.IsEmpty()) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.type",
                       fmt::format("field '{}' of {} has no value above 0, which a log scale needs; use "
                                   "\"linear\"",
                                   encoding.field, compilation.table.sourceName));
  }
}

void PlanNumbers(Compilation& compilation, Encoding const& encoding, DomainRules const& rules,
                 ScaledField& field) {
  GraphBuilder& graph = compilation.graph;
  DataColumn const numbers = ReadNumbers(compilation, encoding);
  bool const isLog = field.scaleType == ScaleType::Log;
  NumberExtent const extent = FindExtent(numbers, isLog);
  if (isLog) CheckLog(compilation, encoding, extent);
  CheckGivenEnds(compilation, encoding, extent);
  // Zeros alone are widened to either side.
  bool const isZero = extent.lowest == 0 && extent.highest == 0;
  field.hasNegatives = extent.lowest < 0 || isZero || encoding.scale.domainMin.value_or(0) < 0;
  field.numbers = graph.Input(numbers.name, numbers.values);
  if (numbers.GetType() != StoreType::Real64)
    field.numbers = graph.Map(field.name + " numbers", "asReal64", field.numbers);
  if (!encoding.scale.domain.empty()) SetGivenDomain(compilation, encoding, field);
  field.scaled = ToScaleSpace(graph, field, field.name, field.numbers);
  if (encoding.scale.domain.empty()) SetDataDomain(graph, encoding, extent, field);
  WidenDomain(graph, encoding, rules, field);
}

// Below 0 the square root of the distance from 0, downwards.
NodeId SquareRoot(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId numbers) {
  if (!field.hasNegatives) return graph.Map(name + " square root", "sqrt", numbers);
  auto const root = [&](std::string const& part, NodeId values) {
    return graph.Map(name + part + " root", "sqrt",
                     graph.Map(name + part, "clampMin", values, {graph.Real(0)}));
  };
  return graph.Zip(name + " square root", "subtract", root(" above 0", numbers),
                   root(" below 0", graph.Map(name + " mirrored", "negate", numbers)));
}

}  // namespace

void ThrowDocumentError(ChartDocument const& document, std::string const& jsonPath,
                        std::string const& cause) {
  throw DocumentError(fmt::format("{}: {}: {}", document.path.string(), jsonPath, cause));
}

bool IsReversed(Encoding const& encoding, ScaledField const& field) {
  return encoding.scale.reverse.value_or(encoding.isDescending.value_or(false)) != field.isReversed;
}

double ReadFieldNumber(Compilation const& compilation, Encoding const& encoding, Literal const& literal,
                       std::string const& place) {
  if (auto const* number = std::get_if<double>(&literal)) return *number;
  if (auto const* text = std::get_if<std::string>(&literal);
      text != nullptr && encoding.type == FieldType::Temporal) {
    if (auto const date = ort::core::OrtDateTime::FromIsoText(std::string_view(*text)))
      return date->ToDouble();
  }
  ThrowDocumentError(compilation.document, encoding.path + place,
                     encoding.type == FieldType::Temporal ? "expects dates as ISO text" : "expects numbers");
}

ScaleType ResolveScaleType(Encoding const& encoding) {
  if (encoding.scale.type) return *encoding.scale.type;
  switch (encoding.type) {
    case FieldType::Quantitative:
      return ScaleType::Linear;
    case FieldType::Temporal:
      return ScaleType::Time;
    case FieldType::Ordinal:
    case FieldType::Nominal:
      break;
  }
  return ScaleType::Ordinal;
}

NodeId ToScaleSpace(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId numbers) {
  switch (field.scaleType) {
    case ScaleType::Log:
      return graph.Map(name + " logarithm", "lnSpecial", numbers);
    case ScaleType::Sqrt:
      return SquareRoot(graph, field, name, numbers);
    default:
      return numbers;
  }
}

ScaledField ScaleField(Compilation& compilation, Encoding const& encoding, std::string const& name,
                       DomainRules const& rules) {
  GraphBuilder& graph = compilation.graph;
  ScaledField field;
  field.name = name;
  field.scaleType = ResolveScaleType(encoding);
  RequireValues(compilation.table, compilation.table.Get(encoding.field));
  if (field.scaleType == ScaleType::Time) {
    PlanTime(compilation, encoding, field);
  } else {
    PlanNumbers(compilation, encoding, rules, field);
  }
  field.lower = ToScaleSpace(graph, field, name + " minimum", field.minimum);
  field.upper = ToScaleSpace(graph, field, name + " maximum", field.maximum);
  return field;
}

NodeId ToFraction(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId scaled,
                  bool isClamped) {
  NodeId fraction = graph.Map(name + " fraction", "invlerp", scaled, {field.lower, field.upper});
  if (isClamped) {
    fraction = graph.Map(name + " from 0", "clampMin", fraction, {graph.Real(0)});
    fraction = graph.Map(name + " to 1", "clampMax", fraction, {graph.Real(1)});
  }
  return fraction;
}

NodeId ToRange(GraphBuilder& graph, std::string const& name, NodeId fraction, double start, double end) {
  NodeId const length = graph.Zip(name + " from start", "multiply", fraction, graph.Real(end - start));
  return start == 0 ? length : graph.Zip(name, "add", length, graph.Real(start));
}

}  // namespace ostrel::charts
