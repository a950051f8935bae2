#include <fmt/format.h>

#include <random>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

std::string const kAll =
    R"("size":{"field":"f2","type":"quantitative"},"detail":[{"field":"f0"},{"field":"f1"}])";
std::string const kSize = R"("size":{"field":"f2","type":"quantitative"})";

struct Tile {
  Rect rect;
  ort::core::OrtColor color;
};

std::vector<Tile> ReadTiles(RectMarks const& marks) {
  std::vector<Tile> tiles;
  auto const get = [](auto const& column, int row) {
    return column->template AsTypedArray<double>().GetElement(row);
  };
  for (int row = 0; row < marks.x->AsColumn().GetCount(); ++row) {
    double const x = get(marks.x, row), y = get(marks.y, row);
    auto const& colors = marks.color.column;
    tiles.push_back(
        {{x, y, get(marks.x2, row) - x, get(marks.y2, row) - y},
         colors ? colors->AsTypedArray<ort::core::OrtColor>().GetElement(row) : marks.color.constant});
  }
  return tiles;
}

// "0,0 50x100|...": the last rectangles that a chart draws are its leaves, those before its groups.
std::string Describe(std::vector<Tile> const& tiles) {
  std::string text;
  for (Tile const& tile : tiles) {
    text += fmt::format("{}{:.0f},{:.0f} {:.0f}x{:.0f}", text.empty() ? "" : "|", tile.rect.x, tile.rect.y,
                        tile.rect.width, tile.rect.height);
  }
  return text;
}

TEST(TreemapMark, RowsOfOnePathAreOneLeaf) {
  ChartDrawing const drawing;
  struct Case {
    char const* rows;
    std::string encoding;
    char const* leaves;
    char const* labels;
  };
  Case const cases[] = {
      {R"("a" "p" 3|"a" "q" 1)", kSize, "0,0 75x100|75,0 25x100", ""},
      {R"("a" "p" 1|"a" "q" 1|"b" "p" 2)", kSize + R"(,"detail":{"field":"f0"})", "0,0 100x50|0,50 100x50",
       "a|b"},
      {R"("a" "p" 0|"b" "p" 0|"a" "q" 0)", R"("detail":{"field":"f0"})", "0,0 67x100|67,0 33x100", "a|b"},
      {R"("a" "p" 3|"a" "p" 1|"a" "q" 4)", kAll, "1,19 49x80|50,19 49x80", "a|p|q"},
      {R"("a" "p" 3|"b" "p" 3)", kAll, "1,19 98x30|1,69 98x30", "a|b|p|p"},
      {R"("a" "p" 3|"a" "q" 0|null "p" 3)", kAll, "1,19 98x30|1,69 98x30", "a|p|p"},
      {R"("a" "p" -3|"a" "q" null)", kAll, "", ""},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.rows);
    Scene const scene = drawing.Draw(MakeDocument("\"treemap\"", c.rows, c.encoding)).scene;
    auto const marks = FindMarks<RectMarks>(scene, "marks");
    ASSERT_FALSE(marks.empty());
    EXPECT_EQ(Describe(ReadTiles(*marks.back())), c.leaves);
    EXPECT_EQ(ReadTexts(scene, "marks"), c.labels);
  }
}

TEST(TreemapMark, RowsWithoutAreaAreTold) {
  ChartDrawing const drawing;
  auto const drawn =
      drawing.Draw(MakeDocument("\"treemap\"", R"("a" "p" -3|"a" "q" null|"b" "p" 0|"b" "q" 1)", kAll));
  EXPECT_EQ(drawn.warnings,
            std::vector<std::string>{"3 of 4 rows have no number above 0 in 'f2' for an area; not drawn"});
}

