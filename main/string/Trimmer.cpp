#include "string/Trimmer.h"

#include <string>

#include "ostrelsys/OCType.h"

namespace runtime {
namespace {

std::uint32_t GetFirstStyle(FormattedText const& text) {
  return text.GetRuns().empty() ? 0 : text.GetRuns().front().styleIndex;
}

int GetLength(FormattedText const& text) { return static_cast<int>(text.GetCharacterCount()); }

// Calls `visit(whole text)` without copying a text of one run.
template <class Visit>
int WithText(FormattedText const& text, Visit const& visit) {
  return text.GetRuns().size() == 1 ? visit(text.GetRuns().front().text) : visit(text.GetText());
}

// The cluster boundary at a position, or else the last one before it or the first one after.
int GetBoundaryBefore(FormattedText const& text, int position) {
  return WithText(text, [&](OStringCore const& whole) {
    return OCType::isClusterBoundary(whole, position) ? position
                                                      : OCType::previousClusterBoundary(whole, position);
  });
}
int GetBoundaryAfter(FormattedText const& text, int position) {
  return WithText(text, [&](OStringCore const& whole) {
    return OCType::isClusterBoundary(whole, position) ? position
                                                      : OCType::nextClusterBoundary(whole, position);
  });
}

int GetFirstClusterEnd(FormattedText const& text) {
  return WithText(text, [](OStringCore const& whole) { return OCType::nextClusterBoundary(whole, 0); });
}
int GetLastClusterBegin(FormattedText const& text) {
  return WithText(
      text, [](OStringCore const& whole) { return OCType::previousClusterBoundary(whole, whole.length()); });
}

// The characters from `begin` to before `end`, and what is joined to the first and the last of their runs.
FormattedText Cut(FormattedText const& text, int begin, int end, OStringCore const& before,
                  OStringCore const& after) {
  std::vector<TextRun> kept;
  int runBegin = 0;
  for (TextRun const& run : text.GetRuns()) {
    int const runEnd = runBegin + run.text.length();
    int const from = std::max(begin, runBegin);
    int const to = std::min(end, runEnd);
    if (from < to) kept.push_back({run.styleIndex, run.text.mid(from - runBegin, to - from)});
    runBegin = runEnd;
  }
  if (kept.empty()) kept.push_back({GetFirstStyle(text), OStringCore()});
  if (!before.isEmpty()) kept.front().text = before + kept.front().text;
  kept.back().text.append(after);
  return FormattedText(std::move(kept));
}

FormattedText Replace(FormattedText const& text, OStringCore const& replacement) {
  return FormattedText({{GetFirstStyle(text), replacement}});
}

FormattedText KeepBegin(FormattedText const& text, int count, wchar_t const* after) {
  return Cut(text, 0, count, OStringCore(), OStringCore(after));
}
FormattedText KeepEnd(FormattedText const& text, int begin, wchar_t const* before) {
  return Cut(text, begin, GetLength(text), OStringCore(before), OStringCore());
}

FormattedText TrimEnd(FormattedText const& text, std::uint32_t n, wchar_t const* after) {
  if (n >= text.GetCharacterCount()) return text;
  return KeepBegin(text, GetBoundaryBefore(text, static_cast<int>(n)), after);
}

}  // namespace

Trimmer::~Trimmer() = default;

FormattedText Trimmer::trimTo(FormattedText const& text, std::uint32_t n) const {
  return TrimEnd(text, n, L"");
}
FormattedText Trimmer::shortest(FormattedText const& text) const {
  return KeepBegin(text, GetFirstClusterEnd(text), L"");
}
FormattedText Trimmer::fallback(FormattedText const& text) const { return Replace(text, OStringCore()); }

FormattedText LeftDottedTrimmer::trimTo(FormattedText const& text, std::uint32_t n) const {
  if (n >= text.GetCharacterCount()) return text;
  return KeepEnd(text, GetBoundaryAfter(text, GetLength(text) - static_cast<int>(n)), L"..");
}
FormattedText LeftDottedTrimmer::shortest(FormattedText const& text) const {
  return KeepEnd(text, GetLastClusterBegin(text), L".");
}
FormattedText LeftDottedTrimmer::fallback(FormattedText const& text) const {
  return Replace(text, OStringCore(L"."));
}

FormattedText RightDottedTrimmer::trimTo(FormattedText const& text, std::uint32_t n) const {
  return TrimEnd(text, n, L"..");
}
FormattedText RightDottedTrimmer::shortest(FormattedText const& text) const {
  return KeepBegin(text, GetFirstClusterEnd(text), L".");
}
FormattedText RightDottedTrimmer::fallback(FormattedText const& text) const {
  return Replace(text, OStringCore(L"."));
}

FormattedText PoundFillTrimmer::trimTo(FormattedText const& text, std::uint32_t n) const {
  return Replace(text, OStringCore(std::u16string(n, u'#')));
}
FormattedText PoundFillTrimmer::shortest(FormattedText const& text) const {
  return Replace(text, OStringCore(L"#"));
}
FormattedText PoundFillTrimmer::fallback(FormattedText const& text) const {
  return Replace(text, OStringCore(L"#"));
}

}  // namespace runtime
