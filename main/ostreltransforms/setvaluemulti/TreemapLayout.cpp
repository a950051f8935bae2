#include "ostreltransforms/setvaluemulti/TreemapLayout.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "ostrelrtcore/OrtRuntimeException.h"
#include "ostrelrtcore/RFormatString.h"

namespace OstrelTransforms::TreemapLayout {
namespace {

using namespace ort::core;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

double CountOrZero(double amount) { return amount > 0 && amount < kInfinity ? amount : 0; }

[[noreturn]] void ThrowAt(wchar_t const* pattern, int row, int parent) {
  throw OrtRuntimeException(OrtError_WrongValueKind, RFormatString(pattern).arg(row).arg(parent));
}

// The children of every node, in order of rows, and the nodes in an order in which each follows its parent.
class Hierarchy {
 public:
  static constexpr int kTop = -1;  // as parent of the nodes that have none

  explicit Hierarchy(std::span<int const> parents)
      : parents_(parents), begins_(parents.size() + 2), children_(parents.size()) {
    GroupByParent();
    ListInOrder();
  }

  std::span<int const> GetOrder() const { return order_; }
  std::span<int const> GetChildren(int node) const {
    auto const group = static_cast<std::size_t>(node + 1);
    auto const first = static_cast<std::size_t>(begins_[group]);
    return std::span(children_).subspan(first, static_cast<std::size_t>(begins_[group + 1]) - first);
  }
  int GetParent(int node) const { return std::max(parents_[static_cast<std::size_t>(node)], kTop); }

 private:
  static std::size_t GetGroup(int parent) { return static_cast<std::size_t>(std::max(parent, kTop) + 1); }

  // A counting sort; group 0 is that of the top-level nodes, and group g + 1 that of node g.
  void GroupByParent() {
    int const count = static_cast<int>(parents_.size());
    for (int node = 0; node < count; ++node) {
      int const parent = parents_[static_cast<std::size_t>(node)];
      if (parent >= count) ThrowAt(L"row %1 names row %2 as its parent, which there is not", node, parent);
      ++begins_[GetGroup(parent) + 1];
    }
    for (std::size_t group = 1; group < begins_.size(); ++group) begins_[group] += begins_[group - 1];
    std::vector<int> next(begins_.begin(), begins_.end() - 1);
    for (int node = 0; node < count; ++node) {
      int const place = next[GetGroup(parents_[static_cast<std::size_t>(node)])]++;
      children_[static_cast<std::size_t>(place)] = node;
    }
  }

  void ListInOrder() {
    order_.reserve(children_.size());
    auto const append = [this](std::span<int const> nodes) {
      order_.insert(order_.end(), nodes.begin(), nodes.end());
    };
    append(GetChildren(kTop));
    for (std::size_t i = 0; i < order_.size(); ++i) append(GetChildren(order_[i]));
    if (order_.size() < parents_.size()) ThrowCycle();
  }

  // Only nodes below no top-level node were not reached: on a cycle, or on the way to one.
  [[noreturn]] void ThrowCycle() const {
    std::vector<bool> isReached(parents_.size());
    for (int const node : order_) isReached[static_cast<std::size_t>(node)] = true;
    auto const node =
        static_cast<int>(std::find(isReached.begin(), isReached.end(), false) - isReached.begin());
    ThrowAt(L"row %1 with the parent %2 is below a node that is its own ancestor", node, GetParent(node));
  }

  std::span<int const> parents_;
  std::vector<int> begins_;
  std::vector<int> children_;
  std::vector<int> order_;
};

struct Rectangle {
  double left, top, right, bottom;
};

struct Child {
  double size;
  int node;
};

class Layout {
 public:
  Layout(Hierarchy const& hierarchy, Frame const& frame, Nodes const& nodes)
      : hierarchy_(hierarchy), frame_(frame), nodes_(nodes) {}

  void Run(std::span<double const> sizes) {
    AddUpSizes(sizes);
    Divide({0, 0, CountOrZero(frame_.width), CountOrZero(frame_.height)}, Hierarchy::kTop);
    for (int const node : hierarchy_.GetOrder()) {
      auto const row = static_cast<std::size_t>(node);
      int const parent = hierarchy_.GetParent(node);
      int const level = parent < 0 ? 0 : nodes_.levels[static_cast<std::size_t>(parent)] + 1;
      nodes_.levels[row] = level;
      nodes_.headerHeights[row] = 0;
      if (!hierarchy_.GetChildren(node).empty()) Divide(TakeRoom(row, level), node);
    }
    if (scale_ == 1) return;
    for (double& size : nodes_.sizes) size /= scale_;
  }

 private:
  // Sums of the largest numbers stay finite at this scale.
  void ChooseScale(std::span<double const> sizes) {
    double largest = 0;
    for (double const size : sizes) largest = std::max(largest, CountOrZero(size));
    if (largest > 0x1p960) scale_ = 0x1p-64;
  }

  void AddUpSizes(std::span<double const> sizes) {
    ChooseScale(sizes);
    auto const order = hierarchy_.GetOrder();
    for (int const node : order) {
      auto const row = static_cast<std::size_t>(node);
      nodes_.sizes[row] = hierarchy_.GetChildren(node).empty() ? CountOrZero(sizes[row]) * scale_ : 0;
    }
    for (std::size_t i = order.size(); i-- > 0;) {
      int const parent = hierarchy_.GetParent(order[i]);
      if (parent < 0) continue;
      nodes_.sizes[static_cast<std::size_t>(parent)] += nodes_.sizes[static_cast<std::size_t>(order[i])];
    }
  }

