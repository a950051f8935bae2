#pragma once

#include <memory>

namespace ort::core {

// Lets go of what a container holds. Values nested however deep are destroyed one after the other here, never
// one inside the destructor of the other.
void ReleaseWithoutRecursion(std::shared_ptr<void const> content) noexcept;

}  // namespace ort::core
