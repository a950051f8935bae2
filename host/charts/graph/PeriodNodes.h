#pragma once

#include "charts/document/Transforms.h"
#include "charts/graph/GraphBuilder.h"

/// Units of time as nodes: those of the calendar, fiscal years and quarters, and weeks that begin on any day.
/// Dates are DateTime columns; `name` begins the names of the nodes.
namespace ostrel::charts {

/// The beginning of the unit that each date lies in.
NodeId FloorDates(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates);
/// The beginning of the unit that follows the one that begins with each date.
NodeId FollowDates(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates);

/// What units that begin with the dates are called: "FY 2016", "Q2 FY 2016", "W 23 2012". In a pattern of the
/// document a fiscal year is a year, and its quarters are those of a year.
NodeId FormatUnits(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates,
                   std::string const& pattern);
/// The same for the ticks of an axis: the year stands only where it begins.
NodeId FormatUnitTicks(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates,
                       std::string const& pattern);

/// Dates at which a unit begins: about `count` of them, or one every `step` units.
struct UnitTicks {
  TimeUnitSpec unit;
  std::optional<int> step;
  double count = 5;
};
/// Those between two day numbers, Real64 scalars.
NodeId PlanUnitTicks(GraphBuilder& graph, std::string const& name, UnitTicks const& ticks, NodeId low,
                     NodeId high);

}  // namespace ostrel::charts
