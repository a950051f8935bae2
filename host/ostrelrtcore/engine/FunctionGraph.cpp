#include "ostrelrtcore/engine/FunctionGraph.h"

#include <string>

namespace ort::core {
namespace {

[[noreturn]] void ThrowWrongNode(NodeId id, char const* expected) {
  std::string const text = "node " + std::to_string(id) + " is not " + expected;
  throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore::fromUtf8(text));
}

}  // namespace

char const* EvaluationModeToString(EvaluationMode mode) noexcept {
  switch (mode) {
    case EvaluationMode::Map:
      return "map";
    case EvaluationMode::Zip:
      return "zip";
    case EvaluationMode::Scan:
      return "scan";
    case EvaluationMode::ScanBackward:
      return "scanBackward";
    case EvaluationMode::Fold:
      return "fold";
    case EvaluationMode::Call:
      return "call";
  }
  return "unknown";
}

NodeId FunctionGraph::AddConstant(OStringCore const& name, Value value) {
  if (value == nullptr) throw OrtRuntimeException(OrtError_WrongValueKind, name);
  nodes_.emplace_back(Constant{name, std::move(value)});
  return GetCount() - 1;
}

NodeId FunctionGraph::AddInput(OStringCore const& name) {
  nodes_.emplace_back(Input{name});
  return GetCount() - 1;
}

NodeId FunctionGraph::AddFunction(FunctionNode node) {
  nodes_.emplace_back(std::move(node));
  return GetCount() - 1;
}

FunctionGraph::Node const& FunctionGraph::GetNode(NodeId id) const {
  if (id < 0 || id >= GetCount()) ThrowWrongNode(id, "in the graph");
  return nodes_[static_cast<std::size_t>(id)];
}

FunctionGraph::NodeKind FunctionGraph::GetKind(NodeId id) const {
  return static_cast<NodeKind>(GetNode(id).index());
}

OStringCore const& FunctionGraph::GetName(NodeId id) const {
  return std::visit([](auto const& node) -> OStringCore const& { return node.name; }, GetNode(id));
}

FunctionGraph::Value const& FunctionGraph::GetConstant(NodeId id) const {
  auto const* constant = std::get_if<Constant>(&GetNode(id));
  if (constant == nullptr) ThrowWrongNode(id, "a constant");
  return constant->value;
}

FunctionNode const& FunctionGraph::GetFunction(NodeId id) const {
  auto const* function = std::get_if<FunctionNode>(&GetNode(id));
  if (function == nullptr) ThrowWrongNode(id, "a function");
  return *function;
}

}  // namespace ort::core
