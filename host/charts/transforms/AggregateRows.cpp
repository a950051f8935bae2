#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreType;

bool IsDate(RowStep& step, std::string const& field) {
  StoreType const type = step.GetType(field);
  return type == StoreType::Date || type == StoreType::DateTime;
}

char const* FunctionOf(AggregateOperation operation) {
  switch (operation) {
    case AggregateOperation::Mean:
      return "groupMean";
    case AggregateOperation::Median:
      return "groupMedian";
    case AggregateOperation::Min:
      return "groupMin";
    case AggregateOperation::Max:
      return "groupMax";
    case AggregateOperation::Stdev:
      return "groupStdev";
    case AggregateOperation::Q1:
    case AggregateOperation::Q3:
      return "groupQuantile";
    default:
      return "groupSum";
  }
}

// Real64, one row a group.
NodeId AggregateField(RowStep& step, AggregateSpec::Field const& field, NodeId groups) {
  GraphBuilder& graph = step.graph;
  std::string const& name = field.as;
  switch (field.operation) {
    case AggregateOperation::Count:
      return graph.Map(name, "asReal64", graph.Call(name + " rows", "groupCount", {groups}));
    case AggregateOperation::Valid:
    case AggregateOperation::Missing: {
      NodeId flags = graph.Map(name + " is none", "isSpecial", step.Column(field.field));
      if (field.operation == AggregateOperation::Valid) flags = graph.Map(name + " is there", "not", flags);
      return graph.Call(name, "groupSum", {graph.Map(name + " flags", "asReal64", flags), groups});
    }
    case AggregateOperation::Min:
    case AggregateOperation::Max:
      if (IsDate(step, field.field))
        return graph.Call(name, FunctionOf(field.operation), {step.Instants(field.field), groups});
      break;
    default:
      break;
  }
  std::vector<NodeId> inputs = {step.Numbers(field.field), groups};
  if (field.operation == AggregateOperation::Q1) inputs.push_back(graph.Real(0.25));
  if (field.operation == AggregateOperation::Q3) inputs.push_back(graph.Real(0.75));
  return graph.Call(name, FunctionOf(field.operation), inputs);
}

}  // namespace

std::shared_ptr<LayerRows> AggregateRows(GraphBuilder& graph, AggregateSpec const& aggregate,
                                         LayerRows& rows) {
  RowStep step(graph, rows, aggregate.path);
  NodeId const groups = step.Groups("group of row", aggregate.groups);
  if (aggregate.keepsRows) {
    for (AggregateSpec::Field const& field : aggregate.fields) {
      if (aggregate.groups.empty() && field.operation == AggregateOperation::Sum) {
        step.Set(field.as, graph.Call(field.as, "accumulate", {step.Numbers(field.field)}));
        continue;
      }
      NodeId const ofGroups = AggregateField(step, field, groups);
      step.Set(field.as, graph.Call(field.as + " of rows", "take", {ofGroups, groups}));
    }
    return step.Extend();
  }
  NodeId const firstRows = graph.Call("first row of group", "groupFirstRow", {groups});
  for (std::string const& group : aggregate.groups) {
    step.Set(group, graph.Call(group + " of groups", "take", {step.Column(group), firstRows}));
  }
  for (AggregateSpec::Field const& field : aggregate.fields) {
    step.Set(field.as, AggregateField(step, field, groups));
  }
  return step.Replace();
}

}  // namespace ostrel::charts
