#pragma once

#include <limits>

#include "charts/marks/MarkContext.h"

/// What lines and areas share: marks that run through many rows.
namespace ostrel::charts {

/// Refuses channels that change along a series. Throws DocumentError.
void CheckSeriesChannels(MarkContext& context);

/// Int32 column: the series that a row belongs to, by the channels color and detail; -1 for a single one.
NodeId FindSeries(MarkContext& context);

/// The numbers along which a series runs: those of x, but of y where that alone is no quantity; -1 without.
NodeId FindDirection(MarkContext& context);

/// Brings columns of the rows, the groups among them, into drawing order: series after series, each by the
/// channel order or else by the direction. Rows that the colour scale can't place are left out; `color` and
/// `group` are the columns as they stand, -1 for none.
void SortSeries(MarkContext& context, NodeId direction, NodeId color, std::vector<NodeId*> const& columns,
                NodeId group);

/// Points of two Real64 columns, NaN where a row of either is special.
struct PointReader {
  ort::core::ITypedArray<double> const& x;
  ort::core::ITypedArray<double> const& y;

  Point Read(int row) const {
    if (x.IsSpecial(row) || y.IsSpecial(row)) {
      double const nan = std::numeric_limits<double>::quiet_NaN();
      return {nan, nan};
    }
    return {x.GetElement(row), y.GetElement(row)};
  }
};

}  // namespace ostrel::charts
