#include "ostreltransforms/setvaluemulti/SlotGaps.h"

#include <algorithm>

#include "ostrelsys/IntTypes.h"

namespace OstrelTransforms::SlotGaps {

std::pair<int, int> FindLargest(std::span<int const> slots) {
  using ort::core::int64;
  auto const count = static_cast<int64>(slots.size());
  // The first slot from a position on that is empty, or that is not; `end` when there is none before it.
  auto const find = [&](int64 from, int64 end, bool empty) {
    auto const first = slots.begin();
    auto const found =
        std::find_if(first + from, first + end, [=](int slot) { return (slot == 0) == empty; });
    return static_cast<int64>(found - first);
  };

  std::pair<int, int> best{0, 0};
  for (int64 start = find(0, count, true); start < count;) {
    int64 end = find(start, count, false);
    if (end == count) {
      // On from the beginning of the circle, up to where the walk began.
      int64 const wrapped = find(0, start, false);
      if (wrapped == start) return best;
      end = count + wrapped;
    }
    if (int64{best.second} - best.first < end - start) {
      best = {static_cast<int>(start), static_cast<int>((end - 1) % count)};
    }
    start = end >= count ? count : find(end, count, true);
  }
  return best;
}

}  // namespace OstrelTransforms::SlotGaps
