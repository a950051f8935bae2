#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

// Nice numbers for labels and steps: 1, 2, 5 or 10 times a power of ten, as in P. Heckbert, "Nice numbers for
// graph labels", Graphics Gems (1990).
namespace OstrelTransforms {
namespace detail {

// 10^exponent by repeated squaring, and its reciprocal: what the nice numbers are multiples of.
constexpr double PowerOfTen(int exponent) {
  double power = 1.0;
  double base = 10.0;
  for (auto rest = static_cast<unsigned>(exponent < 0 ? -exponent : exponent); rest != 0; rest >>= 1) {
    if ((rest & 1) != 0) power *= base;
    if (rest > 1) base *= base;
  }
  return exponent < 0 ? 1.0 / power : power;
}

class DecimalScales {
 public:
  constexpr DecimalScales() {
    for (int exponent = kLeast + 1; exponent < kMost; ++exponent)
      scales_[Place(exponent)] = PowerOfTen(exponent);
    // 10^309 is too large for a double, and so its reciprocal is 0.
    scales_[Place(kLeast)] = 0.0;
    scales_[Place(kMost)] = std::numeric_limits<double>::infinity();
  }

  // The greatest scale that is not above a finite magnitude. No logarithm is taken: one that is a unit off
  // beside a power of ten would take the wrong decade.
  double FindBelow(double magnitude) const {
    auto const binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52) - 1023;
    constexpr int log10Of2 = 78'913;  // in units of 2^-18
    int decimal = (binary * log10Of2) >> 18;
    decimal += static_cast<int>(magnitude >= scales_[Place(decimal + 1)]);
    decimal -= static_cast<int>(magnitude < scales_[Place(decimal)]);
    return scales_[Place(decimal)];
  }

 private:
  static constexpr int kLeast = -309;
  static constexpr int kMost = 309;
  static constexpr std::size_t Place(int exponent) { return static_cast<std::size_t>(exponent - kLeast); }

  std::array<double, kMost - kLeast + 1> scales_{};
};

inline constexpr DecimalScales kDecimalScales;

// Steps(f) gives 1, 2, 5 or 10 for a number f of 1 to 10.
template <class Steps>
double NiceNumber(double x, Steps steps) {
  if (x == 0.0) return 0.0;
  double const magnitude = std::fabs(x);
  if (!(magnitude < std::numeric_limits<double>::infinity())) return x;
  double const scale = kDecimalScales.FindBelow(magnitude);
  double const step = steps(magnitude / scale);
  return (x < 0.0 ? -step : step) * scale;
}

}  // namespace detail

// The nearest nice number; a NaN and infinities give themselves, magnitudes below 1e-308 zero.
inline double RoundingNiceNum(double x) {
  return detail::NiceNumber(x, [](double f) {
    return 1.0 + static_cast<int>(f >= 1.5) + 3 * static_cast<int>(f >= 3.0) + 5 * static_cast<int>(f >= 7.0);
  });
}

// The least nice number of at least this magnitude, otherwise the same.
inline double RoundingUpNiceNum(double x) {
  return detail::NiceNumber(x, [](double f) {
    return 1.0 + static_cast<int>(f > 1.0) + 3 * static_cast<int>(f > 2.0) + 5 * static_cast<int>(f > 5.0);
  });
}

}  // namespace OstrelTransforms
