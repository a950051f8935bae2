#include <fmt/format.h>

#include <cmath>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

/// "0,100 50,50": the symbols' places, rounded to whole pixels.
std::string DescribeSymbols(Scene const& scene) {
  std::string text;
  for (SymbolMarks const* marks : FindMarks<SymbolMarks>(scene, "marks")) {
    auto const& x = marks->x->AsTypedArray<double>();
    auto const& y = marks->y->AsTypedArray<double>();
    for (int row = 0; row < x.GetCount(); ++row) {
      text += fmt::format("{}{:.0f},{:.0f}", text.empty() ? "" : " ", x.GetElement(row) + 0.0,
                          y.GetElement(row) + 0.0);
    }
  }
  return text;
}

/// "0,100 50,50 / 0,0": the lines' points; "-" where one breaks.
std::string DescribeLines(Scene const& scene) {
  std::string text;
  for (LineMark const* line : FindMarks<LineMark>(scene, "marks")) {
    if (!text.empty()) text += " /";
    for (Point const& point : line->points) {
      if (!text.empty()) text += ' ';
      text += std::isnan(point.x) ? "-" : fmt::format("{:.0f},{:.0f}", point.x, point.y);
    }
  }
  return text;
}

std::string const kX = R"("x":{"field":"f0","type":"quantitative")";
std::string const kY = R"("y":{"field":"f1","type":"quantitative"})";
std::string const kNominalX = R"("x":{"field":"f0","type":"nominal")";

