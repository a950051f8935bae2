#include "ostrelrtcore/engine/GraphPlan.h"

#include <algorithm>

#include "ostrelrtcore/engine/Engine.h"

namespace ort::core::engine {
namespace {

// What stepOf_ holds while the order is being found.
constexpr int kUnseen = -2;
constexpr int kOpen = -3;
constexpr int kNoStep = -1;

// A function whose references are being followed.
struct OpenNode {
  NodeId id;
  std::vector<NodeId> references;
  std::size_t next = 0;
};

std::string Quote(FunctionGraph const& graph, NodeId id) { return "'" + graph.GetName(id).toUtf8() + "'"; }

[[noreturn]] void ThrowUnknownNode(FunctionGraph const& graph, NodeId id, std::vector<OpenNode> const& open) {
  std::string const source = open.empty() ? "an output" : "node " + Quote(graph, open.back().id);
  throw InvalidGraph(source + " refers to node " + std::to_string(id) + "; the graph has " +
                     std::to_string(graph.GetCount()) + " nodes");
}

[[noreturn]] void ThrowCycle(FunctionGraph const& graph, NodeId id, std::vector<OpenNode> const& open) {
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

GraphPlan::GraphPlan(FunctionGraph const& graph, factory::NamedValues const& inputs,
                     std::span<NodeId const> outputs)
    : stepOf_(static_cast<std::size_t>(graph.GetCount()), kUnseen),
      given_(static_cast<std::size_t>(graph.GetCount()), nullptr) {
  for (NodeId const output : outputs) Order(graph, inputs, output);
  CollectUsers(graph);
}

// Depth first, without recursion: chains may be long.
void GraphPlan::Order(FunctionGraph const& graph, factory::NamedValues const& inputs, NodeId output) {
  std::vector<OpenNode> open;
  auto const meet = [&](NodeId id) {
    if (id < 0 || id >= graph.GetCount()) ThrowUnknownNode(graph, id, open);
    int& step = stepOf_[static_cast<std::size_t>(id)];
    if (step == kOpen) ThrowCycle(graph, id, open);
    if (step != kUnseen) return;
    auto const kind = graph.GetKind(id);
    if (kind == FunctionGraph::NodeKind::Function) {
      step = kOpen;
      OpenNode node{id, {}};
      ForEachReference(graph.GetFunction(id),
                       [&](NodeId reference) { node.references.push_back(reference); });
      open.push_back(std::move(node));
      return;
    }
    step = kNoStep;
    given_[static_cast<std::size_t>(id)] =
        kind == FunctionGraph::NodeKind::Constant ? &graph.GetConstant(id) : &FindInput(graph, inputs, id);
  };
  meet(output);
  while (!open.empty()) {
    if (open.back().next < open.back().references.size()) {
      meet(open.back().references[open.back().next++]);
      continue;
    }
    stepOf_[static_cast<std::size_t>(open.back().id)] = GetStepCount();
    order_.push_back(open.back().id);
    open.pop_back();
  }
}

void GraphPlan::CollectUsers(FunctionGraph const& graph) {
  auto const forEachUse = [&](auto const& visit) {
    for (int step = 0; step < GetStepCount(); ++step) {
      ForEachReference(graph.GetFunction(GetNode(step)), [&](NodeId id) {
        if (GetStep(id) != kNoStep) visit(static_cast<std::size_t>(GetStep(id)), step);
      });
    }
  };
  userBegins_.assign(order_.size() + 1, 0);
  forEachUse([&](std::size_t used, int) { ++userBegins_[used]; });
  // Each entry first becomes the end of its users, and their begin as they are filled in from behind.
  std::size_t end = 0;
  for (std::size_t& begin : userBegins_) begin = end += begin;
  users_.resize(end);
  forEachUse([&](std::size_t used, int user) { users_[--userBegins_[used]] = user; });
}

}  // namespace ort::core::engine
