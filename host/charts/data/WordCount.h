#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::charts {

struct WordCount {
  std::string word;
  std::int64_t count = 0;
};

/// How often each word stands in a text (UTF-8), the most frequent first and equally frequent ones by code
/// point. Words are those of Unicode's word boundaries (UAX 29) that have a letter. Letter case, the form of
/// an apostrophe and a possessive 's make no difference; a word is given as it is written most often, and as
/// often in small letters. `stopWords` are passed over.
std::vector<WordCount> CountWords(std::string_view text, std::vector<std::string> const& stopWords);

/// Words of English that tell nothing of what a text is about: articles, pronouns, prepositions,
/// conjunctions, auxiliary verbs and the like.
std::vector<std::string> const& EnglishStopWords();

}  // namespace ostrel::charts
