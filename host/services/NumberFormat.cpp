#include "services/NumberFormat.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "ostrelrtcore/OrtRuntimeException.h"
#include "services/DecimalDigits.h"

namespace ostrel::services {

using namespace ort::core;

namespace {

constexpr int kWidest = 10'000;
constexpr int kDefaultPrecision = 6;
constexpr int kPlainPrecision = 12;
constexpr double kLargestFixed = 1e21;
constexpr char16_t kMinus = u'\u2212';
constexpr std::string_view kTypes = "%bcdefgoprsXx";
constexpr char const* kPrefixes[] = {"y", "z", "a", "f", "p", "n", "\u00B5", "m", "",
                                     "k", "M", "G", "T", "P", "E", "Z",      "Y"};

bool Has(std::string_view set, char16_t unit) {
  return unit < 128 && set.find(static_cast<char>(unit)) != set.npos;
}

// The part of a pattern that has not been read yet.
class Reader {
 public:
  explicit Reader(std::u16string_view pattern) : rest_(pattern) {}
  bool AtEnd() const { return rest_.empty(); }
  char16_t Peek(std::size_t at = 0) const { return at < rest_.size() ? rest_[at] : u'\0'; }
  char16_t Take() {
    char16_t const unit = Peek();
    rest_.remove_prefix(1);
    return unit;
  }
  bool TakeIf(char16_t unit) { return !AtEnd() && Peek() == unit && Take() != 0; }
  bool AtDigit() const { return Peek() >= u'0' && Peek() <= u'9'; }
  int TakeNumber() {
    int number = 0;
    while (AtDigit()) number = std::min(number * 10 + (Take() - u'0'), 1'000'000);
    return number;
  }

