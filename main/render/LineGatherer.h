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

  // The wrap mode is the one in force. Composer and tokens must outlive the gatherer.
  LineGatherer(Composer& composer, std::span<std::shared_ptr<Token> const> tokens, std::uint32_t wrapMode,
               float available) noexcept
      : composer_(composer), tokens_(tokens), wrapMode_(wrapMode), available_(available) {}

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
  std::size_t next_ = 0;

  // Of the line.
  std::vector<Piece> pieces_;
  std::size_t tokenCount_ = 0;
  Token const* last_ = nullptr;
  double width_ = 0;
  bool wasCut_ = false;
  bool endedHard_ = false;
};

}  // namespace runtime
