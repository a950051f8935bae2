#include "render/Composer.h"

#include <algorithm>
#include <optional>

#include "ostrelsys/OCType.h"
#include "ostrelsys/ThrowLogicException.h"
#include "render/ComplexTokenizer.h"
#include "render/LineGatherer.h"
#include "render/SimpleTokenizer.h"
#include "render/TokenPassIterator.h"

namespace runtime {

// One composition. Lines are laid out as if they ran to the right, `along` and `across` them from the corner
// where the pen starts, and turned when all is done.
struct Composer::Layout {
  Size box;         // the box as given; 0 by 0 when it is unbounded
  Size lineBox;     // as the lines see it
  float available;  // for a line between the insets
  std::uint32_t orientation;
  std::uint32_t wrapMode;
  std::uint32_t hAlign;
  std::uint32_t status;

  std::size_t lineCount;
  double alongBegin;
  double alongEnd;
  double bottom;   // of the lines so far
  double leading;  // of the last line

  bool IsUnbounded() const { return box.width == 0; }
};

namespace {

// Calls a function at the scope's end.
template <class Function>
class AtExit {
 public:
  explicit AtExit(Function function) : function_(function) {}
  ~AtExit() { function_(); }
  AtExit(AtExit const&) = delete;
  AtExit& operator=(AtExit const&) = delete;

