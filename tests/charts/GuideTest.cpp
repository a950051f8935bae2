#include <fmt/format.h>

#include "ChartDrawing.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {
namespace {

std::string const kRows = R"(0 "b" "2020-01-01"|10 "a" "2020-03-01")";

TEST(Guides, ShowTheValuesThatTheirScaleOrTheDocumentNames) {
  struct Case {
    char const* group;
    std::string encoding;
    char const* expected;
  };
  Case const cases[] = {
      {"axis x", R"("x":{"field":"f0","type":"quantitative","axis":{"tickCount":2}})", "0|5|10|f0"},
      {"axis x", R"("x":{"field":"f0","type":"quantitative","axis":{"values":[0,4,99]}})", "0|4|f0"},
      {"axis x", R"("x":{"field":"f1","type":"nominal","title":null})", "a|b"},
      {"axis x", R"("x":{"field":"f1","type":"nominal","title":"","axis":{"values":["b","q"]}})", "b"},
      {"axis x",
       R"("x":{"field":"f2","type":"temporal","title":null,"axis":{"values":["2020-02-01"],"format":"%d.%m."}})",
       "01.02."},
      {"axis y", R"("y":{"field":"f0","type":"quantitative","axis":null})", ""},
      {"axis y", R"("y":{"field":"f1","type":"nominal","title":["two","lines"]})", "a|b|two|lines"},
      {"axis y", R"("y":{"field":"f0","type":"quantitative","axis":{"labels":false}})", "f0"},
      // Ticks of bins are where they end.
      {"axis x", R"("x":{"field":"f0","bin":{"step":4}})", "0|4|8|12|f0 (binned)"},
      {"legend", R"("size":{"field":"f0","bin":{"step":6}})", "f0 (binned)|0 \u2013 6|6 \u2013 12"},
      {"legend", R"("color":{"field":"f0","bin":{"step":6},"type":"ordinal"})",
       "f0 (binned)|0 \u2013 6|6 \u2013 12"},
      {"axis x", R"("x":{"timeUnit":"yearmonth","field":"f2","axis":{"tickCount":2}})",
       "Jan 2020|f2 (year-month)"},
      {"legend", R"("color":{"field":"f1","type":"nominal"})", "f1|a|b"},
      {"legend", R"("color":{"field":"f1","type":"nominal","sort":null})", "f1|b|a"},
      {"legend", R"("color":{"field":"f1","type":"nominal","legend":{"values":["b","x"]}})", "f1|b"},
      {"legend", R"("color":{"field":"f1","type":"nominal","legend":null})", ""},
      {"legend", R"("shape":{"field":"f1","title":"Kind"})", "Kind|a|b"},
      // Scales that show the same values share a legend.
      {"legend", R"("color":{"field":"f1","type":"nominal"},"shape":{"field":"f1"})", "f1|a|b"},
      {"legend", R"("color":{"field":"f1","type":"nominal"},"shape":{"field":"f1","sort":"descending"})",
       "f1|a|b|f1|b|a"},
      {"legend", R"("color":{"field":"f0","type":"quantitative","legend":{"values":[2,11,8]}})", "f0|2|8"},
      {"legend",
       R"("color":{"field":"f2","type":"temporal","legend":{"values":["2020-02-01"],"format":"%m"}})",
       "f2|02"},
      // A symbol of size 0 shows nothing.
      {"legend", R"("size":{"field":"f0","type":"quantitative"})", "f0|2|4|6|8|10"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const document = MakeDocument("\"point\"", kRows, c.encoding);
    EXPECT_EQ(ReadTexts(drawing.Draw(document).scene, c.group), c.expected) << document;
  }
  // Bins of the data tell their step.
  std::string const binned = R"("x":{"field":"f0","bin":{"binned":true,"step":5}},"x2":{"field":"f0"})";
  EXPECT_EQ(ReadTexts(drawing.Draw(MakeDocument("\"bar\"", kRows, binned)).scene, "axis x"), "0|5|10|f0");
}

TEST(Guides, TakeFromTheConfigurationWhatTheyLeaveOpen) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& config, std::string const& axis) {
    return drawing
        .Draw(MakeDocument("\"bar\"", kRows,
                           R"("y":{"field":"f0","type":"quantitative"},"x":{"field":"f1","type":"nominal",)"
                           R"("axis":)" +
                               axis + "}",
                           R"("config":)" + config + ","))
        .scene;
  };
  auto const countLines = [](Scene const& scene, char const* role) {
    std::size_t count = 0;
    for (RuleMarks const* rules : FindMarks<RuleMarks>(scene, role)) count += rules->rules.size();
    return count;
  };
  // The line of the axis and a tick for each value; those at the ends of bands are one more.
  EXPECT_EQ(countLines(draw("{}", "{}"), "axis x"), 3U);
  EXPECT_EQ(countLines(draw(R"({"axis":{"domain":false}})", "{}"), "axis x"), 2U);
  EXPECT_EQ(countLines(draw(R"({"axis":{"domain":false}})", R"({"domain":true,"ticks":false})"), "axis x"),
            1U);
  EXPECT_EQ(countLines(draw(R"({"axis":{"tickBand":"extent","grid":true}})", "{}"), "grid x"), 3U);
  EXPECT_EQ(countLines(draw(R"({"axis":{"grid":true}})", R"({"grid":false})"), "grid x"), 0U);
  EXPECT_EQ(FindGroup(draw("{}", "{}").root, "frame"), nullptr);
  EXPECT_NE(FindGroup(draw(R"({"view":{"stroke":"red"}})", "{}").root, "frame"), nullptr);
}

