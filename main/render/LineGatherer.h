#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "render/Composer.h"
#include "render/Token.h"

namespace runtime {

// Takes the tokens of one line after the other.
class LineGatherer {
 public:
  // A segment, or as many of its first units as the line takes.
  struct Piece {
    TokenSegment const* segment;
    std::size_t length;
  };

  // The wrap mode is the one in force. With `inContext`, tokens are parts of words: letters that join or kern
  // are wider one by one than together, so where they seem not to fit they are measured as they would stand.
  // Composer and tokens must outlive the gatherer.
  LineGatherer(Composer& composer, std::span<std::shared_ptr<Token> const> tokens, std::uint32_t wrapMode,
               float available, bool inContext) noexcept
      : composer_(composer),
        tokens_(tokens),
        wrapMode_(wrapMode),
        available_(available),
        inContext_(inContext) {}

  bool AtEnd() const noexcept { return next_ == tokens_.size(); }

  // Takes the next line; there must be tokens left. With word wrap, as many words as the allowance says may
  // be taken though they do not fit. False when the line would have no token.
  bool Gather(int allowance);

  std::span<Piece const> GetPieces() const noexcept { return pieces_; }
  // Whether a token was cut or dropped.
  bool WasCut() const noexcept { return wasCut_; }
  // Whether tokens remain and the line does not end at a line break.
  bool EndedSoftly() const noexcept { return !AtEnd() && !endedHard_; }

 private:
  bool FitsInContext(Token const& token);
  bool WrapNext(Token const& token, int& allowance);
  bool SkipOrTakeBlank(Token const& token, int allowance);
  void ClipNext(Token const& token);
  void Cut(Token const& token);
  void Take(Token const& token, bool whole = true);
  void DropLastBlank();

  Composer& composer_;
  std::span<std::shared_ptr<Token> const> tokens_;
  std::uint32_t wrapMode_;
  float available_;
  bool inContext_;
  std::size_t next_ = 0;

  // Of the line.
  std::vector<Piece> pieces_;
  std::size_t tokenCount_ = 0;
  Token const* last_ = nullptr;
  double width_ = 0;
  bool wasCut_ = false;
  bool endedHard_ = false;
  // The pieces at its end that are of one style, and the width before them.
  std::size_t stretchFirst_ = 0;
  double stretchBegin_ = 0;
  std::size_t contextTests_ = 0;
  std::size_t nextContextTest_ = 0;
};

}  // namespace runtime
