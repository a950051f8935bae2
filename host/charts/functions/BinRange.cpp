#include "charts/functions/BinRange.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelrtcore/builtins/Columns.h"

namespace ostrel::charts {

namespace {

using ort::core::builtins::ThrowError;

// Of a bin's width: what rounding may have taken from a number that stands on a bin's end.
constexpr double kRoundingShare = 1e-9;

double FindStep(double span, BinRequest const& request) {
  double const level = std::ceil(std::log10(request.maxBins));
  double const decade = std::pow(10, std::round(std::log10(span)) - level);
  double step = std::max({request.minStep, decade, std::numeric_limits<double>::min()});
  while (std::ceil(span / step) > request.maxBins) step *= 10;
  for (double const divisor : {5.0, 2.0}) {
    double const finer = step / divisor;
    if (finer >= request.minStep && span / finer <= request.maxBins) step = finer;
  }
  return step;
}

// Fractions of a power of ten are made by dividing, which rounds once.
double Multiple(double count, double step) {
  double const inverse = std::round(1 / step);
  bool const isFraction = step < 1 && std::abs(inverse * step - 1) < kRoundingShare;
  return isFraction ? count / inverse : count * step;
}

}  // namespace

BinRange FindBins(BinRequest const& request) {
  bool const isRange = std::isfinite(request.minimum) && std::isfinite(request.maximum) &&
                       request.minimum <= request.maximum && std::isfinite(request.maximum - request.minimum);
  if (!isRange || !(request.maxBins >= 1) || !std::isfinite(request.step)) {
    ThrowError(ort::core::OrtError_InputKindNotAccepted, "bins need a range of finite numbers");
  }
  double span = request.maximum - request.minimum;
  if (span == 0) span = request.minimum != 0 ? std::abs(request.minimum) : 1;
  double const step = request.step > 0 ? request.step : FindStep(span, request);
  double const first = std::floor(request.minimum / step + kRoundingShare);
  double const last = std::max(std::ceil(request.maximum / step - kRoundingShare), first + 1);
  if (!(last - first <= kMostBins)) {
    ThrowError(ort::core::OrtError_InputKindNotAccepted, "a step that makes more than 10,000 bins");
  }
  return {Multiple(first, step), Multiple(last, step), step};
}

}  // namespace ostrel::charts
