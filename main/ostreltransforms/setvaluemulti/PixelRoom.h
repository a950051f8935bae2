#pragma once

#include <span>

// How much of a pane must stay free at its ends so that what stands in it does not stick out, as plain
// numbers.
namespace OstrelTransforms::PixelRoom {

/// Something drawn around a point of a range: a mark with its label, a reference line with its label.
struct Item {
  double position;  // 0 at the range's minimum, 1 at its maximum; beyond them outside
  double before;    // pixels that it takes from its point towards the minimum's end of the pane
  double after;     // and towards the maximum's end
};

/// Pixels at the two ends of a pane.
struct Room {
  double lower = 0;  // at the range's minimum
  double upper = 0;
  bool IsNone() const { return lower == 0 && upper == 0; }
};

/// The least room such that no item sticks out once the range fills only what the room leaves of the pane: of
/// all such rooms the one that leaves the range the most pixels. An item at an end of the range needs just
/// what sticks out of it; one further inside needs more, for the range's shrinking moves it to the end.
/// Where no room is enough, since items are wider than the pane, it is what sticks out at present, at most
/// the pane's length. Items have no NaN.
//
/// With n items one pass over them a step; steps are few, for each ends at another pair of items.
Room Find(std::span<Item const> items, double length);

/// Pixels below 0 and NaN count as 0, more than the pane's length as that; both are shortened alike to take
/// together at most a share (0 to 1, itself not reached) of the pane.
Room Limit(Room room, double length, double largestShare);

}  // namespace OstrelTransforms::PixelRoom