 private:
  Function function_;
};

Size OrUnbounded(Size const& size) {
  bool const isUnbounded = size.width == 0 || size.height == 0;
  return isUnbounded ? Size{} : size;
}

// The share of a length that stands before the point an alignment names.
double GetShare(std::uint32_t alignment) { return alignment == 1 ? 0.5 : alignment == 2 ? 1.0 : 0.0; }

}  // namespace

Composer::Composer(bool allowFinerBreaks, float tolerance) noexcept
    : allowFinerBreaks_(allowFinerBreaks), tolerance_(tolerance) {}

Composer::~Composer() = default;

void Composer::SetWrapMode(std::uint32_t mode) { wrapMode_ = mode == 3 ? WordWrap : mode; }
void Composer::SetClipHeight(bool clip) { clipHeight_ = clip; }
void Composer::SetClipWidth(bool clip) { clipWidth_ = clip; }

void Composer::SetOrigin(float x, float y) noexcept {
  originX_ = x;
  originY_ = y;
}

void Composer::SetInsets(float left, float right, float extraLeft) noexcept {
  leftInset_ = left;
  rightInset_ = right;
  extraLeft_ = extraLeft;
}

bool Composer::HasPlainBox() const noexcept {
  return originX_ == 0 && originY_ == 0 && leftInset_ == 0 && rightInset_ == 0 && extraLeft_ == 0;
}

std::vector<ComposedTextRun>& Composer::ComposeRuns(FormattedText const& text, Size const& size,
                                                    Composed& result) {
  runs_.clear();
  BeginComposition(text.IsEmpty() ? 0 : text.GetRuns().front().styleIndex);
  AtExit const end([this] {
    tokens_.clear();
    EndComposition();
  });
  Layout layout{};
  layout.box = OrUnbounded(size);
  layout.orientation = GetOrientation();
  layout.lineBox = layout.orientation == 0 ? layout.box : Size{layout.box.height, layout.box.width};
  layout.available = layout.lineBox.width - (leftInset_ + rightInset_);
  layout.wrapMode = layout.IsUnbounded() && wrapMode_ == WordWrap ? NoWrap : wrapMode_;
  layout.hAlign = GetHorizontalAlignment();
  ComposePasses(layout, text);
  Finish(layout, result);
  return runs_;
}

void Composer::ComposePasses(Layout& layout, FormattedText const& text) {
  // Of the two tokenizers one is made, where it takes no memory of its own.
  std::optional<SimpleTokenizer> simple;
  std::optional<ComplexTokenizer> complex;
  bool const isSimple = text.HasSingleStyle() && wrapMode_ != WordWrap;
  Tokenizer& tokenizer = isSimple ? static_cast<Tokenizer&>(simple.emplace(text))
                                  : static_cast<Tokenizer&>(complex.emplace(text, false));
  bool const isShort = text.GetCharacterCount() < TokenPassIterator::kShortTextLimit;
  TokenPassIterator passes(tokenizer, allowFinerBreaks_, isShort);
  while (passes.advance()) {
    ClearLines(layout);
    tokenizer.SetBreakMode(passes.GetBreakMode());
    ReadTokens(tokenizer);
    bool const finerPassFollows = layout.wrapMode == WordWrap && passes.HasNext();
    layout.status = ComposePass(layout, passes.GetBreakMode() == AnyCharacter, finerPassFollows);
    if (layout.status != WidthExceeded || layout.wrapMode != WordWrap) break;
  }
}

void Composer::ReadTokens(Tokenizer& tokenizer) {
  tokens_.clear();
  tokenizer.reset();
  while (auto token = tokenizer.next()) {
    for (TokenSegment& segment : token->segments) {
      segment.measurement = Measure(segment.styleIndex, segment.text);
    }
    tokens_.push_back(std::move(token));
  }
}

void Composer::ClearLines(Layout& layout) {
  runs_.clear();
  layout.lineCount = 0;
  layout.alongBegin = layout.alongEnd = layout.bottom = layout.leading = 0;
}

std::uint32_t Composer::ComposePass(Layout& layout, bool inContext, bool finerPassFollows) {
  LineGatherer gatherer(*this, tokens_, layout.wrapMode, layout.available, inContext);
  // A line that is too wide ends a pass only when there is another; otherwise all lines are placed.
  bool widthExceeded = false;
  while (!gatherer.AtEnd()) {
    if (!gatherer.Gather(0)) {
      if (finerPassFollows) return WidthExceeded;
      widthExceeded = true;
      if (!gatherer.Gather(1)) ThrowLogicException("TextComposer", 921, "!tokens.empty()");
    }
    widthExceeded |= AddLine(layout, gatherer);
    if (widthExceeded && finerPassFollows) return WidthExceeded;
    auto const remaining = static_cast<double>(layout.lineBox.height) - layout.bottom;
    if (clipHeight_ && layout.lineBox.height > 0 && Exceeds(0, remaining)) {
      return widthExceeded ? WidthExceeded : HeightCut;
    }
  }
  return widthExceeded ? WidthExceeded : AllPlaced;
}

// Places the gathered line below the others; true when it does not fit the box' width.
bool Composer::AddLine(Layout& layout, LineGatherer const& gatherer) {
  auto const firstRun = runs_.size();
  AddRuns(gatherer);
  double width = 0;
  LineMetrics metrics{};
  for (auto i = firstRun; i < runs_.size(); ++i) {
    width += runs_[i].width;
    auto const ofRun = GetMetrics(runs_[i].styleIndex);
    metrics.ascent = std::max(metrics.ascent, ofRun.ascent);
    metrics.height = std::max(metrics.height, ofRun.height);
    metrics.leading = std::max(metrics.leading, ofRun.leading);
  }
  bool const exceeds =
      layout.wrapMode == Clip ? gatherer.WasCut() : !layout.IsUnbounded() && Exceeds(width, layout.available);
  if (clipWidth_ && layout.available > 0 && Exceeds(width, layout.available)) {
    width = ClipRuns(firstRun, layout.available);
  }

  double const begin = GetLineBegin(layout, width);
  double const top = layout.lineCount == 0 ? 0 : layout.bottom + layout.leading;
  double const bottom = top + metrics.height;
  double const lineTop = GetVerticalDirection() < 0 ? layout.lineBox.height - bottom : top;
  double along = begin;
  for (auto i = firstRun; i < runs_.size(); ++i) {
    runs_[i].x = static_cast<float>(along);
    runs_[i].y = static_cast<float>(lineTop + metrics.ascent);
    along += runs_[i].width;
  }
  layout.alongBegin = layout.lineCount == 0 ? begin : std::min(layout.alongBegin, begin);
  layout.alongEnd = layout.lineCount == 0 ? along : std::max(layout.alongEnd, along);
  layout.bottom = bottom;
  layout.leading = metrics.leading;
  ++layout.lineCount;
  return exceeds;
}

// Joins neighbours of one style. A run without a character stays only where its line has no other.
void Composer::AddRuns(LineGatherer const& gatherer) {
  auto const firstRun = runs_.size();
  auto const pieces = gatherer.GetPieces();
  for (std::size_t begin = 0, end = 0; begin < pieces.size(); begin = end) {
    TokenSegment const& first = *pieces[begin].segment;
    std::size_t length = 0;
    for (; end < pieces.size() && pieces[end].segment->styleIndex == first.styleIndex; ++end) {
      length += pieces[end].length;
    }
    bool const isOnly = runs_.size() == firstRun && end == pieces.size();
    if (length == 0 && !isOnly) continue;
    ComposedTextRun& run = runs_.emplace_back();
    run.styleIndex = first.styleIndex;
    if (end == begin + 1 && length == static_cast<std::size_t>(first.text.length())) {
      run.text = first.text;
      run.width = static_cast<float>(first.measurement);
      continue;
    }
    std::u16string text;
    text.reserve(length);
    for (LineGatherer::Piece const& piece : pieces.subspan(begin, end - begin)) {
      text += piece.segment->text.view().substr(0, piece.length);
    }
    run.text = OStringCore(std::move(text));
    run.width = length == 0 ? 0 : Measure(run.styleIndex, run.text);
  }
}

// Cuts a line's runs where it ends; the width that is left.
double Composer::ClipRuns(std::size_t firstRun, double available) {
  double width = 0;
  for (auto i = firstRun; i < runs_.size(); ++i) {
    ComposedTextRun& run = runs_[i];
    if (Exceeds(width + run.width, available)) {
      auto const length = FindFittingLength(run.styleIndex, run.text, width, available);
      run.text = run.text.left(static_cast<int>(length));
      run.width = length == 0 ? 0 : Measure(run.styleIndex, run.text);
      runs_.resize(length == 0 ? i : i + 1);
      return width + (length == 0 ? 0 : run.width);
    }
    width += run.width;
  }
  return width;
}

// The most units of a text of which, begun at a place of its line, the width does not exceed the limit; whole
// clusters. The whole text is known to exceed it.
std::size_t Composer::FindFittingLength(std::uint32_t style, OStringCore const& text, double begin,
                                        double limit) {
  auto const fits = [&](int length) { return !Exceeds(begin + Measure(style, text.left(length)), limit); };
  int low = 0;
  int high = text.length();
  // From the front, since of a long text only what fits should be measured.
  for (int step = 16; step < high - low; step *= 2) {
    int const probe = OCType::nextClusterBoundary(text, low + step - 1);
    if (probe >= high) break;
    if (!fits(probe)) {
      high = probe;
      break;
    }
    low = probe;
  }
  for (;;) {
    int middle = OCType::previousClusterBoundary(text, low + (high - low) / 2 + 1);
    if (middle <= low) middle = OCType::nextClusterBoundary(text, low);
    if (middle >= high) return static_cast<std::size_t>(low);
    (fits(middle) ? low : high) = middle;
  }
}

double Composer::GetLineBegin(Layout const& layout, double width) const {
  double const left = leftInset_;
  double const available = layout.available;
  if (!(available > 0)) return layout.hAlign == 0 ? left + extraLeft_ : 0;
  double begin = left;
  if (layout.hAlign == 1) begin = (available - width) * 0.5 + left;
  if (layout.hAlign == 2) begin = layout.lineBox.width - rightInset_ - width;
  return begin > left ? begin : left;
}

void Composer::Finish(Layout const& layout, Composed& result) {
  double const length = layout.alongEnd - layout.alongBegin;
  double const height = layout.bottom;
  bool const isUpward = GetVerticalDirection() < 0;
  double along = 0;
  double across = 0;
  if (layout.IsUnbounded() && layout.wrapMode == NoWrap && layout.lineCount > 0) {
    along = -GetShare(layout.hAlign) * length;
    across = -GetShare(GetVerticalAlignment()) * height + (isUpward ? height : 0);
  }
  // From the corner where the pen starts.
  double const penX = static_cast<double>(originX_) + (layout.orientation == 1 ? layout.box.width - 1 : 0);
  double const penY = static_cast<double>(originY_) + (layout.orientation == 2 ? layout.box.height - 1 : 0);
  for (ComposedTextRun& run : runs_) {
    double const u = run.x + along;
    double const v = run.y + across;
    run.x = static_cast<float>(penX + (layout.orientation == 0 ? u : layout.orientation == 1 ? -v : v));
    run.y = static_cast<float>(penY + (layout.orientation == 0 ? v : layout.orientation == 1 ? u : -u));
  }
  result.status_ = layout.status;
  result.orientation_ = layout.orientation;
  result.lineCount_ = layout.lineCount;
  double const u = layout.alongBegin + along;
  double const v = (isUpward ? layout.lineBox.height - height : 0) + across;
  auto const toRect = [](double x, double y, double w, double h) {
    return Rect{static_cast<float>(x), static_cast<float>(y), static_cast<float>(w), static_cast<float>(h)};
  };
  result.bounds_ = layout.lineCount == 0     ? Rect{}
                   : layout.orientation == 0 ? toRect(penX + u, penY + v, length, height)
                   : layout.orientation == 1 ? toRect(penX - (v + height), penY + u, height, length)
                                             : toRect(penX + v, penY - (u + length), height, length);
}

}  // namespace runtime
