#include "render/LineGatherer.h"

#include <string>
#include <utility>

namespace runtime {
namespace {

double GetWidth(Token const& token) {
  double width = 0;
  for (TokenSegment const& segment : token.segments) width += segment.measurement;
  return width;
}

}  // namespace

bool LineGatherer::Gather(int allowance) {
  pieces_.clear();
  tokenCount_ = 0;
  last_ = nullptr;
  width_ = 0;
  wasCut_ = endedHard_ = false;
  stretchFirst_ = contextTests_ = nextContextTest_ = 0;
  stretchBegin_ = 0;
  while (!AtEnd()) {
    Token const& token = *tokens_[next_];
    if (wrapMode_ == WordWrap) {
      if (!WrapNext(token, allowance)) break;
    } else if (wrapMode_ == Clip && available_ > 0) {
      ClipNext(token);
    } else {
      Take(token);
    }
    ++next_;
    endedHard_ = token.breakAfter == LineBreak;
    if (endedHard_) break;
  }
  return tokenCount_ > 0;
}

// Takes or passes over the token; false when the line ends before it.
bool LineGatherer::WrapNext(Token const& token, int& allowance) {
  if (!composer_.Exceeds(width_ + GetWidth(token), available_) || FitsInContext(token)) {
    Take(token);
    return true;
  }
  if (token.isWord == 0) return SkipOrTakeBlank(token, allowance);
  if (allowance < 1) {
    if (tokenCount_ > 1 && last_->isWord == 0) DropLastBlank();
    return false;
  }
  --allowance;
  Take(token);
  return true;
}

// Whether a token fits that alone seemed too wide; corrects the line's width then. The line's end is measured
// only a number of times that grows with the logarithm of its length, whatever the measures are.
bool LineGatherer::FitsInContext(Token const& token) {
  constexpr std::size_t freeTests = 16;
  constexpr std::size_t growth = 8;
  if (!inContext_ || tokenCount_ == 0 || token.segments.size() != 1) return false;
  TokenSegment const& added = token.segments.front();
  if (pieces_.back().segment->styleIndex != added.styleIndex) return false;
  if (contextTests_ >= freeTests && tokenCount_ < nextContextTest_) return false;
  ++contextTests_;
  nextContextTest_ = tokenCount_ + tokenCount_ / growth + 1;
  std::u16string text;
  for (Piece const& piece : GetPieces().subspan(stretchFirst_)) {
    text += piece.segment->text.view().substr(0, piece.length);
  }
  text += added.text.view();
  double const width = stretchBegin_ + composer_.Measure(added.styleIndex, OStringCore(std::move(text)));
  if (composer_.Exceeds(width, available_)) return false;
  width_ = width - added.measurement;
  return true;
}

bool LineGatherer::SkipOrTakeBlank(Token const& token, int allowance) {
  if (token.breakAfter == LineBreak) {
    Take(token, false);
    return true;
  }
  if (allowance < 1 && last_ != nullptr && last_->isWord != 0) {
    ++next_;
    return false;
  }
  Take(token);
  return true;
}

void LineGatherer::ClipNext(Token const& token) {
  if (wasCut_) return;
  if (composer_.Exceeds(width_ + GetWidth(token), available_)) {
    Cut(token);
  } else {
    Take(token);
  }
}

void LineGatherer::Cut(Token const& token) {
  wasCut_ = true;
  double begin = width_;
  for (TokenSegment const& segment : token.segments) {
    auto const length = composer_.Exceeds(begin + segment.measurement, available_)
                            ? composer_.FindFittingLength(segment.styleIndex, segment.text, begin, available_)
                            : static_cast<std::size_t>(segment.text.length());
    pieces_.push_back({&segment, length});
    if (length < static_cast<std::size_t>(segment.text.length())) break;
    begin += segment.measurement;
  }
  width_ = available_;
  last_ = &token;
  ++tokenCount_;
}

// Takes a token, or its styles alone.
void LineGatherer::Take(Token const& token, bool whole) {
  for (TokenSegment const& segment : token.segments) {
    if (!pieces_.empty() && pieces_.back().segment->styleIndex != segment.styleIndex) {
      stretchFirst_ = pieces_.size();
      stretchBegin_ = width_;
    }
    pieces_.push_back({&segment, whole ? static_cast<std::size_t>(segment.text.length()) : 0});
    if (whole) width_ += segment.measurement;
  }
  last_ = &token;
  ++tokenCount_;
}

void LineGatherer::DropLastBlank() {
  pieces_.resize(pieces_.size() - last_->segments.size());
  --tokenCount_;
}

}  // namespace runtime
