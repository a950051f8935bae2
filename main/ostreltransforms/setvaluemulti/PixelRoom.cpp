#include "ostreltransforms/setvaluemulti/PixelRoom.h"

#include <algorithm>

namespace OstrelTransforms::PixelRoom {
namespace {

// As a share of the pane: what rounding may leave over.
constexpr double kSlack = 1e-12;
// The range keeps at least this share of the pane.
constexpr double kLeastRest = 1.0 / 1024;

// What one end needs when the range fills `scale` pixels, and how much more for each pixel that it gives up.
struct Need {
  double pixels = 0;
  double growth = 0;

  void Add(double more, double itsGrowth) {
    if (more > pixels) *this = {more, itsGrowth};
  }
};

struct Needs {
  Need lower;
  Need upper;
};

Needs FindNeeds(std::span<Item const> items, double scale) {
  Needs needs;
  for (Item const& item : items) {
    needs.lower.Add(item.before - item.position * scale, item.position);
    needs.upper.Add(item.after - (1 - item.position) * scale, 1 - item.position);
  }
  return needs;
}

}  // namespace

// What both ends need is a convex, piecewise linear function of the scale. Newton's method from the whole
// pane downwards meets the largest scale that leaves that much.
Room Find(std::span<Item const> items, double length) {
  Needs needs = FindNeeds(items, length);
  Room const atPresent = {std::min(needs.lower.pixels, length), std::min(needs.upper.pixels, length)};
  for (double scale = length;;) {
    double const missing = needs.lower.pixels + needs.upper.pixels + scale - length;
    if (missing <= length * kSlack) break;
    double const gain = 1 - needs.lower.growth - needs.upper.growth;
    double const next = scale - missing / gain;
    if (!(gain > 0) || !(next > 0)) return atPresent;
    if (!(next < scale)) break;
    scale = next;
    needs = FindNeeds(items, scale);
  }
  return {needs.lower.pixels, needs.upper.pixels};
}

Room Limit(Room room, double length, double largestShare) {
  auto const clamp = [&](double pixels) { return pixels > 0 ? std::min(pixels, length) : 0.0; };
  room = {clamp(room.lower), clamp(room.upper)};
  double const total = room.lower + room.upper;
  double const most = std::min(largestShare, 1 - kLeastRest) * length;
  if (!(total > most)) return room;
  return {most * (room.lower / total), most * (room.upper / total)};
}

}  // namespace OstrelTransforms::PixelRoom
