#include "ChartDrawing.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {
namespace {

std::string const kRows = R"(0 "b"|10 "a"|4 "c"|7 "d"|9 "e")";
constexpr char const* kPlaces = R"("x":{"field":"f0","type":"quantitative","axis":{"title":"t"}},)"
                                R"("y":{"field":"f0","type":"quantitative"})";

Scene Draw(std::string const& more, std::string const& encoding = kPlaces) {
  return ChartDrawing().Draw(MakeDocument("\"point\"", kRows, encoding, more)).scene;
}

/// What an axis' lines look like: "#ff0000 2 (6)|...", the number of them in parentheses.
std::string ReadLines(Scene const& scene, std::string_view role) {
  std::string text;
  for (RuleMarks const* rules : FindMarks<RuleMarks>(scene, role)) {
    char line[64];
    std::snprintf(line, sizeof line, "%08x %g %zu %zu", static_cast<unsigned>(rules->stroke.color.GetValue()),
                  rules->stroke.width, rules->stroke.dash.size(), rules->rules.size());
    text += (text.empty() ? "" : "|") + std::string(line);
  }
  return text;
}

TEST(GuideLooks, OfAxesAreTheirOwnOrThoseOfTheirDirectionOrOfAll) {
  std::string const config =
      R"("config":{"axis":{"gridColor":"blue","tickColor":"red","labelColor":"green","titleFontSize":20},)"
      R"("axisY":{"gridColor":"lime","gridDash":[2,2],"gridOpacity":0.2,"domainWidth":3}},)";
  Scene const scene = Draw(config);
  EXPECT_EQ(ReadLines(scene, "grid x"), "ff0000ff 1 0 3");
  EXPECT_EQ(ReadLines(scene, "grid y"), "3300ff00 1 2 3");
  EXPECT_EQ(ReadLines(scene, "axis x"), "ff888888 1 0 1|ffff0000 1 0 3");
  EXPECT_EQ(ReadLines(scene, "axis y"), "ff888888 3 0 1|ffff0000 1 0 3");
  auto const texts = FindMarks<TextMark>(scene, "axis x");
  EXPECT_EQ(static_cast<unsigned>(texts.front()->color.GetValue()), 0xFF008000U);
  EXPECT_EQ(texts.back()->font.size, 20);
}

TEST(GuideLooks, MoveLabelsAndTitlesByTheirLengths) {
  auto const draw = [](std::string const& axis) {
    Scene const scene = Draw("", R"("x":{"field":"f0","type":"quantitative","axis":)" + axis + "}");
    auto const texts = FindMarks<TextMark>(scene, "axis x");
    return std::pair(texts.front()->at.y, texts.back()->at.y);
  };
  auto const [label, title] = draw(R"({"title":"t"})");
  EXPECT_EQ(draw(R"({"title":"t","tickSize":0})"), std::pair(label - 5, title - 5));
  EXPECT_EQ(draw(R"({"title":"t","labelPadding":10})"), std::pair(label + 7, title + 7));
  EXPECT_EQ(draw(R"({"title":"t","titlePadding":0})"), std::pair(label, title - 8));
  EXPECT_EQ(draw(R"({"title":"t","offset":6})"), std::pair(label + 6, title + 6));
}

TEST(GuideLooks, TicksAreNoCloserThanTheirLeastStep) {
  auto const read = [](char const* axis) {
    std::string const encoding = R"("x":{"field":"f0","type":"quantitative","title":null,"axis":)";
    return ReadTexts(Draw("", encoding + axis + "}"), "axis x");
  };
  EXPECT_EQ(read(R"({"tickCount":10})"), "0|4|8");  // every second label has room
  EXPECT_EQ(read(R"({"tickCount":10,"tickMinStep":5})"), "0|5|10");
  EXPECT_EQ(read(R"({"tickCount":10,"tickMinStep":50})"), "0|10");
}

/// Where the entries' labels begin: "x,y|...", from the first one.
std::string ReadPlaces(std::string const& legend) {
  Scene const scene =
      Draw("", R"("color":{"field":"f1","type":"nominal","title":null,"legend":)" + legend + "}");
  auto const texts = FindMarks<TextMark>(scene, "legend");
  std::string places;
  for (TextMark const* text : texts) {
    places += (places.empty() ? "" : "|") + std::to_string(std::lround(text->at.x - texts.front()->at.x)) +
              "," + std::to_string(std::lround(text->at.y - texts.front()->at.y));
  }
  return places;
}

TEST(LegendLooks, RunInADirectionOrInColumns) {
  EXPECT_EQ(ReadPlaces("{}"), "0,0|0,15|0,30|0,45|0,60");
  EXPECT_EQ(ReadPlaces(R"({"columns":2})"), "0,0|40,0|0,15|40,15|0,30");
  EXPECT_EQ(ReadPlaces(R"({"columns":0})"), "0,0|40,0|80,0|120,0|160,0");
  EXPECT_EQ(ReadPlaces(R"({"columns":9,"direction":"vertical"})"), "0,0|40,0|80,0|120,0|160,0");
  EXPECT_EQ(ReadPlaces(R"({"orient":"bottom","direction":"vertical"})"), ReadPlaces("{}"));
  // In lines as long as the chart.
  EXPECT_EQ(ReadPlaces(R"({"direction":"horizontal"})"), ReadPlaces(R"({"orient":"top"})"));
}

TEST(LegendLooks, ShowTheSymbolsOfTheDocument) {
  Scene const scene = Draw("", R"("color":{"field":"f1","type":"nominal","legend":{"symbolType":"diamond",)"
                               R"("symbolSize":400,"labelColor":"red","labelFontSize":20}})");
  SymbolMarks const& symbol = *FindMarks<SymbolMarks>(scene, "legend").front();
  EXPECT_EQ(symbol.shape.constant, SymbolShape::Diamond);
  EXPECT_EQ(symbol.size.constant, 400);
  TextMark const& label = *FindMarks<TextMark>(scene, "legend").back();
  EXPECT_EQ(static_cast<unsigned>(label.color.GetValue()), 0xFFFF0000U);
  EXPECT_EQ(label.font.size, 20);
}

TEST(Titles, StandWhereTheirAnchorSays) {
  auto const place = [](std::string const& title) {
    Scene const scene = Draw("\"title\":" + title + ",");
    TextMark const& text = *FindMarks<TextMark>(scene, "title").back();
    return std::pair(text.at.x, text.at.y);
  };
  // Placed by the end that the anchor names.
  auto const [x, y] = place(R"("T")");
  EXPECT_EQ(x, 0);
  EXPECT_EQ(place(R"({"text":"T","anchor":"middle"})"), std::pair(50.0, y));
  EXPECT_EQ(place(R"({"text":"T","anchor":"end","offset":0})"), std::pair(100.0, y + 10));
}

TEST(Views, HaveAGroundAndALineAroundThem) {
  Scene const scene =
      Draw(R"("view":{"fill":"red","stroke":"blue","strokeWidth":3},"padding":{"left":5,"top":40},)"
           R"("config":{"view":{"fill":"lime"},"background":"black"},)",
           R"("x":{"value":5})");
  EXPECT_EQ(static_cast<unsigned>(FindMarks<RectMark>(scene, "ground").front()->fill.GetValue()),
            0xFFFF0000U);
  Stroke const& line = FindMarks<RectMark>(scene, "frame").front()->stroke;
  EXPECT_EQ(static_cast<unsigned>(line.color.GetValue()), 0xFF0000FFU);
  EXPECT_EQ(line.width, 3);
  EXPECT_EQ(static_cast<unsigned>(scene.background.GetValue()), 0xFF000000U);
  EXPECT_EQ(FindGroup(scene.root, "plot")->origin.x, 5.5);
  EXPECT_EQ(FindGroup(scene.root, "plot")->origin.y, 40.5);
}

}  // namespace
}  // namespace ostrel::charts
