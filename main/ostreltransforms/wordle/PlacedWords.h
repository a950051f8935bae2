#pragma once

#include <cstddef>
#include <vector>

#include "ostreltransforms/wordle/Rectangle.h"

namespace OstrelTransforms::WordCloud {

// The rectangles of the words placed so far, filed by the cells of a grid that they reach into. What lies
// outside the grid belongs to its outermost cells, which keeps whatever overlaps in a common cell.
class PlacedWords {
 public:
  // A grid over an area, with cells of about these sizes; `count` words are expected.
  PlacedWords(double width, double height, double cellWidth, double cellHeight, std::size_t count);

  void Add(Rectangle const& rectangle);

  // Whether a placed rectangle overlaps. The one found last is tried first: neighbouring candidates are
  // usually blocked by the same word.
  bool Overlaps(Rectangle const& rectangle) { return rectangle.Overlaps(blocker_) || FindBlocker(rectangle); }

  // The rectangle found last, usually the one that is in the way; one that overlaps nothing before that.
  Rectangle const& GetBlocker() const { return blocker_; }

 private:
  struct Axis {
    Axis(double size, double cellSize);
    // Keeps the order of positions and takes any; NaN is put into the first cell.
    std::size_t FindCell(double position) const;
    std::size_t count = 1;
    double cellsPerUnit = 0;
  };
  struct Span {
    std::size_t left, top, right, bottom;  // the last cells included
    std::size_t GetCount() const { return (right - left + 1) * (bottom - top + 1); }
  };

  Span FindSpan(Rectangle const& rectangle) const;
  bool FindBlocker(Rectangle const& rectangle);
  bool FindBlockerAmong(std::vector<Rectangle> const& placed, Rectangle const& rectangle);

  Axis columns_, rows_;
  std::vector<std::vector<Rectangle>> cells_;
  std::vector<Rectangle> all_, wide_;
  std::size_t entriesLeft_;
  Rectangle blocker_{};  // overlaps nothing until there is one
};

}  // namespace OstrelTransforms::WordCloud
