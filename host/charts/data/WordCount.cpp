#include "charts/data/WordCount.h"

#include <unicode/ubrk.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>

namespace ostrel::charts {
namespace {

struct BreaksCloser {
  void operator()(UBreakIterator* breaks) const noexcept { ubrk_close(breaks); }
};
struct TextCloser {
  void operator()(UText* text) const noexcept { utext_close(text); }
};

void Require(UErrorCode status) {
  if (U_FAILURE(status))
    throw std::runtime_error(std::string("ICU can't find words: ") + u_errorName(status));
}

// Calls `take` with each word of a text.
template <class Take>
void ForEachWord(std::string_view text, Take const& take) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<UText, TextCloser> const source(
      utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status));
  // Always the same locale: that of the machine would make it another picture.
  std::unique_ptr<UBreakIterator, BreaksCloser> const breaks(ubrk_open(UBRK_WORD, "en", nullptr, 0, &status));
  Require(status);
  ubrk_setUText(breaks.get(), source.get(), &status);
  Require(status);
  int32_t start = ubrk_first(breaks.get());
  for (int32_t end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get())) {
    if (ubrk_getRuleStatus(breaks.get()) >= UBRK_WORD_LETTER) {
      take(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    }
    start = end;
  }
}

// The word as it is written, with plain apostrophes and without the possessive ending.
icu::UnicodeString ReadWord(std::string_view written) {
  icu::UnicodeString word =
      icu::UnicodeString::fromUTF8({written.data(), static_cast<int32_t>(written.size())});
  word.findAndReplace(icu::UnicodeString(u'\u2019'), icu::UnicodeString(u'\''));
  if (word.length() > 2 && (word.endsWith(u"'s", 2) || word.endsWith(u"'S", 2)))
    word.truncate(word.length() - 2);
  return word;
}

std::string Fold(icu::UnicodeString word) {
  std::string folded;
  word.foldCase().toUTF8String(folded);
  return folded;
}

// The spellings of one word.
struct Spellings {
  std::unordered_map<std::string, std::int64_t> counts;

  WordCount Summarise(std::string const& folded) const {
    WordCount result;
    std::int64_t most = 0;
    for (auto const& [spelling, count] : counts) {
      result.count += count;
      bool const isPreferred =
          most == count && (spelling == folded || (result.word != folded && spelling < result.word));
      if (count <= most && !isPreferred) continue;
      most = count;
      result.word = spelling;
    }
    return result;
  }
};

}  // namespace

std::vector<WordCount> CountWords(std::string_view text, std::vector<std::string> const& stopWords) {
  std::unordered_set<std::string> passedOver;
  for (std::string const& word : stopWords) passedOver.insert(Fold(ReadWord(word)));
  std::unordered_map<std::string, Spellings> found;
  ForEachWord(text, [&](std::string_view written) {
    icu::UnicodeString const word = ReadWord(written);
    std::string folded = Fold(word);
    if (passedOver.contains(folded)) return;
    std::string spelling;
    word.toUTF8String(spelling);
    ++found[std::move(folded)].counts[std::move(spelling)];
  });
  std::vector<WordCount> words;
  words.reserve(found.size());
  for (auto const& [folded, spellings] : found) words.push_back(spellings.Summarise(folded));
  std::ranges::sort(words, [](WordCount const& a, WordCount const& b) {
    return a.count != b.count ? a.count > b.count : a.word < b.word;
  });
  return words;
}

}  // namespace ostrel::charts
