#pragma once

#include <bit>
#include <cstdint>
#include <limits>

// Natural logarithm and exponential of one number, without branches and tables, so that a loop over them is
// compiled to vector instructions. Only additions, multiplications, divisions and operations on bits are
// used, none of them fused: every processor and every vector width gives the same bits, within one unit in
// the last place of the exact result.
//
// Reductions and polynomials are those of K. C. Ng, "FDLIBM: e_log.c, e_exp.c", Sun Microsystems (1993); for
// the analysis see P. T. P. Tang, "Table-driven implementation of the logarithm function in IEEE
// floating-point arithmetic", ACM Transactions on Mathematical Software 16 (1990).
namespace OstrelTransforms {

namespace detail {
inline constexpr std::uint64_t kMantissaMask = 0x000F'FFFF'FFFF'FFFF;
inline constexpr std::uint64_t kOne = 0x3FF0'0000'0000'0000;
inline constexpr double kLn2High = 6.93147180369123816490e-01;  // 33 bits: exact times any exponent
inline constexpr double kLn2Low = 1.90821492927058770002e-10;

// Bits where a condition holds, else zero. Compilers turn a choice between doubles into a branch, which keeps
// a loop from vector instructions; this they don't.
[[gnu::always_inline]] inline std::uint64_t BitsIf(bool condition, std::uint64_t bits) {
  return (std::uint64_t{0} - static_cast<std::uint64_t>(condition)) & bits;
}
[[gnu::always_inline]] inline double NumberIf(bool condition, double number) {
  return std::bit_cast<double>(BitsIf(condition, std::bit_cast<std::uint64_t>(number)));
}

[[gnu::always_inline]] inline float FloatIf(bool condition, float number) {
  std::uint32_t const mask = std::uint32_t{0} - static_cast<std::uint32_t>(condition);
  return std::bit_cast<float>(mask & std::bit_cast<std::uint32_t>(number));
}

// The logarithm of x / 2^lent for a normal x: x = 2^k m with m in [sqrt(1/2), sqrt(2)).
[[gnu::always_inline]] inline double LogarithmOfNormal(double x, double lent) {
  constexpr std::uint64_t sqrtHalf = 0x3FE6'A09E'667F'3BCD;
  std::uint64_t const shifted = std::bit_cast<std::uint64_t>(x) + (kOne - sqrtHalf);
  double const m = std::bit_cast<double>((shifted & detail::kMantissaMask) + sqrtHalf);
  // The biased exponent becomes a double by standing in the mantissa of 2^52.
  double const biased = std::bit_cast<double>((shifted >> 52) | 0x4330'0000'0000'0000);
  double const k = biased - (0x1p52 + 1023.0) - lent;

  double const f = m - 1.0;
  double const s = f / (2.0 + f);
  double const z = s * s;
  double const w = z * z;
  double const even =
      w * (3.999999999940941908e-01 + w * (2.222219843214978396e-01 + w * 1.531383769920937332e-01));
  double const odd =
      z * (6.666666666666735130e-01 +
           w * (2.857142874366239149e-01 + w * (1.818357216161805012e-01 + w * 1.479819860511658591e-01)));
  double const halfSquare = 0.5 * f * f;
  double const tail = s * (halfSquare + (odd + even)) + k * detail::kLn2Low;
  return k * detail::kLn2High - ((halfSquare - tail) - f);
}

}  // namespace detail

// Minus infinity for zero and for every number below; infinity and NaN give themselves.
[[gnu::always_inline]] inline double NaturalLogarithm(double x) {
  // Subnormal numbers are scaled into the normal range.
  bool const isSubnormal = x < std::numeric_limits<double>::min();
  double const factor =
      std::bit_cast<double>(detail::kOne + detail::BitsIf(isSubnormal, std::uint64_t{54} << 52));
  double const result = detail::LogarithmOfNormal(x * factor, detail::NumberIf(isSubnormal, 54.0));
  // Zero leaves the result as it is; infinities and NaN win.
  constexpr double infinity = std::numeric_limits<double>::infinity();
  std::uint64_t const beyond = detail::BitsIf(!(x < infinity), std::bit_cast<std::uint64_t>(x)) |
                               detail::BitsIf(x <= 0.0, std::bit_cast<std::uint64_t>(-infinity));
  return result + std::bit_cast<double>(beyond);
}

// Bits where a number is none of those that LogarithmOfNormal takes as they are: positive, normal and finite.
[[gnu::always_inline]] inline std::uint64_t BitsUnlessNormal(double x) {
  constexpr std::uint64_t smallest = 0x0010'0000'0000'0000;
  constexpr std::uint64_t infinity = 0x7FF0'0000'0000'0000;
  std::uint64_t const bits = std::bit_cast<std::uint64_t>(x);
  // Wraps around below the smallest one; the sign bit of either difference tells.
  return ((bits - smallest) | (infinity - 1 - bits)) >> 63;
}

// The same with branches, for processors whose vector instructions cannot serve.
inline double NaturalLogarithmByBranches(double x) {
  if (!(x < std::numeric_limits<double>::infinity())) return x + x;
  if (x >= std::numeric_limits<double>::min()) return detail::LogarithmOfNormal(x, 0.0);
  if (x <= 0.0) return -std::numeric_limits<double>::infinity();
  return detail::LogarithmOfNormal(x * 0x1p54, 54.0);
}

// For every x; overflow gives infinity, a NaN itself.
[[gnu::always_inline]] inline double Exponential(double x) {
  // Beyond these the result is infinity or zero all the same.
  constexpr auto farthest = std::bit_cast<std::uint64_t>(746.0);
  auto const bits = std::bit_cast<std::uint64_t>(x);
  std::uint64_t const sign = bits & 0x8000'0000'0000'0000;
  bool const isFar = std::bit_cast<double>(bits ^ sign) > std::bit_cast<double>(farthest);
  double const bounded = std::bit_cast<double>(bits ^ detail::BitsIf(isFar, bits ^ (sign | farthest)));

  // x = k ln 2 + r with |r| <= ln 2 / 2; adding 1.5 * 2^52 rounds to an integer and leaves it in the low
  // bits.
  constexpr double toInteger = 0x1.8p52;
  double const shifted = bounded * 1.44269504088896338700e+00 + toInteger;
  double const k = shifted - toInteger;
  double const high = bounded - k * detail::kLn2High;
  double const low = k * detail::kLn2Low;
  double const r = high - low;
  double const z = r * r;
  double const c = r - z * (1.66666666666666019037e-01 +
                            z * (-2.77777777770155933842e-03 +
                                 z * (6.61375632143793436117e-05 +
                                      z * (-1.65339022054652515390e-06 + z * 4.13813679705723846039e-08))));
  double const fraction = 1.0 - ((low - (r * c) / (2.0 - c)) - high);

  // 2^k in two factors, so that neither overflows and a subnormal result is rounded once.
  std::uint64_t const biased =
      std::bit_cast<std::uint64_t>(shifted) - (std::bit_cast<std::uint64_t>(toInteger) - 2048);
  std::uint64_t const half = biased >> 1;
  double const first = std::bit_cast<double>((half - 1) << 52);
  double const second = std::bit_cast<double>((biased - half - 1) << 52);
  return fraction * first * second;
}

}  // namespace OstrelTransforms
