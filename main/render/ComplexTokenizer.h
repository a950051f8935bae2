#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "render/Tokenizer.h"

namespace runtime {

// Cuts a text at its blanks and line ends and, by break mode, also after punctuation or after every
// character. A tab becomes a space; of each run, what follows a zero unit is passed over. Line feed, carriage
// return and both together are one line break each, and one by itself is a token of one space. What a reader
// takes for one character (an extended grapheme cluster, Unicode Standard Annex 29) is cut neither after its
// punctuation nor between its characters.
//
// With break hints, the text is shown to the host's string transformer, which is to give it back with a
// U+000C behind each character that a line may end with; a text that comes back changed otherwise is cut as
// without hints. Throws what the transformer throws, std::bad_function_call when there is none.
class OSTREL_API ComplexTokenizer final : public Tokenizer {
 public:
  ComplexTokenizer(FormattedText const& text, bool useBreakHints);
  ~ComplexTokenizer() override;

  bool usesBreakHints() const override { return useBreakHints_; }
  void reset() override;
  bool atEnd() const override { return cursor_ == units_.size(); }
  std::shared_ptr<Token> next() override;

 private:
  // Units up to `end` have the style; runs without a character have none.
  struct StyleRange {
    std::uint32_t styleIndex;
    std::size_t end;
  };
  struct TokenBlock;

  void Read(FormattedText const& text);
  bool ReadHints(FormattedText const& text);
  std::size_t FindTokenEnd(std::size_t begin);
  std::size_t FindFinerTokenEnd(std::size_t begin);
  bool IsClusterEnd(std::size_t position);
  void MarkClusters();
  void AddSegments(Token& token, std::size_t begin, std::size_t end);
  Token& MakeToken();
  void TakeBlock();

  bool useBreakHints_;
  std::u16string units_;
  // What each unit is to a tokenizer, and what follows it.
  std::vector<std::uint8_t> kinds_;
  std::vector<StyleRange> styles_;
  bool knowsClusters_ = false;
  std::size_t cursor_ = 0;
  std::size_t styleCursor_ = 0;
  // Tokens are made many at a time.
  std::shared_ptr<TokenBlock> block_;
  std::size_t blockUsed_ = 0;
};

}  // namespace runtime
