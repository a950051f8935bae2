#include "ostrelrtcore/engine/GraphEvaluation.h"

#include <tbb/task_arena.h>
#include <tbb/task_group.h>

#include <boost/container/small_vector.hpp>

#include "ostrelrtcore/engine/FunctionLookup.h"

namespace ort::core::engine {
namespace {

using Values = boost::container::small_vector<Value, 4>;

}  // namespace

// The tasks of one evaluation. Their context is isolated, so that a caller's cancelled group leaves no node
// undone unnoticed.
class GraphEvaluation::Tasks {
 public:
  explicit Tasks(GraphEvaluation& evaluation) : evaluation_(evaluation), group_(context_) {}

  void Start(int step) {
    group_.run([this, step] { evaluation_.RunFrom(step, *this); });
  }
  void Wait() {
    if (group_.wait() == tbb::task_group_status::canceled) {
      throw std::runtime_error("the evaluation was cancelled");
    }
  }

 private:
  GraphEvaluation& evaluation_;
  tbb::task_group_context context_{tbb::task_group_context::isolated};
  tbb::task_group group_;
};

GraphEvaluation::GraphEvaluation(FunctionRegistry const& registry, FunctionGraph const& graph,
                                 factory::NamedValues const& inputs, std::span<NodeId const> outputs)
    : registry_(registry),
      graph_(graph),
      outputs_(outputs),
      plan_(graph, inputs, outputs),
      moreStates_(plan_.GetStepCount() > kOwnStates
                      ? std::make_unique<State[]>(static_cast<std::size_t>(plan_.GetStepCount()))
                      : nullptr),
      states_(moreStates_ != nullptr ? moreStates_.get() : ownStates_.data()),
      firstFailure_(plan_.GetStepCount()) {
  for (int step = 0; step < plan_.GetStepCount(); ++step) {
    auto const users = plan_.GetUsers(step);
    states_[step].uses = static_cast<int>(users.size());
    for (int const user : users) ++states_[user].waitingFor;
  }
  for (NodeId const output : outputs) {
    if (int const step = plan_.GetStep(output); step >= 0) ++states_[step].uses;
  }
}

std::vector<Value> GraphEvaluation::Run() {
  std::vector<int> others;
  int step = -1;
  for (int root = plan_.GetStepCount() - 1; root >= 0; --root) {
    if (states_[root].waitingFor != 0) continue;
    if (step >= 0) others.push_back(step);
    step = root;
  }
  while (step >= 0 && others.empty()) {
    step = RunNode(step, [&others](int other) { others.push_back(other); });
  }
  if (!others.empty()) RunInParallel(step, others);

  int const failure = firstFailure_;
  if (failure < plan_.GetStepCount()) ThrowFailure(failure);
  std::vector<Value> values;
  values.reserve(outputs_.size());
  for (NodeId const output : outputs_) values.push_back(TakeOutput(output));
  return values;
}

void GraphEvaluation::RunInParallel(int step, std::vector<int> const& others) {
  // While this thread waits it takes part in this evaluation and in nothing of its caller's.
  tbb::this_task_arena::isolate([&] {
    Tasks tasks(*this);
    for (int const other : others) tasks.Start(other);
    RunFrom(step, tasks);
    tasks.Wait();
  });
}

void GraphEvaluation::RunFrom(int step, Tasks& tasks) {
  while (step >= 0) {
    step = RunNode(step, [&tasks](int other) { tasks.Start(other); });
  }
}

template <class Others>
int GraphEvaluation::RunNode(int step, Others const& others) {
  if (!Evaluate(step)) return -1;
  ReleaseInputs(step);
  int next = -1;
  for (int const user : plan_.GetUsers(step)) {
    if (--states_[user].waitingFor != 0) continue;
    if (next < 0) {
      next = user;
    } else {
      others(user);
    }
  }
  return next;
}

bool GraphEvaluation::Evaluate(int step) {
  // Steps before a failed one still run, so that the first failure does not depend on who was faster.
  if (step > firstFailure_) return false;
  State& state = states_[step];
  try {
    FunctionNode const& node = graph_.GetFunction(plan_.GetNode(step));
    Values inputs;
    Values parameters;
    for (NodeId const id : node.inputs) inputs.push_back(GetValue(id));
    for (NodeId const id : node.parameters) parameters.push_back(GetValue(id));
    state.result = ApplyFunction(registry_, {node.function,
                                             node.mode,
                                             {inputs.data(), inputs.size()},
                                             {parameters.data(), parameters.size()},
                                             node.initial ? GetValue(*node.initial) : nullptr,
                                             node.groups ? GetValue(*node.groups) : nullptr});
    return true;
  } catch (...) {
    state.error = std::current_exception();
  }
  NoteFailure(step);
  return false;
}

void GraphEvaluation::NoteFailure(int step) {
  int first = firstFailure_;
  while (step < first && !firstFailure_.compare_exchange_weak(first, step)) {
  }
}

void GraphEvaluation::ReleaseInputs(int step) {
  ForEachReference(graph_.GetFunction(plan_.GetNode(step)), [this](NodeId id) {
    int const used = plan_.GetStep(id);
    if (used < 0) return;
    State& state = states_[used];
    if (--state.uses == 0) state.result.reset();
  });
}

// All steps are done: of an output that is asked for twice, the last use takes the result.
Value GraphEvaluation::TakeOutput(NodeId id) {
  int const step = plan_.GetStep(id);
  if (step < 0) return plan_.GetGivenValue(id);
  State& state = states_[step];
  int const others = state.uses.load(std::memory_order_relaxed) - 1;
  state.uses.store(others, std::memory_order_relaxed);
  return others == 0 ? std::move(state.result) : state.result;
}

Value const& GraphEvaluation::GetValue(NodeId id) const {
  int const step = plan_.GetStep(id);
  return step < 0 ? plan_.GetGivenValue(id) : states_[step].result;
}

void GraphEvaluation::ThrowFailure(int step) const {
  NodeId const id = plan_.GetNode(step);
  FunctionNode const& node = graph_.GetFunction(id);
  throw EvaluationError(id, node.name, node.function, states_[step].error);
}

}  // namespace ort::core::engine
