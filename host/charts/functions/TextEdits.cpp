#include "charts/functions/TextEdits.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "charts/data/NumberText.h"

namespace ostrel::charts {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Whole and from 0 to `most`.
std::size_t Place(double position, std::size_t most) {
  if (!(position > 0)) return 0;
  return position >= static_cast<double>(most) ? most : static_cast<std::size_t>(position);
}

std::size_t PlaceFromEnds(double position, std::size_t size) {
  double const whole = std::isnan(position) ? 0 : std::trunc(position);
  return Place(whole < 0 ? whole + static_cast<double>(size) : whole, size);
}

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

std::size_t CountDigits(std::string_view text, std::size_t from) {
  std::size_t at = from;
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at - from;
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  auto const first = text.find_first_not_of(" \t\r\n\f\v");
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::size_t SkipSign(std::string_view text) {
  return !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
}

// How many bytes at the beginning are a number.
std::size_t MeasureNumber(std::string_view text) {
  std::size_t at = SkipSign(text);
  constexpr std::string_view kInfinity = "Infinity";
  if (text.substr(at).starts_with(kInfinity)) return at + kInfinity.size();
  std::size_t digits = CountDigits(text, at);
  at += digits;
  if (at < text.size() && text[at] == '.') {
    std::size_t const decimals = CountDigits(text, at + 1);
    if (digits + decimals > 0) at += 1 + decimals;
    digits += decimals;
  }
  if (digits == 0) return 0;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    std::size_t const exponent = at + 1 + SkipSign(text.substr(at + 1));
    std::size_t const count = CountDigits(text, exponent);
    if (count > 0) at = exponent + count;
  }
  return at;
}

// U+0009 to U+000D and everything of Unicode that separates words or lines.
bool IsBlank(char16_t unit) {
  return (unit >= 0x09 && unit <= 0x0D) || unit == 0x20 || unit == 0xA0 || unit == 0x1680 ||
         (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F ||
         unit == 0x205F || unit == 0x3000 || unit == 0xFEFF;
}

}  // namespace

std::u16string_view Substring(std::u16string_view text, double start, double end) {
  auto const [first, last] = std::minmax({Place(start, text.size()), Place(end, text.size())});
  return text.substr(first, last - first);
}

std::u16string_view SliceText(std::u16string_view text, double start, double end) {
  std::size_t const first = PlaceFromEnds(start, text.size());
  std::size_t const last = PlaceFromEnds(end, text.size());
  return last > first ? text.substr(first, last - first) : std::u16string_view();
}

double FindText(std::u16string_view text, std::u16string_view part) {
  auto const found = text.find(part);
  return found == std::u16string_view::npos ? -1 : static_cast<double>(found);
}

double FindLastText(std::u16string_view text, std::u16string_view part) {
  auto const found = text.rfind(part);
  return found == std::u16string_view::npos ? -1 : static_cast<double>(found);
}

std::u16string ReplaceFirst(std::u16string_view text, std::u16string_view part,
                            std::u16string_view replacement) {
  std::u16string replaced(text);
  auto const found = replaced.find(part);
  if (found != std::u16string::npos) replaced.replace(found, part.size(), replacement);
  return replaced;
}

int CountParts(std::u16string_view text, std::u16string_view separator) {
  if (separator.empty()) return static_cast<int>(text.size());
  int count = 1;
  for (auto at = text.find(separator); at != std::u16string_view::npos;
       at = text.find(separator, at + separator.size()))
    ++count;
  return count;
}

bool FindPart(std::u16string_view text, std::u16string_view separator, double number,
              std::u16string_view& part) {
  if (!(number >= 0) || number != std::trunc(number)) return false;
  if (separator.empty()) {
    if (number >= static_cast<double>(text.size())) return false;
    part = text.substr(static_cast<std::size_t>(number), 1);
    return true;
  }
  for (double passed = 0;; ++passed) {
    auto const end = text.find(separator);
    if (passed == number) {
      part = text.substr(0, end);
      return true;
    }
    if (end == std::u16string_view::npos) return false;
    text.remove_prefix(end + separator.size());
  }
}

std::u16string_view TrimText(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::u16string PadText(std::u16string_view text, double length, std::u16string_view character,
                       TextSide side) {
  constexpr double kMostLength = 1 << 16;
  std::size_t const wanted = Place(length, static_cast<std::size_t>(kMostLength));
  if (wanted <= text.size() || character.empty()) return std::u16string(text);
  std::size_t const missing = wanted - text.size();
  std::size_t const before = side == TextSide::Left ? missing : side == TextSide::Right ? 0 : missing / 2;
  std::u16string padded;
  for (std::size_t i = 0; i < before; ++i) padded += character;
  padded += text;
  for (std::size_t i = before; i < missing; ++i) padded += character;
  return padded;
}

std::u16string TruncateText(std::u16string_view text, double length, TextSide side,
                            std::u16string_view ellipsis) {
  std::size_t const wanted = Place(length, text.size());
  if (wanted >= text.size()) return std::u16string(text);
  std::size_t const kept = wanted > ellipsis.size() ? wanted - ellipsis.size() : 0;
  std::size_t const first = side == TextSide::Left ? 0 : side == TextSide::Right ? kept : (kept + 1) / 2;
  std::u16string cut(text.substr(0, first));
  cut += ellipsis;
  cut += text.substr(text.size() - (kept - first));
  return cut;
}

std::string DescribeNumber(double number) {
  constexpr int kMostWholeDigits = 21;
  constexpr int kMostLeadingZeros = 6;
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  if (number == 0) return "0";
  char buffer[32];
  auto const end =
      std::to_chars(std::begin(buffer), std::end(buffer), std::abs(number), std::chars_format::scientific);
  std::string_view const written(buffer, static_cast<std::size_t>(end.ptr - buffer));
  auto const mark = written.find('e');
  int exponent = 0;
  std::string_view power = written.substr(mark + 1);
  if (power.front() == '+') power.remove_prefix(1);
  std::from_chars(power.data(), power.data() + power.size(), exponent);
  std::string digits(written.substr(0, 1));
  if (mark > 1) digits += written.substr(2, mark - 2);

  auto const count = static_cast<int>(digits.size());
  int const point = exponent + 1;  // digits before the decimal point
  std::string const sign = number < 0 ? "-" : "";
  if (point > kMostWholeDigits || point <= -kMostLeadingZeros) {
    if (count > 1) digits.insert(1, ".");
    return fmt::format("{}{}e{}{}", sign, digits, exponent < 0 ? "-" : "+", std::abs(exponent));
  }
  if (point >= count) return sign + digits + std::string(static_cast<std::size_t>(point - count), '0');
  if (point > 0) return sign + digits.insert(static_cast<std::size_t>(point), ".");
  return sign + "0." + std::string(static_cast<std::size_t>(-point), '0') + digits;
}

double ReadLeadingNumber(std::string_view text) {
  text = WithoutLeadingBlanks(text);
  std::string_view number = text.substr(0, MeasureNumber(text));
  if (number.empty()) return kNaN;
  return ReadNumber(number).ToReal();
}

double ReadLeadingInteger(std::string_view text) {
  text = WithoutLeadingBlanks(text);
  std::size_t const sign = SkipSign(text);
  std::size_t const count = CountDigits(text, sign);
  return count == 0 ? kNaN : ReadNumber(text.substr(0, sign + count)).ToReal();
}

}  // namespace ostrel::charts
