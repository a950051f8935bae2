#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ostreltransforms/wordle/Rectangle.h"

namespace OstrelTransforms::WordCloud {

// A bit for each cell of a grid over the positions of a rectangle's left top corner: set where the rectangle
// is known to overlap a placed word, wherever in the cell it stands.
class PositionMap {
 public:
  // Cells for each unit.
  struct Scale {
    double x, y;
  };

  PositionMap() = default;
  // A map of the positions in an area, of which those at the edges may be anywhere in their cell.
  PositionMap(Rectangle const& area, Scale const& scale);

  static std::size_t CountBytes(Rectangle const& area, Scale const& scale);

  bool IsMade() const { return !bits_.empty(); }
  Scale const& GetScale() const { return scale_; }

  // A position in cells from the map's corner, as Rejects takes it; at most kMostCells away from it.
  double FindX(double left) const { return (left - left_) * scale_.x; }
  double FindY(double top) const { return (top - top_) * scale_.y; }
  static constexpr double kMostCells = 1 << 30;

  // Whether a position is blocked or outside the area.
  bool Rejects(double x, double y) const {
    // What truncation brings to the first cell from beyond the edge is outside the area.
    auto const column = static_cast<std::uint32_t>(static_cast<std::int32_t>(x));
    auto const row = static_cast<std::uint32_t>(static_cast<std::int32_t>(y));
    if (column >= columns_ || row >= rows_) return true;
    return (bits_[row * stride_ + column / 64] >> (column % 64) & 1) != 0;
  }

  // Marks what lies between these positions (excluded), known to within a slack in units.
  void Block(Rectangle const& positions, double slack);

 private:
  double left_ = 0, top_ = 0;
  Scale scale_{};
  std::uint32_t columns_ = 0, rows_ = 0;
  std::size_t stride_ = 0;
  std::vector<std::uint64_t> bits_;
};

}  // namespace OstrelTransforms::WordCloud
