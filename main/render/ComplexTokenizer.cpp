#include "render/ComplexTokenizer.h"

#include <array>
#include <atomic>

#include "ostrelsys/OCType.h"
#include "ostreltransforms/CallbackAccess.h"

namespace runtime {
namespace {

constexpr char16_t kBreakHint = u'\f';

// Kinds of a unit; a word's unit is neither blank nor line end.
constexpr std::uint8_t kBlank = 1;
constexpr std::uint8_t kLineEnd = 2;
constexpr std::uint8_t kPunctuation = 4;
// What follows it.
constexpr std::uint8_t kHyphen = 8;
constexpr std::uint8_t kSoftBreak = 16;
// The next unit belongs to the same cluster.
constexpr std::uint8_t kJoined = 32;
// Joins no neighbour of this kind, unless it is a line end.
constexpr std::uint8_t kAlone = 64;

// Ideographs and Hangul syllables, which are neither blanks nor punctuation.
constexpr bool IsEastAsianLetter(char16_t unit) {
  return (unit >= 0x4E00 && unit < 0xA000) || (unit >= 0xAC00 && unit < 0xD7A4);
}

std::uint8_t ClassifyByRule(char16_t unit) {
  constexpr char16_t firstMark = 0x0300;
  if (unit == u'\n' || unit == u'\r') return kLineEnd | kAlone;
  return static_cast<std::uint8_t>((OCType::isSpace(unit) ? kBlank : 0) |
                                   (OCType::isPunct(unit) ? kPunctuation : 0) |
                                   (unit < firstMark ? kAlone : 0));
}

constexpr std::size_t kLatin = 256;

std::array<std::uint8_t, kLatin> const& GetLatinKinds() {
  static auto const kinds = [] {
    std::array<std::uint8_t, kLatin> result{};
    for (std::size_t i = 0; i < kLatin; ++i) result[i] = ClassifyByRule(static_cast<char16_t>(i));
    return result;
  }();
  return kinds;
}

// A run's text as far as it counts.
std::u16string_view UpToZero(OStringCore const& text) {
  auto const view = text.view();
  return view.substr(0, view.find(u'\0'));
}

}  // namespace

// One allocation for many tokens; it lives as long as any of them. Small enough for those that allocators
// have at hand: a larger one makes them tidy up what was freed before.
struct ComplexTokenizer::TokenBlock {
  static constexpr std::size_t kBytes = 1000;
  std::array<Token, kBytes / sizeof(Token)> tokens;
};

ComplexTokenizer::ComplexTokenizer(FormattedText const& text, bool useBreakHints)
    : Tokenizer(text.HasSingleStyle()), useBreakHints_(useBreakHints) {
  Read(text);
  if (useBreakHints_ && !ReadHints(text)) {
    for (std::uint8_t& kind : kinds_) kind &= static_cast<std::uint8_t>(~(kHyphen | kSoftBreak));
  }
}

ComplexTokenizer::~ComplexTokenizer() = default;

void ComplexTokenizer::reset() {
  cursor_ = 0;
  styleCursor_ = 0;
}

void ComplexTokenizer::Read(FormattedText const& text) {
  units_.reserve(text.GetCharacterCount());
  kinds_.resize(text.GetCharacterCount());
  auto const& latin = GetLatinKinds();
  std::uint8_t found = 0;
  for (TextRun const& run : text.GetRuns()) {
    auto const begin = units_.size();
    units_ += run.text.view();
    for (auto i = begin; i < units_.size(); ++i) {
      char16_t& unit = units_[i];
      if (unit == u'\0') {
        units_.resize(i);
        break;
      }
      if (unit == u'\t') unit = u' ';
      kinds_[i] = unit < kLatin ? latin[unit] : IsEastAsianLetter(unit) ? kAlone : ClassifyByRule(unit);
      found |= kinds_[i];
    }
    if (units_.size() > begin) styles_.push_back({run.styleIndex, units_.size()});
  }
  kinds_.resize(units_.size());
  hasBlank_ = (found & kBlank) != 0;
  hasPunctuation_ = (found & kPunctuation) != 0;
}

// False when the host gives back another text.
bool ComplexTokenizer::ReadHints(FormattedText const& text) {
  OStringCore const transformed = OstrelTransforms::TransformString(text.GetText());
  auto const marked = transformed.view();
  std::size_t at = 0;
  auto kind = kinds_.begin();
  for (TextRun const& run : text.GetRuns()) {
    for (char16_t const unit : UpToZero(run.text)) {
      if (at >= marked.size() || marked[at] != unit) return false;
      ++at;
      bool const isMarked = at < marked.size() && marked[at] == kBreakHint;
      if (isMarked) ++at;
      // A line ends behind a line end in any case.
      if ((*kind & kLineEnd) == 0) *kind |= isMarked ? kSoftBreak : unit == u'-' ? kHyphen : 0;
      ++kind;
    }
  }
  return true;
}

std::shared_ptr<Token> ComplexTokenizer::next() {
  if (atEnd()) return nullptr;
  auto const begin = cursor_;
  auto const end = FindTokenEnd(begin);
  auto const last = end > begin ? kinds_[end - 1] : kLineEnd;
  Token& token = MakeToken();
  // A space that carries a mark is nothing that a line's end may swallow.
  token.isWord = ((last & kinds_[begin]) & (kBlank | kLineEnd)) == 0 ? 1 : 0;
  token.breakAfter = (last & kSoftBreak) != 0 ? SoftBreak : (last & kHyphen) != 0 ? Hyphen : None;
  cursor_ = end;
  if (token.breakAfter == None && !atEnd() && (kinds_[end] & kLineEnd) != 0) {
    token.breakAfter = LineBreak;
    if (units_[cursor_] == u'\r') ++cursor_;
    if (!atEnd() && units_[cursor_] == u'\n') ++cursor_;
  }
  AddSegments(token, begin, end);
  return {block_, &token};
}

// The position of the first unit that is not the token's; a line end is none of any.
inline std::size_t ComplexTokenizer::FindTokenEnd(std::size_t begin) {
  auto const kind = kinds_[begin] & (kBlank | kLineEnd);
  if ((kind & kLineEnd) != 0) return begin;
  auto end = begin + 1;
  if (breakMode_ == AnyCharacter && kind == 0 && (end == kinds_.size() || IsClusterEnd(end))) return end;
  if (breakMode_ == AfterPunctuation || breakMode_ == AnyCharacter) return FindFinerTokenEnd(begin);
  while (end < kinds_.size() && (kinds_[end] & (kBlank | kLineEnd)) == kind &&
         (kinds_[end - 1] & (kSoftBreak | kHyphen)) == 0) {
    ++end;
  }
  return end;
}

std::size_t ComplexTokenizer::FindFinerTokenEnd(std::size_t begin) {
  bool const isWord = (kinds_[begin] & kBlank) == 0;
  bool mayEnd = false;
  for (auto end = begin + 1;; ++end) {
    auto const last = kinds_[end - 1];
    if (end == kinds_.size() || (last & (kSoftBreak | kHyphen)) != 0) return end;
    if ((kinds_[end] & kLineEnd) != 0) return end;
    bool const nextIsBlank = (kinds_[end] & kBlank) != 0;
    if (breakMode_ == AnyCharacter) {
      mayEnd |= (last & kBlank) == 0 || nextIsBlank == isWord;
    } else {
      if (nextIsBlank == isWord) return end;
      mayEnd |= (last & kPunctuation) != 0;
    }
    if (mayEnd && IsClusterEnd(end)) return end;
  }
}

inline bool ComplexTokenizer::IsClusterEnd(std::size_t position) {
  if ((kinds_[position - 1] & kinds_[position] & kAlone) != 0) return true;
  if (!knowsClusters_) MarkClusters();
  return (kinds_[position - 1] & kJoined) == 0;
}

void ComplexTokenizer::MarkClusters() {
  knowsClusters_ = true;
  std::size_t begin = 0;
  for (int const boundary : OCType::clusterBoundaries(OStringCore(units_))) {
    auto const end = static_cast<std::size_t>(boundary);
    for (auto i = begin; i + 1 < end; ++i) kinds_[i] |= kJoined;
    begin = end;
  }
}

// The text from begin to end, of a line end by itself a space.
inline void ComplexTokenizer::AddSegments(Token& token, std::size_t begin, std::size_t end) {
  std::u16string_view const units = units_;
  while (styles_[styleCursor_].end <= begin) ++styleCursor_;
  auto style = styles_[styleCursor_].styleIndex;
  if (begin == end) {
    token.segments.Add(style, u" ");
    return;
  }
  while (!singleStyle_ && styles_[styleCursor_].end < end) {
    auto const change = styles_[styleCursor_].end;
    auto const following = styles_[++styleCursor_].styleIndex;
    if (following == style) continue;
    token.segments.Add(style, units.substr(begin, change - begin));
    begin = change;
    style = following;
  }
  token.segments.Add(style, units.substr(begin, end - begin));
}

inline Token& ComplexTokenizer::MakeToken() {
  if (!block_ || blockUsed_ == block_->tokens.size()) TakeBlock();
  Token& token = block_->tokens[blockUsed_++];
  token.segments.clear();
  return token;
}

// The same block again when nobody else has a token of it any more.
void ComplexTokenizer::TakeBlock() {
  blockUsed_ = 0;
  if (block_.use_count() != 1) {
    block_ = std::make_shared<TokenBlock>();
  } else {
    // After what other threads did with its tokens.
    std::atomic_thread_fence(std::memory_order_acquire);
  }
}

}  // namespace runtime
