#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "ostrelrtcore/StoreValue.h"
#include "render/TextComposer.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

/// The width in pixels of a text's widest word, which ends at blanks and at U+200B; 0 without words.
double MeasureWidestWord(std::u16string_view text, services::FontRequest const& font,
                         services::TextMeasurer const& measurer);

/// Where a text may stand: a rectangle, or the ellipse that it encloses, in pixels.
struct TextShape {
  double width = 0;
  double height = 0;
  bool isRound = false;
};

struct TextBoxChoice {
  int style = 0;
  double width = 0;
  double height = 0;
};

/// Finds the boxes of texts within their shapes.
class TextBoxFinder {
 public:
  /// Styles by preference, as updateTextStyleTable makes them. A style is tried where its font's size is at
  /// most `share` of the shape's height; the last one always is.
  TextBoxFinder(std::shared_ptr<ort::core::StoreValue> styles, int mostLines, double share,
                services::TextMeasurer const& measurer);

  /// The box of the first style and of the fewest lines in which the whole text has room with no word broken;
  /// else, in the last style, that of the most lines in which all words have room, or of one. Nothing where
  /// not even a line has room, and for an empty text. An ellipse takes the box into it, so that of more lines
  /// each is shorter.
  std::optional<TextBoxChoice> Find(OStringCore const& text, TextShape const& shape);

 private:
  struct Style {
    services::FontRequest font;
    double lineHeight;
    double leading;
  };

  bool IsPlaced(OStringCore const& text, TextBoxChoice const& box);
  double GetHeight(Style const& style, int lines) const;
  double GetWidth(Style const& style, int lines, TextShape const& shape) const;

  std::shared_ptr<ort::core::StoreValue> table_;
  std::vector<Style> styles_;
  int mostLines_;
  double share_;
  services::TextMeasurer const& measurer_;
  std::unique_ptr<runtime::TextComposer> composer_;  // made when a text must wrap
};

}  // namespace ostrel::charts
