#include "ostrelrtcore/RFormatString.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

namespace ort::core {
namespace {

constexpr int kLargestWidth = 4096;

OStringCore FormatNumber(bool isNegative, std::uint64_t magnitude, int fieldWidth, int base, wchar_t fill) {
  char digits[64];
  auto const end =
      std::to_chars(std::begin(digits), std::end(digits), magnitude, base < 2 || base > 36 ? 10 : base).ptr;
  std::u16string const number(std::begin(digits), end);
  std::u16string_view const sign = isNegative ? u"-" : u"";

  auto const width = std::clamp(fieldWidth, -kLargestWidth, kLargestWidth);
  OStringCore filling;
  auto const length = static_cast<int>(sign.size() + number.size());
  for (int i = length; i < std::abs(width); ++i) filling.append(fill);

  OStringCore result;
  if (width < 0) return result.append(sign).append(number).append(filling);
  if (fill == L'0') return result.append(sign).append(filling).append(number);
  return result.append(filling).append(sign).append(number);
}

}  // namespace

RFormatString::RFormatString(wchar_t const* format) : RFormatString(OStringCore(format)) {}

RFormatString::RFormatString(OStringCore const& format) {
  int begin = 0;
  for (int i = 0; i + 1 < format.length(); ++i) {
    if (format[i] != u'%' || format[i + 1] < u'1' || format[i + 1] > u'9') continue;
    if (i > begin) m_parts.push_back({format.mid(begin, i - begin), 0});
    m_parts.push_back({format.mid(i, 2), format[i + 1] - u'0'});
    begin = ++i + 1;
  }
  if (begin < format.length()) m_parts.push_back({format.mid(begin), 0});
}

RFormatString RFormatString::arg(int value, int fieldWidth, int base, wchar_t fill) const {
  auto const wide = static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
  return arg(FormatNumber(value < 0, value < 0 ? 0 - wide : wide, fieldWidth, base, fill));
}

RFormatString RFormatString::arg(std::uint64_t value, int fieldWidth, int base, wchar_t fill) const {
  return arg(FormatNumber(false, value, fieldWidth, base, fill));
}

RFormatString RFormatString::arg(OStringCore const& value) const {
  int lowest = 0;
  for (auto const& part : m_parts) {
    if (part.place != 0 && (lowest == 0 || part.place < lowest)) lowest = part.place;
  }
  auto result = *this;
  for (auto& part : result.m_parts) {
    if (lowest != 0 && part.place == lowest) part = {value, 0};
  }
  return result;
}

OStringCore RFormatString::ToString() const {
  OStringCore result;
  for (auto const& part : m_parts) result.append(part.text);
  return result;
}

}  // namespace ort::core
