#pragma once

#include <string>
#include <vector>

#include "TestValues.h"
#include "ostreltransforms/Callbacks.h"
#include "render/FormattedText.h"

// Short forms of styled texts, style tables and measuring for the tests of text layout.
namespace Texts {

using runtime::FormattedText;

inline OStringCore Utf8(std::string const& text) { return OStringCore::fromUtf8(text); }

// "0:ab|1:c" is "ab" in style 0 and "c" in style 1; a text without a number in front is one run in style 0.
inline FormattedText Make(std::string const& notation) {
  FormattedText text;
  bool const isStyled = notation.size() > 1 && notation[0] >= '0' && notation[0] <= '9' && notation[1] == ':';
  if (!isStyled) {
    if (!notation.empty()) text.append({0, Utf8(notation)});
    return text;
  }
  std::size_t begin = 0;
  while (begin < notation.size()) {
    auto const end = std::min(notation.find('|', begin), notation.size());
    text.append({static_cast<std::uint32_t>(notation[begin] - '0'),
                 Utf8(notation.substr(begin + 2, end - begin - 2))});
    begin = end + 1;
  }
  return text;
}

// What a row of a text style table says about layout.
struct Style {
  int orientation = 0;
  int hAlign = 0;
  int vAlign = 0;
  double height = 10;
  double ascent = 8;
  double leading = 0;
};

// The table of these styles; a style's font is a tuple of its row number.
inline TestValues::Value MakeTable(std::vector<Style> const& styles,
                                   std::vector<std::string> const& without = {}) {
  using namespace TestValues;
  std::vector<Value> fonts;
  std::vector<int> orientations, hAligns, vAligns;
  std::vector<double> heights, ascents, leadings;
  for (Style const& style : styles) {
    fonts.push_back(Tuple({I32(static_cast<int>(fonts.size()))}));
    orientations.push_back(style.orientation);
    hAligns.push_back(style.hAlign);
    vAligns.push_back(style.vAlign);
    heights.push_back(style.height);
    ascents.push_back(style.ascent);
    leadings.push_back(style.leading);
  }
  std::unordered_map<OStringCore, Value> columns{
      {Utf8("text_font"), Tuples(fonts)},    {Utf8("text_orientation"), Ints(orientations)},
      {Utf8("hAlign"), Ints(hAligns)},       {Utf8("vAlign"), Ints(vAligns)},
      {Utf8("font_height"), Reals(heights)}, {Utf8("ascent"), Reals(ascents)},
      {Utf8("leading"), Reals(leadings)}};
  for (std::string const& name : without) columns.erase(Utf8(name));
  return factory::MakeTable(columns);
}

// While it lives, every unit is 10 wide in every font.
inline OstrelTransforms::TestCallbackScope MeasureByCounting() {
  return OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [](OStringCore const& text, TestValues::Value const&) {
        return 10 * static_cast<float>(text.length());
      });
}

}  // namespace Texts
