#pragma once

#include "charts/scales/CategoryField.h"

namespace ostrel::charts {

/// The places side by side that a discrete value's band has for the values of another field.
struct OffsetScale {
  std::string name;
  CategoryField field;
  bool isReversed = false;
};

OffsetScale PlanOffsetScale(Compilation& compilation, ScaleSource const& source);

/// Pixels from a band's middle to the middle of each row's place, a Real64 column; `use` counts the uses of
/// the scale, `bandwidth` is a Real64 scalar.
NodeId PlaceOffsets(GraphBuilder& graph, OffsetScale const& scale, std::size_t use, NodeId bandwidth);

/// The pixels of one place, a Real64 scalar.
NodeId OffsetBandwidth(GraphBuilder& graph, OffsetScale const& scale, NodeId bandwidth);

}  // namespace ostrel::charts
