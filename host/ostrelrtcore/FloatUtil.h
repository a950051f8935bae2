#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace ort::core::FloatUtil {

/// Compares with a tolerance for rounding: negative, 0 or positive as `a` is below, equal to or above `b`.
///
/// Two finite numbers are equal when at most `tolerance` steps from one double to the next lie between them
/// (units in the last place). Both zeros are one number. An infinity equals only itself. NaN is above all
/// numbers and equals nothing: against another NaN the answer is positive.
inline int Compare(double a, double b, unsigned int tolerance) noexcept {
  if (a == b) return 0;
  if (std::isnan(a)) return 1;
  if (std::isnan(b)) return -1;
  int const order = a < b ? -1 : 1;
  if (std::isinf(a) || std::isinf(b)) return order;
  // The place of a finite double among all of them, 0 for both zeros.
  auto const place = [](double value) {
    auto const magnitude = static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(std::fabs(value)));
    return value < 0 ? -magnitude : magnitude;
  };
  // The places lie within 2^63 of 0 on either side, so the distance fits unsigned.
  auto const distance = static_cast<std::uint64_t>(place(a)) - static_cast<std::uint64_t>(place(b));
  return (order < 0 ? 0 - distance : distance) <= tolerance ? 0 : order;
}

}  // namespace ort::core::FloatUtil
