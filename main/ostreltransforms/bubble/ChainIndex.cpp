#include "ostreltransforms/bubble/ChainIndex.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace OstrelTransforms {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::array kUnbounded = {kInfinity, kInfinity, kInfinity, kInfinity, 0.0, kInfinity};
constexpr std::uint32_t kNoMember = ~std::uint32_t{0};

// Vectors that every target has; their comparisons give all bits or none.
typedef double Pair __attribute__((vector_size(16)));
typedef std::int64_t BitPair __attribute__((vector_size(16)));

Pair Both(double value) { return Pair{value, value}; }
// Of numbers that are not NaN.
Pair Least(Pair a, Pair b) { return a < b ? a : b; }
Pair Greatest(Pair a, Pair b) { return a > b ? a : b; }

Pair Load(double const* values) { return *reinterpret_cast<Pair const*>(values); }

template <unsigned count>
double LeastOf(double const (&values)[count]) {
  Pair least[2] = {Load(values), Load(values + 2)};
  for (unsigned i = 4; i < count; i += 4) {
    least[0] = Least(least[0], Load(values + i));
    least[1] = Least(least[1], Load(values + i + 2));
  }
  Pair const both = Least(least[0], least[1]);
  return both[0] < both[1] ? both[0] : both[1];
}

// The positions, as bits, for which `test` holds; it is asked for two at a time.
template <unsigned count, class Test>
unsigned Select(Test const& test) {
  BitPair found = {};
  BitPair bits = {1, 2};
  for (unsigned i = 0; i < count; i += 2) {
    found |= test(i) & bits;
    bits <<= 2;
  }
  return static_cast<unsigned>(found[0] | found[1]);
}

unsigned FirstOf(unsigned positions) { return static_cast<unsigned>(std::countr_zero(positions)); }

}  // namespace

ChainIndex::Bounds ChainIndex::BoundsOf(Circle const& circle) {
  double const distance = SquaredDistanceFromOrigin(circle);
  double const key = std::isnan(distance) ? kInfinity : distance;
  // A centre that is not finite intersects nothing.
  if (!std::isfinite(circle.x) || !std::isfinite(circle.y)) {
    return {kInfinity, kInfinity, kInfinity, kInfinity, 0, key};
  }
  return {circle.x, -circle.x, circle.y, -circle.y, -circle.radius, key};
}

ChainIndex::Bounds ChainIndex::BoundsOf(Block const& block) {
  Bounds all;
  for (unsigned bound = 0; bound < kBoundCount; ++bound) all[bound] = LeastOf(block.bounds[bound]);
  return all;
}

ChainIndex::Bounds ChainIndex::GetBounds(Block const& block, unsigned position) {
  Bounds bounds;
  for (unsigned bound = 0; bound < kBoundCount; ++bound) bounds[bound] = block.bounds[bound][position];
  return bounds;
}

void ChainIndex::SetBounds(Block& block, unsigned position, Bounds const& bounds) {
  for (unsigned bound = 0; bound < kBoundCount; ++bound) block.bounds[bound][position] = bounds[bound];
}

unsigned ChainIndex::FindDistance(Block const& block, double distance) {
  return Select<kCapacity>([&](unsigned i) { return Load(block.bounds[Distance] + i) == Both(distance); });
}

unsigned ChainIndex::FindMember(Block const& block, std::uint32_t member) {
  unsigned found = 0;
  for (unsigned i = 0; i < kCapacity; ++i) found |= (block.members[i] == member ? 1U : 0U) << i;
  return found;
}

ChainIndex::BlockNumber ChainIndex::MakeBlock(bool isLowest) {
  BlockNumber number;
  if (freeBlocks_.empty()) {
    number = static_cast<BlockNumber>(blocks_.size());
    blocks_.emplace_back();
  } else {
    number = freeBlocks_.back();
    freeBlocks_.pop_back();
  }
  for (unsigned i = 0; i < kCapacity; ++i) ClearEntry({number, i});
  blocks_[number].count = 0;
  blocks_[number].isLowest = isLowest;
  return number;
}

