#pragma once

#include <span>

#include "charts/scales/PositionScale.h"

/// Domains made wider after they were found, so that zeros meet.
namespace ostrel::charts {

/// Widens the domains of linear scales so that their zeros stand at one height, none is cut, and the least
/// room is wasted. Throws DocumentError for scales of another type.
void AlignZeros(Compilation& compilation, std::span<PositionScale* const> scales);

}  // namespace ostrel::charts
