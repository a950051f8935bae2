#pragma once

#include <boost/container/small_vector.hpp>
#include <span>

#include "ostrelrtcore/engine/FunctionGraph.h"

namespace ort::core::engine {

/// A function's references one after the other: inputs, parameters, initial value, groups.
inline std::size_t CountReferences(FunctionNode const& node) {
  return node.inputs.size() + node.parameters.size() + (node.initial ? 1 : 0) + (node.groups ? 1 : 0);
}
NodeId GetReference(FunctionNode const& node, std::size_t i);

template <class Visit>
void ForEachReference(FunctionNode const& node, Visit const& visit) {
  for (std::size_t i = 0, count = CountReferences(node); i < count; ++i) visit(GetReference(node, i));
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
  int GetStep(NodeId id) const { return nodes_[static_cast<std::size_t>(id)].step; }
  /// The value of a constant or input.
  factory::Value const& GetGivenValue(NodeId id) const { return *nodes_[static_cast<std::size_t>(id)].given; }
  /// The steps that refer to a step's result, once for each reference.
  std::span<int const> GetUsers(int step) const {
    auto const i = static_cast<std::size_t>(step);
    return {users_.data() + userBegins_[i], userBegins_[i + 1] - userBegins_[i]};
  }

 private:
  struct Node {
    int step = kUnseen;
    factory::Value const* given = nullptr;
  };
  // What stands for a step while the order is being found, and for good where there is none.
  static constexpr int kNoStep = -1;
  static constexpr int kUnseen = -2;
  static constexpr int kOpen = -3;

  void Order(FunctionGraph const& graph, factory::NamedValues const& inputs, NodeId output);
  void CollectUsers(FunctionGraph const& graph);

  // What a small graph needs stands in the plan itself: a call of one function takes no memory for it.
  template <class T>
  using List = boost::container::small_vector<T, 8>;

  List<NodeId> order_;
  List<Node> nodes_;
  List<int> users_;
  List<std::size_t> userBegins_;  // where each step's users begin; one more for the end
};

}  // namespace ort::core::engine