void ChainIndex::SetEntry(Place place, Bounds const& bounds, std::uint32_t member) {
  Block& block = blocks_[place.block];
  SetBounds(block, place.position, bounds);
  block.members[place.position] = member;
  (block.isLowest ? placeOfNode_[member] : blocks_[member].place) = place;
}

void ChainIndex::ClearEntry(Place place) {
  Block& block = blocks_[place.block];
  SetBounds(block, place.position, kUnbounded);
  block.members[place.position] = kNoMember;
}

void ChainIndex::MoveEntry(Place from, Place to) {
  Block const& block = blocks_[from.block];
  SetEntry(to, GetBounds(block, from.position), block.members[from.position]);
}

void ChainIndex::InsertFirst(Node node, Circle const& circle) {
  blocks_.clear();
  freeBlocks_.clear();
  if (placeOfNode_.size() <= node) placeOfNode_.resize(node + 1);
  root_ = MakeBlock(true);
  Insert({root_, 0}, BoundsOf(circle), node);
}

void ChainIndex::InsertBehind(Node predecessor, Node node, Circle const& circle) {
  if (placeOfNode_.size() <= node) placeOfNode_.resize(node + 1);
  BlockNumber const number = placeOfNode_[predecessor].block;
  if (blocks_[number].count == kCapacity) Split(number);
  InsertBehind(placeOfNode_[predecessor], BoundsOf(circle), node);
}

// The block has room.
void ChainIndex::InsertBehind(Place predecessor, Bounds const& bounds, std::uint32_t member) {
  Insert(MakeRoomBehind(predecessor), bounds, member);
}

// Shifts the fewest entries towards the next position without a member.
ChainIndex::Place ChainIndex::MakeRoomBehind(Place place) {
  BlockNumber const number = place.block;
  unsigned const empty = FindMember(blocks_[number], kNoMember);
  unsigned const behind = empty & (~1U << place.position);
  if (behind != 0) {
    unsigned position = FirstOf(behind);
    for (; position > place.position + 1; --position) MoveEntry({number, position - 1}, {number, position});
    return {number, position};
  }
  unsigned position = static_cast<unsigned>(std::bit_width(empty)) - 1;
  for (; position < place.position; ++position) MoveEntry({number, position + 1}, {number, position});
  return {number, position};
}

void ChainIndex::Insert(Place place, Bounds const& bounds, std::uint32_t member) {
  ++blocks_[place.block].count;
  SetEntry(place, bounds, member);
  UpdateAbove(place.block, kUnbounded, bounds);
}

// Moves the second half of a full block to a new one behind it.
void ChainIndex::Split(BlockNumber number) {
  if (number == root_) {
    root_ = MakeBlock(false);
    Insert({root_, 0}, BoundsOf(blocks_[number]), number);
  } else if (blocks_[blocks_[number].place.block].count == kCapacity) {
    Split(blocks_[number].place.block);
  }
  BlockNumber const added = MakeBlock(blocks_[number].isLowest);
  constexpr unsigned kHalf = kCapacity / 2;
  for (unsigned i = 0; i < kHalf; ++i) {
    MoveEntry({number, kHalf + i}, {added, i});
    ClearEntry({number, kHalf + i});
  }
  blocks_[number].count = blocks_[added].count = kHalf;
  Place const place = blocks_[number].place;
  SetBounds(blocks_[place.block], place.position, BoundsOf(blocks_[number]));
  InsertBehind(place, BoundsOf(blocks_[added]), added);
}

void ChainIndex::Replace(Node node, Circle const& circle) {
  auto const [number, position] = placeOfNode_[node];
  Bounds const before = GetBounds(blocks_[number], position);
  Bounds const after = BoundsOf(circle);
  SetBounds(blocks_[number], position, after);
  UpdateAbove(number, before, after);
}

void ChainIndex::Remove(Node node) {
  Remove(placeOfNode_[node]);
  ShrinkRoot();
}

void ChainIndex::Remove(Place place) {
  Block& block = blocks_[place.block];
  Bounds const bounds = GetBounds(block, place.position);
  ClearEntry(place);
  --block.count;
  if (block.count == 0 && place.block != root_) {
    freeBlocks_.push_back(place.block);
    Remove(block.place);
  } else {
    UpdateAbove(place.block, bounds, kUnbounded);
  }
}

