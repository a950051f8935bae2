#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// Where marks begin and end in one direction: Real64 columns of pixels.
struct MarkSpan {
  NodeId from = -1;
  NodeId to = -1;
};

/// From the base line, 0 or the lower end of a logarithmic axis, or from the channel x2 or y2 to a measure.
MarkSpan SpanOfMeasure(MarkContext& context, Channel channel);

/// What a mark covers across its measure: a discrete value's band, an interval, or so many pixels around a
/// continuous position; `breadth` is what the document gives in their place. `gap` pixels are left free
/// between intervals.
struct PlaceRules {
  BreadthSpec breadth;
  double defaultThickness = 5;
  double gap = 0;
};
MarkSpan SpanOfPlace(MarkContext& context, Channel channel, PlaceRules const& rules);

/// The whole pane.
MarkSpan SpanOfPane(MarkContext& context, Channel channel);

}  // namespace ostrel::charts
