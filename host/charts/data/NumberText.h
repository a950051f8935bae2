#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

namespace ostrel::charts {

/// What a text says as a number.
struct NumberText {
  enum class Kind : std::uint8_t { None, Integer, Real };
  Kind kind = Kind::None;
  std::int64_t integer = 0;  // of an Integer
  double real = 0.0;         // of a Real

  double ToReal() const { return kind == Kind::Integer ? static_cast<double>(integer) : real; }
};

/// The text without blanks and tabs at both ends.
inline std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// Numbers that the short way below does not serve. `text` has digits and is well-formed, without a plus
/// sign.
NumberText ReadLongNumber(std::string_view text, bool isWhole);

/// Reads a whole text: a sign, digits with at most one decimal point, an exponent; or Infinity. Integers are
/// whole numbers without point and exponent that fit 64 bits; reals are the double nearest to what is
/// written.
inline NumberText ReadNumber(std::string_view text) {
  using Kind = NumberText::Kind;
  constexpr std::array<double, 23> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  char const* at = text.data();
  char const* const end = at + text.size();
  auto const readDigits = [&at, end](std::uint64_t& digits) {
    char const* const start = at;
    for (; at != end; ++at) {
      unsigned const digit = static_cast<unsigned char>(*at) - unsigned{'0'};
      if (digit > 9) break;
      digits = 10 * digits + digit;
    }
    return static_cast<std::size_t>(at - start);
  };

  bool const isNegative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  char const* const first = at;
  std::uint64_t digits = 0;  // wraps where there are too many, and is then not used
  std::size_t count = readDigits(digits);
  std::size_t scale = 0;
  bool const isWhole = at == end;
  if (!isWhole && *at == '.') {
    ++at;
    scale = readDigits(digits);
    count += scale;
  }
  bool const hasExponent = at != end;
  if (count == 0)
    return text.size() >= 8 && std::string_view(first, end) == "Infinity"
               ? NumberText{Kind::Real, 0,
                            isNegative ? -std::numeric_limits<double>::infinity()
                                       : std::numeric_limits<double>::infinity()}
               : NumberText{};
  if (hasExponent) {
    if (*at != 'e' && *at != 'E') return {};
    ++at;
    if (at != end && (*at == '-' || *at == '+')) ++at;
    std::uint64_t exponent = 0;
    if (readDigits(exponent) == 0 || at != end) return {};
  } else if (count <= 18) {
    auto const signedDigits =
        isNegative ? -static_cast<std::int64_t>(digits) : static_cast<std::int64_t>(digits);
    if (isWhole) return {Kind::Integer, signedDigits, 0.0};
    // Both operands are exact, so that the one rounding of the division gives the nearest double (W. D.
    // Clinger, "How to read floating point numbers accurately", PLDI 1990).
    if (digits <= (std::uint64_t{1} << 53)) {
      auto const magnitude = static_cast<double>(digits) / powersOfTen[scale];
      return {Kind::Real, 0, isNegative ? -magnitude : magnitude};
    }
  }
  return ReadLongNumber(text.front() == '+' ? text.substr(1) : text, isWhole);
}

}  // namespace ostrel::charts
