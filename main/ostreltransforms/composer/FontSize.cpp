#include "ostreltransforms/composer/FontSize.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace OstrelTransforms {

int ComputeFontSize(int a, int b, double t, double s, double u) {
  auto const difference = static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
  double const size = (difference * t * u + b) * s;
  if (std::isnan(size)) return 0;
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<double>(size, Limits::min(), Limits::max()));
}

}  // namespace OstrelTransforms
