#pragma once

#include <map>
#include <string>
#include <tuple>

#include "charts/scene/Scene.h"
#include "charts/writer/SvgStream.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

/// Writes the texts of one document.
class TextWriter {
 public:
  TextWriter(services::TextMeasurer const& fonts, SvgStream& out) : fonts_(fonts), out_(out) {}

  /// ` font-family="..."` for all texts below, which then only name another one.
  void WriteDocumentFamily(TextFont const& font);

  static bool IsDrawn(TextMark const& mark);
  static bool IsSameStyle(TextMark const& left, TextMark const& right);
  void WriteStyle(TextMark const& mark);
  /// The element without what WriteStyle writes, or, `isStyled`, with it.
  void WriteElement(TextMark const& mark, bool isStyled);

 private:
  struct Font {
    std::string families;
    services::FontMetrics metrics;
  };
  Font const& GetFont(TextFont const& font);
  double GetBaselineShift(TextMark const& mark);

  services::TextMeasurer const& fonts_;
  SvgStream& out_;
  std::string documentFamilies_;
  std::map<std::tuple<std::string, double, int, bool>, Font> known_;
};

}  // namespace ostrel::charts
