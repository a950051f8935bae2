#include "ostrelrtcore/engine/GraphPlan.h"

#include <algorithm>

#include "ostrelrtcore/engine/Engine.h"

namespace ort::core::engine {
namespace {

// A function whose references are being followed.
struct OpenNode {
  NodeId id;
  FunctionNode const* function;
  std::size_t next = 0;
};
using OpenNodes = boost::container::small_vector<OpenNode, 4>;

std::string Quote(FunctionGraph const& graph, NodeId id) { return "'" + graph.GetName(id).toUtf8() + "'"; }

[[noreturn]] void ThrowUnknownNode(FunctionGraph const& graph, NodeId id, OpenNodes const& open) {
  std::string const source = open.empty() ? "an output" : "node " + Quote(graph, open.back().id);
  throw InvalidGraph(source + " refers to node " + std::to_string(id) + "; the graph has " +
                     std::to_string(graph.GetCount()) + " nodes");
}

[[noreturn]] void ThrowCycle(FunctionGraph const& graph, NodeId id, OpenNodes const& open) {
  auto const first =
      std::find_if(open.begin(), open.end(), [id](OpenNode const& node) { return node.id == id; });
  std::string text = "the graph has a cycle: ";
  for (auto node = first; node != open.end(); ++node) text += Quote(graph, node->id) + " -> ";
  throw InvalidGraph(text + Quote(graph, id));
}

factory::Value const& FindInput(FunctionGraph const& graph, factory::NamedValues const& inputs, NodeId id) {
  auto const found = inputs.find(graph.GetName(id));
  if (found == inputs.end() || found->second == nullptr) {
    throw InvalidGraph("input " + Quote(graph, id) + " has no value");
  }
  return found->second;
}

}  // namespace

NodeId GetReference(FunctionNode const& node, std::size_t i) {
  if (i < node.inputs.size()) return node.inputs[i];
  i -= node.inputs.size();
  if (i < node.parameters.size()) return node.parameters[i];
  return i == node.parameters.size() && node.initial ? *node.initial : *node.groups;
}

GraphPlan::GraphPlan(FunctionGraph const& graph, factory::NamedValues const& inputs,
                     std::span<NodeId const> outputs)
    : nodes_(static_cast<std::size_t>(graph.GetCount())) {
  for (NodeId const output : outputs) Order(graph, inputs, output);
  CollectUsers(graph);
}

// Depth first, without recursion: chains may be long.
void GraphPlan::Order(FunctionGraph const& graph, factory::NamedValues const& inputs, NodeId output) {
  OpenNodes open;
  auto const meet = [&](NodeId id) {
    if (id < 0 || id >= graph.GetCount()) ThrowUnknownNode(graph, id, open);
    Node& node = nodes_[static_cast<std::size_t>(id)];
    if (node.step == kOpen) ThrowCycle(graph, id, open);
    if (node.step != kUnseen) return;
    switch (graph.GetKind(id)) {
      case FunctionGraph::NodeKind::Function:
        node.step = kOpen;
        open.push_back({id, &graph.GetFunction(id)});
        return;
      case FunctionGraph::NodeKind::Constant:
        node.given = &graph.GetConstant(id);
        break;
      case FunctionGraph::NodeKind::Input:
        node.given = &FindInput(graph, inputs, id);
        break;
    }
    node.step = kNoStep;
  };
  meet(output);
  while (!open.empty()) {
    OpenNode& node = open.back();
    if (node.next < CountReferences(*node.function)) {
      meet(GetReference(*node.function, node.next++));
      continue;
    }
    nodes_[static_cast<std::size_t>(node.id)].step = GetStepCount();
    order_.push_back(node.id);
    open.pop_back();
  }
}

void GraphPlan::CollectUsers(FunctionGraph const& graph) {
  userBegins_.assign(order_.size() + 1, 0);
  if (order_.size() < 2) return;
  auto const forEachUse = [&](auto const& visit) {
    for (int step = 0; step < GetStepCount(); ++step) {
      ForEachReference(graph.GetFunction(GetNode(step)), [&](NodeId id) {
        if (GetStep(id) != kNoStep) visit(static_cast<std::size_t>(GetStep(id)), step);
      });
    }
  };
  forEachUse([&](std::size_t used, int) { ++userBegins_[used]; });
  // Each entry first becomes the end of its users, and their begin as they are filled in from behind.
  std::size_t end = 0;
  for (std::size_t& begin : userBegins_) begin = end += begin;
  users_.resize(end);
  forEachUse([&](std::size_t used, int user) { users_[--userBegins_[used]] = user; });
}

}  // namespace ort::core::engine
