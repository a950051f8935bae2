#pragma once

#include <cstdint>
#include <vector>

#include "ostrelsys/Export.h"

class OStringCore;

/// Classes of characters, and the boundaries between what a reader takes for one character.
namespace OCType {

namespace detail {

/// One bit a character for the first 128.
struct AsciiClass {
  std::uint64_t low;
  std::uint64_t high;
  constexpr bool Has(char32_t c) const noexcept { return ((c < 64 ? low : high) >> (c & 63U)) & 1U; }
};

constexpr AsciiClass MakeAsciiClass(char const* members) noexcept {
  AsciiClass result{0, 0};
  for (; *members != 0; ++members) {
    auto const c = static_cast<unsigned char>(*members);
    (c < 64 ? result.low : result.high) |= std::uint64_t{1} << (c & 63U);
  }
  return result;
}

inline constexpr AsciiClass kAsciiSpaces = MakeAsciiClass(" \t\n\v\f\r");
// Signs such as $ + < = > ^ ` | ~ are symbols, not punctuation.
inline constexpr AsciiClass kAsciiPunctuation = MakeAsciiClass("!\"#%&'()*,-./:;?@[\\]_{}");

OSTRELSYS_API bool IsSpaceBeyondAscii(char32_t c) noexcept;
OSTRELSYS_API bool IsPunctBeyondAscii(char32_t c) noexcept;

}  // namespace detail

/// White space of Unicode (property White_Space) at which a line may break: with U+200B, the space without
/// width, and without the no-break spaces U+00A0, U+2007 and U+202F.
inline bool isSpace(char32_t c) noexcept {
  return c < 128 ? detail::kAsciiSpaces.Has(c) : detail::IsSpaceBeyondAscii(c);
}
inline bool isSpace(char16_t unit) noexcept { return isSpace(char32_t{unit}); }
inline bool isSpace(int c) noexcept { return isSpace(static_cast<char32_t>(c)); }

/// Punctuation of Unicode: the general categories Pc, Pd, Ps, Pe, Pi, Pf and Po. Half of a surrogate pair and
/// values that are no characters are none.
inline bool isPunct(char32_t c) noexcept {
  return c < 128 ? detail::kAsciiPunctuation.Has(c) : detail::IsPunctBeyondAscii(c);
}
inline bool isPunct(char16_t unit) noexcept { return isPunct(char32_t{unit}); }
inline bool isPunct(int c) noexcept { return isPunct(static_cast<char32_t>(c)); }

/// Whether an extended grapheme cluster (Unicode Standard Annex 29) begins or the text ends at a position.
/// Both ends of the text are boundaries; positions outside of it are none. Safe from many threads, as are the
/// others.
OSTRELSYS_API bool isClusterBoundary(OStringCore const& text, int position);
/// The last boundary before a position; 0 when there is none, the text's length for a position beyond the
/// end.
OSTRELSYS_API int previousClusterBoundary(OStringCore const& text, int position);
/// The first boundary after a position; the text's length when there is none, 0 for a negative position.
OSTRELSYS_API int nextClusterBoundary(OStringCore const& text, int position);
/// All boundaries from 0 to the text's length, ascending; faster than asking for one after the other. An
/// empty text has the one boundary 0.
OSTRELSYS_API std::vector<int> clusterBoundaries(OStringCore const& text);

}  // namespace OCType
