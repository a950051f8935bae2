#pragma once

#include <span>
#include <string>
#include <string_view>

#include "ostrelrtcore/Export.h"

namespace ort::core {

/// The candidate that `name` was probably meant to be: the one that fewest inserted, dropped, changed or
/// swapped bytes away (letter case of ASCII apart), the first of several, and the empty string when none is
/// within a third of the name's length, at least one. For messages: "did you mean 'Horsepower'?"
ORTCORE_API std::string NearestName(std::string_view name, std::span<std::string const> candidates);

}  // namespace ort::core
