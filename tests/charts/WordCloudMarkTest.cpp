#include <fmt/format.h>

#include <cmath>

#include "ChartDrawing.h"
#include "TestPaths.h"

namespace ostrel::charts {
namespace {

std::string const kText = R"("text":{"field":"f0"})";
std::string const kSize = kText + R"(,"size":{"field":"f1","type":"quantitative"})";

// Draws with the fonts of the machine, where a word is as wide as its font makes it.
class WordCloudMark : public testing::Test {
 protected:
  WordCloudMark() {
    OstrelTransforms::RegisterAllRuntimeFunctions(registry_);
    RegisterChartFunctions(registry_, services_.ShareMeasurer());
  }

  DrawnChart Draw(std::string const& json) {
    std::filesystem::path const data = std::filesystem::path(OSTREL_SOURCE_DIR) / "examples/data";
    ChartDocument const document = ParseChartDocument(json, "chart.vl.json");
    return DrawChart(document, {data, data}, {}, {registry_, services_.GetMeasurer()});
  }

  // The rooms of all words, none of which overlaps another or is cut.
  std::vector<Rect> ReadRooms(Scene const& scene, double width, double height) {
    TextSetter const setter(services_.GetMeasurer(), kFontFamily);
    std::vector<Rect> rooms;
    constexpr double kRounding = 0.01;
    for (TextMark const* word : FindMarks<TextMark>(scene, "marks")) {
      Rect const room = setter.MeasureRect(*word);
      EXPECT_TRUE(room.x > -kRounding && room.y > -kRounding && room.Right() < width + kRounding &&
                  room.Bottom() < height + kRounding)
          << word->text;
      for (Rect const& other : rooms) {
        bool const overlaps = room.x < other.Right() && other.x < room.Right() && room.y < other.Bottom() &&
                              other.y < room.Bottom();
        EXPECT_FALSE(overlaps) << word->text;
      }
      rooms.push_back(room);
    }
    return rooms;
  }

