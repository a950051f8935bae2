#include "charts/functions/DateNumbers.h"

#include <cmath>
#include <limits>

namespace ostrel::charts {

namespace {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;

constexpr OrtDateTime kEpoch(1970, 1, 1);
constexpr double kTicksPerMillisecond = 10;
// Sums of parts within these bounds fit the count of ticks.
constexpr double kMostPart = 1e8;
constexpr double kMostSeconds = 1e13;

}  // namespace

double MillisecondsOf(OrtDateTime date) {
  return static_cast<double>((date - kEpoch).GetTicks()) / kTicksPerMillisecond;
}

std::optional<OrtDateTime> DateOfMilliseconds(double milliseconds) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (!std::isfinite(milliseconds)) return std::nullopt;
  double const ticks = std::round(milliseconds * kTicksPerMillisecond);
  if (ticks >= static_cast<double>(Limits::max())) return kEpoch + OrtTimeSpan::FromTicks(Limits::max());
  if (ticks <= static_cast<double>(Limits::min())) return kEpoch + OrtTimeSpan::FromTicks(Limits::min());
  return kEpoch + OrtTimeSpan::FromTicks(static_cast<std::int64_t>(ticks));
}

std::optional<OrtDateTime> DateOfParts(DateParts const& parts) {
  // A comparison with NaN is false.
  auto const isUsable = [](double part, double most = kMostPart) { return std::abs(part) <= most; };
  bool const areUsable = isUsable(parts.year) && isUsable(parts.month) && isUsable(parts.day) &&
                         isUsable(parts.hours) && isUsable(parts.minutes) &&
                         isUsable(parts.seconds, kMostSeconds) && isUsable(parts.milliseconds, kMostSeconds);
  if (!areUsable) return std::nullopt;
  int const given = static_cast<int>(parts.year);
  int const year = given >= 0 && given <= 99 ? given + 1900 : given;
  auto const whole = [](double part) { return static_cast<std::int64_t>(part); };
  OrtTimeSpan const time(0, whole(parts.hours), whole(parts.minutes), whole(parts.seconds),
                         whole(parts.milliseconds) * static_cast<std::int64_t>(kTicksPerMillisecond));
  return OrtDateTime(year, static_cast<int>(parts.month) + 1, static_cast<int>(parts.day)) + time;
}

}  // namespace ostrel::charts
