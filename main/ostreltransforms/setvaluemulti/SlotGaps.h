#pragma once

#include <span>
#include <utility>

namespace OstrelTransforms::SlotGaps {

/// The first and the last slot of the largest gap in a circle of slots, of which those that hold 0 are empty;
/// (0, 0) where none or all are. A gap that was found counts as one shorter than it is, and one that passes
/// the end of the circle as negative, on purpose: an equal or, after such a one, any later gap replaces it.
std::pair<int, int> FindLargest(std::span<int const> slots);

}  // namespace OstrelTransforms::SlotGaps
