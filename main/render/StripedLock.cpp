#include "render/StripedLock.h"

namespace runtime::detail {
namespace {

constinit std::atomic<std::size_t> g_lastNumber{0};
constinit thread_local std::size_t t_number = 0;

}  // namespace

std::size_t GetThreadNumber() noexcept {
  if (t_number == 0) t_number = g_lastNumber.fetch_add(1, std::memory_order_relaxed) + 1;
  return t_number;
}

void Pause() noexcept {
#if defined(__x86_64__)
  __builtin_ia32_pause();
#elif defined(__aarch64__)
  __asm__ volatile("yield");
#endif
}

}  // namespace runtime::detail
