#include "charts/functions/LabelVisibility.h"

#include <algorithm>
#include <cmath>

namespace ostrel::charts {
namespace {

struct Label {
  double position;
  double size;
  std::size_t row;
};

std::vector<Label> ListInOrder(std::span<double const> positions, std::span<double const> sizes) {
  std::vector<Label> labels;
  for (std::size_t row = 0; row < positions.size(); ++row) {
    if (!std::isfinite(positions[row]) || !std::isfinite(sizes[row])) continue;
    labels.push_back({positions[row], std::max(sizes[row], 0.0), row});
  }
  if (labels.empty()) return labels;
  if (labels.front().position <= labels.back().position) {
    std::ranges::stable_sort(labels, std::less(), &Label::position);
  } else {
    std::ranges::stable_sort(labels, std::greater(), &Label::position);
  }
  return labels;
}

bool AreClear(Label const& first, Label const& second, double gap) {
  return std::abs(second.position - first.position) - (first.size + second.size) / 2 >= gap;
}

// Neighbours that clear each other stand between all others, so that comparing neighbours is enough.
bool AreAllClear(std::span<Label const> labels, std::size_t stride, double gap) {
  for (std::size_t i = stride; i < labels.size(); i += stride) {
    if (!AreClear(labels[i - stride], labels[i], gap)) return false;
  }
  return true;
}

}  // namespace

std::vector<std::uint8_t> VisibleLabels(std::span<double const> positions, std::span<double const> sizes,
                                        double gap, LabelStrategy strategy) {
  std::vector<Label> const labels = ListInOrder(positions, sizes);
  std::vector<std::uint8_t> shown(positions.size(), 0);
  gap = gap > 0 ? gap : 0;
  if (strategy == LabelStrategy::Parity) {
    std::size_t stride = 1;
    while (!AreAllClear(labels, stride, gap)) stride *= 2;
    for (std::size_t i = 0; i < labels.size(); i += stride) shown[labels[i].row] = 1;
    return shown;
  }
  Label const* last = nullptr;
  for (Label const& label : labels) {
    if (last != nullptr && !AreClear(*last, label, gap)) continue;
    shown[label.row] = 1;
    last = &label;
  }
  return shown;
}

}  // namespace ostrel::charts
