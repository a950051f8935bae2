#include "services/BreakHints.h"

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/uscript.h>
#include <unicode/utf16.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "ostrelsys/OCType.h"

namespace ostrel::services {

namespace {

constexpr char16_t kBreakHint = u'\f';
constexpr char16_t kZeroWidthSpace = u'\u200B';

struct IteratorCloser {
  void operator()(UBreakIterator* iterator) const noexcept { ubrk_close(iterator); }
};
using Iterator = std::unique_ptr<UBreakIterator, IteratorCloser>;

Iterator OpenIterator() {
  UErrorCode status = U_ZERO_ERROR;
  // Always the same locale: that of the machine would make it another text.
  Iterator iterator(ubrk_open(UBRK_LINE, "en", nullptr, 0, &status));
  if (U_FAILURE(status)) {
    throw std::runtime_error(std::string("ICU has no rules for breaking lines: ") + u_errorName(status));
  }
  return iterator;
}

// Copies the text and adds the mark at those places inside of it where a line may end and `wanted` agrees.
template <typename Wanted>
OStringCore Mark(OStringCore const& text, char16_t mark, Wanted wanted) {
  thread_local Iterator const iterator = OpenIterator();
  std::u16string_view const units = text.view();
  UErrorCode status = U_ZERO_ERROR;
  ubrk_setText(iterator.get(), units.data(), text.length(), &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  std::u16string marked;
  marked.reserve(units.size() + units.size() / 4);
  std::size_t copied = 0;
  for (int place = ubrk_first(iterator.get()); place != UBRK_DONE; place = ubrk_next(iterator.get())) {
    if (place == 0 || place == text.length() || !wanted(place)) continue;
    auto const end = static_cast<std::size_t>(place);
    marked += units.substr(copied, end - copied);
    marked += mark;
    copied = end;
  }
  marked += units.substr(copied);
  // The iterator must not look at the text again, which may be gone by then.
  ubrk_setText(iterator.get(), u"", 0, &status);
  return OStringCore(std::move(marked));
}

bool IsOfScriptWithoutBlanks(UChar32 character) {
  int const lineBreak = u_getIntPropertyValue(character, UCHAR_LINE_BREAK);
  if (lineBreak == U_LB_COMPLEX_CONTEXT || lineBreak == U_LB_CONDITIONAL_JAPANESE_STARTER) return true;
  if (lineBreak != U_LB_IDEOGRAPHIC) return false;
  // Pictographs break like ideographs.
  UErrorCode status = U_ZERO_ERROR;
  UScriptCode const script = uscript_getScript(character, &status);
  return script != USCRIPT_COMMON && script != USCRIPT_INHERITED;
}

bool MayNeedMarks(std::u16string_view text) {
  // Thai is the first script without blanks.
  for (char16_t const unit : text) {
    if (unit >= 0x0E00) return true;
  }
  return false;
}

}  // namespace

OStringCore InsertBreakHints(OStringCore const& text) {
  return Mark(text, kBreakHint, [](int) { return true; });
}

OStringCore InsertZeroWidthSpaces(OStringCore const& text) {
  std::u16string_view const units = text.view();
  if (!MayNeedMarks(units)) return text;
  return Mark(text, kZeroWidthSpace, [&](int place) {
    UChar32 before = 0;
    UChar32 after = 0;
    int start = place;
    U16_PREV(units.data(), 0, start, before);
    U16_GET(units.data(), 0, place, text.length(), after);
    if (OCType::isSpace(static_cast<char32_t>(before)) || OCType::isSpace(static_cast<char32_t>(after)))
      return false;
    return IsOfScriptWithoutBlanks(before) || IsOfScriptWithoutBlanks(after);
  });
}

}  // namespace ostrel::services
