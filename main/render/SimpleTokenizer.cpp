#include "render/SimpleTokenizer.h"

#include <utility>

namespace runtime {

SimpleTokenizer::SimpleTokenizer(FormattedText const& text) : Tokenizer(text.HasSingleStyle()) {
  if (text.IsEmpty()) return;
  auto lines = text.GetText().split(OStringCore(u"\n"));
  if (lines.back().isEmpty()) lines.pop_back();
  tokens_.reserve(lines.size());
  for (OStringCore& line : lines) {
    auto token = std::make_shared<Token>();
    token->isWord = 1;
    token->breakAfter = LineBreak;
    token->segments.push_back({text.GetRuns().front().styleIndex, std::move(line)});
    tokens_.push_back(std::move(token));
  }
}

std::shared_ptr<Token> SimpleTokenizer::next() { return atEnd() ? nullptr : tokens_[cursor_++]; }

}  // namespace runtime
