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

NodeId GraphBuilder::Zip(std::string const& name, char const* function, NodeId first, NodeId second) {
  return Add(name, function, core::EvaluationMode::Zip, {first, second}, {});
}

NodeId GraphBuilder::Call(std::string const& name, char const* function, std::vector<NodeId> inputs) {
  return Add(name, function, core::EvaluationMode::Call, std::move(inputs), {});
}

NodeId GraphBuilder::Keep(NodeId node) {
  if (std::ranges::find(kept_, node) == kept_.end()) kept_.push_back(node);
  return node;
}

Results GraphBuilder::Evaluate(core::FunctionRegistry const& registry) const {
  return Results(kept_, core::Engine(registry).Evaluate(graph_, inputs_, kept_));
}

}  // namespace ostrel::charts
