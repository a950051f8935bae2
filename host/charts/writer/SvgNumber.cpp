#include "charts/writer/SvgNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace ostrel::charts {

namespace {

constexpr double kFixedLimit = 0x1p41;  // thousandths stay below 2^51

constexpr auto kThreeDigits = [] {
  std::array<std::array<char, 4>, 1000> texts{};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    texts[i] = {static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                static_cast<char>('0' + i % 10), '\0'};
  }
  return texts;
}();

// The product is rounded; where it seems to lie halfway, its rounding error, which a fused multiply gives
// exactly, decides.
std::uint64_t RoundToThousandths(double magnitude) {
  constexpr double kShift = 0x1.8p52;  // adding and subtracting it rounds to an integer, halves to even
  double const product = magnitude * 1000;
  double rounded = product + kShift - kShift;
  double const rest = product - rounded;
  if (std::fabs(rest) == 0.5) {
    double const error = std::fma(magnitude, 1000.0, -product);
    if (rest > 0 && error > 0) rounded += 1;
    if (rest < 0 && error < 0) rounded -= 1;
  }
  return static_cast<std::uint64_t>(rounded);
}

char* WriteInteger(std::uint64_t value, char* out) {
  if (value >= 1000) {
    out = WriteInteger(value / 1000, out);
    std::memcpy(out, kThreeDigits[value % 1000].data(), 3);
    return out + 3;
  }
  char const* const digits = kThreeDigits[value].data();
  int const skipped = value >= 100 ? 0 : value >= 10 ? 1 : 2;
  std::memcpy(out, digits + skipped, 3);
  return out + 3 - skipped;
}

}  // namespace

char* WriteSvgNumber(double value, char* out) {
  double magnitude = std::fabs(value);
  if (!(magnitude < kFixedLimit)) {
    if (std::isnan(value)) value = magnitude = 0;
    magnitude = std::min(magnitude, double{std::numeric_limits<float>::max()});
    return std::to_chars(out, out + kMaxSvgNumberLength, std::copysign(magnitude, value)).ptr;
  }
  std::uint64_t const thousandths = RoundToThousandths(magnitude);
  std::uint64_t const whole = thousandths / 1000;
  std::uint64_t const fraction = thousandths % 1000;
  if (value < 0 && thousandths != 0) *out++ = '-';
  if (whole != 0 || fraction == 0) out = WriteInteger(whole, out);
  if (fraction == 0) return out;
  char const* const digits = kThreeDigits[fraction].data();
  *out++ = '.';
  std::memcpy(out, digits, 3);
  out += 3;
  while (out[-1] == '0') --out;
  return out;
}

}  // namespace ostrel::charts
