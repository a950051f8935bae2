#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

/// "0,50,30,100 ...": left, top, right and bottom of every rectangle, rounded to whole pixels, in drawing
/// order.
std::string DescribeRects(Scene const& scene) {
  std::string text;
  for (RectMarks const* marks : FindMarks<RectMarks>(scene, "marks")) {
    auto const read = [](auto const& side) -> auto const& { return side->template AsTypedArray<double>(); };
    for (int row = 0; row < read(marks->x).GetCount(); ++row) {
      double const x = read(marks->x).GetElement(row);
      double const x2 = read(marks->x2).GetElement(row);
      double const y = read(marks->y).GetElement(row);
      double const y2 = read(marks->y2).GetElement(row);
      text += fmt::format("{}{:.0f},{:.0f},{:.0f},{:.0f}", text.empty() ? "" : " ", std::min(x, x2) + 0.0,
                          std::min(y, y2) + 0.0, std::max(x, x2) + 0.0, std::max(y, y2) + 0.0);
    }
  }
  return text;
}

std::string const kX = R"("x":{"field":"f0","type":"nominal"})";
std::string const kY = R"("y":{"field":"f1","type":"quantitative"})";
std::string const kWide = R"("scale":{"paddingInner":0})";
std::string const kBandX = R"("x":{"field":"f0","type":"nominal",)" + kWide + "}";

std::string MeanY(std::string const& scale) {
  return R"("y":{"field":"f1","type":"quantitative","aggregate":"mean","scale":{)" + scale + "}}";
}

