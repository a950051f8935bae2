#pragma once

namespace ostrel::charts {

/// Equal intervals that cover a range of numbers: from `start` to `stop`, each `step` wide.
struct BinRange {
  double start = 0;
  double stop = 0;
  double step = 0;
};

struct BinRequest {
  double minimum = 0;
  double maximum = 0;
  double maxBins = 10;
  double step = 0;     ///< of the document; not above 0: a round one is found
  double minStep = 0;  ///< a found step is no smaller
};

/// At most `maxBins` bins whose step is 1, 2 or 5 times a power of ten and whose ends are multiples of it. A
/// given step is taken as it is, but for one of more than kMostBins bins. Equal ends give one bin. Throws
/// OrtRuntimeException 2 for ends that are not finite or swapped, for `maxBins` below 1 and for too many
/// bins.
BinRange FindBins(BinRequest const& request);

inline constexpr double kMostBins = 10'000;

}  // namespace ostrel::charts
