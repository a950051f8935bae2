#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "ChartDrawing.h"
#include "charts/functions/Palettes.h"

namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

std::string Field(std::string const& scale, std::string const& more = "") {
  return R"("color":{"field":"f0","type":"quantitative","scale":)" + scale + more + "}";
}

Scene Draw(std::string const& rows, std::string const& encoding) {
  return ChartDrawing().Draw(MakeDocument("\"circle\"", rows, encoding)).scene;
}

std::vector<int> RowColors(Scene const& scene) {
  auto const& colors = FindMarks<SymbolMarks>(scene, "marks").front()->color.column->AsTypedArray<OrtColor>();
  std::vector<int> values;
  for (int row = 0; row < colors.GetCount(); ++row) values.push_back(colors.GetElement(row).GetValue());
  return values;
}

/// The legend's boxes from the foot up.
std::vector<RectMark const*> Boxes(Scene const& scene) { return FindMarks<RectMark>(scene, "legend"); }

/// "0 1 0": the box that has each row's colour, counted from the foot.
std::string RowSteps(Scene const& scene) {
  std::string steps;
  auto const boxes = Boxes(scene);
  for (int const color : RowColors(scene)) {
    auto const box =
        std::ranges::find(boxes, color, [](RectMark const* mark) { return mark->fill.GetValue(); });
    steps += fmt::format("{}{}", steps.empty() ? "" : " ", box - boxes.begin());
  }
  return steps;
}

TEST(StepScale, PutsNumbersIntoStepsAndLabelsTheirEnds) {
  struct Case {
    char const* rows;
    std::string encoding;
    char const* steps;
    char const* labels;
  };
  std::string const three = R"("range":["#000000","#800000","#ff0000"])";
  Case const cases[] = {
      {"0|1|2|5|6|9", Field(R"({"type":"quantize",)" + three + "}"), "0 0 0 1 2 2", "f0|0|3|6|9"},
      {"-5|0|3|6|12", Field(R"({"type":"quantize","domain":[0,9],)" + three + "}"), "0 0 1 2 2",
       "f0|0|3|6|9"},
      // Reversed colours are looked for among reversed boxes.
      {"0|5|9", Field(R"({"type":"quantize","reverse":true,)" + three + "}"), "0 1 2", "f0|0|3|6|9"},
      {"0|5|10", Field(R"({"type":"quantize","scheme":{"name":"blues","count":7}})"), "0 3 6",
       "f0|0.00|1.43|2.86|4.29|5.71|7.14|8.57|10.00"},
      {"3|3", Field(R"({"type":"quantize","scheme":{"name":"blues","count":1}})"), "0 0", "f0|0|6"},
      {"0|2", Field(R"({"type":"quantize"})"), "0 4", "f0|0.0|0.4|0.8|1.2|1.6|2.0"},
      {"-1|0|1|9.5|10|400", Field(R"({"type":"threshold","domain":[0,10],)" + three + "}"), "0 1 1 1 2 2",
       "f0|0|10"},
      {"1|9", Field(R"({"type":"threshold","domain":[0,10]})"), "1 1", "f0|0|10"},
      // All steps of a middle are equally wide, and no number is outside.
      {"-3|0|10", Field(R"({"type":"quantize","domainMid":0,"scheme":{"name":"redblue","count":5}})"),
       "0 1 4", "f0|\u22124.29|\u22121.43|1.43|4.29|7.14|10.00"},
      {"-2|-1|0|1|3", Field(R"({"type":"quantize","domainMid":0,"scheme":{"name":"redblue","count":5}})"),
       "0 1 2 3 4", "f0|\u22122|\u22121|0|1|2|3"},
      {"-7|-0.5|0.5|7", Field(R"({"type":"threshold","domain":[-1,0,5],"domainMid":0})"), "0 1 2 3",
       "f0|\u22121|0|5"},
      {"-7|-0.5|0.5|7", Field(R"({"type":"threshold","domain":[-1,1,5],"domainMid":0})"), "0 1 1 3",
       "f0|\u22121|1|5"},
      {"0|4|26|44", R"("color":{"field":"f0","bin":{"step":10},"scale":{"scheme":"blues"}})", "0 0 2 4",
       "f0 (binned)|0|10|20|30|40|50"},
      {"0|4|26|44", R"("color":{"field":"f0","bin":{"step":10},"scale":{"domainMid":25}})", "0 0 2 4",
       "f0 (binned)|0|10|20|30|40|50"},
      {"1|null|9", Field(R"({"type":"threshold","domain":[5]})", R"(,"legend":{"format":".1f"})"), "0 1",
       "f0|5.0"},
  };
  for (Case const& c : cases) {
    Scene const scene = Draw(c.rows, c.encoding);
    EXPECT_EQ(RowSteps(scene), c.steps) << c.rows << " " << c.encoding;
    EXPECT_EQ(ReadTexts(scene, "legend"), c.labels) << c.rows << " " << c.encoding;
  }
}

