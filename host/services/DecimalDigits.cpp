#include "services/DecimalDigits.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace ostrel::services {

namespace {

// No double has more significant digits than 767.
constexpr int kAllDigits = 767;
constexpr int kBufferSize = kAllDigits + 16;

DecimalDigits Parse(char const* first, char const* last) {
  DecimalDigits result;
  char const* at = first;
  for (; at != last && *at != 'e'; ++at) {
    if (*at != '.') result.digits += *at;
  }
  if (at == last) return result;
  at += at[1] == '+' ? 2 : 1;
  std::from_chars(at, last, result.exponent);
  return result;
}

DecimalDigits Scientific(double value, int count) {
  char buffer[kBufferSize];
  auto const end =
      std::to_chars(buffer, buffer + kBufferSize, value, std::chars_format::scientific, count - 1);
  return Parse(buffer, end.ptr);
}

// Keeps the first `count` digits, which may be none, of exact ones.
void Round(DecimalDigits& number, std::size_t count) {
  bool const up = count < number.digits.size() && number.digits[count] >= '5';
  number.digits.resize(count, '0');
  if (!up) return;
  auto at = count;
  while (at > 0 && number.digits[at - 1] == '9') number.digits[--at] = '0';
  if (at > 0) {
    ++number.digits[at - 1];
    return;
  }
  number.digits.insert(0, 1, '1');
  ++number.exponent;
}

// Digits of which those behind the first `count` tell truly whether they are less than half.
DecimalDigits Expand(double value, int count) {
  constexpr int kGuards = 20;
  if (count + kGuards >= kAllDigits) return Scientific(value, kAllDigits);
  DecimalDigits number = Scientific(value, count + kGuards);
  auto const guards = number.digits.begin() + count;
  // Rounding to the guards can only have hidden a half that was missed by less than a guard's unit.
  bool const half =
      *guards == '5' && std::all_of(guards + 1, number.digits.end(), [](char c) { return c == '0'; });
  return half ? Scientific(value, kAllDigits) : number;
}

}  // namespace

DecimalDigits DecimalDigits::Shortest(double value) {
  char buffer[kBufferSize];
  auto const end = std::to_chars(buffer, buffer + kBufferSize, value, std::chars_format::scientific);
  DecimalDigits number = Parse(buffer, end.ptr);
  while (number.digits.size() > 1 && number.digits.back() == '0') number.digits.pop_back();
  return number;
}

DecimalDigits DecimalDigits::Significant(double value, int count) {
  auto const kept = static_cast<std::size_t>(std::max(count, 1));
  if (value == 0) return {std::string(kept, '0'), 0};
  DecimalDigits number = Expand(value, static_cast<int>(kept));
  Round(number, kept);
  number.digits.resize(kept);
  return number;
}

DecimalDigits DecimalDigits::Fixed(double value, int decimals) {
  if (value == 0) return {"0", 0};
  int const count = Shortest(value).exponent + 1 + decimals;
  if (count < 0) return {"0", 0};
  DecimalDigits number = Expand(value, count);
  // The exact number may begin a place lower than its shortest digits, as 9.99...e22 is written 1e23.
  int const kept = number.exponent + 1 + decimals;
  Round(number, static_cast<std::size_t>(std::max(kept, 0)));
  if (number.digits.empty()) return {"0", 0};
  return number;
}

std::string DecimalDigits::ToFixed(int decimals) const {
  std::string text;
  for (int place = std::max(exponent, 0); place >= -decimals; --place) {
    if (place == -1) text += '.';
    int const at = exponent - place;
    text += at >= 0 && at < static_cast<int>(digits.size()) ? digits[static_cast<std::size_t>(at)] : '0';
  }
  return text;
}

std::string DecimalDigits::ToPlain() const {
  return ToFixed(std::max(0, static_cast<int>(digits.size()) - 1 - exponent));
}

std::string DecimalDigits::ToExponential() const {
  std::string text = digits.substr(0, 1);
  if (digits.size() > 1) text += '.' + digits.substr(1);
  return text + (exponent < 0 ? "e-" : "e+") + std::to_string(exponent < 0 ? -exponent : exponent);
}

}  // namespace ostrel::services
