#include "render/MeasurerGeneration.h"

#include <atomic>

namespace runtime {
namespace {

constinit std::atomic<std::uint64_t> g_generation{0};
constinit std::atomic<ComposedTextsClearer> g_clear{nullptr};

}  // namespace

std::uint64_t TextMeasurerGeneration() noexcept { return g_generation.load(); }

void OnTextMeasurerChanged() noexcept {
  g_generation.fetch_add(1);
  if (ComposedTextsClearer const clear = g_clear.load()) {
    clear();
  }
}

ComposedTextsClearer SetComposedTextsClearer(ComposedTextsClearer clear) noexcept {
  return g_clear.exchange(clear);
}

}  // namespace runtime