TEST(TreemapMark, LeavesTakeTheColorOfTheirFirstRow) {
  ChartDrawing const drawing;
  Scene const scene =
      drawing
          .Draw(MakeDocument(
              "\"treemap\"", R"("a" "p" 3|"a" "p" 1|"b" "q" 2)",
              kAll + R"(,"color":{"field":"f0","type":"nominal","scale":{"range":["#102030","#405060"]}})"))
          .scene;
  auto const tiles = ReadTiles(*FindMarks<RectMarks>(scene, "marks").back());
  ASSERT_EQ(tiles.size(), 2U);
  EXPECT_EQ(tiles[0].color.GetValue(), static_cast<int>(0xFF102030));
  EXPECT_EQ(tiles[1].color.GetValue(), static_cast<int>(0xFF405060));
  EXPECT_EQ(ReadTexts(scene, "legend"), "f0|a|b");
}

TEST(TreemapMark, LeavesSayTheTextAndTooltipOfTheirFirstRow) {
  ChartDrawing const drawing;
  std::string const texts =
      R"(,"text":{"field":"f2","type":"quantitative","format":".1f"},"tooltip":[{"field":"f1"},{"field":"f2"}])";
  Scene const scene =
      drawing.Draw(MakeDocument("\"treemap\"", R"("a" "p" -1|"a" "p" 3|"a" "p" 1|"b" "q" 3)", kAll + texts))
          .scene;
  EXPECT_EQ(ReadTexts(scene, "marks"), "a|b|3.0|3.0");
  Scene const wide =
      drawing.Draw(MakeDocument("\"treemap\"", R"("a" "p" 10000000000|"a" "q" 2)", kAll + texts)).scene;
  EXPECT_EQ(ReadTexts(wide, "marks"), "a") << "numbers are not cut";
  auto const& tooltips = *FindMarks<RectMarks>(scene, "marks").back()->tooltips;
  auto const read = [&](int row) {
    return tooltips.AsTypedArray<ort::core::RIndirectString>().GetElement(row).Get().toUtf8();
  };
  EXPECT_EQ(read(0), "f1: p\nf2: 3");
  EXPECT_EQ(read(1), "f1: q\nf2: 3");
}

// Labels lie in a rectangle of their own and keep three letters at least.
TEST(TreemapMark, LabelsAreNeitherCutNorOverlapping) {
  std::mt19937 random(3);
  auto const measurer = services::MakeFixedMeasurer();
  TextSetter const setter(*measurer, kFontFamily);
  ChartDrawing const drawing;
  int labels = 0;
  for (int round = 0; round < 20; ++round) {
    std::string rows;
    for (int row = 0; row < 30; ++row) {
      rows += fmt::format("{}\"group{}\" \"leaf{}\" {}", row == 0 ? "" : "|", random() % 4,
                          std::string(random() % 9, 'x') + std::to_string(row), 1 + random() % 1000);
    }
    std::string document = MakeDocument("\"treemap\"", rows, kAll);
    document.replace(document.find("\"width\":100"), 11, "\"width\":600");
    document.replace(document.find("\"height\":100"), 12, "\"height\":400");
    Scene const scene = drawing.Draw(document).scene;
    std::vector<Rect> taken;
    for (TextMark const* text : FindMarks<TextMark>(scene, "marks")) {
      Rect const rect = setter.MeasureRect(*text);
      ++labels;
      EXPECT_GE(text->text.size(), 4U);
      int holders = 0;
      for (RectMarks const* marks : FindMarks<RectMarks>(scene, "marks")) {
        for (Tile const& tile : ReadTiles(*marks)) {
          bool const isInside = rect.x >= tile.rect.x && rect.y >= tile.rect.y &&
                                rect.Right() <= tile.rect.Right() && rect.Bottom() <= tile.rect.Bottom();
          holders += isInside ? 1 : 0;
        }
      }
      EXPECT_GE(holders, 1) << text->text;
      for (Rect const& other : taken) {
        bool const isApart = rect.Right() <= other.x || other.Right() <= rect.x || rect.Bottom() <= other.y ||
                             other.Bottom() <= rect.y;
        EXPECT_TRUE(isApart) << text->text;
      }
      taken.push_back(rect);
    }
  }
  EXPECT_GT(labels, 100);
}

TEST(TreemapMark, RefusesWhatItWouldPassOver) {
  ChartDrawing const drawing;
  struct Case {
    std::string encoding;
    char const* error;
  };
  Case const cases[] = {
      {R"("size":{"field":"f2","type":"nominal"})",
       "chart.vl.json: $.encoding.size.type: areas need numbers; use \"quantitative\""},
      {kSize + R"(,"text":{"value":"t"})",
       "chart.vl.json: $.encoding.text: a constant tells no rectangles apart; use a field"},
      {kSize + R"(,"detail":[{"field":"f0"},{"field":"none"}])",
       "chart.vl.json: no field 'none' in $.data.values. Its fields are f0, f1, f2"},
  };
  for (Case const& c : cases) {
    EXPECT_EQ(drawing.DescribeError(MakeDocument("\"treemap\"", R"("a" "p" 3)", c.encoding)), c.error);
  }
  EXPECT_NE(
      drawing.DescribeError(MakeDocument("\"treemap\"", "1", R"("x":{"field":"f0","type":"quantitative"})"))
          .find("$.encoding.x: is for"),
      std::string::npos);
}

}  // namespace
}  // namespace ostrel::charts
