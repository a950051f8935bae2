#include "charts/functions/TickFormat.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "charts/functions/LogTicks.h"

namespace ostrel::charts {
namespace {

using services::NumberFormat;

constexpr double kLargestPlain = 1e9;
constexpr double kSmallestPlain = 1e-6;
constexpr int kMostDecimals = 20;
// As parts of the step. Uneven ticks differ by far more; rounding errors of even ones are far less.
constexpr double kEvenness = 1e-3;
constexpr double kRounding = 1e-6;
// Part of the largest tick by which it is taken for larger, so that 0.105 - 0.005 is not below 0.1: far above
// the rounding of that difference, far below a step.
constexpr double kDifferenceRounding = 1e-14;
// Two ticks are always evenly spaced; from this ratio on they are taken for those of a logarithmic axis.
constexpr double kDecade = 10;

std::vector<double> ListFinite(std::span<double const> ticks) {
  std::vector<double> finite;
  std::ranges::copy_if(ticks, std::back_inserter(finite), [](double tick) { return std::isfinite(tick); });
  return finite;
}

double LargestMagnitude(std::span<double const> ticks) {
  double largest = 0;
  for (double const tick : ticks) largest = std::max(largest, std::abs(tick));
  return largest;
}

// The distance between neighbours; nothing where there is no one distance.
std::optional<double> FindStep(std::span<double const> ticks) {
  if (ticks.size() < 2) return std::nullopt;
  double const step = (ticks.back() - ticks.front()) / static_cast<double>(ticks.size() - 1);
  if (step == 0 || !std::isfinite(step)) return std::nullopt;
  for (std::size_t i = 1; i < ticks.size(); ++i) {
    if (std::abs(ticks[i] - ticks[i - 1] - step) > kEvenness * std::abs(step)) return std::nullopt;
  }
  if (ticks.size() == 2 && ticks[0] != 0 && ticks[1] != 0) {
    double const ratio = ticks[1] / ticks[0];
    if (ratio >= kDecade || (ratio > 0 && ratio <= 1 / kDecade)) return std::nullopt;
  }
  return RoundToTwelveDigits(std::abs(step));
}

// The decimals that a number needs to be told within the tolerance; nothing where they are too many.
std::optional<int> CountDecimals(double value, double tolerance) {
  double scale = 1;
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals, scale *= 10) {
    if (std::abs(std::round(value * scale) / scale - value) <= tolerance) return decimals;
  }
  return std::nullopt;
}

// Whether neighbouring ticks can be told apart under the pattern by a precision of its type: significant
// digits are counted from the largest tick down to the step.
bool CanTellApart(NumberFormat const& format, double step, double largest) {
  char const type = format.GetType();
  return step < largest || type == 's' || type == 'f' || type == '%';
}

// The pattern with zeros at the end of decimals left out.
NumberFormat TrimZeros(NumberFormat const& format) {
  if (format.HasPrecision()) return format;
  std::u16string pattern(format.ToPattern().view());
  auto const beforeType = pattern.end() - (format.GetType() != 0 ? 1 : 0);
  if (beforeType[-1] != u'~') pattern.insert(beforeType, u'~');
  return NumberFormat(pattern);
}

}  // namespace

TickFormat::TickFormat(std::span<double const> ticks, std::u16string_view pattern)
    : usual_(pattern.empty() ? u",.12~g" : pattern), power_(u".11~e"), usesPowers_(pattern.empty()) {
  std::vector<double> const finite = ListFinite(ticks);
  largest_ = LargestMagnitude(finite);
  auto const step = FindStep(finite);
  if (!pattern.empty()) {
    bool const isTold = step && CanTellApart(usual_, *step, largest_);
    sharesUnit_ = step && usual_.GetType() == 's' && !usual_.HasPrecision();
    double const reach = largest_ * (1 + kDifferenceRounding);
    usual_ =
        isTold ? NumberFormat(services::GetTickPattern(*step, reach, pattern).view()) : TrimZeros(usual_);
    return;
  }
  if (!step) return;
  auto const ofStep = CountDecimals(*step, kRounding * *step);
  auto const ofFirst = CountDecimals(finite.front(), kRounding * *step);
  if (!ofStep || !ofFirst) return;
  usesPowers_ = false;
  usual_ = NumberFormat(u",.0f");
  usual_.SetPrecision(std::max(*ofStep, *ofFirst));
}

OStringCore TickFormat::Format(double tick) const {
  if (sharesUnit_) return usual_.FormatWithPrefixOf(tick, largest_);
  double const magnitude = std::abs(tick);
  bool const isUnreadable = magnitude > kLargestPlain || (magnitude > 0 && magnitude < kSmallestPlain);
  return usesPowers_ && isUnreadable && std::isfinite(tick) ? power_.Format(tick) : usual_.Format(tick);
}

}  // namespace ostrel::charts
