#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

constexpr char const* kPlaces = R"("x":{"field":"f0","type":"quantitative"},)"
                                R"("y":{"field":"f1","type":"quantitative"})";
constexpr char const* kBars = R"("x":{"field":"f0","type":"nominal","axis":null},)"
                              R"("y":{"field":"f1","type":"quantitative","axis":null})";

/// What the marks' group holds.
std::string DrawMarks(std::string const& document) {
  std::string const svg = ChartDrawing().DrawSvg(document);
  std::string const begin = "<g class=\"marks\">\n";
  auto const from = svg.find(begin);
  if (from == std::string::npos) return svg;
  auto const next = svg.find("<g class=", from + 1);
  return svg.substr(from + begin.size(), next - from - begin.size());
}

bool Contains(std::string const& text, std::string const& part) {
  return text.find(part) != std::string::npos;
}

TEST(MarkPaints, FillAndOutlineMarksBySeparateColours) {
  struct Case {
    char const* mark;
    char const* part;
  };
  Case const cases[] = {
      {R"("type":"point","filled":true,"stroke":"white","strokeWidth":1,"fillOpacity":0.5)",
       R"(<g fill="#4c78a8" fill-opacity=".5" stroke="#fff">)"},
      {R"("type":"circle","stroke":"red","opacity":0.5,"strokeOpacity":0.5)",
       R"(<g fill="#4c78a8" fill-opacity=".5" stroke="#f00" stroke-opacity=".25" stroke-width="2">)"},
      {R"("type":"point","fill":"red","color":"blue")",
       R"(<g fill="#f00" fill-opacity=".7" stroke-width="2" stroke="#00f" stroke-opacity=".7">)"},
      {R"("type":"square","filled":false,"strokeDash":[2,1])",
       R"(<g fill="none" stroke-width="2" stroke-dasharray="2,1" stroke="#4c78a8" stroke-opacity=".7">)"},
      // A color is that of what a fill or a stroke does not name.
      {R"("type":"bar","color":"red","fill":"blue","stroke":"black")", R"(<g fill="#00f" stroke="#000">)"},
      {R"("type":"bar","filled":false,"color":"red")", R"(<g fill="none" stroke="#f00">)"},
      {R"("type":"tick","thickness":4,"bandSize":8,"stroke":"black")", R"(" width="8" height="4"/>)"},
      {R"("type":"area","stroke":"red","fillOpacity":0.25)",
       R"(Z" fill="#4c78a8" fill-opacity=".25" stroke="#f00"/>)"},
      {R"("type":"area","filled":false)", R"(Z" fill="none" stroke="#4c78a8"/>)"},
      {R"("type":"line","strokeOpacity":0.5)", R"(fill="none" stroke="#4c78a8" stroke-opacity=".5")"},
      {R"("type":"rule","strokeOpacity":0.5)", R"(stroke="#333" stroke-opacity=".50)"},
      // What is drawn over a line or an area has its colour, or one of its own, and lets the area through.
      {R"("type":"line","color":"red","point":true)", R"(<g fill="#f00">)"},
      {R"("type":"line","color":"red","point":{"filled":false,"fill":"white","stroke":"blue","size":9})",
       R"(<g fill="#fff" stroke-width="2" stroke="#00f">)"},
      {R"("type":"line","point":"transparent")", "<g fill=\"#4c78a8\" fill-opacity=\"0\">\n</g>"},
      {R"("type":"area","color":"red","line":true)", R"(fill="none" stroke="#f00" stroke-width="2"/>)"},
      {R"("type":"area","line":{"color":"blue","strokeDash":[3]})",
       R"(stroke="#00f" stroke-width="2" stroke-dasharray="3"/>)"},
      {R"("type":"area","point":{"shape":"square"})", R"(fill="#4c78a8" fill-opacity=".7"/>)"},
  };
  for (Case const& c : cases) {
    std::string const mark = std::string("{") + c.mark + "}";
    std::string const svg = DrawMarks(MakeDocument(mark, "1 2|2 3|3 1", kPlaces));
    EXPECT_TRUE(Contains(svg, c.part)) << mark << "\n" << svg;
  }
}

TEST(MarkPaints, AreAsOpaqueAsTheirRow) {
  std::string const svg = DrawMarks(
      MakeDocument(R"({"type":"circle","stroke":"red","strokeOpacity":0.5})", "1 2 0|2 3 1",
                   std::string(kPlaces) +
                       R"(,"opacity":{"field":"f2","type":"quantitative","scale":{"range":[0.2,0.8]}})"));
  EXPECT_TRUE(Contains(svg, R"(fill-opacity=".2" stroke-opacity=".1")")) << svg;
  EXPECT_TRUE(Contains(svg, R"(fill-opacity=".8" stroke-opacity=".4")")) << svg;
}

/// Left and right ends of all rectangles: "10-20|30-40".
std::string ReadWidths(std::string const& mark, std::string const& encoding) {
  Scene const scene = ChartDrawing().Draw(MakeDocument(mark, "1 2|2 3", encoding)).scene;
  RectMarks const& marks = *FindMarks<RectMarks>(scene, "marks").front();
  std::string text;
  for (int row = 0; row < marks.x->AsColumn().GetCount(); ++row) {
    auto const write = [row](Value const& side) {
      return std::to_string(std::lround(side->AsTypedArray<double>().GetElement(row)));
    };
    text += (text.empty() ? "" : "|") + write(marks.x) + "-" + write(marks.x2);
  }
  return text;
}

TEST(MarkBreadths, AreSharesOfBandsAndIntervalsOrPixels) {
  std::string const binned =
      R"("x":{"field":"f0","type":"quantitative","bin":{"step":1}},"y":{"aggregate":"count"})";
  struct Case {
    char const* mark;
    std::string encoding;
    char const* expected;
  };
  Case const cases[] = {
      {R"({"type":"bar"})", kBars, "3-48|53-98"},
      {R"({"type":"bar","width":{"band":0.5}})", kBars, "14-36|64-86"},
      {R"({"type":"bar","width":10})", kBars, "20-30|70-80"},
      {R"({"type":"bar","width":10,"size":20})", kBars, "20-30|70-80"},
      {R"({"type":"rect","width":{"band":0.5}})", kBars, "13-38|63-88"},
      {R"({"type":"bar"})", binned, "1-100"},
      {R"({"type":"bar","width":{"band":0.5}})", binned, "25-75"},
      {R"({"type":"bar","width":10})", binned, "45-55"},
  };
  for (Case const& c : cases) EXPECT_EQ(ReadWidths(c.mark, c.encoding), c.expected) << c.mark << c.encoding;

  ChartDrawing const drawing;
  EXPECT_EQ(drawing.DescribeError(MakeDocument(R"({"type":"bar","height":10})", "1 2", kBars)),
            "chart.vl.json: $.mark.height: of upright bars follows from y; use width");
  EXPECT_EQ(drawing.DescribeError(MakeDocument(R"({"type":"bar","width":{"band":0.5}})", "1 2", kPlaces)),
            "chart.vl.json: $.mark.width: is a share of discrete values, bins or units of time; give pixels");
}

/// The radii of each bar, clockwise from the top left: "5 5 0 0|...".
std::string ReadCorners(std::string const& mark, std::string const& rows, std::string const& encoding) {
  Scene const scene = ChartDrawing().Draw(MakeDocument(mark, rows, encoding)).scene;
  std::string text;
  for (CornerRadii const& corners : FindMarks<RectMarks>(scene, "marks").front()->corners) {
    text += text.empty() ? "" : "|";
    for (double const radius : {corners.topLeft, corners.topRight, corners.bottomRight, corners.bottomLeft})
      text += std::to_string(std::lround(radius));
  }
  return text;
}

TEST(Corners, AreRoundedWhereBarsAndStacksEnd) {
  std::string const across =
      R"("y":{"field":"f0","type":"nominal"},"x":{"field":"f1","type":"quantitative"})";
  std::string const series = R"(,"color":{"field":"f2","type":"nominal"})";
  std::string const stack = "1 2 1|1 3 2|1 4 3|1 -2 4|2 1 1";
  struct Case {
    char const* mark;
    std::string rows;
    std::string encoding;
    char const* expected;
  };
  Case const cases[] = {
      {R"({"type":"bar","cornerRadius":0})", "1 2 0", kBars, ""},
      {R"({"type":"bar","cornerRadius":5,"cornerRadiusTopRight":3})", "1 2 0", kBars, "5355"},
      // A bar below 0 ends at its lower side.
      {R"({"type":"bar","cornerRadiusEnd":5})", "1 2 0|2 -3 0", kBars, "5500|0055"},
      {R"({"type":"bar","cornerRadiusEnd":5})", "1 2 0|2 -3 0", across, "0550|5005"},
      {R"({"type":"bar","cornerRadiusEnd":5})", stack, kBars + series, "5500|0000|0000|0055|5500"},
      {R"({"type":"bar","cornerRadius":4})", stack, kBars + series, "4400|0000|0000|0044|4444"},
      {R"({"type":"bar","cornerRadiusEnd":5})", "1 2 4", std::string(kBars) + R"(,"y2":{"field":"f2"})",
       "5555"},
      {R"({"type":"rect","cornerRadius":2})", "1 2 0", kBars, "2222"},
  };
  for (Case const& c : cases) EXPECT_EQ(ReadCorners(c.mark, c.rows, c.encoding), c.expected) << c.mark;
}

}  // namespace
}  // namespace ostrel::charts
