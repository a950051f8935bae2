#include "render/ComplexTokenizer.h"

#include <array>

#include "ostrelsys/OCType.h"
#include "ostreltransforms/CallbackAccess.h"

namespace runtime {
namespace {

constexpr char16_t kBreakHint = u'\f';

// Classes of a unit; a word's unit has none of the first two.
constexpr std::uint8_t kBlank = 1;
constexpr std::uint8_t kLineEnd = 2;
constexpr std::uint8_t kPunctuation = 4;

std::uint8_t ClassifyByRule(char16_t unit) {
  if (unit == u'\n' || unit == u'\r') return kLineEnd;
  return static_cast<std::uint8_t>((OCType::isSpace(unit) ? kBlank : 0) |
                                   (OCType::isPunct(unit) ? kPunctuation : 0));
}

std::uint8_t Classify(char16_t unit) {
  constexpr std::size_t ascii = 128;
  static auto const classes = [] {
    std::array<std::uint8_t, ascii> result{};
    for (std::size_t i = 0; i < ascii; ++i) result[i] = ClassifyByRule(static_cast<char16_t>(i));
    return result;
  }();
  return unit < ascii ? classes[unit] : ClassifyByRule(unit);
}

bool IsBlank(char16_t unit) { return (Classify(unit) & kBlank) != 0; }
bool IsLineEnd(char16_t unit) { return unit == u'\n' || unit == u'\r'; }

// A run's text as far as it counts.
std::u16string_view UpToZero(OStringCore const& text) {
  auto const view = text.view();
  return view.substr(0, view.find(u'\0'));
}

}  // namespace

// One allocation for many tokens; it lives as long as any of them.
struct ComplexTokenizer::TokenBlock {
  std::array<Token, 16> tokens;
};

ComplexTokenizer::ComplexTokenizer(FormattedText const& text, bool useBreakHints)
    : Tokenizer(text.HasSingleStyle()), useBreakHints_(useBreakHints) {
  if (!useBreakHints_ || !ReadHinted(text)) ReadPlain(text);
}

ComplexTokenizer::~ComplexTokenizer() = default;

void ComplexTokenizer::reset() {
  cursor_ = 0;
  styleCursor_ = 0;
}

void ComplexTokenizer::ReadPlain(FormattedText const& text) {
  units_.clear();
  styles_.clear();
  hints_.clear();
  hasBlank_ = hasPunctuation_ = false;
  units_.reserve(text.GetCharacterCount());
  for (TextRun const& run : text.GetRuns()) {
    for (char16_t const unit : UpToZero(run.text)) Add(unit);
    EndRun(run.styleIndex);
  }
}

bool ComplexTokenizer::ReadHinted(FormattedText const& text) {
  OStringCore const transformed = OstrelTransforms::TransformString(text.GetText());
  auto const marked = transformed.view();
  std::size_t at = 0;
  for (TextRun const& run : text.GetRuns()) {
    for (char16_t const unit : UpToZero(run.text)) {
      if (at >= marked.size() || marked[at] != unit) return false;
      ++at;
      bool const isMarked = at < marked.size() && marked[at] == kBreakHint;
      if (isMarked) ++at;
      Add(unit);
      // A line ends behind a line end in any case.
      hints_.push_back(IsLineEnd(unit) ? None : isMarked ? SoftBreak : unit == u'-' ? Hyphen : None);
    }
    EndRun(run.styleIndex);
  }
  return true;
}

void ComplexTokenizer::Add(char16_t unit) {
  if (unit == u'\t') unit = u' ';
  units_ += unit;
  auto const kind = Classify(unit);
  hasBlank_ |= (kind & kBlank) != 0;
  hasPunctuation_ |= (kind & kPunctuation) != 0;
}

void ComplexTokenizer::EndRun(std::uint32_t styleIndex) {
  std::size_t const begin = styles_.empty() ? 0 : styles_.back().end;
  if (units_.size() > begin) styles_.push_back({styleIndex, units_.size()});
}

TokenBreak ComplexTokenizer::GetHint(std::size_t position) const {
  return hints_.empty() ? None : hints_[position];
}

std::shared_ptr<Token> ComplexTokenizer::next() {
  if (atEnd()) return nullptr;
  auto const begin = cursor_;
  auto const first = units_[begin];
  bool const isWord = (Classify(first) & (kBlank | kLineEnd)) == 0;
  auto const token = MakeToken();
  token->isWord = isWord ? 1 : 0;
  if (!IsLineEnd(first)) TakeUnits(isWord);
  auto const end = cursor_;
  TokenBreak const hint = GetHint(end > begin ? end - 1 : begin);
  token->breakAfter = hint != None ? hint : TakeLineBreak() ? LineBreak : None;
  if (end > begin) {
    AddSegments(*token, begin, end);
  } else {
    token->segments.push_back({GetStyle(begin), OStringCore(u" ")});
  }
  return token;
}

// Moves the cursor over the units of a token that begins with one of the two kinds.
void ComplexTokenizer::TakeUnits(bool isWord) {
  bool mayEnd = false;
  for (;;) {
    auto const unit = units_[cursor_];
    ++cursor_;
    if (atEnd() || GetHint(cursor_ - 1) != None || IsLineEnd(units_[cursor_])) return;
    auto const nextIsBlank = IsBlank(units_[cursor_]);
    if (breakMode_ == AnyCharacter) {
      mayEnd |= !IsBlank(unit) || nextIsBlank == isWord;
      if (mayEnd && IsClusterEnd(cursor_)) return;
    } else {
      if (nextIsBlank == isWord) return;
      mayEnd |= breakMode_ == AfterPunctuation && (Classify(unit) & kPunctuation) != 0;
      if (mayEnd && IsClusterEnd(cursor_)) return;
    }
  }
}

bool ComplexTokenizer::TakeLineBreak() {
  auto const begin = cursor_;
  if (!atEnd() && units_[cursor_] == u'\r') ++cursor_;
  if (!atEnd() && units_[cursor_] == u'\n') ++cursor_;
  return cursor_ > begin;
}

bool ComplexTokenizer::IsClusterEnd(std::size_t position) {
  // Below, no character but a line end joins a neighbour.
  constexpr char16_t firstMark = 0x0300;
  if (units_[position - 1] < firstMark && units_[position] < firstMark) return true;
  if (clusterBegins_.empty()) {
    clusterBegins_.resize(units_.size() + 1);
    for (int const begin : OCType::clusterBoundaries(OStringCore(units_))) {
      clusterBegins_[static_cast<std::size_t>(begin)] = true;
    }
  }
  return clusterBegins_[position];
}

std::uint32_t ComplexTokenizer::GetStyle(std::size_t position) {
  while (styles_[styleCursor_].end <= position) ++styleCursor_;
  return styles_[styleCursor_].styleIndex;
}

void ComplexTokenizer::AddSegments(Token& token, std::size_t begin, std::size_t end) {
  std::u16string_view const units = units_;
  auto style = GetStyle(begin);
  while (!singleStyle_ && styles_[styleCursor_].end < end) {
    auto const change = styles_[styleCursor_].end;
    auto const following = GetStyle(change);
    if (following == style) continue;
    token.segments.push_back({style, OStringCore(units.substr(begin, change - begin))});
    begin = change;
    style = following;
  }
  token.segments.push_back({style, OStringCore(units.substr(begin, end - begin))});
}

std::shared_ptr<Token> ComplexTokenizer::MakeToken() {
  if (!block_ || blockUsed_ == block_->tokens.size()) {
    block_ = std::make_shared<TokenBlock>();
    blockUsed_ = 0;
  }
  return {block_, &block_->tokens[blockUsed_++]};
}

}  // namespace runtime
