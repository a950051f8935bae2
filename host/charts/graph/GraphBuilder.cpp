#include "charts/graph/GraphBuilder.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostrel::charts {

namespace core = ort::core;

Results::Results(std::vector<NodeId> const& nodes, std::vector<Value> const& values) {
  for (std::size_t i = 0; i < nodes.size(); ++i) values_.emplace(nodes[i], values[i]);
}

NodeId GraphBuilder::Constant(std::string const& name, Value value) {
  return graph_.AddConstant(OStringCore::fromUtf8(name), std::move(value));
}

NodeId GraphBuilder::Shared(std::string const& name, Value value) {
  auto const [found, isNew] = constants_.try_emplace(name, 0);
  if (isNew) found->second = Constant(name, std::move(value));
  return found->second;
}

NodeId GraphBuilder::Real(double value) {
  return Shared(fmt::format("{}", value), core::factory::MakeReal64(value));
}
NodeId GraphBuilder::Int(int value) {
  return Shared(fmt::format("Int32 {}", value), core::factory::MakeInt32(value));
}
NodeId GraphBuilder::Bool(bool value) {
  return Shared(value ? "true" : "false", core::factory::MakeBool(value));
}
NodeId GraphBuilder::Text(std::string const& value) {
  return Shared(fmt::format("\"{}\"", value), core::factory::MakeString(OStringCore::fromUtf8(value)));
}

NodeId GraphBuilder::Input(std::string const& name, Value const& value) {
  auto const [found, isNew] = inputNodes_.try_emplace(name, 0);
  if (isNew) {
    OStringCore const wide = OStringCore::fromUtf8(name);
    found->second = graph_.AddInput(wide);
    inputs_.emplace(wide, value);
  }
  return found->second;
}

NodeId GraphBuilder::Add(std::string const& name, char const* function, core::EvaluationMode mode,
                         std::vector<NodeId> inputs, std::vector<NodeId> parameters) {
  return graph_.AddFunction({.name = OStringCore::fromUtf8(name),
                             .function = OStringCore::fromUtf8(function),
                             .mode = mode,
                             .inputs = std::move(inputs),
                             .parameters = std::move(parameters)});
}

NodeId GraphBuilder::Map(std::string const& name, char const* function, NodeId input,
                         std::vector<NodeId> parameters) {
  return Add(name, function, core::EvaluationMode::Map, {input}, std::move(parameters));
}

NodeId GraphBuilder::Zip(std::string const& name, char const* function, NodeId first, NodeId second,
                         std::vector<NodeId> parameters) {
  return Add(name, function, core::EvaluationMode::Zip, {first, second}, std::move(parameters));
}

NodeId GraphBuilder::Call(std::string const& name, char const* function, std::vector<NodeId> inputs) {
  return Add(name, function, core::EvaluationMode::Call, std::move(inputs), {});
}

NodeId GraphBuilder::Scan(std::string const& name, char const* function, NodeId column,
                          std::optional<NodeId> groups, std::optional<NodeId> initial) {
  return graph_.AddFunction({.name = OStringCore::fromUtf8(name),
                             .function = OStringCore::fromUtf8(function),
                             .mode = core::EvaluationMode::Scan,
                             .inputs = {column},
                             .parameters = {},
                             .initial = initial,
                             .groups = groups});
}

NodeId GraphBuilder::Keep(NodeId node) {
  if (std::ranges::find(kept_, node) == kept_.end()) kept_.push_back(node);
  return node;
}

Value const& GraphBuilder::Peek(NodeId node) {
  auto const found = known_.find(node);
  if (found != known_.end()) return found->second;
  return known_.emplace(node, EvaluateNodes({node}).front()).first->second;
}

std::vector<Value> GraphBuilder::Peek(std::vector<NodeId> const& nodes) {
  std::vector<Value> values = EvaluateNodes(nodes);
  for (std::size_t i = 0; i < nodes.size(); ++i) known_.emplace(nodes[i], values[i]);
  return values;
}

Value GraphBuilder::Compute(char const* function, core::EvaluationMode mode, std::vector<Value> inputs,
                            std::vector<Value> parameters) const {
  return core::Engine(registry_).Call(
      {OStringCore::fromUtf8(function), mode, std::move(inputs), std::move(parameters)});
}

// Known nodes stand as constants in a copy of the graph: it is small, its values are shared.
std::vector<Value> GraphBuilder::EvaluateNodes(std::vector<NodeId> const& nodes) const {
  core::Engine const engine(registry_);
  if (known_.empty()) return engine.Evaluate(graph_, inputs_, nodes);
  core::FunctionGraph graph;
  for (NodeId node = 0; node < graph_.GetCount(); ++node) {
    auto const kind = graph_.GetKind(node);
    auto const known = known_.find(node);
    if (known != known_.end()) {
      graph.AddConstant(graph_.GetName(node), known->second);
    } else if (kind == core::FunctionGraph::NodeKind::Constant) {
      graph.AddConstant(graph_.GetName(node), graph_.GetConstant(node));
    } else if (kind == core::FunctionGraph::NodeKind::Input) {
      graph.AddInput(graph_.GetName(node));
    } else {
      graph.AddFunction(graph_.GetFunction(node));
    }
  }
  return engine.Evaluate(graph, inputs_, nodes);
}

Results GraphBuilder::Evaluate() const { return Results(kept_, EvaluateNodes(kept_)); }

}  // namespace ostrel::charts