TEST(Bars, StandOnTheirBaseLine) {
  ChartDrawing const drawing;
  struct {
    char const* rows;
    std::string encoding;
    char const* rects;
  } const cases[] = {
      // A tenth of the step is left free.
      {R"("a" 10|"b" 5)", kX + "," + kY, "2,0,48,100 52,50,98,100"},
      {R"("a" 10|"b" -10)", kBandX + "," + kY, "0,0,50,50 50,50,100,100"},
      // Rows of one place stand on one another, those below 0 apart.
      {R"("a" 4|"a" 6|"a" -10)", kBandX + "," + kY, "0,30,100,50 0,0,100,30 0,50,100,100"},
      {R"("a" 4|"a" 6)", kBandX + R"(,"y":{"field":"f1","type":"quantitative","stack":null})",
       "0,33,100,100 0,0,100,100"},
      {R"("a" 1|"a" 3|"b" 5)", kBandX + R"(,"y":{"field":"f1","type":"quantitative","stack":"normalize"})",
       "0,75,50,100 0,0,50,75 50,0,100,100"},
      // Means begin where the domain does, be 0 in it or not.
      {R"("a" 15|"b" 20)", kBandX + "," + MeanY(R"("zero":false,"nice":false)"), "0,100,50,100 50,0,100,100"},
      {R"("a" 15|"b" 20)", kBandX + "," + MeanY(R"("domain":[10,20])"), "0,50,50,100 50,0,100,100"},
      {R"("a" 15|"b" 20)", kBandX + "," + MeanY(R"("domain":[20,10])"), "0,50,50,100 50,100,100,100"},
      {R"("a" 20)", kBandX + "," + MeanY(R"("domainMax":40)"), "0,50,100,100"},
      // What lies between two numbers on both axes needs no room for a bar's breadth.
      {"0 5 0 10|5 10 0 5",
       R"("x":{"field":"f0","type":"quantitative"},"x2":{"field":"f1"},"y":{"field":"f2",)"
       R"("type":"quantitative"},"y2":{"field":"f3"})",
       "0,0,50,100 50,50,100,100"},
      // Numbers outside of bins with given ends are in none.
      {"1|2|7|9.2",
       R"("x":{"field":"f0","type":"quantitative","bin":{"extent":[0,8],"step":2}},"y":{"aggregate":"count"})",
       "0,0,24,100 26,0,50,100 76,0,100,100"},
      // The largest stack has the whole height, the other stands in its middle.
      {R"("a" 2|"b" 10)", kBandX + R"(,"y":{"field":"f1","type":"quantitative","stack":"center"})",
       "0,40,50,60 50,0,100,100"},
      // The first value of a legend is farthest from the axis.
      {R"("a" 4 "u"|"a" 6 "v")", kBandX + "," + kY + R"(,"color":{"field":"f2","type":"nominal"})",
       "0,0,100,40 0,40,100,100"},
      {R"("a" 4 "u"|"a" 6 "v")",
       kBandX + "," + kY + R"(,"color":{"field":"f2","type":"nominal"},"order":{"field":"f2"})",
       "0,60,100,100 0,0,100,60"},
      {R"("a" 4 "u" 1|"a" 6 "v" 1|"a" 10 "w" 0)",
       kBandX + "," + kY +
           R"(,"detail":{"field":"f2"},"order":[{"field":"f3"},{"field":"f2","sort":"descending"}])",
       "0,0,100,20 0,20,100,50 0,50,100,100"},
      // Colours whose values are listed stand in the list's order.
      {R"("a" 4 "u"|"a" 6 "v")",
       kBandX + "," + kY + R"(,"color":{"field":"f2","type":"nominal","scale":{"domain":["v","u"]}})",
       "0,60,100,100 0,0,100,60"},
      // Other directions and places. The first value of a legend is nearest to an axis at the left.
      {R"(4 "a" "u"|6 "a" "v")",
       R"("x":{"field":"f0","type":"quantitative"},"y":{"field":"f1","type":"nominal",)" + kWide +
           R"(},"color":{"field":"f2","type":"nominal"})",
       "0,0,40,100 40,0,100,100"},
      {R"(10 "a"|5 "b")",
       R"("x":{"field":"f0","type":"quantitative"},"y":{"field":"f1","type":"nominal",)" + kWide + "}",
       "0,0,100,50 0,50,50,100"},
      {R"("a" 2 6|"b" 0 10)", kBandX + "," + kY + R"(,"y2":{"field":"f2"})", "0,40,50,80 50,0,100,100"},
      // An aggregate stands on its axis, also beside a channel with two ends.
      {"2 4|6 10",
       R"("x":{"field":"f0","type":"quantitative"},"x2":{"field":"f1"},"y":{"aggregate":"count"})",
       "10,0,30,100 50,0,90,100"},
      {R"("a" 10 "u"|"a" 5 "v")", kBandX + "," + kY + R"(,"xOffset":{"field":"f2","type":"nominal"})",
       "14,0,50,100 50,50,86,100"},
      {"0 10|10 5", R"("x":{"field":"f0","type":"quantitative"},)" + kY, "6,0,11,100 89,50,94,100"},
      {"1 10|10 5", R"("x":{"field":"f0","type":"quantitative","scale":{"type":"log","nice":false}},)" + kY,
       "2,0,7,100 92,50,98,100"},
      // A constant size is the bar's.
      {R"("a" 10)", kBandX + "," + kY + R"(,"size":{"value":40})", "30,0,70,100"},
      // The aggregate of all rows of a place sorts it, not those of its colours.
      {R"("a" 4 "u"|"a" 4 "u"|"a" 1 "v"|"b" 2 "u")",
       R"("x":{"field":"f0","type":"nominal","sort":"-y",)" + kWide +
           R"(},"y":{"field":"f1","aggregate":"mean","stack":null},"color":{"field":"f2"})",
       "0,0,50,100 0,75,50,100 50,50,100,100"},
      // Order of places by the other axis or another field.
      {R"("a" 5|"b" 10)", R"("x":{"field":"f0","type":"nominal","sort":"-y",)" + kWide + "}," + kY,
       "50,50,100,100 0,0,50,100"},
      {R"("a" 5 2|"b" 10 1)",
       R"("x":{"field":"f0","type":"nominal","sort":{"field":"f2","op":"mean"},)" + kWide + "}," + kY,
       "50,50,100,100 0,0,50,100"},
      // Aggregates.
      {R"("a" 4|"a" 6|"b" 5)", kBandX + R"(,"y":{"field":"f1","aggregate":"sum"})",
       "0,0,50,100 50,50,100,100"},
      {R"("a" 4|"a" 6|"b" 10)", kBandX + R"(,"y":{"field":"f1","aggregate":"mean"})",
       "0,50,50,100 50,0,100,100"},
      {R"("a" 4|"a" 6|"b" 10)", kBandX + R"(,"y":{"aggregate":"count"})", "0,0,50,100 50,50,100,100"},
      // Bins, a pixel apart.
      {"1|1|9", R"("x":{"field":"f0","bin":{"step":5}},"y":{"aggregate":"count"})",
       "0,0,50,100 50,50,100,100"},
      {"1|1|9", R"("y":{"field":"f0","bin":{"step":5}},"x":{"aggregate":"count"})", "0,50,100,100 0,0,50,50"},
      // Bins as categories stand in their own order, and the last but one of three has no row here.
      {"11|11|1",
       R"("x":{"field":"f0","bin":{"step":5},"type":"ordinal",)" + kWide + R"(},"y":{"aggregate":"count"})",
       "50,0,100,100 0,50,50,100"},
  };
  for (auto const& [rows, encoding, rects] : cases) {
    Scene const scene = drawing.Draw(MakeDocument("\"bar\"", rows, encoding)).scene;
    EXPECT_EQ(DescribeRects(scene), rects) << rows << " " << encoding;
  }
}

