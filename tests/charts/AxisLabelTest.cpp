#include <fmt/format.h>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

// Two values side by side have 44 of 50 pixels each, 4 characters; a line is 10 pixels high and 2 apart.
TEST(AxisLabels, WrapAndTurnAndAreShortenedByOneRule) {
  struct Case {
    char const* rows;  // with _ for a blank
    char const* axis;
    char const* onX;  // the lines of all labels, and their angle
    char const* onY;
  };
  Case const cases[] = {
      {R"("aaaa"|"b")", "", "aaaa|b@0", "aaaa|b@0"},
      // Wrapped where all words fit, to three lines at most.
      {R"("aa_bb"|"b")", "", "aa|bb|b@0", "aa bb|b@0"},
      {R"("aa_bb_cc"|"b")", "", "aa|bb|cc|b@0", "aa bb cc|b@0"},
      {R"("aa_bb_cc_dd"|"b")", "", "aa bb cc dd|b@-90", "aa bb cc dd|b@0"},
      {R"("aaaaa"|"b")", "", "aaaaa|b@-90", "aaaaa|b@0"},
      {R"("aaaaa_bb_cc_dd_ee"|"b")", R"("labelLimit":0)", "aaaaa bb cc dd ee|b@-90", "aaaaa bb cc dd ee|b@0"},
      // The limit is that of a line; a step has room for three.
      {R"("aa_bb_cc"|"b")", R"("labelLimit":50)", "aa|bb|cc|b@0", "aa bb|cc|b@0"},
      {R"("aaaaa_bb_cc_dd_ee"|"b")", R"("labelLimit":50)", "aaaaa|bb cc|dd ee|b@-90",
       "aaaaa|bb cc|dd ee|b@0"},
      {R"("aaaaa_bb_cc_dd_ee_ff"|"b")", R"("labelLimit":50)", "aaaaa|bb cc|dd ..|b@-90",
       "aaaaa|bb cc|dd ..|b@0"},
      // Words are shortened rather than broken, beside labels that wrap.
      {R"("aaaaaaa_b"|"b_ccc")", R"("labelAngle":0)", "b|ccc|aa..@0", "aaaaaaa b|b ccc@0"},
      {R"("aaaaaaa_b"|"b_ccc")", R"("labelLimit":40)", "b|ccc|aa..@0", "b|ccc|aa..@0"},
      {R"("aaaaaaa_b"|"b_ccc")", R"("labelAngle":90)", "aaaaaaa b|b ccc@90", "b|ccc|aa..@90"},
      {R"("aaaaaaa_b"|"b_ccc")", R"("labelAngle":-45,"labelLimit":60)", "aaaa..|b ccc@-45", "aaaa..@-45"},
      // A line in scripts without blanks ends between words.
      {R"("英領インド"|"b")", "", "b|英\u200B領|イ\u200Bン|ド@0", "b|英領インド@0"},
      {R"("a"|"b"|"c"|"d"|"e"|"f"|"g"|"h"|"i"|"j"|"k")", "", "a|c|e|g|i|k@-90", "a|c|e|g|i|k@0"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string rows;
    for (char const* at = c.rows; *at != 0; ++at) rows += *at == '_' ? "\\u0020" : std::string(1, *at);
    for (char const* const axis : {"x", "y"}) {
      std::string const document = MakeDocument(
          "\"point\"", rows,
          fmt::format(R"("{}":{{"field":"f0","type":"nominal","title":null,"axis":{{{}}}}})", axis, c.axis));
      Scene const scene = drawing.Draw(document).scene;
      auto const role = std::string("axis ") + axis;
      auto const labels = FindMarks<TextMark>(scene, role);
      ASSERT_FALSE(labels.empty()) << document;
      EXPECT_EQ(fmt::format("{}@{}", ReadTexts(scene, role), labels.front()->angle),
                *axis == 'x' ? c.onX : c.onY)
          << document;
    }
  }
}

// An interval's ends stay together.
TEST(AxisLabels, OfBinsAreTurnedRatherThanWrapped) {
  struct Case {
    char const* axis;
    double width;
    char const* labels;
    double angle;
  };
  Case const cases[] = {{"", 400, "0 \u2013 2|2 \u2013 4", 0},
                        {"", 80, "0 \u2013 2|2 \u2013 4", -90},
                        {R"("labelAngle":0)", 80, "0 \u2013 2", 0}};
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const document = fmt::format(
        R"({{"width":{},"data":{{"values":[{{"a":1}},{{"a":3}}]}},"mark":"bar","encoding":{{"x":{{"field":"a",)"
        R"("type":"ordinal","bin":{{"step":2}},"title":null,"axis":{{{}}}}}}}}})",
        c.width, c.axis);
    Scene const scene = drawing.Draw(document).scene;
    EXPECT_EQ(ReadTexts(scene, "axis x"), c.labels) << document;
    EXPECT_EQ(FindMarks<TextMark>(scene, "axis x").at(0)->angle, c.angle) << document;
  }
}

}  // namespace
}  // namespace ostrel::charts
