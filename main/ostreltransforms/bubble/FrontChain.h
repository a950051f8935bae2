#pragma once

#include "ostreltransforms/bubble/ChainIndex.h"

namespace OstrelTransforms {

// The circles on the outside of a packing, as a closed ring, and the gap between two of them that the next
// circle is to fill.
class FrontChain {
 public:
  // The ring a -> c -> b -> a; c counts as packed last.
  FrontChain(Circle const& a, Circle const& c, Circle const& b);

  // Moves a circle to where it touches two neighbours on the ring, which takes it in between them. The ring
  // loses the circles that are in its way.
  void Add(Circle& circle);

 private:
  using Node = ChainIndex::Node;

  struct Link {
    Circle circle;
    Node next;
    Node previous;
  };

  enum class Side { None, Forward, Backward };
  struct Obstacle {
    Side side = Side::None;
    Node node = 0;
  };

  Node FindNearest() const { return index_.FindNearest(last_, links_[last_].circle); }
  Obstacle FindObstacle(Circle const& circle, Node a, Node b) const;
  void Cut(Node from, Node to);
  void InsertBehind(Node predecessor, Circle const& circle);
  Node MakeNode();
  void Connect(Node first, Node second);

  static constexpr Node kNone = ~Node{0};

  std::vector<Link> links_;
  std::vector<Node> freeNodes_;
  ChainIndex index_;
  Node last_ = 0;
  // A node that was cut out stays in the index until the circle takes its place, which costs less than to
  // remove and to insert.
  Node spare_ = kNone;
};

}  // namespace OstrelTransforms
