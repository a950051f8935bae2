#include "ostrelsys/OStringCore.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "ostrelsys/OCType.h"
#include "ostrelsys/Utf.h"

namespace {

void CheckLength(std::size_t length) {
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::length_error("a string of more than 2^31-1 units can't be made");
  }
}

template <typename Char>
std::basic_string_view<Char> MakeView(Char const* text, int length) {
  if (text == nullptr) return {};
  if (length < 0) return text;
  return {text, static_cast<std::size_t>(length)};
}

std::size_t ClampCount(int count, std::size_t most) {
  return count < 0 ? 0 : std::min(static_cast<std::size_t>(count), most);
}

void AppendCharacter(std::u16string& to, char32_t character) {
  if (character < 0xD800) {
    to += static_cast<char16_t>(character);
  } else if (character > 0x10FFFF || U_IS_SURROGATE(character)) {
    to += u'\uFFFD';
  } else if (character <= 0xFFFF) {
    to += static_cast<char16_t>(character);
  } else {
    to += static_cast<char16_t>(U16_LEAD(character));
    to += static_cast<char16_t>(U16_TRAIL(character));
  }
}

// The units of a text's simple case folding, one after the other.
class FoldedUnits {
 public:
  explicit FoldedUnits(std::u16string_view text) : m_text(text) {}

  // The next unit, and -1 after the last.
  int Next() {
    if (m_trail != 0) return std::exchange(m_trail, 0);
    if (m_at == m_text.size()) return -1;
    UChar32 character = m_text[m_at++];
    if (character < 0x80) return character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character;
    if (U16_IS_LEAD(character) && m_at < m_text.size() && U16_IS_TRAIL(m_text[m_at])) {
      character = U16_GET_SUPPLEMENTARY(character, m_text[m_at]);
      ++m_at;
    }
    auto const folded = u_foldCase(character, U_FOLD_CASE_DEFAULT);
    if (folded <= 0xFFFF) return folded;
    m_trail = U16_TRAIL(folded);
    return U16_LEAD(folded);
  }

 private:
  std::u16string_view m_text;
  std::size_t m_at = 0;
  int m_trail = 0;
};

int CompareFolded(std::u16string_view left, std::u16string_view right) {
  FoldedUnits leftUnits(left);
  FoldedUnits rightUnits(right);
  for (;;) {
    auto const leftUnit = leftUnits.Next();
    auto const rightUnit = rightUnits.Next();
    if (leftUnit != rightUnit) return leftUnit < rightUnit ? -1 : 1;
    if (leftUnit < 0) return 0;
  }
}

// Simple folding keeps a character's number of units, so positions in the folded text are those in the text.
std::u16string Fold(std::u16string_view text) {
  std::u16string folded;
  folded.reserve(text.size());
  FoldedUnits units(text);
  for (auto unit = units.Next(); unit >= 0; unit = units.Next()) folded += static_cast<char16_t>(unit);
  return folded;
}

}  // namespace

OStringCore::OStringCore(wchar_t const* text, int length) {
  auto const view = MakeView(text, length);
  m_text.reserve(view.size());
  for (auto const character : view) AppendCharacter(m_text, static_cast<char32_t>(character));
  CheckLength(m_text.size());
}

OStringCore::OStringCore(char16_t const* text, int length) : OStringCore(MakeView(text, length)) {}

OStringCore::OStringCore(std::u16string text) : m_text(std::move(text)) { CheckLength(m_text.size()); }

OStringCore::OStringCore(std::u16string_view text) : m_text((CheckLength(text.size()), text)) {}

OStringCore OStringCore::fromUtf8(std::string_view utf8) {
  CheckLength(utf8.size());
  OStringCore result;
  result.m_text.resize(utf8.size());
  result.m_text.resize(Utf::Utf8ToUtf16(utf8, result.m_text.data()));
  return result;
}

std::string OStringCore::toUtf8() const { return Utf::Utf16ToUtf8(m_text); }

int OStringCore::compare(OStringCore const& other, bool caseSensitive) const noexcept {
  return caseSensitive ? m_text.compare(other.m_text) : CompareFolded(m_text, other.m_text);
}

OStringCore OStringCore::left(int n) const {
  return OStringCore(view().substr(0, ClampCount(n, m_text.size())));
}

OStringCore OStringCore::right(int n) const {
  return OStringCore(view().substr(m_text.size() - ClampCount(n, m_text.size())));
}

OStringCore OStringCore::mid(int from, int n) const {
  auto const rest = view().substr(ClampCount(from, m_text.size()));
  return OStringCore(n < 0 ? rest : rest.substr(0, ClampCount(n, rest.size())));
}

OStringCore OStringCore::trimRight() const {
  auto rest = view();
  while (!rest.empty() && OCType::isSpace(rest.back())) rest.remove_suffix(1);
  return OStringCore(rest);
}

std::vector<OStringCore> OStringCore::split(OStringCore const& separator, bool keepEmptyParts,
                                            bool caseSensitive) const {
  auto const searched = caseSensitive ? std::u16string() : Fold(m_text);
  auto const sought = caseSensitive ? separator.m_text : Fold(separator.m_text);
  std::u16string_view const text = caseSensitive ? m_text : searched;

  std::vector<OStringCore> parts;
  std::size_t begin = 0;
  auto const takePart = [&](std::size_t end) {
    if (end > begin || keepEmptyParts) parts.emplace_back(view().substr(begin, end - begin));
  };
  if (!sought.empty()) {
    for (auto at = text.find(sought); at != text.npos; at = text.find(sought, begin)) {
      takePart(at);
      begin = at + sought.size();
    }
  }
  takePart(m_text.size());
  return parts;
}

OStringCore& OStringCore::append(std::u16string_view text) {
  CheckLength(m_text.size() + text.size());
  m_text.append(text);
  return *this;
}

OStringCore& OStringCore::append(char16_t const* text, int length) { return append(MakeView(text, length)); }

OStringCore& OStringCore::append(char32_t character) {
  CheckLength(m_text.size() + 2);
  AppendCharacter(m_text, character);
  return *this;
}

std::ostream& operator<<(std::ostream& out, OStringCore const& text) { return out << text.toUtf8(); }