TEST(Tooltips, TellTheFieldsOfAllChannels) {
  ChartDrawing const drawing;
  struct {
    char const* mark;
    std::string encoding;
    char const* text;
  } const cases[] = {
      {R"({"type":"bar","tooltip":true})",
       kX + R"(,"y":{"field":"f1","aggregate":"sum"},"color":{"field":"f0"})",
       "<title>f0: a\nSum of f1: 10</title>"},
      {R"({"type":"bar","tooltip":{"content":"encoding"}})",
       kX + R"(,"y":{"field":"f1","aggregate":"sum"},)"
            R"("tooltip":[{"field":"f0","title":"name"}])",
       "<title>name: a</title>"},
      // A single field is told by its value alone.
      {R"({"type":"bar","tooltip":null})",
       kX + R"(,"y":{"field":"f1","aggregate":"mean"},"tooltip":{"field":"f0"})", "<title>a</title>"},
      {R"({"type":"bar","tooltip":"one & all"})", kX, "<title>one &amp; all</title>"},
      {R"("bar")", kX + R"(,"tooltip":{"value":"one"})", "<title>one</title>"},
      // All fields, or what became of them.
      {R"({"type":"point","tooltip":{"content":"data"}})", kX, "<title>f0: a\nf1: 4</title>"},
      {R"({"type":"bar","tooltip":{"content":"data"}})",
       R"("x":{"field":"f0","sort":"-y"},"y":{"field":"f1","aggregate":"mean"})",
       "<title>f0: a\nmean_f1: 5</title>"},
      // Lines and areas tell their first rows, rules and texts each its own.
      {R"({"type":"line","tooltip":true})", kX + R"(,"y":{"field":"f1","type":"quantitative"})",
       "<title>f0: a\nf1: 4</title></path>"},
      {R"({"type":"area","tooltip":true})", kX + R"(,"y":{"field":"f1","type":"quantitative"})",
       "<title>f0: a\nf1: 4</title></path>"},
      {R"({"type":"rule","tooltip":true})", R"("y":{"field":"f1","type":"quantitative"})",
       "<title>f1: 6</title></path>"},
      {R"({"type":"text","tooltip":true})", R"("text":{"field":"f1","type":"quantitative"})",
       "<title>f1: 6</title>6</text>"},
      {R"({"type":"bar","tooltip":true})",
       R"("x":{"field":"f1","bin":{"step":5}},"y":{"aggregate":"count","title":"n"})",
       "<title>f1 (binned): 0 \u2013 5\nn: 1</title>"},
  };
  for (auto const& [mark, encoding, text] : cases) {
    std::string const svg = drawing.DrawSvg(MakeDocument(mark, R"("a" 4|"a" 6)", encoding));
    EXPECT_NE(svg.find(text), std::string::npos) << svg;
  }
}

TEST(Bars, GroupByUnitsOfTime) {
  ChartDrawing const drawing;
  std::string const rows = R"("2020-01-05" 1|"2021-01-20" 2|"2020-03-01" 6)";
  Scene const discrete = drawing
                             .Draw(MakeDocument("\"bar\"", rows,
                                                R"("x":{"field":"f0","timeUnit":"month","type":"ordinal",)" +
                                                    kWide + R"(},"y":{"field":"f1","aggregate":"sum"})"))
                             .scene;
  EXPECT_EQ(DescribeRects(discrete), "0,50,50,100 50,0,100,100");
  EXPECT_EQ(ReadTexts(discrete, "axis x"), "Jan|Mar|f0 (month)");
  Scene const continuous = drawing
                               .Draw(MakeDocument("\"bar\"", rows,
                                                  R"("x":{"field":"f0","timeUnit":"month"},)"
                                                  R"("y":{"field":"f1","aggregate":"sum"})"))
                               .scene;
  // January, February and March have 91 days in a leap year.
  EXPECT_EQ(DescribeRects(continuous), "0,50,34,100 66,0,100,100");
}

