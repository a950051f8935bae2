#include "../ChartDrawing.h"

namespace ostrel::charts {
namespace {

// One cell of 92 pixels' room: nine letters.
std::string MakeTable(std::string const& mark, std::string const& text,
                      std::string const& x = R"("type":"nominal","scale":{"padding":0})") {
  return R"({"width":100,"height":100,"data":{"values":[{"a":"p","n":1,"t":")" + text +
         R"(","u":"second line"}]},"mark":)" + mark + R"(,"encoding":{"x":{"field":"a",)" + x + "}," +
         R"("text":[{"field":"t"},{"field":"u"}]}})";
}

std::string MakeOneText(std::string const& properties, std::string const& text) {
  std::string json = MakeTable(R"({"type":"textTable")" + properties + "}", text);
  return json.replace(json.find(R"([{"field":"t"},{"field":"u"}])"), 29, R"({"field":"t"})");
}

TEST(TextTable, TextsWrapAndAreShortenedToTheirCells) {
  ChartDrawing const drawing;
  std::string const longWords =
      "abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi";
  struct {
    char const* properties;
    std::string text;
    char const* lines;
  } const cases[] = {
      {"", "alpha beta gamma", "alpha|beta|gamma"},
      {R"(,"fit":"truncate")", "alpha beta gamma", "alpha|beta|gamma"},
      {R"(,"fit":"hide")", longWords + " " + longWords, ""},
      {R"(,"fit":"pounds")", "alpha", "alpha"},
      {"", "a b", "a b"},
  };
  for (auto const& [properties, text, lines] : cases) {
    EXPECT_EQ(ReadTexts(drawing.Draw(MakeOneText(properties, text)).scene, "marks"), lines)
        << properties << ' ' << text;
  }
  // What is left of a text that is too long ends in two dots, on the side that its direction asks for.
  auto const draw = [&](char const* direction) {
    return ReadTexts(drawing.Draw(MakeOneText(direction, longWords + " " + longWords)).scene, "marks");
  };
  std::string const toTheRight = draw(R"(,"dir":"ltr")");
  EXPECT_EQ(toTheRight.substr(toTheRight.size() - 2), "..");
  EXPECT_EQ(draw(R"(,"dir":"rtl")").substr(0, 5), "\u200E..");
}

TEST(TextTable, LinesStandInTheirCellsByTheirAlignment) {
  struct {
    char const* properties;
    char const* text;
    double x;
    TextAnchor anchor;
  } const cases[] = {
      {R"(,"align":"left")", "alpha", 4, TextAnchor::Start},
      {R"(,"align":"center")", "alpha", 50, TextAnchor::Middle},
      {R"(,"align":"right")", "alpha", 96, TextAnchor::End},
      // Where nothing is said lines begin where they are read from.
      {"", "alpha", 4, TextAnchor::Start},
      {"", "אבג", 96, TextAnchor::End},
      {R"(,"dir":"rtl")", "alpha", 96, TextAnchor::End},
      {R"(,"dir":"ltr")", "אבג", 4, TextAnchor::Start},
  };
  ChartDrawing const drawing;
  for (auto const& c : cases) {
    Scene const scene = drawing.Draw(MakeOneText(c.properties, c.text)).scene;
    auto const marks = FindMarks<TextMark>(scene, "marks");
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_DOUBLE_EQ(marks[0]->at.x, c.x) << c.properties << ' ' << c.text;
    EXPECT_EQ(marks[0]->anchor, c.anchor) << c.properties << ' ' << c.text;
    EXPECT_GT(marks[0]->at.y, 0);
    EXPECT_LT(marks[0]->at.y, 100);
  }
}

TEST(TextTable, TheFirstOfSeveralTextsIsBold) {
  ChartDrawing const drawing;
  Scene const scene = drawing.Draw(MakeTable("\"textTable\"", "head")).scene;
  EXPECT_EQ(ReadTexts(scene, "marks"), "head|second|line");
  auto const marks = FindMarks<TextMark>(scene, "marks");
  EXPECT_EQ(marks[0]->font.weight, 700);
  EXPECT_EQ(marks[1]->font.weight, 400);
}

TEST(TextTable, WhatCannotBeSetIsRefused) {
  ChartDrawing const drawing;
  EXPECT_EQ(drawing.DescribeError(MakeOneText(R"(,"angle":45)", "a")),
            "chart.vl.json: $.mark.angle: expects one of 0, 90, -90");
  std::string quantitative = MakeTable("\"textTable\"", "a", R"("type":"quantitative")");
  quantitative.replace(quantitative.find(R"("field":"a")"), 11, R"("field":"n")");
  EXPECT_EQ(drawing.DescribeError(quantitative),
            "chart.vl.json: $.encoding.x: a text table has a cell for each value; use a nominal or ordinal "
            "field");
}

}  // namespace
}  // namespace ostrel::charts