  static double GetAmount(std::span<double const> levels, int level) {
    if (levels.empty()) return 0;
    return CountOrZero(levels[std::min(static_cast<std::size_t>(level), levels.size() - 1)]);
  }

  // What an inner node leaves to its children.
  Rectangle TakeRoom(std::size_t row, int level) {
    Rectangle room{nodes_.left[row], nodes_.top[row], nodes_.right[row], nodes_.bottom[row]};
    double const padding = GetAmount(frame_.paddings, level);
    double const header = GetAmount(frame_.headers, level);
    if (2 * header <= room.bottom - room.top) {
      nodes_.headerHeights[row] = header;
      room.top += header;
    }
    Shrink(room.left, room.right, padding);
    Shrink(room.top, room.bottom, padding);
    return room;
  }

  static void Shrink(double& low, double& high, double padding) {
    double const middle = low + (high - low) / 2;
    low = std::min(middle, low + padding);
    high = std::max(middle, high - padding);
  }

  // Divides a rectangle among the children of a node, strip by strip.
  void Divide(Rectangle room, int parent) {
    SortChildren(parent);
    std::size_t first = 0;
    while (first < sorted_.size() && remaining_[first] > 0 && room.left < room.right &&
           room.top < room.bottom) {
      first = PlaceStrip(first, room);
    }
    for (; first < sorted_.size(); ++first) {
      Place(sorted_[first].node, {room.right, room.bottom, room.right, room.bottom});
    }
  }

  void SortChildren(int parent) {
    sorted_.clear();
    for (int const node : hierarchy_.GetChildren(parent)) {
      sorted_.push_back({nodes_.sizes[static_cast<std::size_t>(node)], node});
    }
    std::sort(sorted_.begin(), sorted_.end(), [](Child const& a, Child const& b) {
      return a.size > b.size || (a.size == b.size && a.node < b.node);
    });
    // Added from the smallest up; what is left is never taken by a difference, which would cancel.
    remaining_.resize(sorted_.size() + 1);
    remaining_.back() = 0;
    for (std::size_t i = sorted_.size(); i-- > 0;) remaining_[i] = remaining_[i + 1] + sorted_[i].size;
  }

  // Where the strip that begins with a child ends: before the first child that would make the worst ratio
  // of sides in it worse. Gives the sum of its sizes as well.
  std::size_t FindStripEnd(std::size_t first, double ratio, double& sum) const {
    double const largest = sorted_[first].size;
    double const perSize = ratio / remaining_[first];
    double worst = kInfinity;
    sum = 0;
    std::size_t end = first;
    for (; end < sorted_.size(); ++end) {
      double const grown = sum + sorted_[end].size;
      double const squared = grown * perSize * grown;
      double const worstGrown = std::max(squared / sorted_[end].size, largest / squared);
      if (worstGrown > worst) break;
      worst = worstGrown;
      sum = grown;
    }
    return end;
  }

  // Takes a strip of children along the shorter side off the rectangle; gives the child after it.
  std::size_t PlaceStrip(std::size_t first, Rectangle& room) {
    double const width = room.right - room.left;
    double const height = room.bottom - room.top;
    bool const isUpright = width >= height;
    double sum;
    std::size_t const end = FindStripEnd(first, isUpright ? width / height : height / width, sum);
    // The last strip and the last of a strip end at the far side itself; a rounded edge never passes it.
    double const share = remaining_[end] > 0 ? sum / remaining_[first] : 1;
    Rectangle strip = room;
    if (isUpright) {
      strip.right = room.left = share < 1 ? std::min(room.right, room.left + width * share) : room.right;
    } else {
      strip.bottom = room.top = share < 1 ? std::min(room.bottom, room.top + height * share) : room.bottom;
    }
    double const perSize = (isUpright ? height : width) / sum;
    double const begin = isUpright ? strip.top : strip.left;
    double const far = isUpright ? strip.bottom : strip.right;
    double low = begin;
    double running = 0;
    for (std::size_t i = first; i < end; ++i) {
      running += sorted_[i].size;
      double const high = i + 1 < end ? std::min(far, begin + running * perSize) : far;
      Place(sorted_[i].node, isUpright ? Rectangle{strip.left, low, strip.right, high}
                                       : Rectangle{low, strip.top, high, strip.bottom});
      low = high;
    }
    return end;
  }

  void Place(int node, Rectangle const& rectangle) {
    auto const row = static_cast<std::size_t>(node);
    nodes_.left[row] = rectangle.left;
    nodes_.top[row] = rectangle.top;
    nodes_.right[row] = rectangle.right;
    nodes_.bottom[row] = rectangle.bottom;
  }

  Hierarchy const& hierarchy_;
  Frame const& frame_;
  Nodes const& nodes_;
  double scale_ = 1;
  std::vector<Child> sorted_;
  std::vector<double> remaining_;  // the size of a child and all behind it
};

}  // namespace

void Compute(std::span<int const> parents, std::span<double const> sizes, Frame const& frame,
             Nodes const& nodes) {
  Hierarchy const hierarchy(parents);
  Layout(hierarchy, frame, nodes).Run(sizes);
}

}  // namespace OstrelTransforms::TreemapLayout
