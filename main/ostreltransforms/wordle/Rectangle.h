#pragma once

#include <algorithm>

namespace OstrelTransforms::WordCloud {

struct Rectangle {
  double left, top, right, bottom;

  bool operator==(Rectangle const&) const = default;

  bool Overlaps(Rectangle const& other) const {
    return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
  }

  // A negative growth may turn a rectangle inside out; what it then overlaps is what its comparisons say.
  Rectangle Grow(double margin) const {
    return {left - margin, top - margin, right + margin, bottom + margin};
  }

  bool IsWithin(double width, double height) const {
    return !(left < 0) && !(top < 0) && !(right > width) && !(bottom > height);
  }

  bool IsVisibleWithin(double width, double height) const {
    return !(std::min(right, width) - std::max(left, 0.0) <= 0) &&
           !(std::min(bottom, height) - std::max(top, 0.0) <= 0);
  }
};

}  // namespace OstrelTransforms::WordCloud
