#include "charts/marks/Tooltips.h"

#include <algorithm>

#include "charts/graph/PeriodNodes.h"

namespace ostrel::charts {
namespace {

NodeId FormatDateColumn(MarkContext& context, Encoding const& encoding) {
  GraphBuilder& graph = context.GetGraph();
  RowColumn const& dates = context.GetRows().GetDates(graph, encoding.field);
  bool const isDate = dates.GetType() == ort::core::StoreType::Date;
  NodeId const instants =
      isDate ? graph.Map(encoding.field + " instants", "toDateTime", dates.node) : dates.node;
  std::string const name = encoding.field + " texts";
  if (!encoding.timeUnit.empty())
    return FormatUnits(graph, name, encoding.timeUnit, instants, encoding.format);
  std::string const pattern = encoding.format.empty() ? "%Y-%m-%d" : encoding.format;
  return graph.Call(name, "formatDates", {instants, graph.Text(pattern)});
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
  if (encoding.format.empty()) return rows.GetTexts(graph, encoding.field).node;
  RowColumn const& numbers = rows.GetNumbers(graph, encoding.field);
  bool const isReal = numbers.GetType() == ort::core::StoreType::Real64;
  NodeId const reals = isReal ? numbers.node : graph.Map(encoding.field + " reals", "asReal64", numbers.node);
  return graph.Call(encoding.field + " texts", "formatNumbers", {reals, graph.Text(encoding.format)});
}

NodeId PlanTooltips(MarkContext& context) {
  GraphBuilder& graph = context.GetGraph();
  std::vector<NodeId> parts;
  for (Encoding const& encoding : context.GetSpec().encodings) {
    if (encoding.channel != Channel::Tooltip) continue;
    parts.push_back(graph.Text((parts.empty() ? "" : "\n") + TooltipTitle(encoding) + ": "));
    parts.push_back(PlanTexts(context, encoding));
  }
  return parts.empty() ? -1 : graph.Call("tooltips", "joinTexts", parts);
}

}  // namespace ostrel::charts
