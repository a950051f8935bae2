#include "charts/scales/DomainEnds.h"

#include "charts/scales/DomainRange.h"

namespace ostrel::charts {

using ort::core::StoreType;

void DomainEnds::Add(std::string const& label, NodeId column, StoreType type) {
  bool const isWhole = type == StoreType::Int64 || type == StoreType::Date;
  Ends& ends = isWhole ? wholes_ : reals_;
  ends.lows.push_back(graph_.Call(label + " lowest", "columnMin", {column}));
  ends.highs.push_back(graph_.Call(label + " highest", "columnMax", {column}));
}

// Of two types the whole one is the minimum where minima are joined, and the maximum where maxima are: it is
// the one that may have to be rounded, and outwards.
NodeId DomainEnds::FindLowest() const {
  std::string const end = name_ + " lowest";
  if (wholes_.lows.empty()) return Select(end, "columnMin", reals_.lows);
  NodeId const whole = Select(end + " whole", "columnMin", wholes_.lows);
  if (reals_.lows.empty()) return Widen(end, whole);
  return Finish(end, "columnMin", whole, Select(end + " real", "columnMin", reals_.lows));
}

NodeId DomainEnds::FindHighest() const {
  std::string const end = name_ + " highest";
  if (wholes_.highs.empty()) return Select(end, "columnMax", reals_.highs);
  NodeId const whole = Select(end + " whole", "columnMax", wholes_.highs);
  if (reals_.highs.empty()) return Widen(end, whole);
  return Finish(end, "columnMax", Select(end + " real", "columnMax", reals_.highs), whole);
}

NodeId DomainEnds::Select(std::string const& end, char const* function,
                          std::vector<NodeId> const& candidates) const {
  if (candidates.size() == 1) return candidates.front();
  std::vector<NodeId> columns;
  for (NodeId const candidate : candidates)
    columns.push_back(MakeColumn(graph_, end + " candidate", candidate, graph_.Int(1)));
  return graph_.Call(end + " of all", function, {Concatenate(graph_, end + " candidates", columns)});
}

NodeId DomainEnds::Finish(std::string const& end, char const* function, NodeId minimum,
                          NodeId maximum) const {
  NodeId const both = graph_.Call(end + " of one type", "resolveMinMaxDataTypeMismatch",
                                  {minimum, maximum, graph_.Int(static_cast<int>(fieldType_))});
  auto const get = [&](int place) {
    return graph_.Call(end + " of one type", "member", {both, graph_.Int(place)});
  };
  return Select(end, function, {get(0), get(1)});
}

NodeId DomainEnds::Widen(std::string const& end, NodeId whole) const {
  return graph_.Map(end, IsTemporal() ? "toDateTime" : "asReal64", whole);
}

bool DomainEnds::IsTemporal() const { return fieldType_ == StoreType::DateTime; }

}  // namespace ostrel::charts