// Rows of the days before and after a beginning, what their bars are called, and where an axis has its ticks.
TEST(Bars, GroupByFiscalYearsAndWeeks) {
  ChartDrawing const drawing;
  struct {
    char const* rows;
    char const* unit;
    char const* names;
    char const* bars;
    char const* ticks;
  } const cases[] = {
      {R"("2015-09-30" 1|"2015-10-01" 2|"2016-09-30" 2)", R"("unit":"year","fiscalStart":10)",
       "FY 2015|FY 2016", "0,75,50,100 50,0,100,100", "FY 2015|FY 2016|FY 2017"},
      {R"("2015-09-30" 1|"2015-10-01" 2|"2015-01-31" 4)", R"("unit":"yearquarter","fiscalStart":2)",
       "Q4 FY 2015|Q3 FY 2016", "50,25,100,100 0,0,50,100", "Q4|FY 2016|Q2|Q3|Q4"},
      {R"("2012-01-01" 1|"2012-01-02" 2|"2012-01-08" 2)", R"("unit":"yearweek","weekStart":"monday")",
       "W 52 2011|W 1 2012", "0,75,50,100 50,0,100,100", "W 52 2011|W 1 2012|W 2"},
      {R"("2012-01-07" 1|"2012-01-08" 4)", R"("unit":"yearweek")", "W 1 2012|W 2 2012",
       "0,75,50,100 50,0,100,100", "W 1 2012|W 2|W 3"},
      {R"("2012-01-06" 1|"2012-01-07" 4)", R"("unit":"yearweek","weekStart":"saturday")",
       "Dec 31 2011|Jan 7 2012", "0,75,50,100 50,0,100,100", "Dec 31 2011|Jan 7 2012|Jan 14"},
  };
  for (auto const& [rows, unit, names, bars, ticks] : cases) {
    std::string const unitOfTime =
        R"("x":{"field":"f0","title":null,"timeUnit":{)" + std::string(unit) + "},";
    std::string const sum = R"("y":{"field":"f1","aggregate":"sum"})";
    std::string const type = R"("type":"ordinal",)" + kWide + "},";
    Scene const discrete = drawing.Draw(MakeDocument("\"bar\"", rows, unitOfTime + type + sum)).scene;
    // The names wrap below their bars.
    std::string lines = ReadTexts(discrete, "axis x");
    std::ranges::replace(lines, '|', ' ');
    std::string together = names;
    std::ranges::replace(together, '|', ' ');
    EXPECT_EQ(lines, together);
    EXPECT_EQ(DescribeRects(discrete), bars) << unit;
    std::string document = MakeDocument("\"bar\"", rows, unitOfTime + R"("axis":{"tickCount":5}},)" + sum);
    document.replace(document.find("\"width\":100,"), 12, "\"width\":1000,");
    EXPECT_EQ(ReadTexts(drawing.Draw(document).scene, "axis x"), ticks) << unit;
  }
}

TEST(Rects, FillTheirBandsOrThePane) {
  ChartDrawing const drawing;
  EXPECT_EQ(DescribeRects(drawing
                              .Draw(MakeDocument("\"rect\"", R"("a" "u"|"b" "v")",
                                                 kX + R"(,"y":{"field":"f1","type":"nominal"})"))
                              .scene),
            "0,0,50,50 50,50,100,100");
  EXPECT_EQ(DescribeRects(drawing.Draw(MakeDocument("\"rect\"", R"("a"|"b")", kX)).scene),
            "0,0,50,100 50,0,100,100");
}

TEST(DiscreteAxes, AreAsLongAsTheirSteps) {
  ChartDrawing const drawing;
  auto const right = [&](std::string const& more, std::string const& offset) {
    std::string document =
        MakeDocument("\"bar\"", R"("a" 1 "u"|"b" 2 "v"|"c" 3 "u")", kX + "," + kY + offset);
    document.replace(document.find("\"width\":100,"), 12, more);
    Scene const scene = drawing.Draw(document).scene;
    auto const axis = FindMarks<RuleMarks>(scene, "axis x");
    return axis.at(0)->rules.at(0).to.x;
  };
  EXPECT_EQ(right("", ""), 60);
  EXPECT_EQ(right(R"("width":{"step":7},)", ""), 21);
  // The step is that of the places side by side, with a fifth of the group left free.
  EXPECT_DOUBLE_EQ(right("", R"(,"xOffset":{"field":"f2"})"), 160);
}

