#pragma once

#include <cstdint>

#include "ostreltransforms/Export.h"
#include "render/FormattedText.h"

namespace runtime {

// The shorter forms of a text, the longest first: trimTo with falling n, shortest, fallback.
//
// Characters are UTF-16 units over the whole text, and what remains of it keeps its styles; a string that is
// added takes the style of the run it joins, and one that replaces the text the style of the first run. What
// a reader takes for one character (a grapheme cluster) is kept whole or dropped whole, so that fewer than n
// units may remain.
//
// This one keeps the beginning: the first n characters, the first one, nothing.
class OSTREL_API Trimmer {
 public:
  virtual ~Trimmer();
  // With n from the text's length on the text unchanged.
  virtual FormattedText trimTo(FormattedText const& text, std::uint32_t n) const;
  virtual FormattedText shortest(FormattedText const& text) const;
  virtual FormattedText fallback(FormattedText const& text) const;
};

// ".." and the last n characters, "." and the last one, ".".
class OSTREL_API LeftDottedTrimmer final : public Trimmer {
 public:
  FormattedText trimTo(FormattedText const& text, std::uint32_t n) const override;
  FormattedText shortest(FormattedText const& text) const override;
  FormattedText fallback(FormattedText const& text) const override;
};

// The first n characters and "..", the first one and ".", ".".
class OSTREL_API RightDottedTrimmer final : public Trimmer {
 public:
  FormattedText trimTo(FormattedText const& text, std::uint32_t n) const override;
  FormattedText shortest(FormattedText const& text) const override;
  FormattedText fallback(FormattedText const& text) const override;
};

// "#" n times, also with n from the text's length on, so that the length of a number can't be told; "#", "#".
class OSTREL_API PoundFillTrimmer final : public Trimmer {
 public:
  FormattedText trimTo(FormattedText const& text, std::uint32_t n) const override;
  FormattedText shortest(FormattedText const& text) const override;
  FormattedText fallback(FormattedText const& text) const override;
};

}  // namespace runtime
