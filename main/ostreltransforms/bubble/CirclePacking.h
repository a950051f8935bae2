#pragma once

#include <span>

// Packs circles around the origin so that they touch (Weixin Wang, Hui Wang, Guozhong Dai, Hongan Wang:
// "Visualization of Large Hierarchical Data by Circle Packing", 2006).
namespace OstrelTransforms::CirclePacking {

// A size that is the radius of a circle, and 0 for one that is not: 0 and below, NaN.
constexpr double RadiusOf(double size) { return size > 0 ? size : 0.0; }

// Writes every circle's centre; all spans are of one length. A circle without a radius gets (0, 0) and does
// not disturb the others. Each other circle is put, in the order given, where it touches the circle of the
// outer ring that is nearest the origin, and its successor in the ring.
//
// Takes memory and, but for the walk over each circle that leaves the ring, time in proportion to the
// number of circles and the logarithm of the ring's length.
void Pack(std::span<double const> sizes, std::span<double> x, std::span<double> y);

}  // namespace OstrelTransforms::CirclePacking
