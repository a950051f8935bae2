#pragma once

#include <span>

#include "charts/scales/PositionScale.h"

/// Domains made wider after they were found: for what is drawn at their ends, and so that zeros meet.
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

/// Widens the domains of linear scales so that their zeros stand at one height, none is cut, and the least
/// room is wasted. Throws DocumentError for scales of another type.
void AlignZeros(Compilation& compilation, std::span<PositionScale* const> scales);

}  // namespace ostrel::charts
