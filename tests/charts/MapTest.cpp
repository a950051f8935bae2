#include <fmt/format.h>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

std::string const kPlaces =
    R"("encoding":{"longitude":{"field":"lon","type":"quantitative"},"latitude":{"field":"lat"}})";

std::string MakeMap(std::string const& rows, std::string const& more = "",
                    std::string const& mark = "\"point\"") {
  return R"({"width":200,"height":100,"projection":{"type":"identity"},"data":{"values":[)" + rows +
         R"(]},"mark":)" + mark + "," + kPlaces + more + "}";
}

/// "10,20 30,40": symbols rounded to whole pixels.
std::string DescribePlaces(Scene const& scene) {
  std::string text;
  for (SymbolMarks const* marks : FindMarks<SymbolMarks>(scene, "marks")) {
    auto const& x = marks->x->AsTypedArray<double>();
    auto const& y = marks->y->AsTypedArray<double>();
    for (int row = 0; row < x.GetCount(); ++row)
      text += fmt::format("{}{:.0f},{:.0f}", text.empty() ? "" : " ", x.GetElement(row), y.GetElement(row));
  }
  return text;
}

TEST(Maps, PlacePointsInTheMiddleOfTheirPart) {
  ChartDrawing const drawing;
  // 609 pixels to the world, of which the pane's middle is 180 degrees east.
  EXPECT_EQ(DescribePlaces(drawing.Draw(MakeMap(R"({"lon":130,"lat":20},{"lon":-130,"lat":-20})")).scene),
            "15,16 185,84");
  std::string const world = R"({"lon":-120,"lat":80},{"lon":0,"lat":-80},{"lon":120,"lat":0})";
  EXPECT_EQ(DescribePlaces(drawing.Draw(MakeMap(world)).scene), "33,6 100,94 167,50");
  DrawnChart const drawn =
      drawing.Draw(MakeMap(R"({"lon":1,"lat":2},{"lon":null,"lat":2},{"lon":3,"lat":4})"));
  EXPECT_EQ(drawn.warnings,
            std::vector<std::string>{"1 of 3 rows have no finite number in 'lon' for the map; not drawn"});
}

TEST(Maps, WriteTextsWherePointsStand) {
  ChartDrawing const drawing;
  std::string const rows = R"({"lon":130,"lat":20},{"lon":-130,"lat":-20})";
  std::string places;
  Scene const scene = drawing.Draw(MakeMap(rows, "", R"({"type":"text","text":"A","dx":5})")).scene;
  for (TextMark const* text : FindMarks<TextMark>(scene, "marks"))
    places += fmt::format("{} {:.0f} ", text->text, text->at.x);
  EXPECT_EQ(places, "A 20 A 190 ");
}

TEST(Maps, GiveCopiesOfARowItsStyle) {
  ChartDrawing const drawing;
  Scene const scene =
      drawing
          .Draw(R"({"width":400,"height":100,"projection":{"type":"identity"},"data":{"values":[)"
                R"({"lon":-120,"lat":80,"k":"a"},{"lon":0,"lat":-80,"k":"b"},{"lon":120,"lat":0,"k":"c"}]},)"
                R"("mark":"circle","encoding":{"longitude":{"field":"lon"},"latitude":{"field":"lat"},)"
                R"("color":{"field":"k","type":"nominal"}}})")
          .scene;
  SymbolMarks const& marks = *FindMarks<SymbolMarks>(scene, "marks").at(0);
  auto const& colors = marks.color.column->AsTypedArray<ort::core::OrtColor>();
  // Two worlds and a bit: two copies of the first and the last row, three of the other.
  ASSERT_EQ(colors.GetCount(), 7);
  EXPECT_EQ(colors.GetElement(0).GetValue(), colors.GetElement(1).GetValue());
  EXPECT_NE(colors.GetElement(1).GetValue(), colors.GetElement(2).GetValue());
  EXPECT_EQ(ReadTexts(scene, "legend"), "k|a|b|c");
}

/// "0,0 10,0 10,10/...": the rings of each shape.
std::string DescribeShapes(Scene const& scene) {
  std::string text;
  for (ShapeMark const* shape : FindMarks<ShapeMark>(scene, "marks")) {
    if (!text.empty()) text += " | ";
    for (auto const& ring : shape->rings) {
      if (&ring != &shape->rings.front()) text += " / ";
      for (Point const& point : ring)
        text += fmt::format("{}{:.0f},{:.0f}", &point == &ring.front() ? "" : " ", point.x, point.y);
    }
  }
  return text;
}

std::string MakeShapes(std::string const& data) {
  return R"({"width":360,"height":180,"projection":{"type":"identity"},"mark":"geoshape","data":)" + data +
         "}";
}

