#include "charts/scales/ScaledField.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/data/ConvertColumn.h"
#include "charts/document/DateLiterals.h"
#include "charts/document/Readers.h"
#include "charts/scales/DomainEnds.h"
#include "charts/scales/DomainExtension.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

using ort::core::StoreType;
namespace factory = ort::core::factory;

// Vega-Lite counts ten intervals where a document does not say how many.
constexpr double kNiceCount = 10;
constexpr double kDefaultLogBase = 10;

NumberExtent FindExtent(RowColumn const& numbers, bool isLog) {
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

// Day numbers.
NodeId MakeDayNumbers(Compilation& compilation, FieldUse const& use, std::string const& name) {
  GraphBuilder& graph = compilation.graph;
  RowColumn const& dates = use.rows->GetWhole().GetDates(graph, use.encoding->field);
  RequireValues(use.rows->GetTable(), {dates.name, dates.values});
  NodeId instants = use.rows->GetDates(graph, use.encoding->field).node;
  if (dates.GetType() == StoreType::Date) instants = graph.Map(name + " instants", "toDateTime", instants);
  return graph.Map(name + " day numbers", "toReal64", instants);
}

bool HasValues(RowColumn const& column) {
  auto const& rows = column.values->AsColumn();
  return rows.GetSpecialRows().size() < static_cast<std::size_t>(rows.GetCount());
}

// Refuses a field without a finite number.
void CheckNumbers(Compilation& compilation, FieldUse const& use) {
  std::string const& field = use.encoding->field;
  LayerRows& rows = use.rows->GetWhole();
  DataTable const& table = rows.GetTable();
  RowColumn const& numbers = rows.GetNumbers(compilation.graph, field);
  if (!FindExtent(numbers, false).IsEmpty()) return;
  bool const isText = table.Get(field).GetType() == StoreType::String;
  DataColumn const read = ConvertToNumber(table.Get(field));
  if (isText && !HasValues({read.name, -1, read.values})) {
    ThrowDocumentError(
        compilation.document, use.encoding->path + ".type",
        fmt::format("field '{}' of {} holds text, not numbers; use \"nominal\"", field, table.sourceName));
  }
  ThrowDocumentError(compilation.document, use.encoding->path + ".field",
                     fmt::format("field '{}' of {} has no finite number", field, table.sourceName));
}

NodeId MakeNumbers(Compilation& compilation, FieldUse const& use, std::string const& name) {
  CheckNumbers(compilation, use);
  RowColumn const& numbers = use.rows->GetNumbers(compilation.graph, use.encoding->field);
  return numbers.GetType() == StoreType::Real64
             ? numbers.node
             : compilation.graph.Map(name + " numbers", "asReal64", numbers.node);
}

// Of rows that have no value.
void SetEmptyDomain(GraphBuilder& graph, ScaledField& field) {
  field.minimum = graph.Real(field.scaleType == ScaleType::Log ? 1 : 0);
  field.maximum = graph.Real(field.scaleType == ScaleType::Log ? kDefaultLogBase : 1);
}

// The ends as a range tuple: minimum, maximum, mode, field type, log flag.
NodeId MakeRange(GraphBuilder& graph, std::string const& name, NodeId minimum, NodeId maximum, StoreType type,
                 bool isLog = false) {
  return graph.Call(name + " data range", "makeTuple",
                    {minimum, maximum, graph.Int(0), graph.Int(static_cast<int>(type)), graph.Bool(isLog)});
}

NodeId GetEnd(GraphBuilder& graph, std::string const& name, NodeId domain, int position, char const* label) {
  return graph.Call(fmt::format("{} {}", name, label), "member", {domain, graph.Int(position)});
}

// Of a log scale only positive rows count.
NodeId KeepPositive(GraphBuilder& graph, ScaledField const& field, NodeId column, ScaledRows const& rows) {
  NodeId const isUnplaced = graph.Map(field.name + " is not positive", "isSpecial", rows.scaled);
  NodeId const isPlaced = graph.Map(field.name + " is positive", "not", isUnplaced);
  return graph.Call(field.name + " positive numbers", "filter", {column, isPlaced});
}

// Bins reach from end to end, also where marks stand in their middles.
std::vector<RowColumn> DomainColumns(GraphBuilder& graph, FieldUse const& use) {
  if (use.encoding->startField.empty()) return {use.rows->GetNumbers(graph, use.encoding->field)};
  return {use.rows->GetNumbers(graph, use.encoding->startField),
          use.rows->GetNumbers(graph, use.encoding->endField)};
}

// The ends of the data and of what the document lists; a single instant is widened by a day to either side.
void SetTimeDomain(Compilation& compilation, ScaleSource const& source, ScaledField& field) {
  GraphBuilder& graph = compilation.graph;
  DomainEnds ends(graph, field.name, StoreType::DateTime);
  for (FieldUse const& use : source.uses) {
    RowColumn const& dates = use.rows->GetDates(graph, use.encoding->field);
    if (HasValues(dates)) ends.Add(field.name + use.label, dates.node, dates.GetType());
  }
  NumberExtent const listed = ReadUnion(compilation, source.encoding);
  if (ends.IsEmpty() && listed.IsEmpty()) return SetEmptyDomain(graph, field);
  auto const find = [&](NodeId (DomainEnds::*end)() const) {
    if (!ends.IsEmpty()) return (ends.*end)();
    return graph.Map(field.name + " first listed date", "toDateTime", graph.Real(listed.lowest));
  };
  NodeId range = MakeRange(graph, field.name, find(&DomainEnds::FindLowest), find(&DomainEnds::FindHighest),
                           StoreType::DateTime);
  if (!listed.IsEmpty()) range = HoldExtent(graph, field.name, range, listed);
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

// Whether the domain reaches to 0 wherever the document gives no end.
bool IncludesZero(ScaleSpec const& scale, DomainRules const& rules, ScaleType type) {
  return type != ScaleType::Log &&
         scale.zero.value_or(rules.includesZero && scale.domain.empty() && scale.unionWith.empty());
}

// One end that the document gives must leave room for the data's other one.
void CheckGivenEnds(Compilation const& compilation, Encoding const& encoding, DomainRules const& rules,
                    NumberExtent extent) {
  ScaleSpec const& scale = encoding.scale;
  if (IncludesZero(scale, rules, ResolveScaleType(encoding)))
    extent = {std::min(extent.lowest, 0.0), std::max(extent.highest, 0.0)};
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

void SetDataDomain(GraphBuilder& graph, ScaleSource const& source, NumberExtent const& listed,
                   ScaledField& field) {
  bool const isLog = field.scaleType == ScaleType::Log;
  DomainEnds ends(graph, field.name, StoreType::Real64);
  NumberExtent extent = listed;
  for (std::size_t i = 0; i < field.rows.size(); ++i) {
    FieldUse const& use = source.uses[i];
    RowColumn const& numbers = use.rows->GetNumbers(graph, use.encoding->field);
    NumberExtent const found = FindExtent(numbers, isLog);
    if (found.IsEmpty()) continue;
    extent.Add(found);
    for (RowColumn const& column : DomainColumns(graph, use)) {
      ends.Add(field.name + use.label,
               isLog ? KeepPositive(graph, field, column.node, field.rows[i]) : column.node,
               column.GetType());
    }
  }
  if (extent.IsEmpty()) return SetEmptyDomain(graph, field);
  field.minimum = ends.IsEmpty() ? graph.Real(listed.lowest) : ends.FindLowest();
  field.maximum = ends.IsEmpty() ? graph.Real(listed.lowest) : ends.FindHighest();
  if (!extent.IsPoint() && !listed.IsEmpty()) {
    NodeId const range =
        HoldExtent(graph, field.name,
                   MakeRange(graph, field.name, field.minimum, field.maximum, StoreType::Real64), listed);
    field.minimum = GetEnd(graph, field.name, range, 0, "least");
    field.maximum = GetEnd(graph, field.name, range, 1, "largest");
  }
  if (isLog && extent.IsPoint()) {
    NodeId const base = graph.Real(source.encoding.scale.base.value_or(kDefaultLogBase));
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
  if (IncludesZero(scale, rules, field.scaleType))
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

void PlanTime(Compilation& compilation, ScaleSource const& source, DomainRules const& rules,
              ScaledField& field) {
  Encoding const& encoding = source.encoding;
  if (encoding.scale.niceCount || encoding.scale.nice.value_or(false)) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.nice",
                       "is not supported on a time scale; use domain with two dates");
  }
  for (FieldUse const& use : source.uses) {
    NodeId const days = MakeDayNumbers(compilation, use, field.name + use.label);
    field.rows.push_back({days, days});
  }
  if (encoding.scale.domain.empty()) {
    SetTimeDomain(compilation, source, field);
  } else {
    SetGivenDomain(compilation, encoding, field);
  }
  PadDomain(compilation, source, rules, field);
}

void CheckLog(Compilation& compilation, ScaleSource const& source) {
  Encoding const& encoding = source.encoding;
  if (!(encoding.scale.base.value_or(kDefaultLogBase) > 1)) {
    ThrowDocumentError(compilation.document, encoding.path + ".scale.base",
                       "expects a number above 1; use reverse to turn the scale round");
  }
  for (FieldUse const& use : source.uses) {
    LayerRows& whole = use.rows->GetWhole();
    if (!FindExtent(whole.GetNumbers(compilation.graph, use.encoding->field), true).IsEmpty()) continue;
    ThrowDocumentError(compilation.document, use.encoding->path + ".scale.type",
                       fmt::format("field '{}' of {} has no value above 0, which a log scale needs; use "
                                   "\"linear\"",
                                   use.encoding->field, whole.GetTable().sourceName));
  }
}

void PlanNumbers(Compilation& compilation, ScaleSource const& source, DomainRules const& rules,
                 ScaledField& field) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  bool const isLog = field.scaleType == ScaleType::Log;
  NumberExtent extent;
  for (FieldUse const& use : source.uses) {
    field.rows.push_back({MakeNumbers(compilation, use, field.name + use.label), -1});
    extent.Add(FindExtent(use.rows->GetNumbers(graph, use.encoding->field), isLog));
  }
  if (isLog) CheckLog(compilation, source);
  NumberExtent const listed = ReadUnion(compilation, encoding);
  extent.Add(listed);
  if (!extent.IsEmpty()) CheckGivenEnds(compilation, encoding, rules, extent);
  // Zeros alone are widened to either side, and padding may reach below 0.
  bool const isZero = extent.lowest == 0 && extent.highest == 0;
  field.hasNegatives = extent.lowest < 0 || isZero || encoding.scale.domainMin.value_or(0) < 0 ||
                       encoding.scale.padding.value_or(0) > 0;
  if (!encoding.scale.domain.empty()) SetGivenDomain(compilation, encoding, field);
  for (std::size_t i = 0; i < field.rows.size(); ++i) {
    std::string const name = field.name + source.uses[i].label;
    field.rows[i].scaled = ToScaleSpace(graph, field, name, field.rows[i].numbers);
  }
  if (encoding.scale.domain.empty()) SetDataDomain(graph, source, listed, field);
  PadDomain(compilation, source, rules, field);
  WidenDomain(graph, encoding, rules, field);
}

// A given middle lies within the domain.
void SetMiddle(GraphBuilder& graph, double middle, ScaledField& field) {
  field.middle = graph.Real(middle);
  field.minimum = graph.Zip(field.name + " minimum to middle", "Min", field.minimum, field.middle);
  field.maximum = graph.Zip(field.name + " maximum to middle", "Max", field.maximum, field.middle);
}

// Colours part at 0 where the domain reaches to both sides of it; numbers below 0 alone get the stronger
// colours the lower they are.
void FindMiddle(GraphBuilder& graph, ScaledField& field) {
  NodeId const none = graph.Constant(
      "none", factory::MakeSpecial(ort::core::StoreTypeInfo::Real64, ort::core::SpecialKind::Missing));
  std::vector<NodeId> const inputs = {field.minimum, field.maximum, none};
  if (graph.Peek(graph.Call(field.name + " is diverging", "isDivergingAuto", inputs))->GetBool()) {
    SetMiddle(graph, 0, field);
  } else if (graph.Peek(graph.Call(field.name + " is reversed", "isReversedAuto", inputs))->GetBool()) {
    field.isReversed = !field.isReversed;
  }
}

// From a centre to as far as the data reach on either side.
void SetCenter(GraphBuilder& graph, double center, ScaledField& field) {
  constexpr int kMinimumToMaximum = 1;
  field.center = graph.Real(center);
  NodeId const none = graph.Constant(
      "none", factory::MakeSpecial(ort::core::StoreTypeInfo::Real64, ort::core::SpecialKind::Missing));
  NodeId const encoding = graph.Call(
      field.name + " encoding", "resolveSizeEncodingParameters",
      {field.minimum, field.maximum, none, none, none, none, field.center, graph.Int(kMinimumToMaximum),
       graph.Bool(false), graph.Bool(false), graph.Int(static_cast<int>(StoreType::Real64))});
  auto const getEnd = [&](char const* key) {
    return graph.Call(field.name + " " + key, "member", {encoding, graph.Text(key)});
  };
  field.minimum = getEnd("encodingMin");
  field.maximum = getEnd("encodingMax");
  for (ScaledRows& rows : field.rows) rows.scaled = ToScaleSpace(graph, field, field.name, rows.numbers);
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
  if (encoding.type == FieldType::Temporal) {
    if (auto const date = FindDate(encoding.timeUnit, literal)) return date->ToDouble();
  } else if (auto const* number = std::get_if<double>(&literal)) {
    return *number;
  }
  ThrowDocumentError(compilation.document, encoding.path + place,
                     encoding.type == FieldType::Temporal ? "expects dates as ISO text" : "expects numbers");
}

ScaleType ResolveScaleType(Encoding const& encoding) {
  if (encoding.scale.type) return *encoding.scale.type;
  if (encoding.channel == Channel::Color && encoding.bin && !encoding.endField.empty())
    return ScaleType::BinOrdinal;
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
  if (field.center >= 0) {
    NodeId const difference = graph.Zip(name + " difference", "subtract", numbers, field.center);
    NodeId const distance = graph.Map(name + " distance", "abs", difference);
    return graph.Zip(name + " from center", "add", distance, field.center);
  }
  switch (field.scaleType) {
    case ScaleType::Log:
      return graph.Map(name + " logarithm", "lnSpecial", numbers);
    case ScaleType::Sqrt:
      return SquareRoot(graph, field, name, numbers);
    default:
      return numbers;
  }
}

NodeId FieldNumbers(Compilation& compilation, FieldUse const& use, std::string const& name) {
  return ResolveScaleType(*use.encoding) == ScaleType::Time ? MakeDayNumbers(compilation, use, name)
                                                            : MakeNumbers(compilation, use, name);
}

ScaledField ScaleField(Compilation& compilation, ScaleSource const& source, DomainRules const& rules) {
  GraphBuilder& graph = compilation.graph;
  ScaledField field;
  field.name = source.name;
  field.scaleType = ResolveScaleType(source.encoding);
  for (FieldUse const& use : source.uses)
    RequireValues(use.rows->GetTable(), use.rows->GetTable().Get(use.encoding->field));
  if (field.scaleType == ScaleType::Time) {
    PlanTime(compilation, source, rules, field);
  } else {
    PlanNumbers(compilation, source, rules, field);
  }
  if (auto const& middle = source.encoding.scale.domainMid) {
    bool const isSize = source.encoding.channel == Channel::Size;
    (isSize ? SetCenter : SetMiddle)(graph, *middle, field);
  }
  if (source.encoding.scale.findsMid) FindMiddle(graph, field);
  field.lower = ToScaleSpace(graph, field, source.name + " minimum", field.minimum);
  field.upper = ToScaleSpace(graph, field, source.name + " maximum", field.maximum);
  return field;
}

namespace {

// The lower half of the domain goes to 0.5, the upper on to 1.
NodeId ToHalves(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId scaled) {
  NodeId const place =
      graph.Map(name + " place in half", "3-invlerp", scaled, {field.lower, field.middle, field.upper});
  NodeId const low = graph.Zip(name + " in lower half", "multiply", place, graph.Real(0.5));
  NodeId const high = graph.Zip(name + " in upper half", "add", low, graph.Real(0.5));
  NodeId const isUpper = graph.Zip(name + " is upper", "greaterOrEqual", scaled, field.middle);
  return graph.Call(name + " fraction", "choose", {isUpper, high, low});
}

}  // namespace

NodeId ToFraction(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId scaled,
                  bool isClamped) {
  NodeId fraction = field.middle < 0
                        ? graph.Map(name + " fraction", "invlerp", scaled, {field.lower, field.upper})
                        : ToHalves(graph, field, name, scaled);
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
