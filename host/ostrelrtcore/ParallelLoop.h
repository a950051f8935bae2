#pragma once

#include <cstddef>
#include <functional>

#include "ostrelrtcore/Export.h"

namespace ort::core {

/// Calls body(0) ... body(count - 1) on the threads of the task scheduler, each index once, ascending within
/// a chunk. The body may write only what belongs to its own index. When a body throws, the other chunks still
/// run, and one of the exceptions is rethrown here afterwards. Tasks of the caller's own are never run
/// meanwhile.
ORTCORE_API void ParallelFor(std::size_t count, std::function<void(std::size_t)> const& body);

}  // namespace ort::core
