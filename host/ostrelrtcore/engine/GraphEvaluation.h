#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <vector>

#include "ostrelrtcore/engine/ElementSlot.h"
#include "ostrelrtcore/engine/Engine.h"
#include "ostrelrtcore/engine/GraphPlan.h"

namespace ort::core::engine {

/// One evaluation of a graph. A thread that finishes a node goes on with one node that became ready by it and
/// leaves the others to the task scheduler, which is not touched as long as only one node is ready.
class GraphEvaluation {
 public:
  GraphEvaluation(FunctionRegistry const& registry, FunctionGraph const& graph,
                  factory::NamedValues const& inputs, std::span<NodeId const> outputs);
  std::vector<Value> Run();

 private:
  struct State {
    std::atomic<int> waitingFor{0};  // results that are still to come
    std::atomic<int> uses{0};        // nodes and outputs that still need the result
    Value result;
    std::exception_ptr error;
  };
  class Tasks;

  // The next node to run, -1 for none; other nodes that became ready go to `others`.
  template <class Others>
  int RunNode(int step, Others const& others);
  void RunFrom(int step, Tasks& tasks);
  void RunInParallel(int step, std::vector<int> const& others);

  bool Evaluate(int step);
  void ReleaseInputs(int step);
  void NoteFailure(int step);
  Value const& GetValue(NodeId id) const;
  Value TakeOutput(NodeId id);
  [[noreturn]] void ThrowFailure(int step) const;

  FunctionRegistry const& registry_;
  FunctionGraph const& graph_;
  std::span<NodeId const> outputs_;
  GraphPlan plan_;
  static constexpr int kOwnStates = 4;  // for a graph of few steps, without memory of their own
  std::array<State, kOwnStates> ownStates_;
  std::unique_ptr<State[]> moreStates_;
  State* states_;                  // by step
  std::atomic<int> firstFailure_;  // the least step that failed
};

}  // namespace ort::core::engine
