#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "ostrelsys/Export.h"
#include "ostrelsys/StringHash.h"

/// A UTF-16 string, counted in code units; it may hold zeros and unpaired surrogates.
///
/// Positions and counts are `int`. A negative or too large one is clamped to the text, so no call reads
/// outside of it. A text longer than 2^31-1 units can't be made: std::length_error.
class OSTRELSYS_API OStringCore {
 public:
  OStringCore() noexcept = default;
  /// The first `length` characters of a wide (UTF-32) text, or all up to its zero when the length is
  /// negative. Characters beyond the basic plane become surrogate pairs, values that are no characters
  /// (surrogates, and those above 0x10FFFF) U+FFFD. A null pointer gives the empty string.
  OStringCore(wchar_t const* text, int length = -1);
  /// The same of UTF-16 units, taken as they are.
  OStringCore(char16_t const* text, int length = -1);
  explicit OStringCore(std::u16string text);
  explicit OStringCore(std::u16string_view text);

  /// Ill-formed sequences become U+FFFD, one for each longest part that could have begun a character.
  static OStringCore fromUtf8(std::string_view utf8);
  /// Unpaired surrogates become U+FFFD.
  std::string toUtf8() const;

  bool isEmpty() const noexcept { return m_text.empty(); }
  int length() const noexcept { return static_cast<int>(m_text.size()); }
  /// The units with a zero behind the last; valid until the string is changed.
  char16_t const* constData() const noexcept { return m_text.c_str(); }
  std::u16string_view view() const noexcept { return m_text; }
  /// The unit at a position, and zero outside of the text.
  char16_t operator[](int position) const noexcept {
    auto const index = static_cast<std::size_t>(position);
    return index < m_text.size() ? m_text[index] : u'\0';
  }

  /// Negative, 0 or positive as this string comes before, equals or comes after the other, by code unit;
  /// without regard to case by the units of both texts' simple case foldings.
  int compare(OStringCore const& other, bool caseSensitive = true) const noexcept;

  /// The first `n` units; all of them when there are fewer.
  OStringCore left(int n) const;
  /// The last `n` units; all of them when there are fewer.
  OStringCore right(int n) const;
  /// `n` units from position `from` on, and all the rest when `n` is negative.
  OStringCore mid(int from, int n = -1) const;
  /// The text without the spaces (OCType::isSpace) at its end.
  OStringCore trimRight() const;
  /// The parts between the separators, one more than there are separators. An empty separator separates
  /// nothing. Without `keepEmptyParts` the empty parts are left out, so that an empty text has none.
  std::vector<OStringCore> split(OStringCore const& separator, bool keepEmptyParts = true,
                                 bool caseSensitive = true) const;

  OStringCore& append(OStringCore const& text) { return append(text.view()); }
  OStringCore& append(std::u16string_view text);
  OStringCore& append(char16_t const* text, int length = -1);
  OStringCore& append(char16_t unit) { return append(std::u16string_view(&unit, 1)); }
  /// Appends a character; one that is none becomes U+FFFD.
  OStringCore& append(char32_t character);
  OStringCore& append(wchar_t character) { return append(static_cast<char32_t>(character)); }
  template <typename Text>
  OStringCore& operator+=(Text const& text) {
    return append(text);
  }
  void clear() noexcept { m_text.clear(); }

  friend OStringCore operator+(OStringCore left, OStringCore const& right) {
    left.append(right);
    return left;
  }
  friend bool operator==(OStringCore const& left, OStringCore const& right) noexcept {
    return left.m_text == right.m_text;
  }
  friend std::strong_ordering operator<=>(OStringCore const& left, OStringCore const& right) noexcept {
    return left.view() <=> right.view();
  }
  /// Writes the text as UTF-8.
  OSTRELSYS_API friend std::ostream& operator<<(std::ostream& out, OStringCore const& text);

 private:
  std::u16string m_text;
};

template <>
struct std::hash<OStringCore> {
  std::size_t operator()(OStringCore const& text) const noexcept { return StringHash::OfText(text.view()); }
};
