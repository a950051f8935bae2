#include "charts/scales/CategoryField.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/DateLiterals.h"
#include "charts/graph/PeriodNodes.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::RIndirectString;
using ort::core::StoreType;

constexpr char kDatePattern[] = "%b %d, %Y";

// The different texts, among them those of missing values.
NodeId NameMissing(GraphBuilder& graph, std::string const& name, NodeId texts) {
  return graph.Call(name + " values", "distinct", {graph.Map(name + " or null", "coerceText", texts)});
}

// Null and what is missing otherwise come before the others.
NodeId PutMissingFirst(GraphBuilder& graph, std::string const& name, NodeId texts) {
  NodeId const isMissing = graph.Map(name + " is none", "isSpecial", texts);
  NodeId const isNull = graph.Map(name + " is null", "isNull", texts);
  NodeId const isFirst = graph.Bool(true);
  NodeId const sorted =
      graph.Call(name + " missing first", "sortIndices", {isNull, isFirst, isMissing, isFirst});
  return graph.Call(name + " behind missing", "take", {texts, sorted});
}

// The columns one after the other, of each its different values.
NodeId JoinColumns(GraphBuilder& graph, std::string const& name, char const* distinct,
                   std::vector<NodeId> const& columns) {
  if (columns.size() == 1) return columns.front();
  std::vector<NodeId> parts;
  for (NodeId const column : columns) parts.push_back(graph.Call(name + " part", distinct, {column}));
  return graph.Call(name + " of all", "concatenate", parts);
}

// Whether something else than the values themselves tells their order; equals then stand as the data do.
bool IsOrderGiven(ScaleSource const& source) {
  auto const hasSortField = [](FieldUse const& use) { return !use.encoding->sortField.empty(); };
  return source.encoding.keepsDataOrder || !source.encoding.sort.empty() ||
         std::ranges::any_of(source.uses, hasSortField);
}

// The different values in the field's own order, numbers and dates by size, or in that of the data, as text.
NodeId FindDomain(GraphBuilder& graph, ScaleSource const& source) {
  std::string const& name = source.name;
  char const* const function = IsOrderGiven(source) ? "distinct" : "distinctSorted";
  std::vector<NodeId> columns;
  std::vector<NodeId> texts;
  bool hasMissing = false;
  // Values that no row is left of have their place all the same.
  bool isText = !source.encoding.legend.hidden.empty();
  StoreType const type = source.uses[0].rows->GetColumn(graph, source.uses[0].encoding->field).GetType();
  for (FieldUse const& use : source.uses) {
    RowColumn const& column = use.rows->GetColumn(graph, use.encoding->field);
    columns.push_back(column.node);
    texts.push_back(use.rows->GetTexts(graph, use.encoding->field).node);
    hasMissing = hasMissing || column.values->AsColumn().HasSpecials();
    isText = isText || column.GetType() != type || type == StoreType::String || type == StoreType::Bool;
  }
  if (!source.encoding.legend.hidden.empty())
    texts.push_back(graph.Constant(name + " hidden values", MakeTextColumn(source.encoding.legend.hidden)));
  NodeId const values = JoinColumns(graph, name, function, isText ? texts : columns);
  NodeId const different = graph.Call(name + " distinct", function, {values});
  NodeId const domain = isText ? different : graph.Map(name + " domain", "toString", different);
  if (!hasMissing) return domain;
  return NameMissing(graph, name, IsOrderGiven(source) ? domain : PutMissingFirst(graph, name, domain));
}

// The listed values that are there, then the others as they stand.
NodeId SortByList(GraphBuilder& graph, std::string const& name, NodeId domain, Encoding const& encoding) {
  NodeId const list = graph.Constant(name + " order", MakeTextColumn(encoding.sort, encoding.timeUnit));
  // Values that are not listed are special, and those come last.
  NodeId const places = graph.Call(name + " places in order", "indexIn", {domain, list});
  return graph.Call(name + " sorted domain", "take",
                    {domain, graph.Call(name + " sorting", "sortIndices", {places})});
}

bool IsDescending(Encoding const& encoding) {
  return encoding.sortBy ? encoding.sortBy->isDescending : encoding.isDescending.value_or(false);
}

// By the numbers that the first rows of the values have; a missing number is below all others.
NodeId SortByNumbers(GraphBuilder& graph, ScaleSource const& source, NodeId domain) {
  std::string const& name = source.name;
  for (FieldUse const& use : source.uses) {
    if (use.encoding->sortField.empty()) continue;
    NodeId const texts = use.rows->GetCategories(graph, use.encoding->field);
    RowColumn const& numbers = use.rows->GetColumn(graph, use.encoding->sortField);
    NodeId const firstRows = graph.Call(name + " first rows", "indexIn", {domain, texts});
    NodeId const keys = graph.Call(name + " sort numbers", "take", {numbers.node, firstRows});
    NodeId const isDescending = graph.Bool(IsDescending(*use.encoding));
    std::vector<NodeId> sortKeys = {keys, isDescending};
    if (numbers.values->AsColumn().HasSpecials()) {
      NodeId const isNone = graph.Map(name + " has no sort number", "isSpecial", keys);
      sortKeys = {graph.Map(name + " has a sort number", "not", isNone), isDescending, keys, isDescending};
    }
    NodeId const order = graph.Call(name + " sorting", "sortIndices", sortKeys);
    return graph.Call(name + " sorted domain", "take", {domain, order});
  }
  return domain;
}

