#include "render/StripedLock.h"

#include <sched.h>

namespace runtime::detail {
std::size_t GetRunningNumber() noexcept {
  int const processor = sched_getcpu();
  return processor < 0 ? 0 : static_cast<std::size_t>(processor);
}

void Pause() noexcept {
#if defined(__x86_64__)
  __builtin_ia32_pause();
#elif defined(__aarch64__)
  __asm__ volatile("yield");
#endif
}

}  // namespace runtime::detail
