#include "charts/functions/TextBoxes.h"

#include <algorithm>
#include <cmath>

#include "ostrelrtcore/builtins/Columns.h"
#include "ostrelsys/OCType.h"
#include "ostreltransforms/VisualKey.h"
#include "render/CompositionCache.h"

namespace ostrel::charts {
namespace {

namespace VisualKey = runtime::VisualKey;
using ort::core::builtins::RequireOneLength;
using ort::core::builtins::ThrowError;

bool HasLineEnds(std::u16string_view text) { return text.find_first_of(u"\n\r") != text.npos; }

}  // namespace

double MeasureWidestWord(std::u16string_view text, services::FontRequest const& font,
                         services::TextMeasurer const& measurer) {
  auto const isBlank = [](char16_t unit) { return OCType::isSpace(unit); };
  double widest = 0;
  while (!text.empty()) {
    auto const end = static_cast<std::size_t>(std::ranges::find_if(text, isBlank) - text.begin());
    if (end > 0) widest = std::max(widest, measurer.MeasureTextWidth(text.substr(0, end), font));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return widest;
}

TextBoxFinder::TextBoxFinder(std::shared_ptr<ort::core::StoreValue> styles, int mostLines, double share,
                             services::TextMeasurer const& measurer)
    : table_(std::move(styles)), mostLines_(mostLines), share_(share), measurer_(measurer) {
  auto const& columns = table_->AsNamedValues();
  auto const& fonts = columns.Get(VisualKey::TextFont)->AsTypedArray<ort::core::factory::Value>();
  auto const& heights = columns.Get(VisualKey::FontHeight)->AsTypedArray<double>();
  auto const& leadings = columns.Get(VisualKey::Leading)->AsTypedArray<double>();
  RequireOneLength(heights.GetCount(), fonts.GetCount(), "font_height");
  RequireOneLength(leadings.GetCount(), fonts.GetCount(), "leading");
  for (int row = 0; row < fonts.GetCount(); ++row) {
    if (fonts.GetElement(row) == nullptr || fonts.IsSpecial(row))
      ThrowError(ort::core::OrtError_WrongValueKind, "a style has no font");
    styles_.push_back(
        {services::ReadFont(fonts.GetElement(row)), heights.GetElement(row), leadings.GetElement(row)});
  }
}

double TextBoxFinder::GetHeight(Style const& style, int lines) const {
  return lines * style.lineHeight + (lines - 1) * style.leading;
}

// 0 where so many lines have no room.
double TextBoxFinder::GetWidth(Style const& style, int lines, TextShape const& shape) const {
  double const part = GetHeight(style, lines) / shape.height;
  if (!(part > 0 && part <= 1) || !(shape.width > 0)) return 0;
  return shape.isRound ? shape.width * std::sqrt(1 - part * part) : shape.width;
}

bool TextBoxFinder::IsPlaced(OStringCore const& text, TextBoxChoice const& box) {
  if (composer_ == nullptr) {
    composer_ = std::make_unique<runtime::TextComposer>(table_);
    composer_->SetWrapMode(runtime::WordWrap);
    composer_->SetClipHeight(true);
  }
  runtime::FormattedText formatted;
  formatted.assign(static_cast<std::uint32_t>(box.style), text);
  runtime::CachedComposer const cached(*composer_,
                                       {static_cast<float>(box.width), static_cast<float>(box.height)});
  return cached.Compose(formatted)->GetStatus() == runtime::AllPlaced;
}

std::optional<TextBoxChoice> TextBoxFinder::Find(OStringCore const& text, TextShape const& shape) {
  if (text.isEmpty() || styles_.empty()) return std::nullopt;
  bool const hasLineEnds = HasLineEnds(text.view());
  int const mostLines = std::min(mostLines_, text.length());
  std::optional<TextBoxChoice> rest;
  for (std::size_t i = 0; i < styles_.size(); ++i) {
    Style const& style = styles_[i];
    bool const isLast = i + 1 == styles_.size();
    if (style.font.size > share_ * shape.height && !isLast) continue;
    double const whole = measurer_.MeasureTextWidth(text.view(), style.font);
    std::optional<double> word;
    for (int lines = 1; lines <= mostLines; ++lines) {
      TextBoxChoice const box{static_cast<int>(i), GetWidth(style, lines, shape), GetHeight(style, lines)};
      if (!(box.width > 0)) break;
      if (lines == 1) {
        rest = box;
        if (whole <= box.width && !hasLineEnds) return box;
        if (!hasLineEnds) continue;
      }
      if (!word) word = MeasureWidestWord(text.view(), style.font, measurer_);
      if (*word > box.width) break;
      // A word with the dots behind it must not be broken either.
      if (*word + measurer_.MeasureTextWidth(u"..", style.font) <= box.width) rest = box;
      // A composition is dear, and lines hold no more than their length.
      if (whole > lines * (box.width + *word)) continue;
      if (IsPlaced(text, box)) return box;
    }
  }
  return rest;
}

}  // namespace ostrel::charts
