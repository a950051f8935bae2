#include "ostrelrtcore/RowLoop.h"

#include <algorithm>
#include <atomic>

namespace ort::core {
namespace {

VectorLevel DetectVectorLevel() noexcept {
#if defined(__x86_64__)
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
    return VectorLevel::Avx512;
  }
  if (__builtin_cpu_supports("avx2")) return VectorLevel::Avx2;
#endif
  return VectorLevel::Baseline;
}

std::atomic<VectorLevel>& Level() noexcept {
  static std::atomic<VectorLevel> level = DetectVectorLevel();
  return level;
}

}  // namespace

VectorLevel GetVectorLevel() noexcept { return Level().load(std::memory_order_relaxed); }

void LimitVectorLevel(VectorLevel level) noexcept {
  Level().store(std::min(level, DetectVectorLevel()), std::memory_order_relaxed);
}

}  // namespace ort::core
