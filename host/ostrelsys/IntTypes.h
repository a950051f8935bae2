#pragma once

#include <cstdint>

namespace ort::core {

using uint8 = std::uint8_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;
using int64 = std::int64_t;

}  // namespace ort::core
