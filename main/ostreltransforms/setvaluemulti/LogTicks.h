#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

// Ticks of a logarithmic axis, as plain numbers.
namespace OstrelTransforms::LogTicks {

/// The axis: its domain, and the numbers scale * base^k that its decades begin with.
struct Domain {
  double minimum;
  double maximum;
  double scale;
  double base;
};

/// More ticks than this are refused, and so is a first decade that many steps away from 1.
inline constexpr int kMaxTicks = 10'000;

/// The multipliers of one decade, finest set first. The last entry, 10, stands for the next decade.
std::span<std::span<double const> const> GetMultiplierSets();

/// True when the bounds are finite, the scale above 0 and the base above 1.
bool IsValid(Domain const& domain);

/// The numbers at which ticks stand, ascending: from the first that is not below the minimum to the first
/// that is not below the maximum, that one included. Nothing when
/// there would be more than kMaxTicks.
std::optional<std::vector<double>> MakeTicks(Domain const& domain, std::span<double const> multipliers);

/// Where a number lies on the axis: 0 at the minimum, 1 at the maximum; 0.5 on an axis of one point. The
/// logarithm of a number that is not above 0 counts as 0.
double GetPosition(Domain const& domain, double value);

/// The ticks of the finest set for which `fits` says so, of the coarsest where none does. Nothing when
/// even that one would have too many.
std::optional<std::vector<double>> ChooseTicks(Domain const& domain,
                                               std::function<bool(std::span<double const>)> const& fits);

}  // namespace OstrelTransforms::LogTicks
