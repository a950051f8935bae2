#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "ostrelsys/OStringCore.h"
#include "ostreltransforms/Export.h"

namespace runtime {

// What follows a token.
enum TokenBreak : std::uint32_t {
  None = 0,       // the token just ends
  Hyphen = 1,     // it ends in a hyphen, in a text with break hints
  SoftBreak = 2,  // a break hint
  LineBreak = 3,  // a line feed, a carriage return or both: the line ends here
};

// A stretch of a token in one style.
struct TokenSegment {
  std::uint32_t styleIndex = 0;
  OStringCore text;
  // For whoever lays the token out: the segment's width.
  double measurement = 0;
};

// The segments of a token in their order. Nearly every token has one, which takes no memory of its own.
class OSTREL_API TokenSegments {
 public:
  void push_back(TokenSegment&& segment) {
    if (hasFirst_) return Grow(std::move(segment));
    first_ = std::move(segment);
    hasFirst_ = true;
  }
  // A segment that is not measured yet.
  void Add(std::uint32_t styleIndex, std::u16string_view text) {
    if (hasFirst_) return Grow({styleIndex, OStringCore(text)});
    first_.styleIndex = styleIndex;
    first_.text.clear();
    first_.text.append(text);
    first_.measurement = 0;
    hasFirst_ = true;
  }

  void clear() noexcept {
    more_.clear();
    hasFirst_ = false;
  }

  std::size_t size() const noexcept { return more_.empty() ? (hasFirst_ ? 1 : 0) : more_.size(); }
  bool empty() const noexcept { return size() == 0; }
  TokenSegment* begin() noexcept { return more_.empty() ? &first_ : more_.data(); }
  TokenSegment* end() noexcept { return begin() + size(); }
  TokenSegment const* begin() const noexcept { return more_.empty() ? &first_ : more_.data(); }
  TokenSegment const* end() const noexcept { return begin() + size(); }
  TokenSegment& operator[](std::size_t position) noexcept { return begin()[position]; }
  TokenSegment const& operator[](std::size_t position) const noexcept { return begin()[position]; }
  TokenSegment& front() noexcept { return *begin(); }
  TokenSegment const& front() const noexcept { return *begin(); }
  TokenSegment& back() noexcept { return begin()[size() - 1]; }
  TokenSegment const& back() const noexcept { return begin()[size() - 1]; }

 private:
  void Grow(TokenSegment&& segment);

  // From the second segment on, all of them stand in more_.
  TokenSegment first_;
  std::vector<TokenSegment> more_;
  bool hasFirst_ = false;
};

// What a line takes or leaves as a whole.
struct Token {
  // 1 for a word, whose first character is neither a blank nor a line end; 0 for a stretch of blanks or a
  // line end by itself. A space with a combining mark on it counts as a word where it is one token with it.
  std::uint32_t isWord = 0;
  TokenBreak breakAfter = None;
  TokenSegments segments;
};

}  // namespace runtime
