#pragma once

#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

/// What the guide of a continuous scale, an axis or a legend, is asked to show.
struct GuideRequest {
  std::string name;                    ///< of the guide's nodes: "x tick"
  std::string place;                   ///< below the encoding, for messages: ".axis.values"
  std::vector<Literal> const& values;  ///< the document's own values; none: round ones are found
  std::string const& format;
  double count = 5;   ///< about so many
  NodeId step = -1;   ///< Real64 scalar: the distance of the values from the minimum on; -1: round ones
  double length = 0;  ///< pixels
  bool isHorizontal = false;
  NodeId font = -1;  ///< of the labels: the font tuple of measuring functions
};

struct GuideValues {
  NodeId numbers = -1;  ///< Real64 column, as data numbers
  NodeId labels = -1;   ///< String column
};

/// A logarithmic scale gets the densest values whose labels fit into the length, others round ones.
GuideValues PlanGuideValues(Compilation& compilation, Encoding const& encoding, ScaledField const& field,
                            GuideRequest const& request);

}  // namespace ostrel::charts