  services::InstalledServices services_ = services::InstallServices();
  ort::core::FunctionRegistry registry_;
};

TEST_F(WordCloudMark, TheCloudOfATextFillsItsPlot) {
  auto const drawn = Draw(R"({"width":500,"height":300,
      "data":{"url":"sotu-1961.txt","format":{"type":"text","limit":120}},
      "mark":{"type":"wordCloud","orientations":[0,-90]},
      "encoding":{"text":{"field":"word"},"size":{"field":"count","type":"quantitative"}}})");
  EXPECT_TRUE(drawn.warnings.empty());
  auto const rooms = ReadRooms(drawn.scene, 500, 300);
  ASSERT_EQ(rooms.size(), 120U);
  Extent extent(rooms[0]);
  double area = 0;
  for (Rect const& room : rooms) {
    extent.Add(room);
    area += room.width * room.height;
  }
  Rect const cloud = extent.GetRect();
  EXPECT_NEAR(cloud.x + cloud.Right(), 500, 0.01);
  EXPECT_NEAR(cloud.y + cloud.Bottom(), 300, 0.01);
  EXPECT_GT(cloud.width, 400);
  EXPECT_GT(cloud.height, 270);
  EXPECT_GT(area, 0.4 * 500 * 300);
}

TEST_F(WordCloudMark, AreasAreInProportionAndOrientationsInTurn) {
  auto const drawn =
      Draw(MakeDocument(R"({"type":"wordCloud","orientations":[0,90],"color":"#102030","opacity":0.5})",
                        R"("b" 4|"a" 16|"c" 1|"d" 0|"e" -2|"f" null|null 9)", kSize));
  auto const words = FindMarks<TextMark>(drawn.scene, "marks");
  EXPECT_EQ(ReadTexts(drawn.scene, "marks"), "a|b|c");
  ASSERT_EQ(words.size(), 3U);
  EXPECT_NEAR(words[1]->font.size, words[0]->font.size / 2, 1e-9);
  EXPECT_NEAR(words[2]->font.size, words[0]->font.size / 4, 1e-9);
  EXPECT_EQ(words[0]->angle, 0);
  EXPECT_EQ(words[1]->angle, 90);
  EXPECT_EQ(words[2]->angle, 0);
  EXPECT_EQ(words[0]->color.GetValue(), static_cast<int>(0x80102030));
  ReadRooms(drawn.scene, 100, 100);
  EXPECT_EQ(drawn.warnings,
            std::vector<std::string>{"3 of 7 rows have no number above 0 in 'f1' for the words; not drawn"});
}

TEST_F(WordCloudMark, WordsWithoutSizesAreEquallyLarge) {
  auto const drawn = Draw(MakeDocument("\"wordCloud\"", R"("one"|"two"|"three")", kText));
  auto const words = FindMarks<TextMark>(drawn.scene, "marks");
  ASSERT_EQ(words.size(), 3U);
  for (TextMark const* word : words) EXPECT_EQ(word->font.size, words[0]->font.size);
  ReadRooms(drawn.scene, 100, 100);
  EXPECT_TRUE(Draw(MakeDocument("\"wordCloud\"", R"("a" 0|"b" null)", kSize)).scene.width > 0);
}

TEST_F(WordCloudMark, WordsWithoutRoomAreNamed) {
  // The gap between words is wider than the plot has room for, however small the words are.
  std::string rows;
  for (int i = 0; i < 60; ++i) rows += fmt::format("{}\"word{}\"", i == 0 ? "" : "|", i);
  std::string document = MakeDocument("\"wordCloud\"", rows, kText);
  document.replace(document.find("100"), 3, "9");
  document.replace(document.find("100"), 3, "9");
  auto const drawn = Draw(document);
  std::size_t const shown = ReadRooms(drawn.scene, 9, 9).size();
  EXPECT_LT(shown, 30U);
  ASSERT_EQ(drawn.warnings.size(), 1U);
  EXPECT_TRUE(drawn.warnings[0].starts_with(
      fmt::format("{} of 60 words of 'f0' have no room, however small: 'word", 60 - shown)))
      << drawn.warnings[0];
  EXPECT_TRUE(drawn.warnings[0].ends_with(" and others; not drawn")) << drawn.warnings[0];
}

TEST_F(WordCloudMark, RefusesWhatItWouldPassOver) {
  struct Case {
    std::string mark;
    std::string encoding;
    char const* error;
  };
  std::string const cloud = "\"wordCloud\"";
  Case const cases[] = {
      {cloud, R"("size":{"field":"f1","type":"quantitative"})",
       "chart.vl.json: $.encoding: a word cloud needs a field in the channel text"},
      {cloud, kText + R"(,"size":{"value":4})",
       "chart.vl.json: $.encoding.size.value: words of one size need no size; leave it out"},
      {cloud, kText + R"(,"size":{"field":"f1","type":"nominal"})",
       "chart.vl.json: $.encoding.size.type: a word's area is a number; use \"quantitative\""},
      {cloud, kText + R"(,"size":{"field":"f1","type":"quantitative","scale":{"type":"log"}})",
       "chart.vl.json: $.encoding.size.scale: words are as large as the plot has room for; leave it out"},
      {R"({"type":"wordCloud","orientations":[45]})", kText,
       "chart.vl.json: $.mark.orientations[0]: expects a multiple of 90 degrees"},
      {R"({"type":"wordCloud","orientations":[]})", kText,
       "chart.vl.json: $.mark.orientations: has no values; leave it out"},
      {R"({"type":"line","orientations":[0]})", "",
       "chart.vl.json: $.mark.orientations: is for the mark wordCloud only; leave it out"},
  };
  for (auto const& [mark, encoding, error] : cases) {
    try {
      Draw(MakeDocument(mark, R"("a" 1)", encoding));
      ADD_FAILURE() << error;
    } catch (DocumentError const& thrown) {
      EXPECT_STREQ(thrown.what(), error);
    }
  }
}

}  // namespace
}  // namespace ostrel::charts
