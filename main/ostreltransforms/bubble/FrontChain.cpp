#include "ostreltransforms/bubble/FrontChain.h"

namespace OstrelTransforms {
namespace {

// Most obstacles stand beside the gap: the index is asked after this many steps to both sides.
constexpr int kStepsBeforeIndex = 4;

}  // namespace

FrontChain::FrontChain(Circle const& a, Circle const& c, Circle const& b) {
  Node const first = MakeNode();
  links_[first].circle = a;
  Connect(first, first);
  index_.InsertFirst(first, a);
  InsertBehind(first, b);
  InsertBehind(first, c);
}

void FrontChain::Add(Circle& circle) {
  Node a = FindNearest();
  Node b = links_[a].next;
  for (;;) {
    PlaceTouching(links_[a].circle, links_[b].circle, circle);
    auto const [side, obstacle] = FindObstacle(circle, a, b);
    if (side == Side::None) return InsertBehind(a, circle);
    (side == Side::Forward ? b : a) = obstacle;
    Cut(a, b);
  }
}

// What a circle between neighbours a -> b meets first: seen from b on the way forward, or from a on the way
// back, whichever takes fewer steps; of equal numbers forward where b is smaller than a.
//
// Both ways at once: as many steps as nodes are cut out, so all walks together are linear. That the farther
// of two obstacles is not looked for changes nothing, since the nearer one decides.
FrontChain::Obstacle FrontChain::FindObstacle(Circle const& circle, Node a, Node b) const {
  Node forward = links_[b].next;
  Node backward = links_[a].previous;
  if (forward == a) return {};
  for (int step = 1;; ++step) {
    bool const meetsForward = Intersect(circle, links_[forward].circle);
    bool const meetsBackward = Intersect(circle, links_[backward].circle);
    if (meetsForward && (!meetsBackward || links_[b].circle.radius < links_[a].circle.radius)) {
      return {Side::Forward, forward};
    }
    if (meetsBackward) return {Side::Backward, backward};
    if (forward == backward || links_[forward].next == backward) return {};
    if (step == kStepsBeforeIndex && !index_.HasIntersection(circle, {a, b, spare_})) return {};
    forward = links_[forward].next;
    backward = links_[backward].previous;
  }
}

// Takes out all nodes on the way forward between two.
void FrontChain::Cut(Node from, Node to) {
  Node node = links_[from].next;
  if (spare_ == kNone) {
    spare_ = node;
    node = links_[node].next;
  }
  for (; node != to; node = links_[node].next) {
    index_.Remove(node);
    freeNodes_.push_back(node);
  }
  Connect(from, to);
}

void FrontChain::InsertBehind(Node predecessor, Circle const& circle) {
  last_ = spare_ != kNone ? spare_ : MakeNode();
  links_[last_].circle = circle;
  Connect(last_, links_[predecessor].next);
  Connect(predecessor, last_);
  if (spare_ != kNone) {
    index_.Replace(last_, circle);
    spare_ = kNone;
  } else {
    index_.InsertBehind(predecessor, last_, circle);
  }
}

FrontChain::Node FrontChain::MakeNode() {
  if (freeNodes_.empty()) {
    links_.emplace_back();
    return static_cast<Node>(links_.size() - 1);
  }
  Node const node = freeNodes_.back();
  freeNodes_.pop_back();
  return node;
}

void FrontChain::Connect(Node first, Node second) {
  links_[first].next = second;
  links_[second].previous = first;
}

}  // namespace OstrelTransforms
