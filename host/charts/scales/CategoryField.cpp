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

// The values in the field's own order, as text.
NodeId SortedDomain(GraphBuilder& graph, std::string const& name, DataColumn const& column, NodeId texts) {
  if (column.GetType() == ort::core::StoreType::String || column.GetType() == ort::core::StoreType::Bool) {
    return graph.Call(name + " domain", "distinctSorted", {texts});
  }
  NodeId const distinct =
      graph.Call(name + " distinct", "distinctSorted", {graph.Input(column.name, column.values)});
  return graph.Map(name + " domain", "toString", distinct);
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
  } else if (!encoding.sort.empty()) {
    field.domain = graph.Constant(name + " order", MakeTextColumn(encoding.sort));
  } else {
    field.domain = SortedDomain(graph, name, column, texts);
    if (encoding.isDescending.value_or(false)) {
      field.domain = graph.Call(name + " descending domain", "reverse", {field.domain});
    }
  }
  field.indices = graph.Call(name + " indices", "indexIn", {texts, field.domain});
  field.count = graph.Call(name + " count", "count", {field.domain});
  return field;
}

}  // namespace ostrel::charts
