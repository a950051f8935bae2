#pragma once

#include <bit>
#include <cstdint>

namespace OstrelTransforms {

inline double ToReal64(double x) { return x; }

// The conversion of the language, rounded once, in operations that vector instructions have at every level:
// the halves of the integer become doubles by standing in the mantissas of 2^84 and 2^52.
[[gnu::always_inline]] inline double ToReal64(std::int64_t x) {
  std::uint64_t const offset = static_cast<std::uint64_t>(x) ^ 0x8000'0000'0000'0000;  // x + 2^63
  double const high = std::bit_cast<double>((offset >> 32) | 0x4530'0000'0000'0000);
  double const low = std::bit_cast<double>((offset & 0xFFFF'FFFF) | 0x4330'0000'0000'0000);
  return (high - (0x1p84 + 0x1p63 + 0x1p52)) + low;
}

}  // namespace OstrelTransforms
