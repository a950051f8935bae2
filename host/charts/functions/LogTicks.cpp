#include "charts/functions/LogTicks.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "ostrelrtcore/builtins/Columns.h"

namespace ostrel::charts {
namespace {

using ort::core::OrtError_InputKindNotAccepted;
using ort::core::builtins::ThrowError;

constexpr int kDigits = 12;
// Linear ticks are asked for in growing counts until two lie inside; a count of 2 gives them already unless
// the domain is at the limit of what doubles tell apart.
constexpr int kMostAskedFor = 64;

double Parse(char const* begin, char const* end) {
  double value = 0;
  std::from_chars(begin, end, value);
  return value;
}

// 0 or infinite beyond the range of doubles.
double PowerOf(double base, double exponent) {
  if (base != 10) return std::pow(base, exponent);
  std::string const text = "1e" + std::to_string(static_cast<int>(exponent));
  return Parse(text.data(), text.data() + text.size());
}

// A logarithm may be one unit off beside a power, so the powers themselves decide.
double NearestExponent(double value, double base) { return std::round(std::log(value) / std::log(base)); }

double LargestPowerUpTo(double value, double base) {
  double const nearest = NearestExponent(value, base);
  for (double const exponent : {nearest + 1, nearest, nearest - 1}) {
    double const power = PowerOf(base, exponent);
    if (power > 0 && power <= value) return power;
  }
  return value;
}

double SmallestPowerFrom(double value, double base) {
  double const nearest = NearestExponent(value, base);
  for (double const exponent : {nearest - 1, nearest, nearest + 1}) {
    double const power = PowerOf(base, exponent);
    if (std::isfinite(power) && power >= value) return power;
  }
  return value;
}

double LogarithmOf(double value) { return value > 0 ? std::log10(value) : 0; }

std::vector<double> LinearTicksInside(Domain domain, double count) {
  std::vector<double> ticks = LinearTicks(domain.minimum, domain.maximum, count);
  for (double more = std::max(0.0, std::floor(count)) + 1; ticks.size() < 2 && more <= kMostAskedFor;
       ++more) {
    ticks = LinearTicks(domain.minimum, domain.maximum, more);
  }
  return ticks;
}

}  // namespace

Domain NiceLogDomain(Domain domain, double base) {
  auto const isUsable = [](double end) { return std::isfinite(end) && end > 0; };
  if (!isUsable(domain.minimum) || !isUsable(domain.maximum)) {
    ThrowError(OrtError_InputKindNotAccepted,
               fmt::format("a logarithmic scale needs a domain above 0, not from {} to {}", domain.minimum,
                           domain.maximum));
  }
  if (!std::isfinite(base) || !(base > 1)) {
    ThrowError(OrtError_InputKindNotAccepted,
               fmt::format("the base of a logarithmic scale must be above 1, not {}", base));
  }
  if (domain.maximum < domain.minimum) {
    return {SmallestPowerFrom(domain.minimum, base), LargestPowerUpTo(domain.maximum, base)};
  }
  return {LargestPowerUpTo(domain.minimum, base), SmallestPowerFrom(domain.maximum, base)};
}

double RoundToTwelveDigits(double value) {
  if (!std::isfinite(value)) return value;
  char text[32];
  auto const end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, kDigits - 1);
  return Parse(text, end.ptr);
}

std::vector<double> LogTickValues(std::span<double const> positions, Domain domain, double count) {
  double const start = LogarithmOf(domain.minimum);
  double const length = LogarithmOf(domain.maximum) - start;
  double const lower = std::min(domain.minimum, domain.maximum);
  double const upper = std::max(domain.minimum, domain.maximum);
  std::vector<double> values;
  for (double const position : positions) {
    double const value = RoundToTwelveDigits(std::pow(10, start + position * length));
    bool const isNew = values.empty() || values.back() != value;
    if (lower <= value && value <= upper && isNew) values.push_back(value);
  }
  return values.size() < 2 ? LinearTicksInside(domain, count) : values;
}

}  // namespace ostrel::charts
