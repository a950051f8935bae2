#pragma once

#include <span>
#include <string>

#include "charts/scene/Scene.h"

namespace ostrel::charts {

/// The element of a symbol about (x, y): prefix, x + dx, separator, y + dy, rest; other attributes may
/// follow.
struct SymbolOutline {
  std::string_view tag;
  std::string_view prefix;
  std::string_view separator;
  double dx = 0;
  double dy = 0;
  std::string rest;
};

/// The corners about the centre for half a side of 1; none for the circle. As in the chart documents'
/// grammar, a symbol's size is the area of its bounding square: a circle of size 100 is 10 wide. The cross'
/// arms are 2/5 of its width; a triangle is as high as the equilateral one, sqrt(3)/2 of its base, and
/// centred by its height.
std::span<Point const> GetSymbolCorners(SymbolShape shape);

/// For a size above 0. Steps go between the rounded corners, so that rounding errors do not add up.
SymbolOutline MakeSymbolOutline(SymbolShape shape, double size);

}  // namespace ostrel::charts
