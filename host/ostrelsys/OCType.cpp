#include "ostrelsys/OCType.h"

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "ostrelsys/OStringCore.h"
#include "ostrelsys/ThrowLogicException.h"

bool OCType::detail::IsSpaceBeyondAscii(char32_t c) noexcept {
  // No space stands in these, where nearly all letters do.
  if (c > 0x3000 || (c > 0x00A0 && c < 0x1680)) return false;
  switch (c) {
    case 0x200B:
      return true;
    case 0x00A0:
    case 0x2007:
    case 0x202F:
      return false;
    default:
      return u_hasBinaryProperty(static_cast<UChar32>(c), UCHAR_WHITE_SPACE) != 0;
  }
}

bool OCType::detail::IsPunctBeyondAscii(char32_t c) noexcept {
  // Ideographs, Hangul syllables and the halves of surrogate pairs.
  if ((c >= 0x3400 && c < 0xA000) || (c >= 0xAC00 && c < 0xE000)) return false;
  return (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_P_MASK) != 0;
}

namespace {

// Characters that never join a neighbour of these ranges. Marks that extend a cluster begin at U+0300; before
// it only a carriage return joins the line feed behind it.
bool StandsAlone(char16_t unit) {
  return unit < 0x0300 || (unit >= 0x0370 && unit < 0x0483) || (unit >= 0x048A && unit < 0x0591) ||
         (unit >= 0x2010 && unit < 0x20D0) || (unit >= 0x3000 && unit < 0x302A) ||
         (unit >= 0x3041 && unit < 0x3097) || (unit >= 0x30A1 && unit < 0x30FB) ||
         (unit >= 0x4E00 && unit < 0xA000) || (unit >= 0xFF01 && unit < 0xFF9E);
}

bool IsPlainPair(char16_t before, char16_t after) { return StandsAlone(before) && StandsAlone(after); }
bool BreaksPlainPair(char16_t before, char16_t after) { return before != u'\r' || after != u'\n'; }

bool IsInsidePair(std::u16string_view text, std::size_t position) {
  return U16_IS_LEAD(text[position - 1]) && U16_IS_TRAIL(text[position]);
}

struct CloseIterator {
  void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};

// The calling thread's iterator, set to a text that must outlive its use.
UBreakIterator* IterateOver(std::u16string_view text) {
  thread_local std::unique_ptr<UBreakIterator, CloseIterator> t_iterator;
  auto status = U_ZERO_ERROR;
  if (!t_iterator) t_iterator.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
  if (U_SUCCESS(status)) {
    ubrk_setText(t_iterator.get(), text.data(), static_cast<int32_t>(text.size()), &status);
  }
  if (U_FAILURE(status)) ThrowLogicException("OCType", __LINE__, u_errorName(status));
  return t_iterator.get();
}

}  // namespace

bool OCType::isClusterBoundary(OStringCore const& text, int position) {
  if (position <= 0 || position >= text.length()) return position == 0 || position == text.length();
  auto const units = text.view();
  auto const index = static_cast<std::size_t>(position);
  if (IsPlainPair(units[index - 1], units[index])) return BreaksPlainPair(units[index - 1], units[index]);
  return !IsInsidePair(units, index) && ubrk_isBoundary(IterateOver(units), position) != 0;
}

int OCType::previousClusterBoundary(OStringCore const& text, int position) {
  if (position > text.length()) return text.length();
  if (position <= 0) return 0;
  auto const units = text.view();
  for (int at = position - 1; at > 0; --at) {
    auto const index = static_cast<std::size_t>(at);
    if (!IsPlainPair(units[index - 1], units[index])) {
      // The iterator would take a position inside a pair for the pair's begin.
      bool const isInside = at + 1 < text.length() && IsInsidePair(units, index + 1);
      return ubrk_preceding(IterateOver(units), at + (isInside ? 2 : 1));
    }
    if (BreaksPlainPair(units[index - 1], units[index])) return at;
  }
  return 0;
}

int OCType::nextClusterBoundary(OStringCore const& text, int position) {
  if (position < 0) return 0;
  if (position >= text.length()) return text.length();
  auto const units = text.view();
  for (int at = position + 1; at < text.length(); ++at) {
    auto const index = static_cast<std::size_t>(at);
    if (!IsPlainPair(units[index - 1], units[index])) return ubrk_following(IterateOver(units), at - 1);
    if (BreaksPlainPair(units[index - 1], units[index])) return at;
  }
  return text.length();
}

std::vector<int> OCType::clusterBoundaries(OStringCore const& text) {
  std::vector<int> boundaries{0};
  auto const units = text.view();
  UBreakIterator* iterator = nullptr;
  for (std::size_t at = 0; at < units.size();) {
    auto const next = at + 1;
    if (next == units.size() ||
        (IsPlainPair(units[at], units[next]) && BreaksPlainPair(units[at], units[next]))) {
      at = next;
    } else {
      if (iterator == nullptr) iterator = IterateOver(units);
      at = static_cast<std::size_t>(ubrk_following(iterator, static_cast<int32_t>(at)));
    }
    boundaries.push_back(static_cast<int>(at));
  }
  return boundaries;
}
