#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {

namespace {

struct Stacked {
  NodeId start;
  NodeId end;
};

// In the order of the rows, whatever order they are stacked in.
Stacked StackColumn(RowStep& step, StackSpec const& stack, NodeId numbers, NodeId groups) {
  GraphBuilder& graph = step.graph;
  if (stack.order.empty()) {
    return {graph.Scan(stack.start, "tc_prev_stack_value", numbers, groups),
            graph.Scan(stack.end, "tc_curr_stack_value", numbers, groups)};
  }
  std::vector<NodeId> keys;
  for (auto const& order : stack.order) {
    keys.push_back(step.Column(order.field));
    keys.push_back(graph.Bool(order.isDescending));
  }
  NodeId const rows = graph.Call("stacking order", "sortIndices", keys);
  NodeId const places = graph.Call("place in stacking order", "sortIndices", {rows});
  NodeId const sorted = graph.Call(stack.field + " in stacking order", "take", {numbers, rows});
  NodeId const sortedGroups = graph.Call("stack in stacking order", "take", {groups, rows});
  auto const scan = [&](std::string const& name, char const* function) {
    return graph.Call(name, "take", {graph.Scan(name + " in order", function, sorted, sortedGroups), places});
  };
  return {scan(stack.start, "tc_prev_stack_value"), scan(stack.end, "tc_curr_stack_value")};
}

// Rounding takes no share out of the whole.
NodeId HoldShare(GraphBuilder& graph, std::string const& name, NodeId share) {
  NodeId const held = graph.Map(name + " from 0", "clampMin", share, {graph.Real(0)});
  return graph.Map(name + " to 1", "clampMax", held, {graph.Real(1)});
}

// A row without a number is no part of its stack.
void SetEnds(RowStep& step, StackSpec const& stack, NodeId numbers, Stacked const& ends) {
  GraphBuilder& graph = step.graph;
  NodeId const none = graph.Constant(
      "none",
      ort::core::factory::MakeSpecial(ort::core::StoreTypeInfo::Real64, ort::core::SpecialKind::Missing));
  NodeId const isNone = graph.Map(stack.field + " is none", "isSpecial", numbers);
  step.Set(stack.start, graph.Call(stack.start + " of numbers", "choose", {isNone, none, ends.start}));
  step.Set(stack.end, graph.Call(stack.end + " of numbers", "choose", {isNone, none, ends.end}));
}

}  // namespace

std::shared_ptr<LayerRows> StackRows(GraphBuilder& graph, StackSpec const& stack, LayerRows& rows) {
  RowStep step(graph, rows, stack.path);
  NodeId const groups = step.Groups("stack of row", stack.groups);
  NodeId numbers = step.Numbers(stack.field);
  if (stack.offset == StackOffset::Zero) {
    SetEnds(step, stack, numbers, StackColumn(step, stack, numbers, groups));
    return step.Extend();
  }
  numbers = graph.Map(stack.field + " without sign", "abs", numbers);
  Stacked const ends = StackColumn(step, stack, numbers, groups);
  NodeId const sums = graph.Call("sum of stack", "groupSum", {numbers, groups});
  auto const place = [&](std::string const& name, NodeId end) {
    if (stack.offset == StackOffset::Normalize) {
      NodeId const whole = graph.Call("whole of row", "take", {sums, groups});
      return HoldShare(graph, name, graph.Zip(name + " share", "/special", end, whole));
    }
    NodeId const room =
        graph.Zip("room beside stack", "subtract", graph.Call("largest stack", "columnMax", {sums}), sums);
    NodeId const below = graph.Zip("room below stack", "multiply", room, graph.Real(0.5));
    return graph.Zip(name + " centred", "add", end, graph.Call("below row", "take", {below, groups}));
  };
  SetEnds(step, stack, numbers, {place(stack.start, ends.start), place(stack.end, ends.end)});
  return step.Extend();
}

}  // namespace ostrel::charts
