#include "charts/writer/SvgTexts.h"

#include <algorithm>
#include <cmath>

#include "charts/writer/SvgPaint.h"
#include "charts/writer/SvgShapes.h"

namespace ostrel::charts {

namespace {

TextAnchor GetLogicalAnchor(TextMark const& mark) {
  // SVG's start is where reading starts.
  if (!mark.isRightToLeft || mark.anchor == TextAnchor::Middle) return mark.anchor;
  return mark.anchor == TextAnchor::Start ? TextAnchor::End : TextAnchor::Start;
}

/// Line ends and tabs as the blanks that SVG makes of them.
std::string ToOneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char byte) { return byte == '\t' || byte == '\n' || byte == '\r'; }, ' ');
  return text;
}

/// Whether a reader that collapses blanks would change the text. Break hints, which are dropped, may stand
/// between two blanks.
bool HasLooseBlanks(std::string const& text) {
  return text.front() == ' ' || text.back() == ' ' || text.find("  ") != std::string::npos ||
         text.find(" \xE2\x80\x8B") != std::string::npos || text.find("\xE2\x80\x8B ") != std::string::npos;
}

}  // namespace

TextWriter::Font const& TextWriter::GetFont(TextFont const& font) {
  auto const [entry, isNew] = known_.try_emplace({font.family, font.size, font.weight, font.isItalic});
  if (isNew) {
    services::FontRequest const request{OStringCore::fromUtf8(font.family), font.size, font.weight,
                                        font.isItalic ? 1 : 0};
    entry->second = {fonts_.GetCssFontFamilyList(request.family), fonts_.GetMetrics(request)};
  }
  return entry->second;
}

void TextWriter::WriteDocumentFamily(TextFont const& font) {
  documentFamilies_ = GetFont(font).families;
  out_ << " font-family=\"" << Escaped{documentFamilies_} << "\" text-rendering=\"geometricPrecision\"";
}

bool TextWriter::IsDrawn(TextMark const& mark) {
  return !mark.text.empty() && IsFinite(mark.at) && std::isfinite(mark.angle) &&
         std::isfinite(mark.font.size) && mark.font.size > 0 && mark.color.GetA() != 0;
}

bool TextWriter::IsSameStyle(TextMark const& left, TextMark const& right) {
  return left.font.family == right.font.family && left.font.size == right.font.size &&
         left.font.weight == right.font.weight && left.font.isItalic == right.font.isItalic &&
         left.color == right.color && GetLogicalAnchor(left) == GetLogicalAnchor(right);
}

void TextWriter::WriteStyle(TextMark const& mark) {
  std::string const& families = GetFont(mark.font).families;
  if (families != documentFamilies_) out_ << " font-family=\"" << Escaped{families} << "\"";
  out_ << " font-size=\"" << mark.font.size << "\"";
  if (mark.font.weight != 400) out_ << " font-weight=\"" << mark.font.weight << "\"";
  if (mark.font.isItalic) out_ << " font-style=\"italic\"";
  WriteFill(mark.color, out_);
  TextAnchor const anchor = GetLogicalAnchor(mark);
  if (anchor == TextAnchor::Middle) out_ << " text-anchor=\"middle\"";
  if (anchor == TextAnchor::End) out_ << " text-anchor=\"end\"";
}

double TextWriter::GetBaselineShift(TextMark const& mark) {
  services::FontMetrics const& metrics = GetFont(mark.font).metrics;
  switch (mark.baseline) {
    case TextBaseline::Alphabetic:
      return 0;
    case TextBaseline::Top:
      return metrics.ascent;
    case TextBaseline::Middle:
      return metrics.ascent - metrics.height / 2;
    case TextBaseline::Bottom:
      return metrics.ascent - metrics.height;
  }
  return 0;
}

void TextWriter::WriteElement(TextMark const& mark, bool isStyled) {
  double const shift = GetBaselineShift(mark);
  out_ << "<text";
  if (isStyled) WriteStyle(mark);
  if (mark.angle == 0) {
    out_ << " x=\"" << mark.at.x << "\" y=\"" << mark.at.y + shift << "\"";
  } else {
    out_ << " transform=\"translate(" << mark.at.x << "," << mark.at.y << ")rotate(" << mark.angle << ")\"";
    if (shift != 0) out_ << " y=\"" << shift << "\"";
  }
  if (mark.isRightToLeft) out_ << " direction=\"rtl\" unicode-bidi=\"embed\"";
  std::string const text = ToOneLine(mark.text);
  if (HasLooseBlanks(text)) out_ << " xml:space=\"preserve\"";
  out_ << ">";
  if (!mark.tooltip.empty()) out_ << "<title>" << Escaped{mark.tooltip} << "</title>";
  out_ << Escaped{text} << "</text>\n";
}

}  // namespace ostrel::charts
