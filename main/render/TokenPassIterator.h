#pragma once

#include <cstdint>

#include "render/Tokenizer.h"

namespace runtime {

// The break modes that are worth trying on a text, from coarse to fine: call advance() before each pass and,
// while it gives true, lay out with GetBreakMode(). Breaking between any two characters is left to short
// texts and to those that have neither blanks nor punctuation.
class OSTREL_API TokenPassIterator {
 public:
  // Texts of fewer characters are short.
  static constexpr std::uint32_t kShortTextLimit = 31;

  // The tokenizer must outlive the iterator.
  TokenPassIterator(Tokenizer const& tokenizer, bool allowFinerBreaks, bool shortText) noexcept
      : tokenizer_(&tokenizer), allowFinerBreaks_(allowFinerBreaks), shortText_(shortText) {}

  bool advance() noexcept;
  std::uint32_t GetBreakMode() const noexcept { return mode_; }
  // What advance() would give now.
  bool HasNext() const noexcept { return TokenPassIterator(*this).advance(); }

 private:
  bool StepToAnyCharacter() noexcept;

  Tokenizer const* tokenizer_;
  bool allowFinerBreaks_;
  bool shortText_;
  bool started_ = false;
  std::uint32_t mode_ = AnyCharacter;
};

}  // namespace runtime
