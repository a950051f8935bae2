#pragma once

#include <span>

#include "charts/document/Transforms.h"
#include "charts/transforms/RowStep.h"

/// Steps from rows to the next. All throw DataError that names the place in the document.
namespace ostrel::charts {

/// The rows that pass the test; a row without a value passes no comparison.
std::shared_ptr<LayerRows> FilterRows(GraphBuilder& graph, FilterSpec const& filter,
                                      std::shared_ptr<LayerRows> const& rows);

/// One column more, or another in its place: the expression's value of every row.
std::shared_ptr<LayerRows> CalculateRows(GraphBuilder& graph, CalculateSpec const& calculate,
                                         LayerRows& rows);

/// A row for each different combination of the groups' values, in the order in which they first appear, with
/// the groups' columns and a Real64 column for each field (DateTime for the least and largest date).
std::shared_ptr<LayerRows> AggregateRows(GraphBuilder& graph, AggregateSpec const& aggregate,
                                         LayerRows& rows);

/// Two Real64 columns more: the ends of each row's bin.
std::shared_ptr<LayerRows> BinRows(GraphBuilder& graph, BinTransform const& bin, LayerRows& rows);

/// Two DateTime columns more: the beginning of each row's unit and of the one behind it.
std::shared_ptr<LayerRows> FloorRowsToTimeUnit(GraphBuilder& graph, TimeUnitTransform const& unit,
                                               LayerRows& rows);

/// What rows are needed so that every series can be stacked at every place.
struct GapSpec {
  std::string path;
  std::string field;                ///< the number that is stacked: 0 in new rows
  std::vector<std::string> place;   ///< fields that are equal in the rows of a place
  std::vector<std::string> series;  ///< fields that are equal in the rows of a series
  std::vector<std::string> needed;  ///< fields without which a row is drawn nowhere
};

/// Further rows behind the others, one for each place at which other series have a row and a series has none.
/// What is neither its place nor its series' is missing there.
std::shared_ptr<LayerRows> FillGaps(GraphBuilder& graph, GapSpec const& gaps,
                                    std::shared_ptr<LayerRows> const& rows);

/// Where the segments of stacked rows begin and end.
struct StackSpec {
  std::string path;
  std::string field;
  std::vector<std::string> groups;  ///< rows that are equal in them stand on one another
  struct Order {
    std::string field;
    bool isDescending = false;
  };
  std::vector<Order> order;  ///< from the axis on; empty: that of the rows
  StackOffset offset = StackOffset::Zero;
  std::string start;
  std::string end;
};

/// Two Real64 columns more. Numbers below 0 stack apart, downwards, where the offset is Zero; shares of the
/// whole and centred stacks count them without their sign. The rows keep their order.
std::shared_ptr<LayerRows> StackRows(GraphBuilder& graph, StackSpec const& stack, LayerRows& rows);

/// One step after the other.
std::shared_ptr<LayerRows> TransformRows(GraphBuilder& graph, std::span<TransformSpec const> transforms,
                                         std::shared_ptr<LayerRows> rows);

}  // namespace ostrel::charts
