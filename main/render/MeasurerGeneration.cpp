#include "render/MeasurerGeneration.h"

#include <atomic>

namespace runtime {
namespace {

constinit std::atomic<std::uint64_t> g_generation{0};
constinit std::atomic<void (*)() noexcept> g_clear{nullptr};

}  // namespace

std::uint64_t TextMeasurerGeneration() noexcept { return g_generation.load(); }

void OnTextMeasurerChanged() noexcept {
  g_generation.fetch_add(1);
  if (auto* const clear = g_clear.load()) {
    clear();
  }
}

void SetComposedTextsClearer(void (*clear)() noexcept) noexcept { g_clear.store(clear); }

}  // namespace runtime
