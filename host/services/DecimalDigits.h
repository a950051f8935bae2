#pragma once

#include <string>

namespace ostrel::services {

/// A positive finite number as decimal digits: 0.d1d2d3... times 10 to the (exponent + 1), so that exponent
/// is that of the first digit. Zero has the digit 0 and exponent 0.
struct DecimalDigits {
  std::string digits;
  int exponent = 0;

  /// The fewest digits that read back to the same number, without zeros at the end.
  static DecimalDigits Shortest(double value);
  /// That many significant digits, at least 1; the exact value decides, and halves are rounded up.
  static DecimalDigits Significant(double value, int count);
  /// The value rounded to that many decimals, halves up; a value that rounds to nothing is zero. Below 1e21.
  static DecimalDigits Fixed(double value, int decimals);

  /// "123.45": with exactly that many decimals, zeros where there are no digits.
  std::string ToFixed(int decimals) const;
  /// All digits in plain notation, zeros where the exponent asks for them.
  std::string ToPlain() const;
  /// "1.2345e+2".
  std::string ToExponential() const;
};

}  // namespace ostrel::services
