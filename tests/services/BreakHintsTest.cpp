#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "services/BreakHints.h"

using namespace ostrel::services;

namespace {

// Marks are written as "|".
std::string Show(OStringCore const& text, char16_t mark) {
  std::u16string shown;
  for (char16_t const unit : text.view()) shown += unit == mark ? u'|' : unit;
  return OStringCore(shown).toUtf8();
}

std::string Hints(char const* text) { return Show(InsertBreakHints(OStringCore::fromUtf8(text)), u'\f'); }
std::string Spaces(char const* text) {
  return Show(InsertZeroWidthSpaces(OStringCore::fromUtf8(text)), u'\u200B');
}

struct Row {
  char const* text;
  char const* marked;
};

TEST(BreakHints, StandAfterCharactersAtWhichALineMayEnd) {
  constexpr Row rows[] = {{"", ""},
                          {"word", "word"},
                          {"two words", "two |words"},
                          {"two  words ", "two  |words "},
                          {"well-known", "well-|known"},
                          {"1,234.56 (a)", "1,234.56 |(a)"},
                          {"line\nnext", "line\n|next"},
                          {"no\u00A0break", "no\u00A0break"},
                          {"你好。世界", "你|好。|世|界"},
                          {"ภาษาไทย", "ภาษา|ไทย"},
                          {"👩‍👩‍👧😀", "👩‍👩‍👧|😀"}};
  for (Row const& row : rows) EXPECT_EQ(Hints(row.text), row.marked) << row.text;
}

TEST(BreakHints, LeaveTheTextAsItIsBetweenThem) {
  for (char const* text :
       {"The quick — brown-fox…", "日本語テキスト、ここで。", "สวัสดีชาวโลก and more", "a\xF0\x9F\x98\x80 b"}) {
    OStringCore const original = OStringCore::fromUtf8(text);
    std::u16string stripped;
    OStringCore const marked = InsertBreakHints(original);
    for (char16_t const unit : marked.view()) {
      if (unit != u'\f') stripped += unit;
    }
    EXPECT_EQ(stripped, original.view());
  }
}

TEST(ZeroWidthSpaces, StandBetweenCharactersOfScriptsWithoutBlanks) {
  constexpr Row rows[] = {{"well-known words", "well-known words"},
                          {"Größe – Über", "Größe – Über"},
                          {"안녕 하세요", "안녕 하세요"},
                          {"你好 世界", "你|好 世|界"},
                          {"你好。世界", "你|好。|世|界"},
                          {"ภาษาไทย abc", "ภาษา|ไทย abc"},
                          {"あ\u200Bい", "あ|い"},
                          {"😀😀", "😀😀"},
                          {"x你y", "x|你|y"}};
  for (Row const& row : rows) EXPECT_EQ(Spaces(row.text), row.marked) << row.text;
}

TEST(BreakHintsThreads, GiveTheMarksOfOneThread) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(4);
  for (int& count : wrong) {
    threads.emplace_back([&count] {
      for (int i = 0; i < 500; ++i) {
        std::string const number = std::to_string(i);
        if (Hints(("你" + number + " b").c_str()) != "你|" + number + " |b") ++count;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