/// Every step's colour stands as far from the middle one as the step from the middle.
TEST(StepScale, MiddleColorsStandAroundTheMiddle) {
  auto const scale = [](char const* more) {
    return std::string(R"({"type":"quantize","domain":[-8,8],"domainMid":0,"scheme":)") + more + "}";
  };
  auto const boxes = [&](std::string const& text) {
    std::vector<int> colors;
    Scene const scene = Draw("-8|8", Field(text));
    for (RectMark const* box : Boxes(scene)) colors.push_back(box->fill.GetValue());
    return colors;
  };
  auto const scheme = [](int count) { return MakePaletteColors("redblue", count, PaletteEnds::Left); };
  // As many steps on either side: those of the scheme, without its middle where that lies between two steps.
  EXPECT_EQ(boxes(scale(R"({"name":"redblue","count":5})")), scheme(5));
  std::vector<int> even = scheme(5);
  even.erase(even.begin() + 2);
  EXPECT_EQ(boxes(scale(R"({"name":"redblue","count":4})")), even);
  // All numbers on one side have that side's colours alone.
  std::vector<int> const right = boxes(R"({"type":"quantize","domain":[0,8],"domainMid":0,)"
                                       R"("scheme":{"name":"redblue","count":2}})");
  EXPECT_EQ(right, (std::vector<int>{scheme(5)[3], scheme(5)[4]}));
}

TEST(StepScale, FindsTheMiddleWhereTheDomainStraddlesZero) {
  auto const colors = [](char const* rows, char const* scale) { return RowColors(Draw(rows, Field(scale))); };
  char const* const automatic = R"({"domainMid":"auto"})";
  EXPECT_EQ(colors("-4|0|8", automatic), colors("-4|0|8", R"({"domainMid":0})"));
  EXPECT_EQ(colors("4|8", automatic), colors("4|8", "{}"));
  // Below 0 the strongest colour is the lowest number's.
  EXPECT_EQ(colors("-8|-4", automatic), colors("-8|-4", R"({"reverse":true})"));
  EXPECT_EQ(colors("-8|-4", R"({"type":"quantize","domainMid":"auto"})"),
            colors("-8|-4", R"({"type":"quantize","reverse":true})"));
  EXPECT_EQ(colors("-8|4", R"({"type":"quantize","domainMid":"auto"})"),
            colors("-8|4", R"({"type":"quantize","domainMid":0})"));
}

TEST(StepScale, RowsHaveTheColorOfTheBoxBetweenWhoseEndsTheyLie) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> number(-50, 100);
  for (int round = 0; round < 60; ++round) {
    int const count = 1 + round % 9;
    double const low = -10 - std::abs(number(random));
    double const high = 10 + std::abs(number(random));
    bool const hasMiddle = round % 2 == 1;
    std::vector<double> numbers;
    std::string rows;
    for (int i = 0; i < 40; ++i) {
      numbers.push_back(number(random));
      rows += fmt::format("{}{}", i == 0 ? "" : "|", numbers.back());
    }
    Scene const scene =
        Draw(rows,
             Field(fmt::format(
                       R"({{"type":"quantize","domain":[{},{}],{}"scheme":{{"name":"redblue","count":{}}}}})",
                       low, high, hasMiddle ? R"("domainMid":1.5,)" : "", count),
                   R"(,"legend":{"format":".17g"})"));
    auto const boxes = Boxes(scene);
    ASSERT_EQ(boxes.size(), static_cast<std::size_t>(count));
    // The labels of the legend's lowest and highest end, if not all.
    auto const texts = FindMarks<TextMark>(scene, "legend");
    auto const read = [&](std::size_t i) {
      std::string text = texts[i]->text;
      if (text.starts_with("\u2212")) text.replace(0, 3, "-");
      return std::stod(text);
    };
    double const first = read(1);
    double const last = read(texts.size() - 1);
    EXPECT_LE(first, low + 1e-9);
    EXPECT_GE(last, high - 1e-9);
    auto const colors = RowColors(scene);
    for (std::size_t row = 0; row < numbers.size(); ++row) {
      double const place = (numbers[row] - first) / (last - first) * count;
      if (std::abs(place - std::round(place)) < 1e-6) continue;
      auto const step = static_cast<std::size_t>(std::clamp(std::floor(place), 0.0, count - 1.0));
      EXPECT_EQ(colors[row], boxes[step]->fill.GetValue()) << round << " " << numbers[row];
    }
    for (std::size_t i = 1; i < boxes.size(); ++i) {
      EXPECT_NEAR(boxes[i]->rect.Bottom(), boxes[i - 1]->rect.y, 1e-9);
      EXPECT_NEAR(boxes[i]->rect.height, boxes[0]->rect.height, 1e-9);
    }
    for (std::size_t i = 2; i < texts.size(); ++i) EXPECT_GE(texts[i - 1]->at.y - texts[i]->at.y, 10);
  }
}

}  // namespace
}  // namespace ostrel::charts