TEST(Areas, LieBetweenTheirSeries) {
  ChartDrawing const drawing;
  auto const describe = [&](std::string const& encoding) {
    Scene const scene =
        drawing.Draw(MakeDocument("\"area\"", R"(0 5 "u"|10 10 "u"|10 10 "v"|0 15 "v")", encoding)).scene;
    std::string text;
    for (AreaMark const* area : FindMarks<AreaMark>(scene, "marks")) {
      text += text.empty() ? "" : " / ";
      for (std::size_t i = 0; i < area->points.size(); ++i) {
        text += fmt::format("{}{:.0f}:{:.0f}-{:.0f}", i == 0 ? "" : " ", area->points[i].x, area->points[i].y,
                            area->basePoints[i].y);
      }
    }
    return text;
  };
  std::string const x = R"("x":{"field":"f0","type":"quantitative"},)";
  std::string const color = R"(,"color":{"field":"f2","type":"nominal"})";
  EXPECT_EQ(describe(x + kY + color), "0:0-25 100:0-50 / 0:25-100 100:50-100");
  EXPECT_EQ(describe(x + R"("y":{"field":"f1","type":"quantitative","stack":null})" + color),
            "0:69-100 100:38-100 / 0:6-100 100:38-100");
}

TEST(TextsAndRules, StandAtTheirRows) {
  ChartDrawing const drawing;
  Scene const texts = drawing
                          .Draw(MakeDocument(R"({"type":"text","dx":3,"align":"left"})", "0 1.25|10 2.5",
                                             R"("x":{"field":"f0","type":"quantitative"},)" + kY +
                                                 R"(,"text":{"field":"f1","format":".1f"})"))
                          .scene;
  EXPECT_EQ(ReadTexts(texts, "marks"), "1.3|2.5");
  EXPECT_EQ(FindMarks<TextMark>(texts, "marks")[1]->at.x, 103);
  // A rule of the scale's terms alone is drawn once, over the whole pane.
  Scene const rules =
      drawing.Draw(MakeDocument("\"rule\"", "0 1|10 2", R"("y":{"datum":5,"scale":{"domain":[0,10]}})"))
          .scene;
  auto const marks = FindMarks<RuleMarks>(rules, "marks");
  ASSERT_EQ(marks.size(), 1u);
  ASSERT_EQ(marks[0]->rules.size(), 1u);
  EXPECT_EQ(marks[0]->rules[0].from.x, 0);
  EXPECT_EQ(marks[0]->rules[0].from.y, 50);
  EXPECT_EQ(marks[0]->rules[0].to.x, 100);
  EXPECT_EQ(marks[0]->rules[0].to.y, 50);
}

TEST(Transforms, ChangeTheRowsInTheirOrder) {
  ChartDrawing const drawing;
  std::string const rows = R"("a" 4 1|"a" 6 2|"b" 10 3|"c" null 4)";
  struct {
    char const* transform;
    char const* rects;
  } const cases[] = {
      {R"({"filter":{"field":"f0","equal":"a"}})", "0,60,100,100 0,0,100,60"},
      {R"({"filter":{"field":"f1","gte":6}})", "0,40,50,100 50,0,100,100"},
      {R"({"filter":{"field":"f1","range":[5,8]}})", "0,0,100,100"},
      {R"({"filter":{"field":"f2","oneOf":[1,3]}})", "0,60,50,100 50,0,100,100"},
      {R"({"filter":{"and":[{"field":"f1","lt":10},{"not":{"field":"f2","equal":1}}]}})", "0,0,100,100"},
      {R"({"filter":{"or":[{"field":"f1","gt":9},{"field":"f2","lt":2}]}})", "0,60,50,100 50,0,100,100"},
      {R"({"filter":{"field":"f1","valid":true}},{"aggregate":[{"op":"max","field":"f1","as":"f1"}],)"
       R"("groupby":["f0"]})",
       "0,40,50,100 50,0,100,100"},
      {R"({"joinaggregate":[{"op":"sum","field":"f1","as":"f1"}],"groupby":["f0"]},)"
       R"({"filter":{"field":"f2","range":[2,3]}})",
       "0,0,50,100 50,0,100,100"},
      {R"({"joinaggregate":[{"op":"sum","field":"f1","as":"sum"}]},)"
       R"({"calculate":"100 * datum.f1 / datum.sum","as":"f1"},{"filter":{"field":"f2","range":[2,3]}})",
       "0,40,50,100 50,0,100,100"},
  };
  for (auto const& [transform, rects] : cases) {
    std::string const more = std::string(R"("transform":[)") + transform + "],";
    Scene const scene = drawing.Draw(MakeDocument("\"bar\"", rows, kBandX + "," + kY, more)).scene;
    EXPECT_EQ(DescribeRects(scene), rects) << transform;
  }
}

