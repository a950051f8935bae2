#pragma once

#include "ostreltransforms/Export.h"

namespace OstrelTransforms {

// A font size between b and a: ((a - b) * t * u + b) * s, truncated toward zero. The difference of the sizes
// wraps around in 32 bits; the result saturates, and NaN gives 0.
OSTREL_API int ComputeFontSize(int a, int b, double t, double s, double u);

}  // namespace OstrelTransforms