void ChainIndex::ShrinkRoot() {
  while (!blocks_[root_].isLowest && blocks_[root_].count == 1) {
    freeBlocks_.push_back(root_);
    Block const& root = blocks_[root_];
    root_ = *std::find_if(root.members, root.members + kCapacity,
                          [](std::uint32_t member) { return member != kNoMember; });
  }
}

// After an entry of a block has changed its bounds.
void ChainIndex::UpdateAbove(BlockNumber number, Bounds before, Bounds after) {
  while (number != root_) {
    Block const& block = blocks_[number];
    auto const [parent, position] = block.place;
    Bounds const blockBefore = GetBounds(blocks_[parent], position);
    Bounds blockAfter = blockBefore;
    for (unsigned bound = 0; bound < kBoundCount; ++bound) {
      if (after[bound] < blockBefore[bound]) {
        blockAfter[bound] = after[bound];
      } else if (before[bound] == blockBefore[bound]) {
        blockAfter[bound] = LeastOf(block.bounds[bound]);
      }
    }
    if (blockAfter == blockBefore) return;
    SetBounds(blocks_[parent], position, blockAfter);
    before = blockBefore;
    after = blockAfter;
    number = parent;
  }
}

ChainIndex::Node ChainIndex::FindNearest(Node start, Circle const& startCircle) const {
  double const startDistance = SquaredDistanceFromOrigin(startCircle);
  double const least = LeastOf(blocks_[root_].bounds[Distance]);
  if (std::isnan(startDistance) || startDistance == least) return start;
  for (Block const* block = &blocks_[root_];;) {
    unsigned const positions = FindDistance(*block, least);
    if ((positions & (positions - 1)) != 0) return FindFirstBehind(placeOfNode_[start], least);
    std::uint32_t const member = block->members[FirstOf(positions)];
    if (block->isLowest) return member;
    block = &blocks_[member];
  }
}

// The first node at a distance on the way around the chain from a place.
ChainIndex::Node ChainIndex::FindFirstBehind(Place start, double distance) const {
  for (Place place = start;; place = blocks_[place.block].place) {
    Block const& block = blocks_[place.block];
    unsigned const positions = FindDistance(block, distance);
    unsigned const behind = positions & (~1U << place.position);
    if (behind != 0) return Descend(&block, behind, distance);
    if (place.block == root_) return Descend(&block, positions, distance);
  }
}

ChainIndex::Node ChainIndex::Descend(Block const* block, unsigned positions, double distance) const {
  for (;;) {
    std::uint32_t const member = block->members[FirstOf(positions)];
    if (block->isLowest) return member;
    block = &blocks_[member];
    positions = FindDistance(*block, distance);
  }
}

bool ChainIndex::HasIntersection(Circle const& circle, Ignored const& ignored) const {
  if (!std::isfinite(circle.x) || !std::isfinite(circle.y)) return false;
  return HasIntersection(blocks_[root_], circle, ignored);
}

bool ChainIndex::HasIntersection(Block const& block, Circle const& circle, Ignored const& ignored) const {
  Pair const x = Both(circle.x), y = Both(circle.y), radius = Both(circle.radius), zero = {};
  unsigned positions = Select<kCapacity>([&](unsigned i) {
    auto const& bounds = block.bounds;
    Pair const dx = Greatest(Load(bounds[LowX] + i) - x, x + Load(bounds[NegatedHighX] + i));
    Pair const dy = Greatest(Load(bounds[LowY] + i) - y, y + Load(bounds[NegatedHighY] + i));
    return IntersectAt(radius - Load(bounds[NegatedRadius] + i), Greatest(dx, zero), Greatest(dy, zero));
  });
  for (; positions != 0; positions &= positions - 1) {
    std::uint32_t const member = block.members[FirstOf(positions)];
    if (!block.isLowest) {
      if (HasIntersection(blocks_[member], circle, ignored)) return true;
    } else if (std::find(ignored.begin(), ignored.end(), member) == ignored.end()) {
      return true;
    }
  }
  return false;
}

}  // namespace OstrelTransforms
