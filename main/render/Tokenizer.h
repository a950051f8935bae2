#pragma once

#include <cstdint>
#include <memory>

#include "ostreltransforms/Export.h"
#include "render/FormattedText.h"
#include "render/Token.h"

namespace runtime {

// Where a text may be taken apart.
enum BreakMode : std::uint32_t {
  SpacesOnly = 0,        // between words and blanks
  AfterPunctuation = 1,  // also after each punctuation character
  AnyCharacter = 2,      // after each character of a word
};

// Cuts a text into the units that a line takes or leaves as a whole. It is made over one text and may be read
// several times: set the break mode, reset(), then next() until it gives null. One thread's object.
class OSTREL_API Tokenizer {
 public:
  virtual ~Tokenizer();
  // Whether the host's break hints decide on where words may break.
  virtual bool usesBreakHints() const = 0;
  // Back to the first token.
  virtual void reset() = 0;
  virtual bool atEnd() const = 0;
  // The next token, null when there is none.
  virtual std::shared_ptr<Token> next() = 0;

  Tokenizer(Tokenizer const&) = delete;
  Tokenizer& operator=(Tokenizer const&) = delete;

  bool HasSingleStyle() const noexcept { return singleStyle_; }
  std::uint32_t GetBreakMode() const noexcept { return breakMode_; }
  void SetBreakMode(std::uint32_t mode) noexcept { breakMode_ = mode; }
  // Whether there is a space (OCType::isSpace) other than a line end, and whether there is punctuation
  // (OCType::isPunct) anywhere in the text.
  bool HasBlank() const noexcept { return hasBlank_; }
  bool HasPunctuation() const noexcept { return hasPunctuation_; }

 protected:
  explicit Tokenizer(bool singleStyle) noexcept : singleStyle_(singleStyle) {}

  bool singleStyle_;
  std::uint32_t breakMode_ = SpacesOnly;
  bool hasBlank_ = false;
  bool hasPunctuation_ = false;
};

}  // namespace runtime
