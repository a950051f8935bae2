#include "charts/marks/Tooltips.h"

#include <algorithm>

#include "charts/graph/PeriodNodes.h"

namespace ostrel::charts {
namespace {

// What is written for rows without a number or date.
NodeId NameMissing(GraphBuilder& graph, std::string const& name, RowColumn const& column, NodeId texts,
                   char const* missing) {
  if (!column.values->AsColumn().HasSpecials()) return texts;
  NodeId const named = graph.Map(name + " or " + missing, "replaceSpecial", texts, {graph.Text(missing)});
  NodeId const isNull = graph.Map(name + " is null", "isNull", column.node);
  return graph.Call(name + " or null", "choose", {isNull, graph.Text("null"), named});
}

NodeId FormatDateColumn(MarkContext& context, Encoding const& encoding) {
  GraphBuilder& graph = context.GetGraph();
  RowColumn const& dates = context.GetRows().GetDates(graph, encoding.field);
  bool const isDate = dates.GetType() == ort::core::StoreType::Date;
  NodeId const instants =
      isDate ? graph.Map(encoding.field + " instants", "toDateTime", dates.node) : dates.node;
  std::string const name = encoding.field + " texts";
  std::string const pattern = encoding.format.empty() ? "%b %d, %Y" : encoding.format;
  NodeId const texts = encoding.timeUnit.empty()
                           ? graph.Call(name, "formatDates", {instants, graph.Text(pattern)})
                           : FormatUnits(graph, name, encoding.timeUnit, instants, encoding.format);
  return NameMissing(graph, name, dates, texts, "null");
}

NodeId FormatNumberColumn(MarkContext& context, std::string const& field, std::string const& format) {
  GraphBuilder& graph = context.GetGraph();
  RowColumn const& numbers = context.GetRows().GetNumbers(graph, field);
  bool const isReal = numbers.GetType() == ort::core::StoreType::Real64;
  NodeId const reals = isReal ? numbers.node : graph.Map(field + " reals", "asReal64", numbers.node);
  std::string const name = field + " texts";
  NodeId const texts = graph.Call(name, "formatNumbers", {reals, graph.Text(format)});
  return NameMissing(graph, name, numbers, texts, "NaN");
}

std::string TooltipTitle(Encoding const& encoding) {
  return encoding.title.isGiven ? encoding.title.text : DefaultTitle(encoding);
}

}  // namespace

NodeId PlanTexts(MarkContext& context, Encoding const& encoding) {
  GraphBuilder& graph = context.GetGraph();
  LayerRows& rows = context.GetRows();
  bool const isTemporal = encoding.type == FieldType::Temporal || !encoding.timeUnit.empty();
  if (isTemporal) return FormatDateColumn(context, encoding);
  bool const isQuantity = encoding.type == FieldType::Quantitative;
  if (encoding.format.empty() && !isQuantity) return rows.GetCategories(graph, encoding.field);
  NodeId const texts = FormatNumberColumn(context, encoding.field, encoding.format);
  if (!encoding.bin || encoding.endField.empty()) return texts;
  return graph.Call(
      encoding.field + " interval", "joinTexts",
      {texts, graph.Text(" \u2013 "), FormatNumberColumn(context, encoding.endField, encoding.format)});
}

NodeId PlanTooltips(MarkContext& context) {
  GraphBuilder& graph = context.GetGraph();
  std::vector<NodeId> parts;
  for (Encoding const& encoding : context.GetSpec().encodings) {
    if (encoding.channel != Channel::Tooltip) continue;
    std::string const title = TooltipTitle(encoding);
    if (!parts.empty() || !title.empty())
      parts.push_back(graph.Text((parts.empty() ? "" : "\n") + title + (title.empty() ? "" : ": ")));
    if (auto const* text = std::get_if<std::string>(&encoding.value)) {
      parts.push_back(context.Repeat("tooltip text", graph.Text(*text)));
    } else {
      parts.push_back(PlanTexts(context, encoding));
    }
  }
  return parts.empty() ? -1 : graph.Call("tooltips", "joinTexts", parts);
}

}  // namespace ostrel::charts
