#include "ostreltransforms/setvaluemulti/LogTicks.h"

#include <array>
#include <cmath>
#include <limits>

namespace OstrelTransforms::LogTicks {
namespace {

// A tick this little below the minimum still counts as inside.
constexpr double kSlack = std::numeric_limits<double>::epsilon();

constexpr double kSet1[] = {1.1, 1.2, 1.35, 1.5, 1.65, 1.8, 2,   2.25, 2.5, 2.75, 3, 3.3,
                            3.6, 4,   4.5,  5,   5.5,  6,   6.5, 7,    8,   9,    10};
constexpr double kSet2[] = {1.2, 1.5, 1.75, 2, 2.5, 3, 3.5, 4, 5, 6, 7, 8, 10};
constexpr double kSet3[] = {1.5, 2, 3, 4, 5, 7, 10};
constexpr double kSet4[] = {2, 5, 10};
constexpr double kSet5[] = {5, 10};
constexpr double kSet6[] = {10};
constexpr std::array<std::span<double const>, 6> kSets = {kSet1, kSet2, kSet3, kSet4, kSet5, kSet6};

double GetDecade(Domain const& domain, int decade) { return domain.scale * std::pow(domain.base, decade); }

// The k-th tick counted from a decade: the plain power, then the power times each multiplier but the last.
class TickWalk {
 public:
  TickWalk(Domain const& domain, std::span<double const> multipliers, int decade)
      : domain_(domain), multipliers_(multipliers), decade_(decade), power_(GetDecade(domain, decade)) {}

  double GetValue() const { return place_ == 0 ? power_ : power_ * multipliers_[place_ - 1]; }
  void Advance() {
    if (++place_ < multipliers_.size()) return;
    place_ = 0;
    power_ = GetDecade(domain_, ++decade_);
  }

 private:
  Domain const& domain_;
  std::span<double const> multipliers_;
  int decade_;
  std::size_t place_ = 0;
  double power_;
};

double GetFirstMultiple(Domain const& domain, std::span<double const> multipliers, int decade) {
  TickWalk walk(domain, multipliers, decade);
  walk.Advance();
  return walk.GetValue();
}

// Nothing when it lies more than kMaxTicks steps away.
std::optional<int> FindStartDecade(Domain const& domain, std::span<double const> multipliers) {
  int decade = 0;
  if (!(domain.minimum > 0)) return decade;
  while (GetDecade(domain, decade) > domain.minimum) {
    if (--decade < -kMaxTicks) return std::nullopt;
  }
  // The way up asks for the first multiple, not for the plain power; it is meant so.
  while (domain.minimum > GetFirstMultiple(domain, multipliers, decade)) {
    if (++decade > kMaxTicks) return std::nullopt;
  }
  return decade;
}

double Log10OrZero(double value) { return value > 0 ? std::log10(value) : 0.0; }

}  // namespace

std::span<std::span<double const> const> GetMultiplierSets() { return kSets; }

bool IsValid(Domain const& domain) {
  return std::isfinite(domain.minimum) && std::isfinite(domain.maximum) && std::isfinite(domain.scale) &&
         std::isfinite(domain.base) && domain.scale > 0 && domain.base > 1;
}

std::optional<std::vector<double>> MakeTicks(Domain const& domain, std::span<double const> multipliers) {
  auto const start = FindStartDecade(domain, multipliers);
  if (!start) return std::nullopt;
  std::vector<double> ticks;
  for (TickWalk walk(domain, multipliers, *start - 1);; walk.Advance()) {
    double const value = walk.GetValue();
    if (value >= domain.minimum - kSlack) ticks.push_back(value);
    if (!(value < domain.maximum)) return ticks;
    if (ticks.size() >= kMaxTicks) return std::nullopt;
  }
}

double GetPosition(Domain const& domain, double value) {
  if (domain.maximum == domain.minimum) return 0.5;
  double const low = Log10OrZero(domain.minimum);
  return (Log10OrZero(value) - low) / (Log10OrZero(domain.maximum) - low);
}

std::optional<std::vector<double>> ChooseTicks(Domain const& domain,
                                               std::function<bool(std::span<double const>)> const& fits) {
  for (auto const multipliers : kSets) {
    auto ticks = MakeTicks(domain, multipliers);
    bool const isLast = multipliers.size() == 1;
    if (isLast || (ticks && fits(*ticks))) return ticks;
  }
  return std::nullopt;
}

}  // namespace OstrelTransforms::LogTicks
