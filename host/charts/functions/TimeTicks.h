#pragma once

#include <vector>

#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

/// About `count` dates from minimum to maximum, both day numbers (see OrtDateTime::ToDouble), at which a unit
/// of the UTC calendar begins: 1, 2, 5, ... milliseconds; 1, 5, 15 or 30 seconds or minutes; 1, 3, 6 or 12
/// hours; 1 or 2 days; weeks from Sunday; 1 or 3 months; 1, 2 or 5 times a power of ten of years. From the
/// latest to the earliest where minimum and maximum are swapped. A count not above 0, a NaN or infinite end
/// give nothing; at most 10,000 dates.
std::vector<ort::core::OrtDateTime> TimeTicks(double minimum, double maximum, double count);

}  // namespace ostrel::charts
