#pragma once

#include <span>

#include "charts/scales/PositionScale.h"

/// Domains made wider after they were found, for what is drawn at their ends.
namespace ostrel::charts {

/// What a layer draws around the places of its rows, in the direction of an axis.
struct RowReach {
  double thickness = 0;  ///< of the mark, pixels
  NodeId labels = -1;    ///< Real64 column: pixels of each row's text
  int side = 0;  ///< the text stands before its place, to the left or below (-1), on it, or after it (1)
  NodeId numbers = -1;  ///< Real64 column: where the rows stand, as data numbers
};

/// Widens a continuous domain so that nothing that stands on the scale sticks out of the pane.
void FitMarks(Compilation& compilation, PositionScale& scale, std::span<RowReach const> reaches);

/// How many pixels a layer needs free at the ends of its scale's domain: a tuple of two Real64, at the
/// minimum and at the maximum.
NodeId FindOverflow(Compilation& compilation, PositionScale const& scale, RowReach const& reach);

}  // namespace ostrel::charts
