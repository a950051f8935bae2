#include "string/InternalTrim.h"

#include <utility>

#include "ostrelsys/ThrowLogicException.h"

namespace runtime {
namespace {

// The longest form that fits, if longer forms never fit where shorter ones don't.
void SearchLongest(FormattedText const& text, RectFitTest const& test, Trimmer const& trimmer,
                   FormattedText& out) {
  // In 64 bits, so that neither the sum nor the step below 1 wraps.
  std::int64_t low = 1;
  std::int64_t high = text.GetCharacterCount();
  std::int64_t middle = 0;
  bool hasFailed = true;
  while (low <= high) {
    middle = (low + high) / 2;
    hasFailed = !test.fits(trimmer.trimTo(text, static_cast<std::uint32_t>(middle)));
    if (hasFailed) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  std::int64_t const longest = hasFailed ? middle - 1 : middle;
  if (longest >= 1) {
    out = trimmer.trimTo(text, static_cast<std::uint32_t>(longest));
    return;
  }
  for (auto const shorten : {&Trimmer::shortest, &Trimmer::fallback}) {
    FormattedText trimmed = (trimmer.*shorten)(text);
    if (test.fits(trimmed)) {
      out = std::move(trimmed);
      return;
    }
  }
}

bool NeedsTest(TextFitStyle style) { return style != Overflow && style <= PoundFill; }

}  // namespace

void ShortenToFit(FormattedText const& text, RectFitTest const& test, TextFitStyle style,
                  FormattedText& out) {
  out.clear();
  switch (style) {
    case Overflow:
      out = text;
      return;
    case HideIfOverflow:
      return;
    case Truncate:
    case TruncateAlso:
      return SearchLongest(text, test, Trimmer(), out);
    case DotsLeft:
      return SearchLongest(text, test, LeftDottedTrimmer(), out);
    case DotsRight:
      return SearchLongest(text, test, RightDottedTrimmer(), out);
    case PoundFill:
      return SearchLongest(text, test, PoundFillTrimmer(), out);
  }
  ThrowLogicException("InternalTrim", 122, "0");
}

void InternalTrim(FormattedText text, TextComposer& composer, Size& size, TextFitStyle style,
                  FormattedText& out) {
  out.clear();
  RectFitTest const test(composer, size);
  if (NeedsTest(style) && test.fits(text)) {
    out = std::move(text);
    return;
  }
  ShortenToFit(text, test, style, out);
}

}  // namespace runtime
