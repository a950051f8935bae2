#pragma once

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
/// whole numbers in base 2, 8 and 16, c the text of the number as it stands, n as ",g". Without a type up to
/// 12 significant digits are written and trailing zeros are not. "~" drops trailing zeros. The signs and
/// groups are those of US English; the minus sign is U+2212.
class NumberFormat {
 public:
  /// Throws OrtRuntimeException 55 with the pattern for one that is ill-formed.
  explicit NumberFormat(std::u16string_view pattern);

  OStringCore Format(double value) const;
  /// Every value is written with the prefix that suits `reference` ("k" for 20,000), as on an axis whose
  /// labels share one unit; `precision` decimals are those of the pattern, 6 without any.
  OStringCore FormatWithPrefixOf(double value, double reference) const;

  char16_t fill = u' ';
  char16_t align = u'>';
  char16_t sign = u'-';
  char16_t symbol = 0;
  bool zero = false;
  bool comma = false;
  bool trim = false;
  int width = 0;
  int precision = -1;  ///< negative: the type's own
  char16_t type = 0;
};

/// Formats with the pattern that is the format tuple's one member; an empty tuple stands for the empty
/// pattern. Patterns that were used before are not read again. Throws OrtRuntimeException 55 for another
/// tuple.
OStringCore FormatNumber(double value, ort::core::IStoreTuple const& format);
OStringCore FormatNumber(double value, std::u16string_view pattern);

/// The pattern for the labels of an axis whose ticks are `step` apart and reach up to `largest` in magnitude:
/// as many decimals as the step needs, with groups, e.g. ",.1f". A given pattern with a type but no precision
/// gets the precision that tells neighbouring ticks apart.
OStringCore GetTickPattern(double step, double largest, std::u16string_view pattern = {});

}  // namespace ostrel::services
