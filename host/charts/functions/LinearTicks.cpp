#include "charts/functions/LinearTicks.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

namespace ostrel::charts {
namespace {

// The step may be smaller than asked for by a factor of up to 1.6, so there are fewer than kMostTicks.
constexpr double kMostAskedFor = 6'000;
constexpr int kNiceRounds = 10;
// Powers of ten up to this one are doubles.
constexpr double kLargestExactPower = 22;

double Round(double value) {
  double const whole = std::floor(value);
  return value - whole >= 0.5 ? whole + 1 : whole;
}

double ReadDecimal(double digits, double power) {
  std::string const text = fmt::format("{:.0f}e{:.0f}", digits, power);
  double value = 0;
  auto const end = std::from_chars(text.data(), text.data() + text.size(), value);
  return end.ec == std::errc() ? value : digits * std::pow(10, power);
}

// Multiples first to last of a step, which is a factor times a power of ten. Steps below 1 are kept as their
// inverse, a whole number, so that dividing by it gives the double nearest to the decimal number.
struct TickMultiples {
  double first;
  double last;
  double step;
  bool isInverse;
  double factor;
  double power;

  double Get(double multiple) const {
    if (std::abs(power) > kLargestExactPower) return ReadDecimal(multiple * factor, power);
    return isInverse ? multiple / step : multiple * step;
  }
  double In(double value) const { return isInverse ? value * step : value / step; }
  // What is a multiple already stays one, also where the division is rounded.
  double Below(double value) const { return IsMultiple(value) ? value : Get(std::floor(In(value))); }
  double Above(double value) const { return IsMultiple(value) ? value : Get(std::ceil(In(value))); }
  bool IsMultiple(double value) const { return Get(Round(In(value))) == value; }
};

// For minimum < maximum; nothing where the step leaves the range of doubles.
std::optional<TickMultiples> FindMultiples(double minimum, double maximum, double count) {
  double const wanted = (maximum - minimum) / std::min(count, kMostAskedFor);
  double const power = std::floor(std::log10(wanted));
  double const rest = wanted / std::pow(10, power);
  double const factor = rest >= std::sqrt(50.0)   ? 10
                        : rest >= std::sqrt(10.0) ? 5
                        : rest >= std::sqrt(2.0)  ? 2
                                                  : 1;
  TickMultiples ticks{};
  ticks.factor = factor;
  ticks.power = power;
  ticks.isInverse = power < 0;
  ticks.step = ticks.isInverse ? std::pow(10, -power) / factor : std::pow(10, power) * factor;
  if (!std::isfinite(ticks.step) || ticks.step == 0) return std::nullopt;
  ticks.first = Round(ticks.In(minimum));
  ticks.last = Round(ticks.In(maximum));
  if (ticks.Get(ticks.first) < minimum) ++ticks.first;
  if (ticks.Get(ticks.last) > maximum) --ticks.last;
  // Where one tick was asked for and none fits, one of a denser set does.
  if (ticks.last < ticks.first && 0.5 <= count && count < 2)
    return FindMultiples(minimum, maximum, count * 2);
  return ticks;
}

bool IsUsable(Domain domain, double count) {
  return std::isfinite(domain.minimum) && std::isfinite(domain.maximum) && count > 0;
}

}  // namespace

std::vector<double> LinearTicks(double minimum, double maximum, double count) {
  if (!IsUsable({minimum, maximum}, count)) return {};
  if (minimum == maximum) return {minimum + 0.0};
  bool const isReversed = maximum < minimum;
  auto const ticks = FindMultiples(std::min(minimum, maximum), std::max(minimum, maximum), count);
  if (!ticks || !(ticks->last - ticks->first < kMostTicks)) return {};
  std::vector<double> values;
  int const lastRow = static_cast<int>(ticks->last - ticks->first);
  for (int i = 0; i <= lastRow; ++i) {
    // Adding zero makes a negative zero positive.
    double const value = ticks->Get(ticks->first + i) + 0.0;
    // Where doubles are farther apart than the step, several multiples give one of them, which may lie
    // outside.
    bool const isInside = std::min(minimum, maximum) <= value && value <= std::max(minimum, maximum);
    if (isInside && (values.empty() || values.back() != value)) values.push_back(value);
  }
  if (isReversed) std::ranges::reverse(values);
  return values;
}

double LinearTickStep(double minimum, double maximum, double count) {
  if (!IsUsable({minimum, maximum}, count) || minimum == maximum) return 0;
  auto const ticks = FindMultiples(std::min(minimum, maximum), std::max(minimum, maximum), count);
  return ticks ? ticks->Get(1) : 0;
}

Domain NiceLinearDomain(Domain domain, double count) {
  if (!IsUsable(domain, count)) return domain;
  bool const isReversed = domain.maximum < domain.minimum;
  Domain nice = isReversed ? Domain{domain.maximum, domain.minimum} : domain;
  double lastStep = 0;
  for (int round = 0; round < kNiceRounds; ++round) {
    if (nice.minimum == nice.maximum) break;
    auto const ticks = FindMultiples(nice.minimum, nice.maximum, count);
    if (!ticks) break;
    double const step = ticks->isInverse ? -ticks->step : ticks->step;
    if (step == lastStep) return isReversed ? Domain{nice.maximum, nice.minimum} : nice;
    nice.minimum = ticks->Below(nice.minimum) + 0.0;
    nice.maximum = ticks->Above(nice.maximum) + 0.0;
    if (!std::isfinite(nice.minimum) || !std::isfinite(nice.maximum)) break;
    lastStep = step;
  }
  return domain;
}

}  // namespace ostrel::charts