std::vector<int> LegendShapes(Scene const& scene) {
  std::vector<int> shapes;
  for (SymbolMarks const* marks : FindMarks<SymbolMarks>(scene, "legend"))
    shapes.push_back(static_cast<int>(marks->shape.constant));
  return shapes;
}

TEST(Guides, ShapesFollowTheDocumentsRange) {
  ChartDrawing const drawing;
  auto const shapes = [&](char const* scale) {
    return LegendShapes(
        drawing
            .Draw(MakeDocument("\"point\"", kRows,
                               std::string(R"("shape":{"field":"f1","scale":)") + scale + "}"))
            .scene);
  };
  constexpr int kSquare = static_cast<int>(SymbolShape::Square);
  constexpr int kCross = static_cast<int>(SymbolShape::Cross);
  EXPECT_EQ(shapes(R"({"range":["square","cross"]})"), (std::vector{kSquare, kCross}));
  EXPECT_EQ(shapes(R"({"range":["square","cross"],"reverse":true})"), (std::vector{kCross, kSquare}));
  EXPECT_EQ(shapes(R"({"range":["square"]})"), (std::vector{kSquare, kSquare}));
}

std::string ManyCategories(int count) {
  std::string rows;
  for (int i = 0; i < count; ++i) rows += fmt::format("{}\"{:05}\"", i == 0 ? "" : "|", i);
  return rows;
}

// Rows of hidden entries neither stack nor widen the axis; the others keep their colors.
TEST(Guides, LegendsHideMarks) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& legend) {
    return drawing
        .Draw(MakeDocument("\"bar\"", R"("u" 4 "p"|"u" 6 "q"|"v" 2 "r"|"v" 3 null)",
                           R"("x":{"field":"f0","type":"nominal"},"y":{"field":"f1","type":"quantitative"},)"
                           R"("color":{"field":"f2","type":"nominal")" +
                               legend + "}"))
        .scene;
  };
  auto const describe = [](Scene const& scene) {
    std::string text;
    for (SymbolMarks const* sample : FindMarks<SymbolMarks>(scene, "legend"))
      text += fmt::format(" {:x}@{:.3g}", static_cast<unsigned>(sample->color.constant.GetValue()),
                          sample->opacity.constant);
    return ReadTexts(scene, "legend") + text + " " + ReadTexts(scene, "axis y");
  };
  EXPECT_EQ(describe(draw("")), "f2|null|p|q|r ff4c78a8@1 fff58518@1 ffe45756@1 ff72b7b2@1 0|5|10|f1");
  EXPECT_EQ(describe(draw(R"(,"legend":{"hidden":["q"]})")),
            "f2|null|p|q|r ff4c78a8@1 fff58518@1 ffe45756@0.25 ff72b7b2@1 0|2|4|f1");
  EXPECT_EQ(describe(draw(R"(,"scale":{"domain":["r","q","p"]},"legend":{"hidden":["p","q"]})")),
            "f2|r|q|p ff4c78a8@1 fff58518@0.25 ffe45756@0.25 0|2|4|f1");
  EXPECT_EQ(
      drawing.DescribeError(MakeDocument(
          "\"point\"", R"("u"|"u")", R"("color":{"field":"f0","type":"nominal","legend":{"hidden":["u"]}})")),
      "chart.vl.json: $: no row of $.data.values is left by the values that legends hide");
}

