#pragma once

#include <string>
#include <vector>

#include "charts/graph/GraphBuilder.h"

namespace ostrel::charts {

/// The least and the largest value of columns that a domain joins. Each end is found in its column's own type
/// (Int64, Real64, Date or DateTime), so that none is rounded into the domain.
class DomainEnds {
 public:
  DomainEnds(GraphBuilder& graph, std::string name, ort::core::StoreType fieldType)
      : graph_(graph), name_(std::move(name)), fieldType_(fieldType) {}

  /// A column that has values.
  void Add(std::string const& label, NodeId column, ort::core::StoreType type);
  bool IsEmpty() const { return reals_.lows.empty() && wholes_.lows.empty(); }
  /// Real64 or DateTime scalars.
  NodeId FindLowest() const;
  NodeId FindHighest() const;

 private:
  struct Ends {
    std::vector<NodeId> lows;
    std::vector<NodeId> highs;
  };

  NodeId Select(std::string const& end, char const* function, std::vector<NodeId> const& candidates) const;
  NodeId Finish(std::string const& end, char const* function, NodeId minimum, NodeId maximum) const;
  NodeId Widen(std::string const& end, NodeId whole) const;
  bool IsTemporal() const;

  GraphBuilder& graph_;
  std::string name_;
  ort::core::StoreType fieldType_;
  Ends wholes_;  // of whole numbers, or whole days
  Ends reals_;   // of numbers with fractions, or days with times
};

}  // namespace ostrel::charts
