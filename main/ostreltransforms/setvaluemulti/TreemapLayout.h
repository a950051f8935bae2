#pragma once

#include <span>

// Squarified treemaps: M. Bruls, K. Huizing, J. J. van Wijk, "Squarified Treemaps", 2000.
namespace OstrelTransforms::TreemapLayout {

/// The rectangle that the top-level nodes share, from (0, 0) at its top left, and what inner nodes keep free
/// of it for themselves; pixels. Amounts that are not finite or below 0 count as 0.
struct Frame {
  double width;
  double height;
  /// The height of a strip at the top of an inner node, and the margin between the rectangle below it and the
  /// node's children on all four sides: a row a level, the last for all deeper ones; 0 where there is none.
  std::span<double const> headers;
  std::span<double const> paddings;
};

/// Where the nodes lie: a row a node in each.
struct Nodes {
  std::span<double> left, top, right, bottom;
  std::span<double> headerHeights;  ///< 0 for leaves and where the strip is left out
  std::span<double> sizes;
  std::span<int> levels;  ///< 0 for nodes without a parent
};

/// Lays out the hierarchy in which each node names its parent's row; a negative one is none. A node without
/// children has its own size, where it is finite and above 0, else 0; any other node has its children's.
///
/// The children of a node fill what its strip and margin leave of it: side by side, largest first, of equal
/// ones the earlier row first, their areas in proportion to their sizes; two neighbours share one coordinate
/// to the last bit. A strip of more than half a node's height is left out, and a margin of more than half the
/// width or height ends in the middle. Nodes of size 0 are empty at the bottom right corner of what holds
/// them, and in an empty rectangle all nodes are.
///
/// Takes the time of sorting each node's children; depth costs nothing. Throws 55 for a parent's row at or
/// past the end and for nodes that are their own ancestors, naming a row.
void Compute(std::span<int const> parents, std::span<double const> sizes, Frame const& frame,
             Nodes const& nodes);

}  // namespace OstrelTransforms::TreemapLayout
