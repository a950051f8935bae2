#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrel::services {

/// The colour 0xRRGGBB that CSS Color Module Level 4 names so, in lower case; nothing for another name.
std::optional<std::uint32_t> FindNamedColor(std::string_view name);

}  // namespace ostrel::services