 private:
  std::u16string_view rest_;
};

// The power of 1000 whose prefix suits a number that begins at a decimal exponent.
int PrefixExponent(int exponent) {
  int const thousands = exponent >= 0 ? exponent / 3 : -((2 - exponent) / 3);
  return std::clamp(thousands, -8, 8) * 3;
}

char const* PrefixOf(int prefixExponent) { return kPrefixes[8 + prefixExponent / 3]; }

// Whole numbers in a base that is a power of two.
std::string ToBinaryBase(double value, int bitsPerDigit, bool upper) {
  char const* const letters = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  int exponent = 0;
  std::frexp(value, &exponent);
  int const count = std::max(1, (exponent + bitsPerDigit - 1) / bitsPerDigit);
  std::string text;
  for (int i = count - 1; i >= 0; --i) {
    // Scaling by powers of two is exact.
    double const scaled = std::floor(std::ldexp(value, -i * bitsPerDigit));
    text += letters[static_cast<int>(std::fmod(scaled, std::ldexp(1.0, bitsPerDigit)))];
  }
  return text;
}

std::string ToNumberText(double value) {
  auto const digits = DecimalDigits::Shortest(value);
  return digits.exponent >= 21 || digits.exponent < -6 ? digits.ToExponential() : digits.ToPlain();
}

std::string ToFixed(double value, int decimals) {
  return value < kLargestFixed ? DecimalDigits::Fixed(value, decimals).ToFixed(decimals)
                               : ToNumberText(value);
}

std::string ToPrecision(double value, int precision) {
  auto const digits = DecimalDigits::Significant(value, precision);
  bool const plain = digits.exponent >= -6 && digits.exponent < precision;
  return plain ? digits.ToFixed(precision - 1 - digits.exponent) : digits.ToExponential();
}

// Zero has no significant digits to be padded to.
std::string ToRounded(double value, int precision) {
  return value == 0 ? "0" : DecimalDigits::Significant(value, precision).ToPlain();
}

std::string ToPrefixed(double value, int precision, std::string& unit) {
  auto digits = DecimalDigits::Significant(value, precision);
  int const prefixExponent = PrefixExponent(digits.exponent);
  unit = PrefixOf(prefixExponent);
  int const whole = digits.exponent - prefixExponent + 1;
  if (whole <= 0) {
    // Below the least prefix fewer digits fit into the precision.
    int const fitting = precision + whole - 1;
    auto const less =
        fitting > 0 ? DecimalDigits::Significant(value, fitting) : DecimalDigits::Shortest(value);
    return "0." + std::string(static_cast<std::size_t>(-whole), '0') + less.digits;
  }
  digits.exponent = whole - 1;
  return digits.ToPlain();
}

// Drops the zeros at the end of the decimals, also in front of an exponent, and a point that is left alone.
std::string DropZeros(std::string text) {
  auto const point = text.find('.');
  if (point == std::string::npos) return text;
  auto const end = std::min(text.find_first_not_of("0123456789", point + 1), text.size());
  auto keep = end;
  while (text[keep - 1] == '0') --keep;
  if (keep == point + 1) keep = point;
  return text.erase(keep, end - keep);
}

std::string InsertGroups(std::string const& digits, std::size_t width) {
  std::string result;
  std::size_t left = digits.size();
  std::size_t written = 0;
  while (left > 0) {
    std::size_t group = 3;
    if (written + group + 1 > width) group = width > written ? std::max<std::size_t>(1, width - written) : 1;
    group = std::min(group, left);
    left -= group;
    result.insert(0, (left + group == digits.size() ? "" : ","));
    result.insert(0, digits.substr(left, group));
    written += group + 1;
    if (written > width) break;
  }
  return result;
}

// Of the first digits alone, so that the noise of computed steps does not count.
int LastDigitExponent(double step) {
  auto const number = DecimalDigits::Significant(step, 4);
  return number.exponent - static_cast<int>(number.digits.find_last_not_of('0'));
}

int DecimalExponent(double value) { return DecimalDigits::Shortest(std::fabs(value)).exponent; }

}  // namespace

NumberFormat::NumberFormat(std::u16string_view pattern) {
  constexpr std::string_view kAligns = "<>=^";
  Reader reader(pattern);
  if (Has(kAligns, reader.Peek(1))) fill_ = reader.Take();
  if (Has(kAligns, reader.Peek())) align_ = static_cast<char>(reader.Take());
  if (Has("+-( ", reader.Peek())) sign_ = static_cast<char>(reader.Take());
  if (Has("$#", reader.Peek())) symbol_ = static_cast<char>(reader.Take());
  zero_ = reader.TakeIf(u'0');
  if (reader.AtDigit()) width_ = reader.TakeNumber();
  comma_ = reader.TakeIf(u',');
  bool wellFormed = width_ <= kWidest;
  if (reader.TakeIf(u'.')) {
    wellFormed = wellFormed && reader.AtDigit();
    precision_ = reader.TakeNumber();
  }
  trim_ = reader.TakeIf(u'~');
  char16_t const type = reader.Peek();
  bool const letter = (type | 0x20U) >= u'a' && (type | 0x20U) <= u'z';
  if (!reader.AtEnd() && (letter || type == u'%')) type_ = static_cast<char>(reader.Take());
  if (!wellFormed || !reader.AtEnd()) {
    OStringCore message(u"the number format \"");
    message.append(pattern).append(
        std::u16string_view(u"\" is not of the form [[fill]align][sign][symbol][0]"
                            u"[width][,][.precision][~][type]"));
    throw OrtRuntimeException(OrtError_WrongValueKind, message);
  }
}

OStringCore NumberFormat::ToPattern() const {
  std::string rest;
  rest += align_;
  rest += sign_;
  if (symbol_ != 0) rest += symbol_;
  if (zero_) rest += '0';
  if (width_ > 0) rest += std::to_string(width_);
  if (comma_) rest += ',';
  if (precision_ >= 0) rest += '.' + std::to_string(precision_);
  if (trim_) rest += '~';
  if (type_ != 0) rest += type_;
  OStringCore pattern(std::u16string_view(&fill_, 1));
  return pattern.append(OStringCore::fromUtf8(rest));
}

std::string NumberFormat::Digits(double magnitude, char type, int precision, std::string& unit) const {
  switch (type) {
    case 'b':
      return ToBinaryBase(std::round(magnitude), 1, false);
    case 'o':
      return ToBinaryBase(std::round(magnitude), 3, false);
    case 'x':
    case 'X':
      return ToBinaryBase(std::round(magnitude), 4, type == 'X');
    case 'd':
      return DecimalDigits::Shortest(std::round(magnitude)).ToPlain();
    case 'e':
      return DecimalDigits::Significant(magnitude, precision + 1).ToExponential();
    case 'f':
      return ToFixed(magnitude, precision);
    case '%':
      return ToFixed(magnitude * 100, precision);
    case 'r':
      return ToRounded(magnitude, precision);
    case 'p':
      return ToRounded(magnitude * 100, precision);
    case 's':
      return ToPrefixed(magnitude, precision, unit);
    default:
      return ToPrecision(magnitude, precision);
  }
}

std::string NumberFormat::FormatMagnitude(double magnitude, std::string& unit) const {
  bool const percent = type_ == '%' || type_ == 'p';
  if (std::isnan(magnitude)) return "NaN";
  if (std::isinf(percent ? magnitude * 100 : magnitude)) return "Infinity";
  bool const known = kTypes.find(type_) != kTypes.npos;
  bool const plain = !known && type_ != 'n';
  int precision = precision_ >= 0 ? precision_ : plain ? kPlainPrecision : kDefaultPrecision;
  bool const significant = !known || Has("gprs", static_cast<char16_t>(type_));
  precision = significant ? std::clamp(precision, 1, 21) : std::clamp(precision, 0, 20);
  std::string const text = Digits(magnitude, known ? type_ : 'g', precision, unit);
  return trim_ || plain ? DropZeros(text) : text;
}

OStringCore NumberFormat::Format(double value) const {
  if (type_ == 'c') {
    std::string const number = std::isnan(value)   ? "NaN"
                               : std::isinf(value) ? "Infinity"
                                                   : ToNumberText(std::fabs(value));
    std::u16string const text(number.begin(), number.end());
    std::u16string const sign = value < 0 ? u"-" : u"";
    return OStringCore(Pad(symbol_ == '$' ? u"$" : u"", "", sign + text));
  }
  std::string unit;
  std::string const text = FormatMagnitude(std::fabs(value), unit);
  // What is rounded to nothing has no sign, unless signs are asked for.
  auto const mantissa = std::string_view(text).substr(0, std::min(text.find("e+"), text.find("e-")));
  bool const nothing = mantissa.find_first_not_of("0.") == mantissa.npos;
  bool const negative = std::signbit(value) && !std::isnan(value) && (sign_ == '+' || !nothing);
  return OStringCore(Assemble(negative, text, unit));
}

OStringCore NumberFormat::FormatWithPrefixOf(double value, double reference) const {
  NumberFormat fixed = *this;
  fixed.type_ = 'f';
  bool const usual = std::isfinite(reference) && reference != 0;
  int const prefixExponent = usual ? PrefixExponent(DecimalExponent(reference)) : 0;
  OStringCore text = fixed.Format(std::pow(10.0, -prefixExponent) * value);
  return text.append(OStringCore::fromUtf8(PrefixOf(prefixExponent)));
}

std::u16string NumberFormat::Assemble(bool negative, std::string const& number,
                                      std::string const& unit) const {
  std::u16string prefix;
  if (negative) {
    prefix += sign_ == '(' ? u'(' : kMinus;
  } else if (sign_ == '+' || sign_ == ' ') {
    prefix += static_cast<char16_t>(sign_);
  }
  if (symbol_ == '$') prefix += u'$';
  bool const baseType = Has("boxX", static_cast<char16_t>(type_));
  if (symbol_ == '#' && baseType) {
    prefix += u'0';
    prefix += static_cast<char16_t>(type_ | 0x20);
  }
  // Groups and zeros go to the whole digits alone, so the rest counts as part of the suffix.
  bool const whole = baseType && number != "NaN" && number != "Infinity";
  auto const end = whole ? number.size() : std::min(number.find_first_not_of("0123456789"), number.size());
  std::u16string suffix(number.begin() + static_cast<std::ptrdiff_t>(end), number.end());
  suffix += OStringCore::fromUtf8(unit).view();
  // The currency's place behind the number, empty for dollars, is the percent sign's.
  if ((type_ == '%' || type_ == 'p') && symbol_ != '$') suffix += u'%';
  if (negative && sign_ == '(') suffix += u')';
  return Pad(prefix, number.substr(0, end), suffix);
}

std::u16string NumberFormat::Pad(std::u16string const& prefix, std::string digits,
                                 std::u16string const& suffix) const {
  bool const zero = zero_ || (fill_ == u'0' && align_ == '=');
  bool const comma = comma_ || type_ == 'n';
  if (comma && !zero) digits = InsertGroups(digits, SIZE_MAX / 2);
  std::size_t const length = prefix.size() + digits.size() + suffix.size();
  auto const width = static_cast<std::size_t>(width_);
  std::u16string padding(length < width ? width - length : 0, zero ? u'0' : fill_);
  if (comma && zero) {
    std::size_t const room = padding.empty() ? SIZE_MAX / 2 : width - suffix.size();
    digits = InsertGroups(std::string(padding.size(), '0') + digits, room);
    padding.clear();
  }
  std::u16string const number(digits.begin(), digits.end());
  if (zero || align_ == '=') return prefix + padding + number + suffix;
  if (align_ == '<') return prefix + number + suffix + padding;
  if (align_ == '>') return padding + prefix + number + suffix;
  std::size_t const half = padding.size() / 2;
  return padding.substr(0, half) + prefix + number + suffix + padding.substr(half);
}

OStringCore FormatNumber(double value, IStoreTuple const& format) {
  if (format.GetCount() == 0) return FormatNumber(value, std::u16string_view());
  auto const& member = format.GetMember(0);
  if (format.GetCount() != 1 || !member || member->GetStoreType() != StoreType::String ||
      member->IsSpecial()) {
    throw OrtRuntimeException(OrtError_WrongValueKind, u"a number format is a tuple of one pattern String");
  }
  return FormatNumber(value, member->GetString().Get().view());
}

OStringCore FormatNumber(double value, std::u16string_view pattern) {
  // A column is formatted with one pattern.
  thread_local std::u16string last;
  thread_local NumberFormat format{std::u16string_view()};
  if (last != pattern) {
    format = NumberFormat(pattern);
    last = pattern;
  }
  return format.Format(value);
}

OStringCore GetTickPattern(double step, double largest, std::u16string_view pattern) {
  NumberFormat format(pattern.empty() ? std::u16string_view(u",f") : pattern);
  step = std::fabs(step);
  largest = std::fabs(largest);
  if (format.HasPrecision() || !std::isfinite(step) || !std::isfinite(largest) || step == 0) {
    return format.ToPattern();
  }
  int const exponent = LastDigitExponent(step);
  char const type = format.GetType();
  if (type == 's') {
    format.SetPrecision(std::max(0, PrefixExponent(DecimalExponent(largest)) - exponent));
  } else if (type == 'f' || type == '%') {
    format.SetPrecision(std::max(0, -exponent - (type == '%' ? 2 : 0)));
  } else if (type == 0 || Has("egpr", static_cast<char16_t>(type))) {
    int const digits = std::max(0, DecimalExponent(largest - step) - exponent) + 1;
    format.SetPrecision(digits - (type == 'e' ? 1 : 0));
  }
  return format.ToPattern();
}

}  // namespace ostrel::services
