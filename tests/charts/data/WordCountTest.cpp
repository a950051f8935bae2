#include <gtest/gtest.h>

#include "charts/data/WordCount.h"

namespace ostrel::charts {
namespace {

std::string Describe(std::vector<WordCount> const& words) {
  std::string text;
  for (WordCount const& word : words)
    text += (text.empty() ? "" : "|") + word.word + " " + std::to_string(word.count);
  return text;
}

TEST(WordCountTest, CountsWordsInWhateverSpelling) {
  struct Case {
    char const* text;
    std::vector<std::string> stopWords;
    char const* words;
  };
  Case const cases[] = {
      {"", {}, ""},
      {" .-! 12 3.5 \n", {}, ""},
      {"b a, b.\nc\tB", {}, "b 3|a 1|c 1"},
      // The most frequent spelling, else the one in small letters, else the first by code point.
      {"Peace peace PEACE Peace", {}, "Peace 4"},
      {"Gold gold GOLD", {}, "gold 3"},
      {"GOLD Gold", {}, "GOLD 2"},
      // Apostrophes and possessives; half-way words.
      {"Nation's nation\u2019s NATION'S nation", {}, "nation 4"},
      {"don't don\u2019t ''don't''", {}, "don't 3"},
      {"far-off well-known", {}, "far 1|known 1|off 1|well 1"},
      // Other scripts: folding, combining marks, words without blanks between them.
      {"STRASSE stra\u00dfe \u0394\u0388\u039b\u03a4\u0391 \u03b4\u03ad\u03bb\u03c4\u03b1",
       {},
       "STRASSE 2|\u03b4\u03ad\u03bb\u03c4\u03b1 2"},
      {"\u0639\u0644\u0645 \u0639\u0644\u0645", {}, "\u0639\u0644\u0645 2"},
      {"the end of The Road", {"THE", "of"}, "Road 1|end 1"},
      {"it's It\u2019s its", {"it's"}, "its 1"},
      {"The cat didn\u2019t sit; they won't", EnglishStopWords(), "cat 1|sit 1"},
  };
  for (auto const& [text, stopWords, words] : cases) EXPECT_EQ(Describe(CountWords(text, stopWords)), words);
}

}  // namespace
}  // namespace ostrel::charts
