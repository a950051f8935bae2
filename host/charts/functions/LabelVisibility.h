#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace ostrel::charts {

enum class LabelStrategy : std::uint8_t {
  Parity,  ///< Every other label is dropped, again and again, until all that are left clear each other.
  Greedy,  ///< From the first label on, each that clears the last one shown.
};

/// Which labels of an axis to show, so that no two shown ones stand closer than the gap: 1 or 0 for each.
/// Positions are the labels' centres and sizes their extents along the axis, both in pixels. Labels are taken
/// in the order of their positions, beginning at the end where the first row is. A label whose position or
/// size is not finite is not shown; a negative size or gap counts as 0.
std::vector<std::uint8_t> VisibleLabels(std::span<double const> positions, std::span<double const> sizes,
                                        double gap, LabelStrategy strategy);

}  // namespace ostrel::charts
