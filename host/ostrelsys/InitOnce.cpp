#include "ostrelsys/InitOnce.h"

#include "ostrelsys/ThrowLogicException.h"

namespace {

thread_local char t_self;

// Tells who runs the initialisation, also when it throws.
class RunnerScope {
 public:
  explicit RunnerScope(std::atomic<void const*>& runner) : m_runner(runner) {
    m_runner.store(&t_self, std::memory_order_relaxed);
  }
  ~RunnerScope() { m_runner.store(nullptr, std::memory_order_relaxed); }
  RunnerScope(RunnerScope const&) = delete;
  RunnerScope& operator=(RunnerScope const&) = delete;

 private:
  std::atomic<void const*>& m_runner;
};

}  // namespace

void InitOnce::RunLocked(void (*call)(void*), void* context) {
  // Only the thread itself can have stored its own address, so no other thread's step is misread here.
  if (m_runner.load(std::memory_order_relaxed) == &t_self) {
    ThrowLogicException("InitOnce", __LINE__, "m_runner != &t_self");
  }
  std::lock_guard const guard(m_mutex);
  if (IsDone()) return;
  RunnerScope const scope(m_runner);
  call(context);
  m_isDone.store(true, std::memory_order_release);
}
