#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ostrelrtcore/engine/Engine.h"

namespace ostrel::charts {

using ort::core::NodeId;
using Value = ort::core::factory::Value;

/// The values of the nodes that a chart asked for.
class Results {
 public:
  Results() = default;
  Results(std::vector<NodeId> const& nodes, std::vector<Value> const& values);
  /// The value of a node that was named to GraphBuilder::Keep.
  Value const& operator[](NodeId node) const { return values_.at(node); }

 private:
  std::unordered_map<NodeId, Value> values_;
};

/// Puts a chart's function graph together: constants, the data's columns as inputs, and functions of them.
/// Names are for people who read the graph: "x domain", "x positions".
class GraphBuilder {
 public:
  /// The registry serves Peek and Evaluate and must outlive this.
  explicit GraphBuilder(ort::core::FunctionRegistry const& registry) : registry_(registry) {}

  NodeId Constant(std::string const& name, Value value);
  NodeId Real(double value);
  NodeId Int(int value);
  NodeId Bool(bool value);
  NodeId Text(std::string const& value);
  /// A column of the data; the same name gives the same node.
  NodeId Input(std::string const& name, Value const& value);

  NodeId Map(std::string const& name, char const* function, NodeId input,
             std::vector<NodeId> parameters = {});
  NodeId Zip(std::string const& name, char const* function, NodeId first, NodeId second,
             std::vector<NodeId> parameters = {});
  /// Every step of a function folded over all rows, or over those of each group, from the initial value on,
  /// or from the zero of its type.
  NodeId Scan(std::string const& name, char const* function, NodeId column,
              std::optional<NodeId> groups = std::nullopt, std::optional<NodeId> initial = std::nullopt);
  NodeId Call(std::string const& name, char const* function, std::vector<NodeId> inputs);

  /// Asks for a node's value. Gives the node.
  NodeId Keep(NodeId node);

  ort::core::FunctionGraph const& GetGraph() const { return graph_; }
  std::vector<NodeId> const& GetKept() const { return kept_; }
  /// A node's value, for decisions of the plan itself. It is evaluated now, and not again.
  Value const& Peek(NodeId node);
  std::vector<Value> Peek(std::vector<NodeId> const& nodes);
  /// One function of values that are known already, outside the graph.
  Value Compute(char const* function, ort::core::EvaluationMode mode, std::vector<Value> inputs,
                std::vector<Value> parameters = {}) const;
  Results Evaluate() const;

 private:
  NodeId Shared(std::string const& name, Value value);
  NodeId Add(std::string const& name, char const* function, ort::core::EvaluationMode mode,
             std::vector<NodeId> inputs, std::vector<NodeId> parameters);

  std::vector<Value> EvaluateNodes(std::vector<NodeId> const& nodes) const;

  ort::core::FunctionRegistry const& registry_;
  ort::core::FunctionGraph graph_;
  ort::core::factory::NamedValues inputs_;
  std::unordered_map<std::string, NodeId> inputNodes_;
  std::unordered_map<std::string, NodeId> constants_;
  std::vector<NodeId> kept_;
  std::unordered_map<NodeId, Value> known_;
};

}  // namespace ostrel::charts
