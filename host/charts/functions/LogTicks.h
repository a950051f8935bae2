#pragma once

#include <span>
#include <vector>

#include "charts/functions/LinearTicks.h"

namespace ostrel::charts {

/// The domain widened to the nearest powers of the base; powers of ten are the doubles nearest to them. A
/// swapped domain stays swapped, and an end whose next power leaves the range of doubles stays as it is.
/// Throws OrtRuntimeException 2 for an end that is not above 0 and finite, or a base not above 1 and finite.
Domain NiceLogDomain(Domain domain, double base);

/// The numbers that stand at positions from 0 (the domain's minimum) to 1 (its maximum) of a logarithmic
/// axis, in their order, each the number of at most twelve significant digits that is nearest. Those outside
/// the domain are left out. Where fewer than two are left, two or more linear ticks, about `count`, take
/// their place; equal ends have but one. The logarithm of an end not above 0 counts as 0.
std::vector<double> LogTickValues(std::span<double const> positions, Domain domain, double count);

/// The number of at most twelve significant digits that is nearest.
double RoundToTwelveDigits(double value);

}  // namespace ostrel::charts
