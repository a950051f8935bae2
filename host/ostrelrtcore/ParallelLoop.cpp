#include "ostrelrtcore/ParallelLoop.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

#include <atomic>
#include <exception>
#include <stdexcept>

namespace ort::core {
namespace {

// What the chunks of one loop share.
struct LoopState {
  std::atomic<bool> started{false};
  std::atomic<bool> failed{false};
  std::exception_ptr exception;
};

// Runs the body over one chunk.
class ParallelForFunctor {
 public:
  explicit ParallelForFunctor(std::function<void(std::size_t)> const& body) : body_(&body) {}
  void operator()(tbb::blocked_range<std::size_t> const& range) const {
    for (std::size_t i = range.begin(); i != range.end(); ++i) (*body_)(i);
  }

 private:
  std::function<void(std::size_t)> const* body_;
};

// Keeps the first exception of any chunk instead of letting it end the others.
class WrapperForCatchingExceptions {
 public:
  WrapperForCatchingExceptions(ParallelForFunctor functor, LoopState& state)
      : functor_(functor), state_(&state) {}
  void operator()(tbb::blocked_range<std::size_t> const& range) const {
    state_->started.store(true, std::memory_order_relaxed);
    try {
      functor_(range);
    } catch (...) {
      if (!state_->failed.exchange(true)) state_->exception = std::current_exception();
    }
  }

 private:
  ParallelForFunctor functor_;
  LoopState* state_;
};

}  // namespace

void ParallelFor(std::size_t count, std::function<void(std::size_t)> const& body) {
  if (count == 0) return;
  LoopState state;
  ParallelForFunctor const functor(body);
  tbb::task_group_context context(tbb::task_group_context::isolated);
  tbb::blocked_range<std::size_t> const range(0, count, 1);
  tbb::this_task_arena::isolate([&] {
    tbb::parallel_for(range, WrapperForCatchingExceptions(functor, state), tbb::auto_partitioner(), context);
  });
  if (!state.started.load(std::memory_order_relaxed)) return functor(range);
  if (state.exception) std::rethrow_exception(state.exception);
  if (context.is_group_execution_cancelled()) throw std::runtime_error("the parallel loop was cancelled");
}

}  // namespace ort::core
