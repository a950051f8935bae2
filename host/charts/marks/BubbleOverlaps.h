#pragma once

#include <span>

namespace ostrel::charts {

/// Circles in pixels; the spans are of one length, all numbers are finite.
struct CircleRows {
  std::span<double const> x;
  std::span<double const> y;
  std::span<double const> diameter;
};

/// How many of the circles reach more than `depth` pixels into another one. Circles that do not overlap much
/// take time and memory nearly in proportion to their number.
int CountOverlapping(CircleRows const& circles, double depth);

}  // namespace ostrel::charts
