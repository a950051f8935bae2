#include <algorithm>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

std::string X(std::string const& scale, std::string const& type = "quantitative") {
  return R"("x":{"field":"f0","type":")" + type + R"(","scale":{)" + scale + "}}";
}

void CollectPlaces(Group const& group, std::vector<double>& places) {
  for (SceneNode const& node : group.nodes) {
    if (auto const* child = std::get_if<std::unique_ptr<Group>>(&node)) CollectPlaces(**child, places);
    auto const* marks = std::get_if<SymbolMarks>(&node);
    if (marks == nullptr) continue;
    auto const& column = marks->x->AsTypedArray<double>();
    for (int row = 0; row < column.GetCount(); ++row) places.push_back(column.GetElement(row));
  }
}

std::vector<double> Places(DrawnChart const& chart) {
  std::vector<double> places;
  CollectPlaces(chart.scene.root, places);
  return places;
}

// A hundred pixels show the domain: where rows stand tells what it is.
TEST(DomainExtension, HoldsListedValuesAndLeavesPixelsFree) {
  struct Case {
    char const* rows;
    std::string encoding;
    std::vector<double> places;
  };
  std::string const exact = R"("zero":false,"nice":false)";
  std::string const dates = R"("2020-01-11"|"2020-01-16"|"2020-01-21")";
  Case const cases[] = {
      {"20|40|60", X(exact + R"(,"domain":{"unionWith":[0,100]})"), {20, 40, 60}},
      {"20|40|60", X(exact + R"(,"domain":{"unionWith":[100]})"), {0, 25, 50}},
      {"20|40|60", X(exact + R"(,"domain":{"unionWith":[30,50]})"), {0, 50, 100}},
      {"20|20", X(exact + R"(,"domain":{"unionWith":[0]})"), {100, 100}},
      // Zero is not taken in where the document says what the domain holds; ends are rounded all the same.
      {"21|40|60", X(R"("domain":{"unionWith":[69]})"), {2, 40, 80}},
      {"20|40|60", X(R"("zero":true,"nice":false,"domain":{"unionWith":[80]})"), {25, 50, 75}},
      {"20|40|60", X(R"("domainMin":10,"domain":{"unionWith":[110]})"), {10, 30, 50}},
      {"10|100", X(R"("type":"log","nice":false,"domain":{"unionWith":[1,10000]})"), {25, 50}},
      {"10|10", X(R"("type":"log","nice":false,"domain":{"unionWith":[10]})"), {50, 50}},
      {"4|9", X(exact + R"(,"type":"sqrt","domain":{"unionWith":[-4]})"), {80, 100}},
      {dates.c_str(),
       X(R"("domain":{"unionWith":["2020-01-01","2020-01-21T00:00"]})", "temporal"),
       {50, 75, 100}},

      {"0|40|80", X(exact + R"(,"padding":10)"), {10, 50, 90}},
      {"0|40|80", X(exact + R"(,"padding":0)"), {0, 50, 100}},
      {"0|40|80", X(exact + R"(,"padding":10,"reverse":true)"), {90, 50, 10}},
      {"10|30|50", X(exact + R"(,"padding":10,"domain":[0,80])"), {20, 40, 60}},
      {"0|40", X(exact + R"(,"padding":10,"domain":{"unionWith":[80]})"), {10, 50}},
      // First the pixels, from 1 to 99 data units here, then 0 and round ends.
      {"11|50|89", X(R"("padding":10.2040816326530612)"), {11, 50, 89}},
      {"1|10|100", X(R"("type":"log","nice":false,"padding":20)"), {20, 50, 80}},
      {"4|9|16", X(exact + R"(,"type":"sqrt","padding":25)"), {25, 50, 75}},
      {"0|4|16", X(exact + R"(,"type":"sqrt","padding":25)"), {25, 50, 75}},
      {dates.c_str(), X(R"("padding":30)", "temporal"), {30, 50, 70}},
      // A single number has no extent that pixels could be measured by.
      {"5", X(exact + R"(,"padding":10)"), {50}},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    SCOPED_TRACE(std::string(c.rows) + " " + c.encoding);
    std::vector<double> const places = Places(drawing.Draw(MakeDocument("\"circle\"", c.rows, c.encoding)));
    ASSERT_EQ(places.size(), c.places.size());
    for (std::size_t row = 0; row < places.size(); ++row)
      EXPECT_NEAR(places[row], c.places[row], 1e-9) << "row " << row;
  }
}

