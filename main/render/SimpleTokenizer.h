#pragma once

#include <cstddef>
#include <vector>

#include "render/Tokenizer.h"

namespace runtime {

// Cuts a text at its line feeds: each line is one word with a line break behind it, in the first run's style.
// An empty last line is dropped, empty lines elsewhere are tokens without a character. Meant for a text of
// one style that is not wrapped; break modes change nothing.
class OSTREL_API SimpleTokenizer final : public Tokenizer {
 public:
  explicit SimpleTokenizer(FormattedText const& text);

  bool usesBreakHints() const override { return false; }
  void reset() override { cursor_ = 0; }
  bool atEnd() const override { return cursor_ == tokens_.size(); }
  std::shared_ptr<Token> next() override;

 private:
  std::vector<std::shared_ptr<Token>> tokens_;
  std::size_t cursor_ = 0;
};

}  // namespace runtime
