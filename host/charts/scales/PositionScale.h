#pragma once

#include <optional>

#include "charts/scales/AxisLabels.h"
#include "charts/scales/CategoryField.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

/// The direction in which a position scale runs and how long it is.
struct AxisSpace {
  bool isHorizontal = true;
  double length = 0;               ///< pixels
  int paneCount = 1;               ///< panes that the axis' title stands along
  std::optional<double> step;      ///< pixels of one value of a discrete scale, in place of the length
  std::optional<double> bandGap;   ///< the share of a step between two bands; nullopt: the values are points
  std::optional<double> outerGap;  ///< the share of a step before the first band; nullopt: half a gap
  bool includesZero = true;        ///< of a domain of numbers, where the document does not say
  double margin = 0;               ///< pixels that a continuous scale keeps free at either end
  double labelFontSize = 10;
  double labelLimit = 180;  ///< of a label's lines, pixels, where the document gives none
};

/// Where a channel's rows stand on a position scale.
struct PositionRows {
  NodeId positions = -1;  ///< Real64 column, pixels
  NodeId numbers = -1;    ///< Real64 column in data order, for sorting
  NodeId unscaled = -1;   ///< the data numbers before a logarithm, else -1
};

/// The nodes of a position scale: where rows and ticks stand, and what ticks say.
struct PositionScale {
  std::string name;
  Encoding encoding;  ///< what all channels of the scale say
  ScaleType scaleType = ScaleType::Linear;
  AxisSpace space;
  std::vector<PositionRows> rows;  ///< one for each use of the scale
  NodeId tickPositions = -1;       ///< Real64 column, pixels
  NodeId tickLabels = -1;          ///< String column
  AxisLabels labels;
  TitleText title;
  ScaledField field;  ///< of a continuous scale
  double start = 0;   ///< pixels of a continuous domain's lower and upper end
  double end = 0;
  NodeId step = -1;       ///< Real64 scalar: pixels of one value of a discrete scale
  NodeId bandwidth = -1;  ///< Real64 scalar: those of the step that marks fill
};

/// Plans the scale of the channels x or y, in two steps: a continuous scale's domain may be widened between
/// them. The space of a discrete scale has the length that follows from its step once its positions are
/// planned.
PositionScale PlanPositionDomain(Compilation& compilation, ScaleSource const& source, AxisSpace const& space);
void PlanPositions(Compilation& compilation, ScaleSource const& source, PositionScale& scale);

/// Whether a scale's axis stands right of or below the plotting area.
bool IsFarAxis(PositionScale const& scale);

/// Pixels of further data numbers, a bar's zero for instance, on a continuous scale.
NodeId PlaceNumbers(GraphBuilder& graph, PositionScale const& scale, std::string const& name, NodeId numbers);

}  // namespace ostrel::charts
