#include "charts/scales/ScaledField.h"

#include <fmt/format.h>

#include "charts/data/ConvertColumn.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

using ort::core::StoreType;
namespace factory = ort::core::factory;

// Vega-Lite counts ten intervals where a document does not say how many.
constexpr double kNiceCount = 10;
constexpr double kDefaultLogBase = 10;

// The day number or number that a literal of the document stands for.
double ReadDomainNumber(Compilation const& compilation, Encoding const& encoding, Literal const& literal) {
  if (auto const* number = std::get_if<double>(&literal)) return *number;
  if (auto const* text = std::get_if<std::string>(&literal);
      text != nullptr && encoding.type == FieldType::Temporal) {
    if (auto const date = ort::core::OrtDateTime::FromIsoText(std::string_view(*text)))
      return date->ToDouble();
  }
  ThrowDocumentError(compilation.document, encoding.path + ".scale.domain",
                     encoding.type == FieldType::Temporal ? "expects dates as ISO text" : "expects numbers");
}

// Day numbers of a temporal field, else the numbers themselves; Real64.
NodeId MakeNumbers(Compilation& compilation, Encoding const& encoding, std::string const& name) {
  GraphBuilder& graph = compilation.graph;
  DataColumn const& column = compilation.table.Get(encoding.field);
  RequireValues(compilation.table, column);
  if (encoding.type == FieldType::Temporal) {
    DataColumn const dates = ConvertToDate(column);
    RequireValues(compilation.table, dates);
    NodeId instants = graph.Input(encoding.field + " (dates)", dates.values);
    if (dates.GetType() == StoreType::Date) instants = graph.Map(name + " instants", "toDateTime", instants);
    return graph.Map(name + " day numbers", "toReal64", instants);
  }
  if (column.GetType() == StoreType::Real64) {
    return graph.Input(encoding.field, column.values);
  }
  if (column.GetType() == StoreType::Int64) {
    return graph.Map(name + " numbers", "asReal64", graph.Input(encoding.field, column.values));
  }
  DataColumn const numbers = ConvertToNumber(column);
  if (column.GetType() == StoreType::String) {
    try {
      RequireValues(compilation.table, numbers);
    } catch (DataError const&) {
      ThrowDocumentError(compilation.document, encoding.path + ".type",
                         fmt::format("field '{}' of {} holds text, not numbers; use \"nominal\"",
                                     encoding.field, compilation.table.sourceName));
    }
  }
  NodeId values = graph.Input(encoding.field + " (numbers)", numbers.values);
  if (numbers.GetType() != StoreType::Real64) values = graph.Map(name + " numbers", "asReal64", values);
  return values;
}

// The domain of the data as a range tuple: minimum, maximum, mode, field type, log flag.
NodeId MakeRange(GraphBuilder& graph, std::string const& name, NodeId minimum, NodeId maximum,
                 bool includesZero) {
  NodeId range = graph.Call(
      name + " data range", "makeTuple",
      {minimum, maximum, graph.Int(0), graph.Int(static_cast<int>(StoreType::Real64)), graph.Bool(false)});
  if (includesZero)
    range = graph.Zip(name + " range with zero", "extendRangesToIncludeZero", range, graph.Bool(true));
  return graph.Map(name + " range", "extendPointRanges", range);
}

// Of a log scale only positive rows count.
NodeId KeepPositive(GraphBuilder& graph, ScaledField const& field) {
  NodeId const isUnplaced = graph.Map(field.name + " is not positive", "isSpecial", field.scaled);
  NodeId const isPlaced = graph.Map(field.name + " is positive", "not", isUnplaced);
  return graph.Call(field.name + " positive numbers", "filter", {field.numbers, isPlaced});
}

void SetDomain(Compilation& compilation, Encoding const& encoding, DomainRules const& rules,
               ScaledField& field) {
  GraphBuilder& graph = compilation.graph;
  ScaleSpec const& scale = encoding.scale;
  if (scale.domain.size() == 2) {
    field.minimum = graph.Real(ReadDomainNumber(compilation, encoding, scale.domain[0]));
    field.maximum = graph.Real(ReadDomainNumber(compilation, encoding, scale.domain[1]));
    return;
  }
  bool const isLog = field.scaleType == ScaleType::Log;
  NodeId const rows = isLog ? KeepPositive(graph, field) : field.numbers;
  NodeId const lowest = graph.Call(field.name + " lowest", "columnMin", {rows});
  NodeId const highest = graph.Call(field.name + " highest", "columnMax", {rows});
  bool const includesZero =
      !isLog && scale.zero.value_or(rules.includesZero && !scale.domainMin && !scale.domainMax);
  NodeId domain = MakeRange(graph, field.name, lowest, highest, includesZero);
  auto const end = [&](int position, char const* label) {
    return graph.Call(fmt::format("{} {}", field.name, label), "member", {domain, graph.Int(position)});
  };
  if (scale.nice.value_or(rules.isNice && !scale.domainMin && !scale.domainMax) || scale.niceCount) {
    NodeId const low = end(0, "range start");
    NodeId const high = end(1, "range end");
    domain = isLog ? graph.Call(field.name + " domain", "niceLogDomain",
                                {low, high, graph.Real(scale.base.value_or(kDefaultLogBase))})
                   : graph.Call(field.name + " domain", "niceLinearDomain",
                                {low, high, graph.Real(scale.niceCount.value_or(kNiceCount))});
  }
  field.minimum = scale.domainMin ? graph.Real(*scale.domainMin) : end(0, "minimum");
  field.maximum = scale.domainMax ? graph.Real(*scale.domainMax) : end(1, "maximum");
}

}  // namespace

void ThrowDocumentError(ChartDocument const& document, std::string const& jsonPath,
                        std::string const& cause) {
  throw DocumentError(fmt::format("{}: {}: {}", document.path.string(), jsonPath, cause));
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
      return graph.Map(name + " square root", "sqrt", numbers);
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
  field.numbers = MakeNumbers(compilation, encoding, name);
  field.scaled = ToScaleSpace(graph, field, name, field.numbers);
  SetDomain(compilation, encoding, rules, field);
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