// Whole and real numbers, and dates with and without a time, share a domain that holds both; so do layers
// that list values of their own.
TEST(DomainExtension, JoinsFieldsOfSeveralTypes) {
  auto const layer = [](std::string const& values, std::string const& type, std::string const& scale) {
    return R"({"data":{"values":[)" + values + R"(]},"mark":"circle","encoding":{"x":{"field":"f","type":")" +
           type + R"(","scale":{)" + scale + "}}}}";
  };
  struct Case {
    std::string first;
    std::string second;
    std::vector<double> places;
  };
  std::string const exact = R"("zero":false,"nice":false)";
  Case const cases[] = {
      {layer(R"({"f":-10},{"f":30})", "quantitative", exact),
       layer(R"({"f":0.5},{"f":90.0})", "quantitative", exact),
       {0, 40, 10.5, 100}},
      {layer(R"({"f":12.5},{"f":-2.5})", "quantitative", exact),
       layer(R"({"f":0},{"f":97.5})", "quantitative", exact),
       {15, 0, 2.5, 100}},
      {layer(R"({"f":"2020-01-01"},{"f":"2020-01-03"})", "temporal", ""),
       layer(R"({"f":"2020-01-02T12:00"},{"f":"2020-01-06T00:00"})", "temporal", ""),
       {0, 40, 30, 100}},
      {layer(R"({"f":2},{"f":3})", "quantitative", exact + R"(,"domain":{"unionWith":[0]})"),
       layer(R"({"f":4.5})", "quantitative", exact + R"(,"domain":{"unionWith":[10]})"),
       {20, 30, 45}},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    for (bool const isSwapped : {false, true}) {
      std::string const layers = isSwapped ? c.second + "," + c.first : c.first + "," + c.second;
      SCOPED_TRACE(layers);
      std::vector<double> places =
          Places(drawing.Draw(R"({"width":100,"height":50,"layer":[)" + layers + "]}"));
      std::vector<double> wanted = c.places;
      std::ranges::sort(places);
      std::ranges::sort(wanted);
      ASSERT_EQ(places.size(), wanted.size());
      for (std::size_t row = 0; row < places.size(); ++row) EXPECT_NEAR(places[row], wanted[row], 1e-9);
    }
  }
}

TEST(DomainExtension, RefusesWhatLeavesNoDomain) {
  struct Case {
    char const* rows;
    std::string encoding;
    char const* error;
  };
  std::string const dates = R"("2020-01-11"|"2020-01-16")";
  Case const cases[] = {
      {"1|2", X(R"("padding":50)"),
       ".padding: expects a number below 50, half of the axis' 100 pixels, not 50"},
      {"1|1e300", X(R"("padding":49.99999999)"),
       ".padding: 49.99999999 of 100 pixels at each end leave no domain that numbers hold; use fewer"},
      {"1|100", X(R"("type":"log","padding":49.9)"),
       ".padding: 49.9 of 100 pixels at each end leave no domain that numbers hold; use fewer"},
      {dates.c_str(), X(R"("padding":49.9999999999)", "temporal"),
       ".padding: 49.9999999999 of 100 pixels at each end leave no domain that dates hold; use fewer"},
      {"1|2", X(R"("domain":{"unionWith":[0,1e308]})"),
       ".domain.unionWith[1]: expects a number from -1e307 to 1e307"},
  };
  ChartDrawing const drawing;
  // Of several layers the one that asks for too much is named, and a whole domain leaves nothing to list.
  auto const layers = [&](char const* first, char const* second) {
    return drawing.DescribeError(
        R"({"width":100,"data":{"values":[{"f0":1},{"f0":2}]},"layer":[{"mark":"line",)"
        R"("encoding":{)" +
        X(first) + R"(}},{"mark":"circle","encoding":{)" + X(second) + "}}]}");
  };
  EXPECT_EQ(
      layers("", R"("padding":60)"),
      "chart.vl.json: $.layer[1].encoding.x.scale.padding: expects a number below 50, half of the axis' 100 "
      "pixels, not 60");
  EXPECT_EQ(
      layers(R"("domain":[0,9])", R"("domain":{"unionWith":[10]})"),
      "chart.vl.json: $.layer[1].encoding.x.scale.domain: differs from what $.layer[0].encoding.x says of "
      "the scale that both share");
  for (Case const& c : cases) {
    EXPECT_EQ(drawing.DescribeError(MakeDocument("\"circle\"", c.rows, c.encoding)),
              std::string("chart.vl.json: $.encoding.x.scale") + c.error);
  }
}

}  // namespace
}  // namespace ostrel::charts
