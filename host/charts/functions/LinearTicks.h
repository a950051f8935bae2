#pragma once

#include <vector>

namespace ostrel::charts {

struct Domain {
  double minimum;
  double maximum;
};

/// More ticks than this are never made; a larger count counts as one that cannot exceed it.
inline constexpr int kMostTicks = 10'000;

/// About `count` numbers from minimum to maximum, a step of 1, 2 or 5 times a power of ten apart and
/// multiples of it, each the double nearest to its decimal number (0.3, not 3 * 0.1). From maximum down to
/// minimum where those are swapped. Equal ends give that one number; a count not above 0, a NaN or infinite
/// end, and ends too near or far apart for a step to be a double nothing. The step nearest to (maximum -
/// minimum) / count on a logarithmic scale is taken: C. R. Lewart, "Algorithms SCALE1, SCALE2, and SCALE3 for
/// determination of scales on computer generated plots" (CACM 16, 1973).
std::vector<double> LinearTicks(double minimum, double maximum, double count);

/// How far apart those ticks are, not negative; 0 for equal ends.
double LinearTickStep(double minimum, double maximum, double count);

/// The domain widened to the nearest multiples of the step that the widened domain itself has. It stays as it
/// is where no step can be found: equal, NaN or infinite ends, a count not above 0, and where widening does
/// not come to rest.
Domain NiceLinearDomain(Domain domain, double count);

}  // namespace ostrel::charts