TEST(ChartPlan, PlacesSymbolsByTheScalesOfTheirChannels) {
  struct Case {
    char const* rows;
    std::string encoding;
    char const* expected;
  };
  Case const cases[] = {
      // Ends, zero and rounding of domains.
      {"0 0|5 5|10 10", kX + "}," + kY, "0,100 50,50 100,0"},
      {"5 0|10 1", kX + R"(,"scale":{"zero":false}},)" + kY, "0,100 100,0"},
      {"5 0|10 1", kX + "}," + kY, "50,100 100,0"},
      {"0 0|9.7 1", kX + R"(,"scale":{"nice":false}},)" + kY, "0,100 100,0"},
      {"2 0|9 1", kX + R"(,"scale":{"domain":[1,9.7],"nice":true}},)" + kY, "11,100 89,0"},
      {"2 0|8 1", kX + R"(,"scale":{"domain":[4,8],"zero":true}},)" + kY, "25,100 100,0"},
      // Directions.
      {"0 0|10 1", kX + R"(,"scale":{"reverse":true}},)" + kY, "100,100 0,0"},
      {"0 0|10 1", kX + R"(,"sort":"descending"},)" + kY, "100,100 0,0"},
      {"0 0|10 1", kX + R"(,"scale":{"domain":[10,0]}},)" + kY, "100,100 0,0"},
      {"0 0|10 1", kX + R"(,"scale":{"domain":[10,0],"reverse":true}},)" + kY, "0,100 100,0"},
      {"1 0|100 1", kX + R"(,"scale":{"type":"log","domain":[100,1]}},)" + kY, "100,100 0,0"},
      // Scale types.
      {"1 0|10 1|100 1", kX + R"(,"scale":{"type":"log"}},)" + kY, "0,100 50,0 100,0"},
      {"0 0|4 1|16 1", kX + R"(,"scale":{"type":"sqrt","nice":false}},)" + kY, "0,100 50,0 100,0"},
      {"-16 0|0 1|16 1", kX + R"(,"scale":{"type":"sqrt","nice":false}},)" + kY, "0,100 50,0 100,0"},
      // One value alone.
      {"7 0|7 1", kX + R"(,"scale":{"zero":false}},)" + kY, "50,100 50,0"},
      {"0 0|0 1", kX + "}," + kY, "50,100 50,0"},
      {"0 0|0 1", kX + R"(,"scale":{"type":"sqrt"}},)" + kY, "50,100 50,0"},
      {"10 0|10 1", kX + R"(,"scale":{"type":"log"}},)" + kY, "50,100 50,0"},
      {R"("2020-05-05" 0)", R"("x":{"field":"f0","type":"temporal"})", "50,50"},
      // Discrete fields and their orders.
      {R"("b" 0|"a" 1)", kNominalX + "}," + kY, "75,100 25,0"},
      {R"("b" 0|"a" 1)", kNominalX + R"(,"sort":null},)" + kY, "25,100 75,0"},
      {R"("b" 0|"a" 1)", kNominalX + R"(,"sort":"descending"},)" + kY, "25,100 75,0"},
      {R"("b" 0|"a" 1)", kNominalX + R"(,"scale":{"reverse":true}},)" + kY, "25,100 75,0"},
      {R"("c" 0|"a" 1|"b" 1|"d" 1)", kNominalX + R"(,"sort":["b","x","d"]},)" + kY, "62,100 88,0 12,0 38,0"},
      {"10 0|9 1", kNominalX + "}," + kY, "75,100 25,0"},
      // A row that x can't place counts for no other scale either.
      {"0 0|null 50|10 1", kX + "}," + kY, "0,100 100,0"},
      {"0 0|10 1|null 2", kX + R"(},"y":{"field":"f1","type":"nominal"})", "0,25 100,75"},
      // Channels without a field.
      {"0 0|10 1", kX + "}", "0,50 100,50"},
      {"0 0|10 1", kX + R"(},"y":{"value":7})", "0,7 100,7"},
      {"0 0", "", "50,50"},
      {"{} {}", "", "50,50"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const document = MakeDocument("\"point\"", c.rows, c.encoding);
    EXPECT_EQ(DescribeSymbols(drawing.Draw(document).scene), c.expected) << document;
  }
}

TEST(ChartPlan, DrawsLinesInTheirOrder) {
  struct Case {
    char const* rows;
    std::string encoding;
    char const* expected;
  };
  std::string const color = R"(,"color":{"field":"f2","type":"nominal"})";
  Case const cases[] = {
      {"10 0|0 1|5 1", kX + "}," + kY, "0,0 50,0 100,100"},
      {"10 0|0 1|5 null", kX + "}," + kY, "0,0 - 100,100"},
      // Along y where x is a quantity and y is none.
      {R"(10 "2020-01-02"|0 "2020-01-03"|5 "2020-01-01")", kX + R"(},"y":{"field":"f1","type":"temporal"})",
       "50,100 100,50 0,0"},
      {"10 0 1|0 1 3|5 1 2", kX + "}," + kY + R"(,"order":{"field":"f2","type":"quantitative"})",
       "100,100 50,0 0,0"},
      {"10 0 1|0 1 3|5 1 2", kX + "}," + kY + R"(,"order":{"field":"f2","sort":"descending"})",
       "0,0 50,0 100,100"},
      {"10 0 \"a\"|0 1 \"b\"|5 1 \"a\"", kX + "}," + kY + color, "50,0 100,100 / 0,0"},
      // A missing colour or detail is a line of its own.
      {"10 0 \"a\"|0 1 null|5 1 \"a\"", kX + "}," + kY + color, "50,0 100,100 / 0,0"},
      {"10 0 1|0 1 null|5 1 1", kX + "}," + kY + R"(,"detail":{"field":"f2"})", "50,0 100,100 / 0,0"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const document = MakeDocument("\"line\"", c.rows, c.encoding);
    EXPECT_EQ(DescribeLines(drawing.Draw(document).scene), c.expected) << document;
  }
}

TEST(ChartPlan, TellsOfRowsThatNoScalePlaces) {
  struct Case {
    char const* mark;
    char const* rows;
    std::string encoding;
    std::vector<std::string> warnings;
    char const* symbols;
  };
  Case const cases[] = {
      {"\"point\"",
       "0 0|null 1|10 1",
       kX + "}",
       {"1 of 3 rows have no finite number in 'f0' for the x axis; not drawn"},
       "0,50 100,50"},
      {"\"point\"",
       "0 0|1e308 1|10 1",
       kX + "}",
       {"1 of 3 rows have no finite number in 'f0' for the x axis; not drawn"},
       "0,50 100,50"},
      {"\"point\"",
       "1 0|0 1|-3 1|100 1",
       kX + R"(,"scale":{"type":"log"}})",
       {"2 of 4 rows are not positive on the log x axis; not drawn"},
       "0,50 100,50"},
      {"\"point\"",
       R"("a" 0|null 1|"b" 1)",
       kNominalX + R"(,"scale":{"domain":["a","b"]}})",
       {"1 of 3 rows have no value of the scale's domain in 'f0' for the x axis; not drawn"},
       "25,50 75,50"},
      {"\"point\"",
       R"("a" 0|"b" 1)",
       kNominalX + R"(,"scale":{"domain":["a"]}})",
       {"1 of 2 rows have no value of the scale's domain in 'f0' for the x axis; not drawn"},
       "50,50"},
      {"\"point\"",
       R"(0 "a"|10 null)",
       kX + R"(},"color":{"field":"f1","type":"nominal"},"shape":{"field":"f1"})",
       {},
       "0,50 100,50"},
      {"\"point\"",
       R"(0 "a"|10 "b")",
       kX + R"(},"color":{"field":"f1","type":"nominal","scale":{"domain":["a"]}})",
       {"1 of 2 rows have no value of the scale's domain in 'f1' that its scale can place; not drawn"},
       "0,50"},
      {"\"line\"",
       "0 0|null 1",
       kX + "}," + kY,
       {"1 of 2 rows have no finite number in 'f0' for the x axis; the line breaks there"},
       ""},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const document = MakeDocument(c.mark, c.rows, c.encoding);
    DrawnChart const drawn = drawing.Draw(document);
    EXPECT_EQ(drawn.warnings, c.warnings) << document;
    EXPECT_EQ(DescribeSymbols(drawn.scene), c.symbols) << document;
  }
}

TEST(ChartPlan, RefusesWhatNoMarkOrScaleCanDraw) {
  struct Case {
    char const* mark;
    char const* rows;
    std::string encoding;
    char const* expected;
  };
  Case const cases[] = {
      {"\"point\"", "1 2", kX + R"(,"scale":{"type":"log","base":0.5}})",
       "$.encoding.x.scale.base: expects a number above 1; use reverse to turn the scale round"},
      {"\"point\"", "-1 2|0 2", kX + R"(,"scale":{"type":"log"}})",
       "$.encoding.x.scale.type: field 'f0' of $.data.values has no value above 0, which a log scale needs; "
       "use \"linear\""},
      {"\"point\"", R"("2020-01-01" 2)", R"("x":{"field":"f0","type":"temporal","scale":{"nice":true}})",
       "$.encoding.x.scale.nice: is not supported on a time scale; use domain with two dates"},
      {"\"point\"", "1 2|2 3", kX + R"(,"scale":{"domainMin":5}})",
       "$.encoding.x.scale.domainMin: 5 is not below the largest value of field 'f0', 2; give domainMax as "
       "well"},
      {"\"point\"", "1 2|2 3", kX + R"(,"scale":{"domainMax":-1}})",
       "$.encoding.x.scale.domainMax: -1 is not above the least value of field 'f0', 0; give domainMin as "
       "well"},
      {"\"point\"", "1 2", kX + R"(,"scale":{"domain":[0,1e308]}})",
       "$.encoding.x.scale.domain: expects numbers from -1e307 to 1e307"},
      {"\"point\"", "\"Infinity\" 2", kX + "}",
       "$.encoding.x.field: field 'f0' of $.data.values has no finite number"},
      {"\"point\"", "1 2", R"("x":{"field":"f3"})",
       "no field 'f3' in $.data.values; did you mean 'f0'? Its fields are f0, f1"},
      {"\"point\"", R"("a" 2)", kX + "}",
       "$.encoding.x.type: field 'f0' of $.data.values holds text, not numbers; use \"nominal\""},
      {"\"line\"", "1 2", kX + R"(},"opacity":{"field":"f1","type":"quantitative"})",
       "$.encoding.opacity: a line has one width and opacity; use \"color\" or \"detail\""},
      {"\"line\"", "1 2", kX + R"(},"color":{"field":"f1","type":"quantitative"})",
       "$.encoding.color.type: a line has one color; use \"nominal\" or \"ordinal\""},
      {R"({"type":"point","color":"reddish"})", "1 2", kX + "}", "$.mark.color: \"reddish\" is no colour"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const document = MakeDocument(c.mark, c.rows, c.encoding);
    EXPECT_EQ(drawing.DescribeError(document), std::string("chart.vl.json: ") + c.expected) << document;
  }
}

}  // namespace
}  // namespace ostrel::charts
