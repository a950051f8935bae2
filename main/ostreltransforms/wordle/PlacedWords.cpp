#include "ostreltransforms/wordle/PlacedWords.h"

#include <limits>

namespace OstrelTransforms::WordCloud {
namespace {

constexpr double kMostCells = 512;
// A word that reaches into more cells than these may be kept in a list of its own.
constexpr std::size_t kWideSpan = 64;

}  // namespace

PlacedWords::Axis::Axis(double size, double cellSize) {
  double const wanted = size / cellSize;
  // Also passes over what is not a number.
  if (!(wanted >= 2)) return;
  double const cells = std::min(wanted, kMostCells);
  count = static_cast<std::size_t>(cells);
  cellsPerUnit = cells / size;
}

std::size_t PlacedWords::Axis::FindCell(double position) const {
  double const cell = position * cellsPerUnit;
  if (!(cell >= 0)) return 0;
  return cell < static_cast<double>(count) ? static_cast<std::size_t>(cell) : count - 1;
}

PlacedWords::PlacedWords(double width, double height, double cellWidth, double cellHeight, std::size_t count)
    : columns_(width, cellWidth), rows_(height, cellHeight), cells_(columns_.count * rows_.count) {
  // Words that do not overlap reach into each cell about once and, where they are small, into a few more. A
  // negative gap lets them pile up, which must not fill the memory.
  entriesLeft_ = 16 * count + 4 * cells_.size();
  double const nowhere = std::numeric_limits<double>::quiet_NaN();
  blocker_ = {nowhere, nowhere, nowhere, nowhere};
}

PlacedWords::Span PlacedWords::FindSpan(Rectangle const& rectangle) const {
  auto const [left, right] = std::minmax(rectangle.left, rectangle.right);
  auto const [top, bottom] = std::minmax(rectangle.top, rectangle.bottom);
  return {columns_.FindCell(left), rows_.FindCell(top), columns_.FindCell(right), rows_.FindCell(bottom)};
}

void PlacedWords::Add(Rectangle const& rectangle) {
  Span const span = FindSpan(rectangle);
  std::size_t const count = span.GetCount();
  // Words without extent are often many at one place.
  std::vector<Rectangle> const& first = cells_[span.top * columns_.count + span.left];
  if (!first.empty() && first.back() == rectangle) return;
  all_.push_back(rectangle);
  if (count > kWideSpan && count > entriesLeft_) {
    wide_.push_back(rectangle);
    return;
  }
  entriesLeft_ -= std::min(entriesLeft_, count);
  for (std::size_t row = span.top; row <= span.bottom; ++row) {
    for (std::size_t column = span.left; column <= span.right; ++column) {
      cells_[row * columns_.count + column].push_back(rectangle);
    }
  }
}

bool PlacedWords::FindBlocker(Rectangle const& rectangle) {
  Span const span = FindSpan(rectangle);
  if (span.GetCount() > all_.size()) return FindBlockerAmong(all_, rectangle);
  for (std::size_t row = span.top; row <= span.bottom; ++row) {
    for (std::size_t column = span.left; column <= span.right; ++column) {
      if (FindBlockerAmong(cells_[row * columns_.count + column], rectangle)) return true;
    }
  }
  return FindBlockerAmong(wide_, rectangle);
}

bool PlacedWords::FindBlockerAmong(std::vector<Rectangle> const& placed, Rectangle const& rectangle) {
  for (Rectangle const& other : placed) {
    if (rectangle.Overlaps(other)) {
      blocker_ = other;
      return true;
    }
  }
  return false;
}

}  // namespace OstrelTransforms::WordCloud
