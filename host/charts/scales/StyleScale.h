#pragma once

#include <optional>

#include "charts/scales/CategoryField.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

/// The nodes of a colour, size, opacity or shape channel: what each row gets, and what its legend shows.
struct StyleScale {
  Channel channel = Channel::Color;
  Encoding const* encoding = nullptr;
  bool isCategorical = false;
  NodeId rows = -1;         ///< a style for each row: Color, Real64 or Int32 (shape) column
  NodeId entryLabels = -1;  ///< String column, one for each entry of the legend
  NodeId entries = -1;      ///< the entries' styles
  NodeId entryPlaces = -1;  ///< of a continuous legend: the entries' places; outside of 0 to 1 not shown
  NodeId palette = -1;      ///< of a continuous colour legend: Int32 column of its stops
};

/// The area of the largest symbol, as of a step of 20 pixels, in square pixels.
inline constexpr double kLargestSymbol = 361;

/// The scale of a channel that has a field.
StyleScale PlanColorScale(Compilation& compilation, Encoding const& encoding);
StyleScale PlanSizeScale(Compilation& compilation, Encoding const& encoding);
StyleScale PlanOpacityScale(Compilation& compilation, Encoding const& encoding);
StyleScale PlanShapeScale(Compilation& compilation, Encoding const& encoding);

}  // namespace ostrel::charts
