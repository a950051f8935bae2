#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "ostreltransforms/bubble/CircleGeometry.h"

namespace OstrelTransforms {

// The circles of a chain in the chain's order, as a tree of blocks that knows the bounds of every block:
// finds the circle nearest the origin, and whether any circle intersects another, without a walk along the
// chain. Insertion, removal and finding the nearest are logarithmic in the chain's length. Neighbours in a
// chain stand beside each other, so few blocks come near a circle.
//
// Blocks leave the tree when they are empty and are not merged before (Theodore Johnson, Dennis Shasha:
// "B-trees with inserts and deletes: why free-at-empty is better than merge-at-half", 1993).
class ChainIndex {
 public:
  using Node = std::uint32_t;  // numbers that the chain gives, small and used again

  // Makes a node the only one.
  void InsertFirst(Node node, Circle const& circle);
  void InsertBehind(Node predecessor, Node node, Circle const& circle);
  // Puts another circle where the node stands.
  void Replace(Node node, Circle const& circle);
  void Remove(Node node);

  // The node with the smallest squared distance from the origin; of equal ones the first met on the way
  // around the chain that begins with `start`. A start whose distance is not a number is never beaten, and
  // elsewhere such a node is never found.
  Node FindNearest(Node start, Circle const& startCircle) const;

  // Whether a circle intersects any node but some.
  using Ignored = std::array<Node, 3>;
  bool HasIntersection(Circle const& circle, Ignored const& ignored) const;

 private:
  using BlockNumber = std::uint32_t;
  static constexpr unsigned kCapacity = 16;

  // Bounds of a node or of a block. All are kept so that the least of several bounds all of them.
  enum Bound : unsigned { LowX, NegatedHighX, LowY, NegatedHighY, NegatedRadius, Distance, kBoundCount };
  using Bounds = std::array<double, kBoundCount>;

  struct Place {
    BlockNumber block;
    unsigned position;
  };

  // Positions without a member lie between the others and bound nothing.
  struct Block {
    alignas(16) double bounds[kBoundCount][kCapacity];
    std::uint32_t members[kCapacity];  // nodes, or the blocks of the level below
    Place place;                       // in the level above
    unsigned count;
    bool isLowest;
  };

  static Bounds BoundsOf(Circle const& circle);
  static Bounds BoundsOf(Block const& block);
  static Bounds GetBounds(Block const& block, unsigned position);
  static void SetBounds(Block& block, unsigned position, Bounds const& bounds);
  static unsigned FindDistance(Block const& block, double distance);
  static unsigned FindMember(Block const& block, std::uint32_t member);

  BlockNumber MakeBlock(bool isLowest);
  void SetEntry(Place place, Bounds const& bounds, std::uint32_t member);
  void ClearEntry(Place place);
  void MoveEntry(Place from, Place to);
  Place MakeRoomBehind(Place place);
  void InsertBehind(Place predecessor, Bounds const& bounds, std::uint32_t member);
  void Insert(Place place, Bounds const& bounds, std::uint32_t member);
  void Split(BlockNumber number);
  void Remove(Place place);
  void ShrinkRoot();
  void UpdateAbove(BlockNumber number, Bounds before, Bounds after);
  Node Descend(Block const* block, unsigned positions, double distance) const;
  Node FindFirstBehind(Place start, double distance) const;
  bool HasIntersection(Block const& block, Circle const& circle, Ignored const& ignored) const;

  std::vector<Block> blocks_;
  std::vector<BlockNumber> freeBlocks_;
  std::vector<Place> placeOfNode_;
  BlockNumber root_ = 0;
};

}  // namespace OstrelTransforms
