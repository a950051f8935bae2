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
