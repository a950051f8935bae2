#include "charts/marks/BubbleOverlaps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace ostrel::charts {
namespace {

// Squares of a grid and, of each, the circles whose bounds touch it. There are about as many squares as
// circles, so circles that lie side by side touch a few squares each.
class CircleGrid {
 public:
  explicit CircleGrid(CircleRows const& circles) : circles_(circles) {
    double right = -std::numeric_limits<double>::infinity();
    double bottom = right;
    for (std::size_t i = 0; i < circles.x.size(); ++i) {
      double const radius = circles.diameter[i] / 2;
      left_ = std::min(left_, circles.x[i] - radius);
      top_ = std::min(top_, circles.y[i] - radius);
      right = std::max(right, circles.x[i] + radius);
      bottom = std::max(bottom, circles.y[i] + radius);
    }
    double const perSide = std::ceil(std::sqrt(static_cast<double>(circles.x.size())));
    side_ =
        std::max({(right - left_) / perSide, (bottom - top_) / perSide, std::numeric_limits<double>::min()});
    columns_ = static_cast<std::size_t>(perSide) + 1;
    squares_.resize(columns_ * columns_);
    for (std::size_t i = 0; i < circles.x.size(); ++i) {
      ForEachSquare(i, [&](std::vector<std::size_t>& square) {
        square.push_back(i);
        return false;
      });
    }
  }

  bool OverlapsAnother(std::size_t circle, double depth) {
    return ForEachSquare(circle, [&](std::vector<std::size_t> const& square) {
      return std::ranges::any_of(
          square, [&](std::size_t other) { return other != circle && GetDepth(circle, other) > depth; });
    });
  }

 private:
  double GetDepth(std::size_t a, std::size_t b) const {
    double const distance = std::hypot(circles_.x[a] - circles_.x[b], circles_.y[a] - circles_.y[b]);
    return (circles_.diameter[a] + circles_.diameter[b]) / 2 - distance;
  }

  std::size_t GetLine(double place, double first) const {
    return std::min(static_cast<std::size_t>(std::max((place - first) / side_, 0.0)), columns_ - 1);
  }

  // Until `visit` gives true; tells whether it did.
  template <class Visit>
  bool ForEachSquare(std::size_t circle, Visit const& visit) {
    double const radius = circles_.diameter[circle] / 2;
    double const x = circles_.x[circle], y = circles_.y[circle];
    for (std::size_t row = GetLine(y - radius, top_); row <= GetLine(y + radius, top_); ++row) {
      for (std::size_t column = GetLine(x - radius, left_); column <= GetLine(x + radius, left_); ++column) {
        if (visit(squares_[row * columns_ + column])) return true;
      }
    }
    return false;
  }

  CircleRows circles_;
  double left_ = std::numeric_limits<double>::infinity();
  double top_ = std::numeric_limits<double>::infinity();
  double side_ = 1;
  std::size_t columns_ = 1;
  std::vector<std::vector<std::size_t>> squares_;
};

}  // namespace

int CountOverlapping(CircleRows const& circles, double depth) {
  CircleGrid grid(circles);
  int count = 0;
  for (std::size_t i = 0; i < circles.x.size(); ++i) count += grid.OverlapsAnother(i, depth) ? 1 : 0;
  return count;
}

}  // namespace ostrel::charts
