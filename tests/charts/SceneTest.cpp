#include <clocale>
#include <cstdlib>
#include <ctime>

#include "ChartDrawing.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {
namespace {

/// Checks that every text of the group lies within the scene, as it is turned and anchored.
void ExpectTextsInside(Scene const& scene, Group const& group, Point origin, TextSetter const& setter) {
  origin = {origin.x + group.origin.x, origin.y + group.origin.y};
  for (SceneNode const& node : group.nodes) {
    if (auto const* child = std::get_if<std::unique_ptr<Group>>(&node))
      ExpectTextsInside(scene, **child, origin, setter);
    auto const* text = std::get_if<TextMark>(&node);
    if (text == nullptr) continue;
    Rect const rect = setter.MeasureRect(*text);
    EXPECT_GE(rect.x + origin.x, 0) << text->text;
    EXPECT_GE(rect.y + origin.y, 0) << text->text;
    EXPECT_LE(rect.Right() + origin.x, scene.width) << text->text;
    EXPECT_LE(rect.Bottom() + origin.y, scene.height) << text->text;
  }
}

TEST(SceneBuilder, TextsLieWithinThePicture) {
  std::string const wide(60, 'w');
  std::string const rows = "\"" + wide + "\" 0|\"b\" 7";
  std::string const axis[] = {"{}", R"({"labelAngle":-45})", R"({"labelAngle":90})", R"({"orient":"top"})"};
  std::string const title = R"("title":{"text":["A title","of two lines )" + wide + R"("],"subtitle":"s"},)";
  auto const measurer = services::MakeFixedMeasurer();
  TextSetter const setter(*measurer, kFontFamily);
  ChartDrawing const drawing;
  for (std::string const& x : axis) {
    for (char const* padding : {"", R"("padding":0,)", R"("padding":40,)"}) {
      std::string const document = MakeDocument(
          "\"point\"", rows,
          R"("x":{"field":"f0","type":"nominal","axis":)" + x +
              R"(},"y":{"field":"f1","type":"quantitative","axis":{"orient":"right","title":"long )" + wide +
              R"("}},"color":{"field":"f0","type":"nominal"})",
          title + padding);
      Scene const scene = drawing.Draw(document).scene;
      SCOPED_TRACE(document);
      ExpectTextsInside(scene, scene.root, {0, 0}, setter);
    }
  }
}

TEST(SceneBuilder, PaddingAndNameOfTheDocumentCount) {
  ChartDrawing const drawing;
  auto const draw = [&](char const* more) {
    return drawing.Draw(MakeDocument("\"point\"", "0", "", more)).scene;
  };
  Scene const narrow = draw(R"("padding":0,)");
  Scene const wide = draw(R"("padding":30,"name":"n",)");
  EXPECT_EQ(wide.width - narrow.width, 60);
  EXPECT_EQ(wide.height - narrow.height, 60);
  EXPECT_EQ(wide.title, "n");
  EXPECT_EQ(draw(R"("title":"t","name":"n",)").title, "t");
}

TEST(SceneBuilder, ConstantsOfChannelsAndMarksSetTheLook) {
  ChartDrawing const drawing;
  Scene const scene = drawing
                          .Draw(MakeDocument(R"({"type":"point","color":"blue"})", "0",
                                             R"("color":{"value":"#102030"},"size":{"value":400},)"
                                             R"("shape":{"value":"cross"},"opacity":{"value":0.25})"))
                          .scene;
  SymbolMarks const& marks = *FindMarks<SymbolMarks>(scene, "marks").at(0);
  EXPECT_EQ(marks.color.constant.GetValue(), static_cast<int>(0xFF102030));
  EXPECT_EQ(marks.size.constant, 400);
  EXPECT_EQ(marks.opacity.constant, 0.25);
  EXPECT_EQ(marks.shape.constant, SymbolShape::Cross);
}

TEST(SceneBuilder, ExtremePicturesAreDrawn) {
  std::string const both =
      R"("x":{"field":"f0","type":"quantitative"},"y":{"field":"f0","type":"quantitative",)"
      R"("scale":{"type":"log"}},"color":{"field":"f0","type":"quantitative"})";
  ChartDrawing const drawing;
  for (char const* rows :
       {"1e-300|3e-300", "1e300|2e300", "1e-300|1e300", "5e-324|1e-323", "7|7", "1|null"}) {
    std::string const svg = drawing.DrawSvg(MakeDocument("\"point\"", rows, both));
    EXPECT_EQ(svg.find("nan"), std::string::npos) << rows;
    EXPECT_EQ(svg.find("inf"), std::string::npos) << rows;
    EXPECT_NE(svg.find("class=\"marks\""), std::string::npos) << rows;
  }
}

TEST(SceneBuilder, TheSameBytesUnderAnyLocaleAndTimeZone) {
  std::string const document =
      MakeDocument("\"line\"", R"("2020-01-01" 1234.5|"2020-06-01T12:00" 99999.25)",
                   R"("x":{"field":"f0","type":"temporal"},"y":{"field":"f1","type":"quantitative"})");
  ChartDrawing const drawing;
  std::string const expected = drawing.DrawSvg(document);
  char const* const zone = std::getenv("TZ");
  std::string const before = zone != nullptr ? zone : "";
  setenv("TZ", "Asia/Kathmandu", 1);
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  tzset();
  std::setlocale(LC_ALL, "");
  EXPECT_EQ(drawing.DrawSvg(document), expected);
  std::setlocale(LC_ALL, "C");
  unsetenv("LC_ALL");
  zone != nullptr ? setenv("TZ", before.c_str(), 1) : unsetenv("TZ");
  tzset();
}

}  // namespace
}  // namespace ostrel::charts
