#include "charts/scales/CategoryField.h"

#include <fmt/format.h>

#include "charts/data/ConvertColumn.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::RIndirectString;

Value MakeTextColumn(std::vector<Literal> const& literals) {
  auto texts = std::make_unique<std::vector<RIndirectString>>();
  for (Literal const& literal : literals) {
    if (auto const* text = std::get_if<std::string>(&literal)) {
      texts->push_back(RIndirectString::FromUtf8(*text));
    } else if (auto const* number = std::get_if<double>(&literal)) {
      texts->push_back(RIndirectString::FromUtf8(fmt::format("{}", *number)));
    } else if (auto const* flag = std::get_if<bool>(&literal)) {
      texts->push_back(RIndirectString::FromUtf8(*flag ? "true" : "false"));
    }
  }
  return factory::MakeArray<RIndirectString>(ort::core::StoreTypeInfo::String, std::move(texts));
}

// Rows without a value belong to no category.
NodeId WithoutSpecials(GraphBuilder& graph, std::string const& name, NodeId column) {
  NodeId const isOrdinary =
      graph.Map(name + " is there", "not", graph.Map(name + " is none", "isSpecial", column));
  return graph.Call(name, "filter", {column, isOrdinary});
}

// The different values in the field's own order, numbers and dates by size, or in that of the data, as text.
NodeId FindDomain(GraphBuilder& graph, std::string const& name, Encoding const& encoding,
                  DataColumn const& column, NodeId texts) {
  char const* const function = encoding.keepsDataOrder ? "distinct" : "distinctSorted";
  bool const isText =
      column.GetType() == ort::core::StoreType::String || column.GetType() == ort::core::StoreType::Bool;
  NodeId const values = isText ? texts : graph.Input(column.name, column.values);
  NodeId const domain =
      WithoutSpecials(graph, name + " distinct values", graph.Call(name + " distinct", function, {values}));
  return isText ? domain : graph.Map(name + " domain", "toString", domain);
}

// The listed values that are there, then the others as they stand.
NodeId SortByList(GraphBuilder& graph, std::string const& name, NodeId domain,
                  std::vector<Literal> const& listed) {
  NodeId const list = graph.Constant(name + " order", MakeTextColumn(listed));
  // Values that are not listed are special, and those come last.
  NodeId const places = graph.Call(name + " places in order", "indexIn", {domain, list});
  return graph.Call(name + " sorted domain", "take",
                    {domain, graph.Call(name + " sorting", "sortIndices", {places})});
}

}  // namespace

CategoryField IndexCategories(Compilation& compilation, Encoding const& encoding, std::string const& name) {
  GraphBuilder& graph = compilation.graph;
  DataColumn const& column = compilation.table.Get(encoding.field);
  RequireValues(compilation.table, column);
  DataColumn const asText = ConvertToString(column);
  bool const isText = column.GetType() == ort::core::StoreType::String;
  NodeId const texts = graph.Input(isText ? encoding.field : encoding.field + " (text)", asText.values);

  CategoryField field;
  field.name = name;
  if (!encoding.scale.domain.empty()) {
    field.domain = graph.Constant(name + " domain", MakeTextColumn(encoding.scale.domain));
  } else {
    field.domain = FindDomain(graph, name, encoding, column, texts);
    if (!encoding.sort.empty()) field.domain = SortByList(graph, name, field.domain, encoding.sort);
    if (encoding.isDescending.value_or(false))
      field.domain = graph.Call(name + " descending domain", "reverse", {field.domain});
  }
  field.indices = graph.Call(name + " indices", "indexIn", {texts, field.domain});
  field.count = graph.Call(name + " count", "count", {field.domain});
  return field;
}

CategoryEntries ListEntries(GraphBuilder& graph, CategoryField const& field,
                            std::vector<Literal> const& listed) {
  if (listed.empty()) {
    return {field.domain,
            graph.Call(field.name + " entry indices", "sequence", {graph.Int(0), graph.Int(1), field.count})};
  }
  NodeId const labels = graph.Constant(field.name + " listed values", MakeTextColumn(listed));
  return {labels, graph.Call(field.name + " entry indices", "indexIn", {labels, field.domain})};
}

}  // namespace ostrel::charts