std::string const& GetFormat(Encoding const& encoding) {
  if (!encoding.header.format.empty()) return encoding.header.format;
  return encoding.axis.format.empty() ? encoding.legend.format : encoding.axis.format;
}

// Dates are shown by a pattern; of numbers, those that part panes.
NodeId FormatLabels(GraphBuilder& graph, std::string const& scale, Encoding const& encoding, NodeId domain) {
  std::string const name = scale + " texts";
  std::string const& format = GetFormat(encoding);
  if (!encoding.timeUnit.empty() || encoding.type == FieldType::Temporal) {
    NodeId const dates = graph.Map(scale + " dates", "toDateTime", domain);
    NodeId const texts =
        encoding.timeUnit.empty()
            ? graph.Call(name, "formatDates", {dates, graph.Text(format.empty() ? kDatePattern : format)})
            : FormatUnits(graph, name, encoding.timeUnit, dates, format);
    return graph.Map(name + " or null", "replaceSpecial", texts, {graph.Text("null")});
  }
  if (encoding.header.format.empty()) return domain;
  NodeId const numbers = graph.Map(scale + " numbers", "asReal64", domain);
  NodeId const texts = graph.Call(name + " of numbers", "formatNumbers", {numbers, graph.Text(format)});
  NodeId const isNone = graph.Map(scale + " is no number", "isSpecial", numbers);
  return graph.Call(name, "choose", {isNone, domain, texts});
}

}  // namespace

Value MakeTextColumn(std::vector<Literal> const& literals, TimeUnitSpec const& unit) {
  auto texts = std::make_unique<std::vector<RIndirectString>>();
  for (Literal const& literal : literals) {
    bool const isDate = !unit.empty() || std::holds_alternative<ort::core::OrtDateTime>(literal);
    if (auto const date = isDate ? FindDate(unit, literal) : std::nullopt) {
      texts->push_back(RIndirectString::FromUtf8(date->ToIsoText()));
    } else if (auto const* text = std::get_if<std::string>(&literal)) {
      texts->push_back(RIndirectString::FromUtf8(*text));
    } else if (auto const* number = std::get_if<double>(&literal)) {
      texts->push_back(RIndirectString::FromUtf8(fmt::format("{}", *number)));
    } else if (auto const* flag = std::get_if<bool>(&literal)) {
      texts->push_back(RIndirectString::FromUtf8(*flag ? "true" : "false"));
    }
  }
  return factory::MakeArray<RIndirectString>(ort::core::StoreTypeInfo::String, std::move(texts));
}

CategoryField IndexCategories(Compilation& compilation, ScaleSource const& source) {
  GraphBuilder& graph = compilation.graph;
  Encoding const& encoding = source.encoding;
  std::string const& name = source.name;
  CategoryField field;
  field.name = name;
  if (!encoding.scale.domain.empty()) {
    field.domain = graph.Constant(name + " domain", MakeTextColumn(encoding.scale.domain, encoding.timeUnit));
  } else {
    field.domain = FindDomain(graph, source);
    if (!encoding.sort.empty()) field.domain = SortByList(graph, name, field.domain, encoding);
    if (encoding.isDescending.value_or(false))
      field.domain = graph.Call(name + " descending domain", "reverse", {field.domain});
    field.domain = SortByNumbers(graph, source, field.domain);
  }
  field.labels = FormatLabels(graph, name, encoding, field.domain);
  for (FieldUse const& use : source.uses) {
    NodeId const texts = use.rows->GetCategories(graph, use.encoding->field);
    field.indices.push_back(graph.Call(name + use.label + " indices", "indexIn", {texts, field.domain}));
  }
  field.count = graph.Call(name + " count", "count", {field.domain});
  return field;
}

CategoryEntries ListEntries(GraphBuilder& graph, CategoryField const& field, Encoding const& encoding,
                            std::vector<Literal> const& listed) {
  if (listed.empty()) {
    return {field.labels,
            graph.Call(field.name + " entry indices", "sequence", {graph.Int(0), graph.Int(1), field.count})};
  }
  std::string const name = field.name + " listed values";
  NodeId const values = graph.Constant(name, MakeTextColumn(listed, encoding.timeUnit));
  return {FormatLabels(graph, name, encoding, values),
          graph.Call(field.name + " entry indices", "indexIn", {values, field.domain})};
}

NodeId FindListed(GraphBuilder& graph, std::string const& name, NodeId texts,
                  std::vector<Literal> const& listed) {
  NodeId const list = graph.Constant(name + " list", MakeTextColumn(listed));
  NodeId const places = graph.Call(name + " places in list", "indexIn", {texts, list});
  return graph.Map(name, "not", graph.Map(name + " is not in list", "isSpecial", places));
}

}  // namespace ostrel::charts
