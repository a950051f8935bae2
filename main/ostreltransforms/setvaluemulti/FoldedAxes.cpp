#include "ostreltransforms/setvaluemulti/FoldedAxes.h"

#include <algorithm>
#include <vector>

namespace OstrelTransforms::FoldedAxes {
namespace {

// The logarithm of the product is concave. Between the zeros number j and j + 1 its slope is
// (n - j) / z - j / (1 - z), for j axes keep (1 - z) / (1 - zero) of the pane and the others z / zero.
double FindBestZero(std::vector<double> zeros) {
  std::sort(zeros.begin(), zeros.end());
  auto const count = static_cast<double>(zeros.size());
  for (std::size_t below = 1; below < zeros.size(); ++below) {
    double const level = (count - static_cast<double>(below)) / count;
    if (level < zeros[below]) return std::max(level, zeros[below - 1]);
  }
  return zeros.back();
}

bool CanMove(Reach const& axis, double zero) {
  return (axis.before == 0 || zero > 0) && (axis.after == 0 || zero < 1);
}

}  // namespace

std::optional<double> FindCommonZero(std::span<Reach const> axes) {
  if (axes.empty()) return std::nullopt;
  double least = 0;
  double greatest = 1;
  std::vector<double> zeros;
  for (Reach const& axis : axes) {
    zeros.push_back(axis.GetZero());
    if (axis.fixesBefore) greatest = std::min(greatest, zeros.back());
    if (axis.fixesAfter) least = std::max(least, zeros.back());
  }
  if (least > greatest) return std::nullopt;
  double const zero = std::clamp(FindBestZero(zeros), least, greatest);
  bool const allCanMove =
      std::all_of(axes.begin(), axes.end(), [&](Reach const& axis) { return CanMove(axis, zero); });
  if (!allCanMove) return std::nullopt;
  return zero;
}

Reach MoveZero(Reach const& axis, double zero) {
  double const toBefore = axis.before > 0 ? axis.before / zero : 0.0;
  double const toAfter = axis.after > 0 ? axis.after / (1 - zero) : 0.0;
  Reach moved = axis;
  if (axis.fixesAfter || (!axis.fixesBefore && toAfter > toBefore)) {
    moved.before = std::max(axis.before, toAfter * zero);
  } else {
    moved.after = std::max(axis.after, toBefore * (1 - zero));
  }
  return moved;
}

}  // namespace OstrelTransforms::FoldedAxes
