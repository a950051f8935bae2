#include "charts/functions/TimeTicks.h"

#include <algorithm>
#include <cmath>

#include "charts/functions/CalendarInterval.h"
#include "charts/functions/LinearTicks.h"

namespace ostrel::charts {
namespace {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;

constexpr double kTicksPerMillisecond = 10;
constexpr double kDay = 86'400'000;
constexpr double kYear = 365 * kDay;
// The interval taken may be half as long as the one asked for, so there are fewer than kMostTicks.
constexpr double kMostAskedFor = 4'000;

struct Candidate {
  double milliseconds;
  CalendarInterval interval;
};

constexpr Candidate OfLength(std::int64_t ticks) {
  return {static_cast<double>(ticks) / kTicksPerMillisecond, CalendarInterval::OfTicks(ticks)};
}
constexpr auto kSecond = OrtTimeSpan::kTicksPerSecond;
constexpr auto kMinute = OrtTimeSpan::kTicksPerMinute;
constexpr auto kHour = OrtTimeSpan::kTicksPerHour;
constexpr auto kWholeDay = OrtTimeSpan::kTicksPerDay;

constexpr Candidate kCandidates[] = {
    OfLength(kSecond),
    OfLength(5 * kSecond),
    OfLength(15 * kSecond),
    OfLength(30 * kSecond),
    OfLength(kMinute),
    OfLength(5 * kMinute),
    OfLength(15 * kMinute),
    OfLength(30 * kMinute),
    OfLength(kHour),
    OfLength(3 * kHour),
    OfLength(6 * kHour),
    OfLength(12 * kHour),
    OfLength(kWholeDay),
    OfLength(2 * kWholeDay),
    OfLength(7 * kWholeDay),
    {30 * kDay, CalendarInterval::OfMonths(1)},
    {90 * kDay, CalendarInterval::OfMonths(3)},
    {kYear, CalendarInterval::OfMonths(12)},
};

double MillisecondsSince1970(OrtDateTime date) {
  constexpr OrtDateTime epoch(1970, 1, 1);
  return static_cast<double>((date - epoch).GetTicks()) / kTicksPerMillisecond;
}

CalendarInterval ChooseInterval(double start, double stop, double count) {
  double const wanted = (stop - start) / count;
  auto const longer = std::ranges::upper_bound(kCandidates, wanted, {}, &Candidate::milliseconds);
  if (longer == std::end(kCandidates)) {
    double const years = LinearTickStep(start / kYear, stop / kYear, count);
    return CalendarInterval::OfMonths(12 * static_cast<std::int64_t>(std::max(years, 1.0)));
  }
  if (longer == std::begin(kCandidates)) {
    double const step = std::max(LinearTickStep(start, stop, count), 1.0);
    return CalendarInterval::OfTicks(static_cast<std::int64_t>(step * kTicksPerMillisecond));
  }
  auto const shorter = std::prev(longer);
  bool const isShorterNearer = wanted / shorter->milliseconds < longer->milliseconds / wanted;
  return (isShorterNearer ? shorter : longer)->interval;
}

}  // namespace

std::vector<OrtDateTime> TimeTicks(double minimum, double maximum, double count) {
  if (!std::isfinite(minimum) || !std::isfinite(maximum) || !(count > 0)) return {};
  OrtDateTime const start = OrtDateTime::FromDouble(std::min(minimum, maximum));
  OrtDateTime const stop = OrtDateTime::FromDouble(std::max(minimum, maximum));
  auto const interval = ChooseInterval(MillisecondsSince1970(start), MillisecondsSince1970(stop),
                                       std::min(count, kMostAskedFor));
  std::vector<OrtDateTime> ticks;
  OrtDateTime tick = interval.Ceiling(start);
  while (tick <= stop && ticks.size() < kMostTicks) {
    ticks.push_back(tick);
    OrtDateTime const next = interval.After(tick);
    // The calendar saturates at its end.
    if (next <= tick) break;
    tick = next;
  }
  if (maximum < minimum) std::ranges::reverse(ticks);
  return ticks;
}

}  // namespace ostrel::charts
