#include <fmt/format.h>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

std::string const kRows =
    R"("data":{"values":[{"a":0,"b":5,"k":"p","d":"2020-01-01"},{"a":10,"b":20,"k":"q","d":"2020-01-05"}]})";
std::string const kMore = R"("data":{"values":[{"a":20,"b":-20,"k":"r"}]})";

std::string MakeLayers(std::string const& layers, std::string const& encoding = "") {
  return R"({"width":100,"height":100,)" + kRows + R"(,"encoding":{)" + encoding + R"(},"layer":[)" + layers +
         "]}";
}

/// "circle 0,100 50,50 / ": every layer's symbols, rounded to whole pixels.
std::string DescribeLayers(Scene const& scene) {
  std::string text;
  for (SceneNode const& node : FindGroup(scene.root, "plot")->nodes) {
    auto const* group = std::get_if<std::unique_ptr<Group>>(&node);
    if (group == nullptr || (*group)->role != "marks") continue;
    text += text.empty() ? "" : " /";
    for (SceneNode const& shape : (*group)->nodes) {
      auto const* marks = std::get_if<SymbolMarks>(&shape);
      if (marks == nullptr) continue;
      auto const& x = marks->x->AsTypedArray<double>();
      auto const& y = marks->y->AsTypedArray<double>();
      for (int row = 0; row < x.GetCount(); ++row)
        text += fmt::format("{}{:.0f},{:.0f}", text.empty() ? "" : " ", x.GetElement(row), y.GetElement(row));
    }
  }
  return text;
}

std::string const kX = R"("x":{"field":"a","type":"quantitative"})";
std::string const kY = R"("y":{"field":"b","type":"quantitative"})";

std::string Point(std::string const& encoding, std::string const& more = "") {
  return R"({"mark":"point",)" + (more.empty() ? "" : more + ",") + R"("encoding":{)" + encoding + "}}";
}

TEST(Layers, ShareScalesOverTheDataOfAll) {
  struct Case {
    std::string layers;
    char const* places;
    char const* xTexts;
    char const* legend;
  };
  std::string const color = R"("color":{"field":"k","type":"nominal"})";
  Case const cases[] = {
      {Point(kX + "," + kY), "0,75 100,0", "0|5|10|a", ""},
      // The second layer's numbers reach to 20 and -20.
      {Point(kX + "," + kY) + "," + Point(kX + "," + kY, kMore), "0,38 50,0 / 100,100", "0|10|20|a", ""},
      {Point(kX) + "," + Point(R"("x":{"field":"b","type":"quantitative"})"), "0,50 50,50 / 25,50 100,50",
       "0|10|20|a, b", ""},
      {Point(kX) + "," + Point(R"("x":{"field":"b","type":"quantitative","title":"T"})"),
       "0,50 50,50 / 25,50 100,50", "0|10|20|T", ""},
      {Point(kX) + "," +
           Point(
               R"("x":{"field":"b","type":"quantitative","axis":{"tickCount":2},"scale":{"domain":[0,40]}})"),
       "0,50 25,50 / 12,50 50,50", "0|20|40|a, b", ""},
      {Point(kX + "," + color) + "," + Point(kX + "," + color, kMore), "0,50 50,50 / 100,50", "0|10|20|a",
       "k|p|q|r"},
      {Point(R"("x":{"field":"k","type":"nominal"})") + "," +
           Point(R"("x":{"field":"k","type":"ordinal"})", kMore),
       "17,50 50,50 / 83,50", "p|q|r|k", ""},
      // A constant takes no field's title away.
      {Point(kX) + "," + Point(R"("x":{"datum":5})"), "0,50 100,50 / 50,50", "0|5|10|a", ""},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    Scene const scene = drawing.Draw(MakeLayers(c.layers)).scene;
    SCOPED_TRACE(c.layers);
    EXPECT_EQ(DescribeLayers(scene), c.places);
    EXPECT_EQ(ReadTexts(scene, "axis x"), c.xTexts);
    EXPECT_EQ(ReadTexts(scene, "legend"), c.legend);
  }
}

TEST(Layers, HideAnAxisWhereTheFirstThatTellsOfItDoes) {
  struct {
    char const* first;
    char const* second;
    char const* texts;
  } const cases[] = {
      {R"(,"axis":null)", "", ""},
      {"", R"(,"axis":null)", ""},
      {R"(,"axis":null)", R"(,"axis":{"values":[1]})", ""},
      {R"(,"axis":{"values":[1],"title":null})", R"(,"axis":null)", "1"},
      {"", R"(,"axis":{"values":[1],"title":null})", "1"},
  };
  ChartDrawing const drawing;
  for (auto const& c : cases) {
    auto const layer = [](std::string const& axis) {
      return R"({"mark":"point","encoding":{"x":{"field":"a","type":"quantitative")" + axis + "}}}";
    };
    Scene const scene = drawing
                            .Draw(R"({"data":{"values":[{"a":1},{"a":2}]},"layer":[)" + layer(c.first) + "," +
                                  layer(c.second) + "]}")
                            .scene;
    EXPECT_EQ(ReadTexts(scene, "axis x"), c.texts) << c.first << c.second;
  }
}

TEST(Layers, RefuseScalesThatContradictEachOther) {
  struct Case {
    std::string layers;
    char const* expected;
  };
  auto const x = [](char const* more) {
    return Point(R"("x":{"field":"a","type":"quantitative",)" + std::string(more) + "}");
  };
  Case const cases[] = {
      {x(R"("scale":{"zero":true})") + "," + x(R"("scale":{"zero":false})"),
       "$.layer[1].encoding.x.scale.zero: differs from what $.layer[0].encoding.x says of the scale that "
       "both share"},
      {x(R"("axis":{"orient":"top"})") + "," + x(R"("axis":{"orient":"bottom"})"),
       "$.layer[1].encoding.x.axis.orient: differs from what $.layer[0].encoding.x says of the scale that "
       "both share"},
      {Point(kX) + "," + Point(R"("x":{"field":"k","type":"nominal"})"),
       "$.layer[1].encoding.x.type: a nominal field shares no scale with the quantitative one of "
       "$.layer[0].encoding.x"},
      {Point(kX) + "," + Point(R"("x":{"field":"d","type":"temporal"})"),
       "$.layer[1].encoding.x.type: a temporal field shares no scale with the quantitative one of "
       "$.layer[0].encoding.x"},
      {Point(kX) + "," + Point(R"("x":{"field":"z","type":"quantitative"})", kMore),
       "no field 'z' in $.layer[1].data.values; did you mean 'a'? Its fields are a, b, k"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases)
    EXPECT_EQ(drawing.DescribeError(MakeLayers(c.layers)), std::string("chart.vl.json: ") + c.expected)
        << c.layers;
}

}  // namespace
}  // namespace ostrel::charts
