#pragma once

#include <algorithm>
#include <limits>

#include "charts/scales/ScaledField.h"

/// Domains made wider as the document says, before they take in 0 and are rounded.
namespace ostrel::charts {

struct NumberExtent {
  double lowest = std::numeric_limits<double>::infinity();
  double highest = -std::numeric_limits<double>::infinity();

  bool IsEmpty() const { return lowest > highest; }
  bool IsPoint() const { return lowest == highest; }
  void Add(NumberExtent const& other) {
    lowest = std::min(lowest, other.lowest);
    highest = std::max(highest, other.highest);
  }
};

/// The extent of the values that `scale.domain.unionWith` lists, as data numbers.
NumberExtent ReadUnion(Compilation const& compilation, Encoding const& encoding);

/// A range tuple widened to hold an extent.
NodeId HoldExtent(GraphBuilder& graph, std::string const& name, NodeId range, NumberExtent const& extent);

/// Widens a domain, given in data numbers, so that `scale.padding` pixels are free at each of its ends: in
/// the scale's own space, all pixels between them show what the whole axis showed. A point stays one. Throws
/// DocumentError where the pixels take the whole axis, or the domain is not one of numbers or dates any more.
void PadDomain(Compilation& compilation, ScaleSource const& source, DomainRules const& rules,
               ScaledField& field);

}  // namespace ostrel::charts
