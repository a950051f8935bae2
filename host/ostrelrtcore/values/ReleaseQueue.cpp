#include "ostrelrtcore/values/ReleaseQueue.h"

#include <new>
#include <vector>

namespace ort::core {
namespace {

using Pending = std::vector<std::shared_ptr<void const>>;
// The list of the outermost release on this thread, while it runs.
thread_local Pending* activeQueue = nullptr;

}  // namespace

void ReleaseWithoutRecursion(std::shared_ptr<void const> content) noexcept {
  if (content == nullptr) return;
  if (activeQueue != nullptr) {
    try {
      activeQueue->push_back(std::move(content));
    } catch (std::bad_alloc const&) {
      // Without memory for the list it is let go of at once, one level deeper.
    }
    return;
  }
  Pending pending;
  activeQueue = &pending;
  content.reset();
  while (!pending.empty()) {
    auto const next = std::move(pending.back());
    pending.pop_back();
  }
  activeQueue = nullptr;
}

}  // namespace ort::core
