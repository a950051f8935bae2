#include "ostreltransforms/wordle/PositionMap.h"

#include <cmath>

namespace OstrelTransforms::WordCloud {
namespace {

// Far above what rounding does to a position, in cells: kMostCells * 2^-52 is some 10^-7.
constexpr double kSlack = 1e-3;

std::uint32_t CountCells(double size, double scale) {
  return static_cast<std::uint32_t>(std::max(0.0, size * scale + kSlack)) + 1;
}

struct CellRange {
  std::uint32_t first, end;
};

// The cells that lie between two positions, both in cells.
CellRange FindCells(double low, double high, double slack, std::uint32_t count) {
  double const first = std::ceil(low + slack), end = std::floor(high - slack);
  if (!(first < end) || !(first < count) || !(end > 0)) return {0, 0};
  return {static_cast<std::uint32_t>(std::max(first, 0.0)),
          static_cast<std::uint32_t>(std::min(end, static_cast<double>(count)))};
}

}  // namespace

PositionMap::PositionMap(Rectangle const& area, Scale const& scale)
    : left_(area.left),
      top_(area.top),
      scale_(scale),
      columns_(CountCells(area.right - area.left, scale.x)),
      rows_(CountCells(area.bottom - area.top, scale.y)),
      stride_((columns_ + 63) / 64),
      bits_(stride_ * rows_) {}

std::size_t PositionMap::CountBytes(Rectangle const& area, Scale const& scale) {
  std::size_t const columns = CountCells(area.right - area.left, scale.x);
  return (columns + 63) / 64 * 8 * CountCells(area.bottom - area.top, scale.y);
}

void PositionMap::Block(Rectangle const& positions, double slack) {
  CellRange const columns =
      FindCells(FindX(positions.left), FindX(positions.right), kSlack + slack * scale_.x, columns_);
  CellRange const rows =
      FindCells(FindY(positions.top), FindY(positions.bottom), kSlack + slack * scale_.y, rows_);
  if (columns.first == columns.end) return;
  std::size_t const first = columns.first / 64, last = (columns.end - 1) / 64;
  std::uint64_t const firstBits = ~std::uint64_t{0} << (columns.first % 64);
  std::uint64_t const lastBits = ~std::uint64_t{0} >> (63 - (columns.end - 1) % 64);
  for (std::uint32_t row = rows.first; row < rows.end; ++row) {
    std::uint64_t* const bits = bits_.data() + row * stride_;
    if (first == last) {
      bits[first] |= firstBits & lastBits;
      continue;
    }
    bits[first] |= firstBits;
    for (std::size_t i = first + 1; i < last; ++i) bits[i] = ~std::uint64_t{0};
    bits[last] |= lastBits;
  }
}

}  // namespace OstrelTransforms::WordCloud
