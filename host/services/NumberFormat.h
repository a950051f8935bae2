#pragma once

#include <string>
#include <string_view>

#include "ostrelrtcore/StoreValue.h"
#include "ostrelsys/OStringCore.h"

namespace ostrel::services {

/// How a number is written, read from a pattern
///
///   [[fill]align][sign][symbol][0][width][,][.precision][~][type]
///
/// as chart documents carry it. align is one of < > ^ =, sign one of - + ( and blank, symbol $ or #. The
/// types are e exponent, f fixed point, g significant digits, r rounded to significant digits, s with a
/// prefix of the units system, % percent, p percent rounded to significant digits, d whole number, b o x X
/// whole numbers in base 2, 8 and 16, c the text of the number as it stands, n as ",g". Without one of these
/// up to 12 significant digits are written, without zeros at their end. "~" drops such zeros. Halves are
/// rounded away from zero, by the exact value. Signs and groups are those of US English, whatever the locale;
/// the minus sign is U+2212.
class NumberFormat {
 public:
  /// Throws OrtRuntimeException 55 with the pattern for one that is ill-formed or wider than 10,000.
  explicit NumberFormat(std::u16string_view pattern);

  OStringCore Format(double value) const;
  /// Writes with the units prefix that suits `reference` ("k" for 20,000) and as many decimals as the
  /// pattern's precision tells (6 without one), as for the labels of an axis that share one unit.
  OStringCore FormatWithPrefixOf(double value, double reference) const;

  /// 0 for none, else the letter.
  char GetType() const { return type_; }
  bool HasPrecision() const { return precision_ >= 0; }
  void SetPrecision(int precision) { precision_ = precision; }
  OStringCore ToPattern() const;

 private:
  std::string FormatMagnitude(double magnitude, std::string& unit) const;
  std::string Digits(double magnitude, char type, int precision, std::string& unit) const;
  std::u16string Assemble(bool negative, std::string const& number, std::string const& unit) const;
  std::u16string Pad(std::u16string const& prefix, std::string digits, std::u16string const& suffix) const;

  char16_t fill_ = u' ';
  char align_ = '>';
  char sign_ = '-';
  char symbol_ = 0;
  bool zero_ = false;
  int width_ = 0;
  bool comma_ = false;
  int precision_ = -1;
  bool trim_ = false;
  char type_ = 0;
};

/// Formats with the pattern that is the format tuple's one member; an empty tuple stands for the empty
/// pattern. Throws OrtRuntimeException 55 for another tuple. Safe from many threads.
OStringCore FormatNumber(double value, ort::core::IStoreTuple const& format);
OStringCore FormatNumber(double value, std::u16string_view pattern);

/// The pattern for the labels of an axis whose ticks are `step` apart and reach up to `largest` in magnitude:
/// the given one (",f" when it is empty) with the precision that tells neighbouring ticks apart, unless it
/// has one. With type s it is meant for FormatWithPrefixOf(value, largest).
OStringCore GetTickPattern(double step, double largest, std::u16string_view pattern = {});

}  // namespace ostrel::services