/// The symbols of all panes.
void FindSymbols(Group const& group, std::vector<SymbolMarks const*>& symbols) {
  for (SceneNode const& node : group.nodes) {
    auto const* marks = std::get_if<SymbolMarks>(&node);
    if (marks != nullptr && group.role == "marks") symbols.push_back(marks);
    if (auto const* child = std::get_if<std::unique_ptr<Group>>(&node)) FindSymbols(**child, symbols);
  }
}

TEST(Transforms, FilteredRowsHaveTheirPlacesOnSharedScales) {
  ChartDrawing const drawing;
  std::string const filter = R"("transform":[{"filter":{"field":"f0","lt":9}}],)";
  std::string const color = R"("color":{"field":"f2","type":"nominal"})";
  std::string const place =
      R"("x":{"field":"f0","type":"quantitative","scale":{"domain":[0,10]}},"y":{"field":"f1"},)";
  struct {
    std::string encoding;
    std::size_t panes;
  } const cases[] = {
      {place + color, 1},
      {place + color + R"(,"column":{"field":"f2"})", 2},
      {R"("longitude":{"field":"f0"},"latitude":{"field":"f1"},)" + color, 1},
      {R"("longitude":{"field":"f0"},"latitude":{"field":"f1"},"row":{"field":"f2"},)" + color, 2},
  };
  for (auto const& [encoding, panes] : cases) {
    Scene const scene =
        drawing.Draw(MakeDocument("\"point\"", R"(2 3 "a"|9 4 "a"|5 6 "b"|7 8 "a")", encoding, filter)).scene;
    std::vector<SymbolMarks const*> all;
    FindSymbols(scene.root, all);
    ASSERT_EQ(all.size(), panes) << encoding;
    int rows = 0;
    for (SymbolMarks const* marks : all) {
      rows += marks->x->AsColumn().GetCount();
      EXPECT_EQ(marks->color.column->AsColumn().GetCount(), marks->x->AsColumn().GetCount()) << encoding;
    }
    EXPECT_EQ(rows, 3) << encoding;
    if (panes != 1 || !encoding.starts_with("\"x")) continue;
    EXPECT_EQ(all.front()->x->AsTypedArray<double>().GetElement(1), 50);
  }
}

TEST(Transforms, RefuseWhatTheyCannotCompute) {
  ChartDrawing const drawing;
  struct {
    char const* transform;
    std::string encoding;
    char const* message;
  } const cases[] = {
      {R"({"filter":{"field":"f1","gt":99}})", kX + "," + kY,
       "chart.vl.json: $.transform[0].filter: no row of $.data.values passes the filter"},
      {R"({"filter":{"field":"f9","gt":1}})", kX + "," + kY,
       "chart.vl.json: no field 'f9' in $.data.values; did you mean 'f0'? Its fields are f0, f1"},
      {"", kX + R"(,"y":{"field":"f0","aggregate":"sum"})",
       "chart.vl.json: $.encoding: field 'f0' of $.data.values holds text, not numbers"},
      {"", R"("x":{"field":"f0","type":"nominal","sort":"-color"},)" + kY,
       "chart.vl.json: $.encoding.x.sort: the channel color has no field"},
      {"", R"("x":{"field":"f1","bin":{"step":0.0001}},"y":{"aggregate":"count"})",
       "node 'bin_10_0.0001_0_0_0_f1 range' (binRange): error 2: input of a kind that is not accepted: a "
       "step that "
       "makes more than 10,000 bins"},
  };
  for (auto const& [transform, encoding, message] : cases) {
    std::string const more = std::string(R"("transform":[)") + transform + "],";
    std::string found;
    try {
      found = drawing.DescribeError(MakeDocument("\"bar\"", R"("a" 4|"b" 10)", encoding, more));
    } catch (ort::core::EvaluationError const& error) {
      found = error.what();
    }
    EXPECT_EQ(found, message);
  }
}

}  // namespace
}  // namespace ostrel::charts
