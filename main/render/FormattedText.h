#pragma once

#include <cstdint>
#include <vector>

#include "ostrelsys/OStringCore.h"
#include "ostreltransforms/Export.h"

namespace runtime {

// A stretch of text in one style, which is a row of the text style table.
struct TextRun {
  std::uint32_t styleIndex = 0;
  OStringCore text;

  friend bool operator==(TextRun const&, TextRun const&) = default;
};

// A text as styled runs, in reading order. Characters are counted in UTF-16 units.
class OSTREL_API FormattedText {
 public:
  FormattedText() noexcept = default;
  explicit FormattedText(std::vector<TextRun> runs);

  // Throws std::length_error when the whole text would be longer than 2^31-1 units.
  void append(TextRun run);
  void clear() noexcept;
  // One run in place of all; takes over the memory of the first.
  void assign(std::uint32_t styleIndex, OStringCore const& text);

  std::vector<TextRun> const& GetRuns() const noexcept { return runs_; }
  // No runs, or none with a character.
  bool IsEmpty() const noexcept { return count_ == 0; }
  std::uint32_t GetCharacterCount() const noexcept { return count_; }
  // All runs, those without a character too, share one style; also true when there are no runs.
  bool HasSingleStyle() const noexcept { return singleStyle_; }
  // The texts of all runs, one after the other.
  OStringCore GetText() const;

  friend bool operator==(FormattedText const& left, FormattedText const& right) noexcept {
    return left.runs_ == right.runs_;
  }

 private:
  std::vector<TextRun> runs_;
  std::uint32_t count_ = 0;
  bool singleStyle_ = true;
};

}  // namespace runtime
