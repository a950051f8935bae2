#include "charts/data/NumberText.h"

#include <algorithm>
#include <system_error>

namespace ostrel::charts {

namespace {

/// Of a number too large or too small for a double: whether it is too large.
bool IsHuge(std::string_view text) {
  auto const exponentAt = text.find_first_of("eE");
  auto const mantissa = text.substr(0, exponentAt);
  auto const point = std::min(mantissa.find('.'), mantissa.size());
  auto const leading = mantissa.find_first_of("123456789");
  if (leading == std::string_view::npos) return false;
  std::int64_t exponent = 0;
  if (exponentAt != std::string_view::npos) {
    auto digits = text.substr(exponentAt + 1);
    if (digits.front() == '+') digits.remove_prefix(1);
    auto const result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    // Beyond 64 bits no mantissa that fits into memory can make up for it.
    if (result.ec == std::errc::result_out_of_range) return digits.front() != '-';
  }
  return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(leading) > -exponent;
}

}  // namespace

NumberText ReadLongNumber(std::string_view text, bool isWhole) {
  using Kind = NumberText::Kind;
  char const* const end = text.data() + text.size();
  NumberText number;
  if (isWhole && std::from_chars(text.data(), end, number.integer).ec == std::errc()) {
    number.kind = Kind::Integer;
    return number;
  }
  number = {Kind::Real, 0, 0.0};
  if (std::from_chars(text.data(), end, number.real).ec == std::errc::result_out_of_range) {
    number.real = IsHuge(text) ? std::numeric_limits<double>::infinity() : 0.0;
    if (text.front() == '-') number.real = -number.real;
  }
  return number;
}

}  // namespace ostrel::charts
