#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

#include "ostrelsys/Export.h"

/// Runs an initialisation once for all threads, at its first use. Constant-initialised, so that a global one
/// is usable before any other code has run:
///
///     constinit InitOnce g_once;
///     boost::any g_slot;
///     auto& cache = g_once.Fill(g_slot, [] { return std::make_shared<Cache>(); });
class OSTRELSYS_API InitOnce {
 public:
  constexpr InitOnce() noexcept = default;
  InitOnce(InitOnce const&) = delete;
  InitOnce& operator=(InitOnce const&) = delete;

  /// Calls `initialise()` unless an earlier call has returned. Threads that come while it runs wait for it;
  /// what it did is visible to all of them. If it throws, the exception goes to its caller and the next call
  /// of Run tries again. Running the same object from within its own initialisation is a logic error
  /// (OLogicException).
  template <typename Initialise>
  void Run(Initialise&& initialise) {
    if (IsDone()) return;
    using Callable = std::remove_reference_t<Initialise>;
    auto* const callable = const_cast<std::remove_const_t<Callable>*>(std::addressof(initialise));
    RunLocked([](void* context) { (*static_cast<Callable*>(context))(); }, callable);
  }

  /// Assigns `make()` to the slot, once, and gives the slot. The slot is any assignable holder, a type-erased
  /// one as well; it may be read without a lock afterwards.
  template <typename Slot, typename Make>
  Slot& Fill(Slot& slot, Make&& make) {
    Run([&] { slot = std::forward<Make>(make)(); });
    return slot;
  }

  bool IsDone() const noexcept { return m_isDone.load(std::memory_order_acquire); }

 private:
  void RunLocked(void (*call)(void*), void* context);

  std::atomic<bool> m_isDone{false};
  // Tells the thread that runs the initialisation now, by the address of a variable of its own.
  std::atomic<void const*> m_runner{nullptr};
  std::mutex m_mutex;
};