// "5,6 a|45,6 b": where the middle of each entry's symbol stands, and its label.
std::string DescribeEntries(Scene const& scene) {
  std::string text;
  auto const symbols = FindMarks<SymbolMarks>(scene, "legend");
  auto const labels = FindMarks<TextMark>(scene, "legend");
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    double const x = symbols[i]->x->AsTypedArray<double>().GetElement(0);
    double const y = symbols[i]->y->AsTypedArray<double>().GetElement(0);
    text += fmt::format("{}{:.0f},{} {}", i == 0 ? "" : "|", x, y, labels[i]->text);
  }
  return text;
}

TEST(Guides, LegendsStandOnAnySide) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& side, char const* color) {
    return drawing
        .Draw(MakeDocument("\"point\"", R"("a" 1|"bb" 2|"ccc" 3|"d" 4)",
                           std::string(color) + R"(,"legend":{"orient":")" + side + "\"}}"))
        .scene;
  };
  constexpr char const* kNames = R"("color":{"field":"f0","title":null)";
  constexpr char const* kSizes = R"("size":{"field":"f1","type":"quantitative","title":null)";
  constexpr char const* kRamp = R"("color":{"field":"f1","type":"quantitative","title":null)";
  auto const originOf = [](Scene const& scene) { return FindGroup(scene.root, "legend")->origin; };

  // Beside the pane of 100 by 100 pixels entries stand below one another, along it in lines as wide as it is.
  EXPECT_EQ(DescribeEntries(draw("left", kNames)), "5,6 a|5,21 bb|5,36 ccc|5,51 d");
  EXPECT_EQ(DescribeEntries(draw("top", kNames)), "5,6 a|45,6 bb|5,21 ccc|65,21 d");
  EXPECT_EQ(DescribeEntries(draw("bottom", kSizes)), "5,9.5 1|47,9.5 2|8,31.5 3|56,31.5 4");
  EXPECT_EQ(originOf(draw("right", kNames)).x, 118);
  EXPECT_EQ(originOf(draw("left", kNames)).x, -18 - 46);
  EXPECT_EQ(originOf(draw("bottom", kNames)).y, 118);
  EXPECT_EQ(originOf(draw("top", kNames)).y, -18 - 26);

  Scene const ramp = draw("bottom", kRamp);
  auto const strip = FindMarks<GradientMark>(ramp, "legend");
  ASSERT_EQ(strip.size(), 1u);
  EXPECT_TRUE(strip[0]->isHorizontal);
  EXPECT_GT(strip[0]->rect.width, strip[0]->rect.height);
  EXPECT_EQ(ReadTexts(ramp, "legend"), "1.0|2.0|3.0|4.0");
}

TEST(Guides, AThousandCategoriesStayReadable) {
  ChartDrawing const drawing;
  Scene const scene = drawing
                          .Draw(MakeDocument("\"point\"", ManyCategories(1'234),
                                             R"("x":{"field":"f0","type":"nominal","title":null},)"
                                             R"("color":{"field":"f0","type":"nominal"})"))
                          .scene;
  auto const entries = FindMarks<TextMark>(scene, "legend");
  ASSERT_EQ(entries.size(), 1 + 30 + 1u);
  EXPECT_EQ(entries.back()->text, "… 1,204 more");
  // Upright labels are 10 pixels high on an axis of 100, and only they have ticks beside the axis' own line.
  EXPECT_EQ(ReadTexts(scene, "axis x"), "00000|00128|00256|00384|00512|00640|00768|00896|01024|01152");
  EXPECT_EQ(FindMarks<RuleMarks>(scene, "axis x")[0]->rules.size(), 11u);
}

TEST(Guides, TextsFromTheRightAreMarked) {
  ChartDrawing const drawing;
  Scene const scene = drawing
                          .Draw(MakeDocument("\"point\"", "\"שלום\"|\"abc\"",
                                             R"("y":{"field":"f0","type":"nominal","title":null})"))
                          .scene;
  auto const labels = FindMarks<TextMark>(scene, "axis y");
  ASSERT_EQ(labels.size(), 2u);
  EXPECT_FALSE(labels[0]->isRightToLeft);
  EXPECT_TRUE(labels[1]->isRightToLeft);
}

}  // namespace
}  // namespace ostrel::charts
