#pragma once

#include "charts/scales/CategoryField.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

/// The direction in which a position scale runs and how long it is.
struct AxisSpace {
  bool isHorizontal = true;
  double length = 0;  ///< pixels
  double labelFontSize = 10;
  double labelLimit = 180;  ///< pixels; longer labels are cut
};

/// The nodes of one position channel: where rows and ticks stand, and what ticks say.
struct PositionScale {
  std::string name;
  Encoding const* encoding = nullptr;
  ScaleType scaleType = ScaleType::Linear;
  AxisSpace space;
  NodeId positions = -1;      ///< Real64 column, pixels
  NodeId numbers = -1;        ///< Real64 column in data order, for sorting
  NodeId unscaled = -1;       ///< the data numbers before a logarithm, else -1
  NodeId tickPositions = -1;  ///< Real64 column, pixels
  NodeId tickLabels = -1;     ///< String column
  NodeId labelWidths = -1;    ///< Real64 column, pixels
  NodeId shownLabels = -1;    ///< Bool column
};

/// Plans the scale of channel x or y.
PositionScale PlanPositionScale(Compilation& compilation, Encoding const& encoding, AxisSpace const& space);

}  // namespace ostrel::charts
