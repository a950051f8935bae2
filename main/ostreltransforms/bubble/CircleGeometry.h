#pragma once

#include <algorithm>
#include <cmath>

// Two circles beside each other and one that touches both. Layouts are compared bit by bit, so the order of
// the operations matters.
namespace OstrelTransforms {

struct Circle {
  double x = 0;
  double y = 0;
  double radius = 0;
};

inline double SquaredDistanceFromOrigin(Circle const& circle) {
  return circle.x * circle.x + circle.y * circle.y;
}

// Moves c to where it touches a and b. Circles whose distances are not finite, or that stand on each other,
// may get a centre that is not a number.
inline void PlaceTouching(Circle const& a, Circle const& b, Circle& c) {
  double const dab = a.radius + c.radius;
  double const dbc = b.radius + c.radius;
  double const dx = b.x - a.x;
  double const dy = b.y - a.y;
  double const d = std::sqrt(dx * dx + dy * dy);
  double cosine = dab == 0 || d == 0 ? 1.0 : (d * d + dab * dab - dbc * dbc) / (2 * dab * d);
  cosine = std::clamp(cosine, -1.0, 1.0);  // a NaN stays
  double const k = dab / d;
  double const u = k * cosine;
  double const v = k * std::sin(std::acos(cosine));
  c.x = a.x + u * dx - v * dy;
  c.y = a.y + u * dy + v * dx;
}

// How far the square of the distance may fall below that of two touching circles; square units of the sizes.
// It is absolute: circles whose radii add up to less than its root never intersect.
inline constexpr double kIntersectionTolerance = 0.001;

// The same for distances between centres along the axes. Its rounded value never grows with a distance and
// never falls with a radius, so it also rules out all circles of a region at once.
template <class T>
auto IntersectAt(T radii, T dx, T dy) {
  return radii * radii - dx * dx - dy * dy > kIntersectionTolerance;
}

inline bool Intersect(Circle const& p, Circle const& q) {
  return IntersectAt(p.radius + q.radius, q.x - p.x, q.y - p.y);
}

}  // namespace OstrelTransforms
