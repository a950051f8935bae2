#pragma once

#include <span>
#include <vector>

#include "ostrelrtcore/engine/FunctionGraph.h"

namespace ort::core::engine {

/// Calls visit(id) for every node that a function refers to: inputs, parameters, initial value, groups.
template <class Visit>
void ForEachReference(FunctionNode const& node, Visit const& visit) {
  for (NodeId const id : node.inputs) visit(id);
  for (NodeId const id : node.parameters) visit(id);
  if (node.initial) visit(*node.initial);
  if (node.groups) visit(*node.groups);
}

/// The functions that some outputs need, in an order in which each stands behind all that it refers to, and
/// who refers to whom. A function's place in that order is its step.
class GraphPlan {
 public:
  /// Throws InvalidGraph for a cycle, an id that the graph does not have and an input without a value. Refers
  /// to the graph and to the values.
  GraphPlan(FunctionGraph const& graph, factory::NamedValues const& inputs, std::span<NodeId const> outputs);

  int GetStepCount() const noexcept { return static_cast<int>(order_.size()); }
  NodeId GetNode(int step) const { return order_[static_cast<std::size_t>(step)]; }
  /// -1 for constants and inputs.
  int GetStep(NodeId id) const { return stepOf_[static_cast<std::size_t>(id)]; }
  /// The value of a constant or input.
  factory::Value const& GetGivenValue(NodeId id) const { return *given_[static_cast<std::size_t>(id)]; }
  /// The steps that refer to a step's result, once for each reference.
  std::span<int const> GetUsers(int step) const {
    auto const i = static_cast<std::size_t>(step);
    return {users_.data() + userBegins_[i], userBegins_[i + 1] - userBegins_[i]};
  }

 private:
  void Order(FunctionGraph const& graph, factory::NamedValues const& inputs, NodeId output);
  void CollectUsers(FunctionGraph const& graph);

  std::vector<NodeId> order_;
  std::vector<int> stepOf_;
  std::vector<factory::Value const*> given_;
  std::vector<int> users_;
  std::vector<std::size_t> userBegins_;  // where each step's users begin; one more for the end
};

}  // namespace ort::core::engine
