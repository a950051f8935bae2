#pragma once

#include <optional>

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// Which corners of a layer's rectangles are rounded.
struct CornerRounding {
  CornerRadii radii;
  double end = 0;             ///< of both corners at the end of a bar's measure: x2 or y2
  bool isHorizontal = false;  ///< where that runs
  bool isStacked = false;     ///< a stack is rounded as a whole, its parts at its ends alone
};

/// nullopt where the document rounds none.
std::optional<CornerRounding> MakeRounding(MarkContext& context);

/// The radii of every rectangle.
std::vector<CornerRadii> RoundCorners(CornerRounding const& rounding, RectMarks const& marks);

}  // namespace ostrel::charts
