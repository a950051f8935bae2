#pragma once

namespace ostrel::charts {

/// Room for any number that WriteSvgNumber makes.
inline constexpr int kMaxSvgNumberLength = 32;

/// Writes a number in the shortest form, rounded to three decimals as printf("%.3f") does (the exact value,
/// halves to even): "12.5", ".125", "-3"; never "-0". From 2^41 on, where three decimals are no longer
/// significant, it is the shortest text that reads back to the value, held within the range of a 32-bit real,
/// which is what SVG guarantees. NaN, which callers keep away, is written 0. Gives the end of the text.
char* WriteSvgNumber(double value, char* out);

}  // namespace ostrel::charts
