#include "ostrel/GraphText.h"

#include <fmt/format.h>

namespace ostrel::program {
namespace {

using namespace ort::core;

// What a constant is, in a few words; short scalars are shown.
std::string DescribeConstant(StoreValue const& value) {
  std::string type = StoreTypeToString(value.GetStoreType()).toUtf8();
  if (value.IsSpecial())
    return fmt::format("special {} of kind {}", type, static_cast<int>(value.GetSpecialKind()));
  switch (value.GetStoreType()) {
    case StoreType::Array:
      return fmt::format("{} rows of {}", value.AsColumn().GetCount(),
                         StoreTypeToString(value.GetTypeInfo().GetElementType()).toUtf8());
    case StoreType::Tuple:
      return fmt::format("Tuple of {}", value.AsTuple().GetCount());
    case StoreType::Table:
    case StoreType::KeyMap:
      return fmt::format("{} of {}", type, value.AsNamedValues().GetCount());
    case StoreType::Bool:
      return fmt::format("Bool {}", value.GetBool());
    case StoreType::Color:
      return fmt::format("Color #{:08X}", static_cast<unsigned>(value.GetColor().GetValue()));
    case StoreType::String:
      return fmt::format("String '{}'", value.GetString().Get().toUtf8());
    case StoreType::KeySet:
      return type;
    default:
      return fmt::format("{} {}", type, value.ConvertTo(StoreType::String)->GetString().Get().toUtf8());
  }
}

// Every value that a function node takes, with the part it plays.
template <class Visit>
void ForEachOperand(FunctionNode const& node, Visit const& visit) {
  for (NodeId const id : node.inputs) visit("", id);
  for (NodeId const id : node.parameters) visit("parameter", id);
  if (node.initial) visit("initial", *node.initial);
  if (node.groups) visit("groups", *node.groups);
}

std::string DescribeFunction(FunctionNode const& node) {
  std::string operands;
  ForEachOperand(node, [&](std::string_view role, NodeId id) {
    operands += fmt::format("{}{}{}#{}", operands.empty() ? "" : ", ", role, role.empty() ? "" : " ", id);
  });
  return fmt::format("{} {}({})", EvaluationModeToString(node.mode), node.function.toUtf8(), operands);
}

std::string DescribeNode(FunctionGraph const& graph, NodeId id) {
  switch (graph.GetKind(id)) {
    case FunctionGraph::NodeKind::Constant:
      return DescribeConstant(*graph.GetConstant(id));
    case FunctionGraph::NodeKind::Input:
      return "input";
    case FunctionGraph::NodeKind::Function:
      break;
  }
  return DescribeFunction(graph.GetFunction(id));
}

// One line of at most so many characters: names and texts are a chart author's.
std::string MakePrintable(std::string const& utf8) {
  OStringCore text = OStringCore::fromUtf8(utf8);
  std::u16string units(text.view().substr(0, 80));
  for (char16_t& unit : units) {
    if (unit < u' ' || unit == u'\x7f') unit = u' ';
  }
  if (text.length() > 80) units += u"...";
  return OStringCore(units).toUtf8();
}

std::string EscapeDot(std::string const& text) {
  std::string escaped;
  for (char const unit : MakePrintable(text)) {
    if (unit == '"' || unit == '\\') escaped += '\\';
    escaped += unit;
  }
  return escaped;
}

}  // namespace

std::string MakeGraphText(FunctionGraph const& graph) {
  std::string text;
  for (NodeId id = 0; id < graph.GetCount(); ++id) {
    text += fmt::format("#{:<4} {} = {}\n", id, MakePrintable(graph.GetName(id).toUtf8()),
                        MakePrintable(DescribeNode(graph, id)));
  }
  return text;
}

std::string MakeGraphDot(FunctionGraph const& graph) {
  std::string nodes;
  std::string edges;
  for (NodeId id = 0; id < graph.GetCount(); ++id) {
    bool const isFunction = graph.GetKind(id) == FunctionGraph::NodeKind::Function;
    std::string label = DescribeNode(graph, id);
    if (isFunction) {
      auto const& node = graph.GetFunction(id);
      label = fmt::format("{} {}", EvaluationModeToString(node.mode), node.function.toUtf8());
      ForEachOperand(node, [&](std::string_view role, NodeId operand) {
        edges += fmt::format("  n{} -> n{}", operand, id);
        edges += role.empty() ? ";\n" : fmt::format(" [label=\"{}\", style=dashed];\n", role);
      });
    }
    nodes += fmt::format("  n{} [shape={}, label=\"{}\\n{}\"];\n", id, isFunction ? "box" : "ellipse",
                         EscapeDot(graph.GetName(id).toUtf8()), EscapeDot(label));
  }
  return "digraph chart {\n  rankdir=LR;\n" + nodes + edges + "}\n";
}

}  // namespace ostrel::program