TEST(Maps, DrawOutlinesOfGeoJsonAndTopologies) {
  ChartDrawing const drawing;
  std::string const ring = "[[-80,-45],[80,-45],[80,45],[-80,-45]]";
  std::string const hole = "[[0,-10],[10,-10],[0,-10]]";
  std::string const polygon = R"({"type":"Polygon","coordinates":[)" + ring + "," + hole + "]}";
  std::string const expected =
      DescribeShapes(drawing.Draw(MakeShapes(R"({"values":)" + polygon + "}")).scene);
  EXPECT_EQ(std::count(expected.begin(), expected.end(), '/'), 1);
  EXPECT_EQ(std::count(expected.begin(), expected.end(), '|'), 0);
  std::string const feature =
      R"({"type":"Feature","id":7,"properties":{"name":"n","list":[1]},"geometry":)" + polygon + "}";
  std::string const topology =
      R"({"values":{"type":"Topology","transform":{"scale":[80,5],"translate":[-80,-45]},"objects":{"land":)"
      R"({"type":"Polygon","arcs":[[0,-2],[2]]}},"arcs":[[[0,0],[2,0]],[[0,0],[2,18],[0,-18]],)"
      R"([[1,7]]]},"format":{"type":"topojson","feature":"land"}})";
  for (std::string const& data :
       {R"({"values":)" + feature + "}",
        R"({"values":{"type":"FeatureCollection","features":[)" + feature + "]}}",
        R"({"values":{"a":[)" + feature + R"(]},"format":{"property":"a"}})",
        R"({"values":{"type":"GeometryCollection","geometries":[)" + polygon + "]}}"}) {
    EXPECT_EQ(DescribeShapes(drawing.Draw(MakeShapes(data)).scene), expected) << data;
  }
  // Arc 1 is run through backwards from where arc 0 ends.
  std::string const arcs = DescribeShapes(drawing.Draw(MakeShapes(topology)).scene);
  EXPECT_EQ(std::count(arcs.begin(), arcs.end(), '/'), 1) << arcs;
  Scene const coloured =
      drawing
          .Draw(R"({"projection":{"type":"identity"},"mark":"geoshape","data":{"values":)" + feature +
                R"(},"encoding":{"color":{"field":"properties.name"}}})")
          .scene;
  EXPECT_EQ(ReadTexts(coloured, "legend"), "properties.name|n");
}

TEST(Maps, DrawOutlinesAcrossTheDateLineAndAroundAPole) {
  ChartDrawing const drawing;
  // The height of a ring by its width.
  auto const shape = [&](std::string const& ring) {
    std::string const data = R"({"values":{"type":"Polygon","coordinates":[[)" + ring + "]]}}";
    Scene const scene = drawing.Draw(MakeShapes(data)).scene;
    std::vector<Point> const& points = FindMarks<ShapeMark>(scene, "marks").at(0)->rings[0];
    auto const [left, right] = std::ranges::minmax(points, {}, &Point::x);
    auto const [upper, lower] = std::ranges::minmax(points, {}, &Point::y);
    return fmt::format("{:.3f}", (lower.y - upper.y) / (right.x - left.x));
  };
  // 10 degrees by 20.
  EXPECT_EQ(shape("[170,-5],[-170,-5],[-170,5],[170,5],[170,-5]"), "0.500");
  // Around the south pole from 60 degrees down to the edge of the map: 30 degrees by 360.
  EXPECT_EQ(shape("[-180,-60],[-90,-60],[0,-60],[90,-60],[180,-60]"), "0.083");
}

TEST(Maps, RefuseWhatTheyCannotShow) {
  struct Case {
    std::string document;
    char const* expected;
  };
  auto const shapes = [](char const* values) {
    return MakeShapes(std::string(R"({"values":)") + values + "}");
  };
  std::string const topology =
      R"({"values":{"type":"Topology","objects":{"a":{"type":"Polygon","arcs":[[3]]}},)"
      R"("arcs":[]},"format":{"type":"topojson","feature":")";
  Case const cases[] = {
      {MakeMap(R"({"lon":1,"lat":2})", R"(,"projection2":{})"),
       "$.projection2: unknown property; did you mean "
       "\"projection\"?"},
      {R"({"data":{"values":[]},"mark":"point","projection":{"type":"albersUsa"}})",
       "$.projection.type: \"albersUsa\" is not supported; use one of mercator, identity"},
      {R"({"data":{"values":[]},"mark":"point","projection":{"scale":5}})",
       "$.projection.scale: is not supported; a map shows the part of the world that its points lie in"},
      {R"({"data":{"values":[]},"mark":"point","projection":{}})",
       "$.projection: is for maps; use longitude and latitude, or the mark geoshape"},
      {R"({"data":{"values":[]},"mark":"point","encoding":{"longitude":{"field":"a"}}})",
       "$.encoding: latitude is missing, which a map needs"},
      {R"({"data":{"values":[]},"mark":"point","encoding":{"longitude":{"field":"a"},"latitude":{"field":"a"},)"
       R"("x":{"field":"a"}}})",
       "$.encoding.x: a map has no axes; use longitude and latitude"},
      {R"({"data":{"values":[]},"mark":"point","encoding":{"longitude":{"field":"a","type":"nominal"}}})",
       "$.encoding.longitude.type: degrees are numbers; use \"quantitative\""},
      {MakeMap(R"({"lon":"here","lat":2})"),
       "$.encoding.longitude.type: field 'lon' of $.data.values holds text, not numbers; use \"nominal\""},
      {shapes("[]"), "$.data.values: there are no polygons"},
      {shapes(R"({"type":"Point","coordinates":[0,0]})"),
       "$.data.values: geometries of the type 'Point' have no outline; Polygon and MultiPolygon are "
       "supported"},
      {shapes(R"({"type":"Polygon","coordinates":[[[0,"a"]]]})"),
       "$.data.values: a position is an array of two numbers"},
      {shapes(R"({"type":"Polygon","coordinates":5})"),
       "$.data.values: an object with 'coordinates' as an array is expected"},
      {MakeShapes(topology + "b\"}}"), "$.data.values: the topology has no object 'b'"},
      {MakeShapes(topology + "a\"}}"), "$.data.values: there is no arc 3"},
      {MakeShapes(R"({"values":{},"format":{"type":"topojson"}})"),
       "$.data.format.feature: is missing; name an object of the topology"},
      {MakeShapes(R"({"values":{},"format":{"type":"csv"}})"),
       "$.data.format.type: \"csv\" has no outlines; json and topojson are supported"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases)
    EXPECT_EQ(drawing.DescribeError(c.document), std::string("chart.vl.json: ") + c.expected) << c.document;
}

}  // namespace
}  // namespace ostrel::charts
