#include <fmt/format.h>

#include <algorithm>

#include "ChartDrawing.h"
#include "TextRooms.h"

namespace ostrel::charts {
namespace {

std::string const kRows = R"("data":{"values":[{"a":0,"b":1,"g":"p","h":"u"},{"a":10,"b":3,"g":"q","h":"u"},)"
                          R"({"a":100,"b":2,"g":"q","h":"v"},{"a":5,"b":4,"g":null,"h":"v"}]})";

std::string MakePanes(std::string const& encoding, std::string const& more = "") {
  return R"({"width":100,"height":50,)" + kRows + R"(,"mark":"point","encoding":{)" + encoding +
         R"(,"x":{"field":"a","type":"quantitative"},"y":{"field":"b","type":"quantitative"}})" + more + "}";
}

std::vector<Group const*> FindPanes(Scene const& scene) {
  std::vector<Group const*> panes;
  for (SceneNode const& node : FindGroup(scene.root, "plot")->nodes) {
    auto const* group = std::get_if<std::unique_ptr<Group>>(&node);
    if (group != nullptr && (*group)->role == "pane") panes.push_back(group->get());
  }
  return panes;
}

/// "0,38 / 10,0 100,25": every pane's symbols, rounded to whole pixels.
std::string DescribePanes(Scene const& scene) {
  std::string text;
  for (Group const* pane : FindPanes(scene)) {
    if (pane != FindPanes(scene).front()) text += " /";
    Group const* const marks = FindGroup(*pane, "marks");
    if (marks == nullptr) continue;
    for (SceneNode const& node : marks->nodes) {
      auto const& symbols = std::get<SymbolMarks>(node);
      auto const& x = symbols.x->AsTypedArray<double>();
      auto const& y = symbols.y->AsTypedArray<double>();
      for (int row = 0; row < x.GetCount(); ++row)
        text += fmt::format("{}{:.0f},{:.0f}", text.empty() ? "" : " ", x.GetElement(row), y.GetElement(row));
    }
  }
  return text;
}

/// "xy y": the axes with labels of every pane.
std::string DescribeAxes(Scene const& scene) {
  std::string text;
  for (Group const* pane : FindPanes(scene)) {
    if (!text.empty()) text += ' ';
    if (FindGroup(*pane, "axis x") != nullptr) text += 'x';
    if (FindGroup(*pane, "axis y") != nullptr) text += 'y';
    if (text.empty() || text.back() == ' ') text += '-';
  }
  return text;
}

TEST(Panes, HaveTheirRowsOnSharedOrOwnScales) {
  struct Case {
    std::string encoding;
    char const* resolve;
    char const* places;
    char const* axes;
    char const* headers;
  };
  std::string const column = R"("column":{"field":"g"})";
  std::string const row = R"("row":{"field":"h"})";
  Case const cases[] = {
      {column, "", "5,0 / 0,38 / 10,12 100,25", "xy x x", "a|b|null|p|q|g"},
      {row, "", "0,38 10,12 / 100,25 5,0", "y xy", "a|b|u|v|h"},
      {column + "," + row, "", " / 0,38 / 10,12 / 5,0 / / 100,25", "y - - xy x x", "a|b|u|v|h|null|p|q|g"},
      {R"("facet":{"field":"g","sort":"descending","columns":1})", "", "10,12 100,25 / 0,38 / 5,0", "y y xy",
       "a|b|g"},
      {R"("facet":{"field":"a","columns":3,"header":{"title":"T"}})", "", "0,38 / 5,0 / 10,12 / 100,25",
       "y x x xy", "a|b|T"},
      {column, R"({"scale":{"y":"independent"}})", "5,0 / 0,0 / 10,0 100,17", "xy xy xy", "a|b|null|p|q|g"},
      {row, R"({"scale":{"x":"independent"}})", "0,38 100,12 / 100,25 5,0", "xy xy", "a|b|u|v|h"},
      {column, R"({"axis":{"y":"independent"}})", "5,0 / 0,38 / 10,12 100,25", "xy xy xy", "a|b|null|p|q|g"},
      {R"("column":{"field":"g","title":"G","header":{"labels":false}})", "", "5,0 / 0,38 / 10,12 100,25",
       "xy x x", "a|b|G"},
      {R"("column":{"field":"g","header":null})", "", "5,0 / 0,38 / 10,12 100,25", "xy x x", "a|b"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const resolve = *c.resolve == 0 ? "" : std::string(",\"resolve\":") + c.resolve;
    std::string const document = MakePanes(c.encoding, resolve);
    Scene const scene = drawing.Draw(document).scene;
    SCOPED_TRACE(document);
    EXPECT_EQ(DescribePanes(scene), c.places);
    EXPECT_EQ(DescribeAxes(scene), c.axes);
    EXPECT_EQ(ReadTexts(scene, "header"), c.headers);
  }
}

TEST(Panes, AreCalledWhatAxesCallTheirValues) {
  struct Case {
    char const* column;  // of f0
    char const* headers;
  };
  Case const cases[] = {
      {R"("timeUnit":"month","type":"ordinal")", "f0|Mar|Apr|f0 (month)"},
      {R"("timeUnit":"year","type":"ordinal","title":null)", "f0|2020|2021"},
      {R"("timeUnit":"yearmonth","header":{"format":"%m/%y","title":"M"})", "f0|03/20|04/21|M"},
      {R"("type":"temporal")", "f0|Mar 01,|2020|Apr 09,|2021|f0"},
      {R"("type":"temporal","sort":"descending","header":{"format":"%Y"})", "f0|2021|2020|f0"},
      {R"("field":"f1","bin":{"step":2})", "f0|0 \u2013 2|6 \u2013 8|f1 (binned)"},
      {R"("field":"f1","type":"ordinal","header":{"format":".1f"})", "f0|1.0|7.0|f1"},
  };
  ChartDrawing const drawing;
  for (Case const& c : cases) {
    std::string const field = std::string(c.column).starts_with("\"field") ? "" : R"("field":"f0",)";
    std::string const encoding =
        R"("x":{"field":"f0","type":"temporal"},"column":{)" + field + c.column + "}";
    Scene const scene =
        drawing.Draw(MakeDocument("\"point\"", R"("2021-04-09" 7|"2020-03-01" 1)", encoding)).scene;
    EXPECT_EQ(ReadTexts(scene, "header"), c.headers) << c.column;
  }
}

TEST(Panes, HeadersAreTurnedAndPanesKeepTheirSpacing) {
  ChartDrawing const drawing;
  Scene const scene =
      drawing
          .Draw(MakePanes(
              R"("row":{"field":"h","spacing":50,"header":{"labelAngle":0}},"column":{"field":"g","spacing":0})"))
          .scene;
  auto const headers = FindMarks<TextMark>(scene, "header");
  ASSERT_EQ(ReadTexts(scene, "header"), "a|b|u|v|h|null|p|q|g");
  EXPECT_EQ(headers[1]->angle, -90);
  EXPECT_EQ(headers[2]->angle, 0);
  auto const panes = FindPanes(scene);
  // Labels of the axes reach over the panes' edges.
  EXPECT_GE(panes[3]->origin.y - panes[0]->origin.y, 100);
  EXPECT_LT(panes[3]->origin.y - panes[0]->origin.y, 120);
  EXPECT_LT(panes[1]->origin.x - panes[0]->origin.x, 121);
}

/// "p q / u": the texts of every pane's own legend.
std::string DescribeLegends(Scene const& scene) {
  std::string text;
  for (Group const* pane : FindPanes(scene)) {
    if (pane != FindPanes(scene).front()) text += " /";
    Group const* const legend = FindGroup(*pane, "legend");
    if (legend == nullptr) continue;
    for (SceneNode const& node : legend->nodes) {
      if (auto const* mark = std::get_if<TextMark>(&node)) text += (text.empty() ? "" : " ") + mark->text;
    }
  }
  return text;
}

TEST(Panes, HaveLegendsOfTheirOwnStyles) {
  struct {
    char const* channels;
    char const* scales;
    char const* legends;
  } const cases[] = {
      {R"("column":{"field":"g"},"color":{"field":"h"})", R"("color":"shared")", " / /"},
      {R"("column":{"field":"g"},"color":{"field":"h"})", R"("color":"independent")", "h v / h u / h u v"},
      {R"("column":{"field":"g"},"color":{"field":"h"},"shape":{"field":"h"})",
       R"("color":"independent","shape":"independent")", "h v / h u / h u v"},
      // A pane without rows has nothing to tell.
      {R"("row":{"field":"h"},"column":{"field":"g"},"opacity":{"field":"a","type":"quantitative"})",
       R"("opacity":"independent")",
       " / a \u22121.0 \u22120.5 0.0 0.5 1.0 / a 0 5 10 15 20 / a 0 2 4 6 8 10 / / a 0 50 100 150 200"},
  };
  ChartDrawing const drawing;
  for (auto const& [channels, scales, legends] : cases) {
    std::string const document = MakePanes(channels, std::string(R"(,"resolve":{"scale":{)") + scales + "}}");
    EXPECT_EQ(DescribeLegends(drawing.Draw(document).scene), legends) << document;
  }
}

TEST(Panes, OfTheOperatorHoldLayersOfOtherData) {
  ChartDrawing const drawing;
  Scene const scene =
      drawing
          .Draw(R"({)" + kRows +
                R"(,"facet":{"column":{"field":"g"}},"spec":{"width":100,"height":50,)"
                R"("encoding":{"x":{"field":"a","type":"quantitative"}},"layer":[{"mark":"point"},)"
                R"({"data":{"values":[{"a":50}]},"mark":"circle"}]}})")
          .scene;
  // A table without the field stands in every pane.
  EXPECT_EQ(DescribePanes(scene), "5,25 / 0,25 / 10,25 100,25");
  for (Group const* pane : FindPanes(scene)) {
    int layers = 0;
    for (SceneNode const& node : pane->nodes) {
      auto const* group = std::get_if<std::unique_ptr<Group>>(&node);
      if (group != nullptr && (*group)->role == "marks") ++layers;
    }
    EXPECT_EQ(layers, 2);
  }
}

TEST(Panes, AreNotMoreThanFourHundred) {
  ChartDrawing const drawing;
  std::string rows;
  for (int i = 0; i <= 400; ++i) rows += fmt::format("{}{}", i == 0 ? "" : "|", i);
  EXPECT_EQ(drawing.DescribeError(MakeDocument("\"point\"", rows, R"("row":{"field":"f0"})")),
            "chart.vl.json: $.encoding.row.field: 401 values of field 'f0' are more panes than 400");
}

TEST(Panes, TextsDoNotOverlap) {
  auto const measurer = services::MakeFixedMeasurer();
  TextSetter const setter(*measurer, kFontFamily);
  ChartDrawing const drawing;
  std::string const color = R"(,"color":{"field":"h","type":"nominal"})";
  std::string const documents[] = {
      MakePanes(R"("column":{"field":"g"},"row":{"field":"h"})" + color,
                R"(,"resolve":{"scale":{"color":"independent"}})"),
      MakePanes(R"("column":{"field":"g"},"row":{"field":"h"})" + color, R"(,"title":"A title")"),
      MakePanes(R"("facet":{"field":"a","columns":3})" + color),
      MakePanes(R"("facet":{"field":"a","columns":2})",
                R"(,"resolve":{"scale":{"x":"independent","y":"independent"}})"),
      R"({"width":100,"height":100,)" + kRows +
          R"(,"resolve":{"scale":{"y":"independent","color":"independent"}},"encoding":{"x":{"field":"a",)"
          R"("type":"quantitative"}},"layer":[{"mark":"point","encoding":{"y":{"field":"a","type":"quantitative"},)"
          R"("color":{"field":"g","type":"nominal"}}},{"mark":"circle","encoding":{"y":{"field":"b",)"
          R"("type":"quantitative"},"color":{"field":"h","type":"nominal"}}},{"mark":"square","encoding":)"
          R"({"y":{"field":"h","type":"nominal"}}}]})"};
  for (std::string const& document : documents) {
    Scene const scene = drawing.Draw(document).scene;
    std::vector<Rect> rooms;
    CollectRooms(scene.root, {0, 0}, setter, rooms);
    EXPECT_GT(rooms.size(), 10u);
    for (std::size_t i = 0; i < rooms.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        Rect const& a = rooms[i];
        Rect const& b = rooms[j];
        bool const isApart = a.Right() <= b.x || b.Right() <= a.x || a.Bottom() <= b.y || b.Bottom() <= a.y;
        EXPECT_TRUE(isApart) << document << " " << i << " " << j;
      }
    }
  }
}

/// "60 6 / 40 0": the heights of every layer's symbols, rounded to whole pixels.
std::string DescribePlaces(Scene const& scene) {
  std::string text;
  for (SceneNode const& node : FindGroup(scene.root, "plot")->nodes) {
    auto const* group = std::get_if<std::unique_ptr<Group>>(&node);
    if (group == nullptr) continue;
    for (SceneNode const& shape : (*group)->nodes) {
      auto const* symbols = std::get_if<SymbolMarks>(&shape);
      if (symbols == nullptr) continue;
      if (!text.empty()) text += " /";
      auto const& y = symbols->y->AsTypedArray<double>();
      for (int row = 0; row < y.GetCount(); ++row)
        text += fmt::format("{}{:.0f}", text.empty() ? "" : " ", y.GetElement(row));
    }
  }
  return text;
}

TEST(Layers, HaveScalesOfTheirOwnOnBothSides) {
  ChartDrawing const drawing;
  Scene const scene = drawing
                          .Draw(R"({"width":100,"height":50,)" + kRows +
                                R"(,"resolve":{"scale":{"y":"independent"}},"layer":[)"
                                R"({"mark":"point","encoding":{"y":{"field":"a","type":"quantitative"}}},)"
                                R"({"mark":"point","encoding":{"y":{"field":"b","type":"quantitative"}}}]})")
                          .scene;
  std::string places;
  std::string texts;
  for (SceneNode const& node : FindGroup(scene.root, "plot")->nodes) {
    auto const& group = *std::get<std::unique_ptr<Group>>(node);
    for (SceneNode const& shape : group.nodes) {
      if (auto const* symbols = std::get_if<SymbolMarks>(&shape))
        places += fmt::format(" {:.0f}", symbols->y->AsTypedArray<double>().GetElement(1));
      if (auto const* text = std::get_if<TextMark>(&shape); text != nullptr && group.role == "axis y")
        texts += (text->at.x > 100 ? " >" : " <") + text->text;
    }
  }
  EXPECT_EQ(places, " 45 12");
  EXPECT_EQ(texts, " <0 <50 <100 <a >0 >2 >4 >b");
}

/// The rooms that the texts of all layers take in a pane.
std::vector<Rect> FindTexts(Scene const& scene, TextSetter const& setter) {
  std::vector<Rect> rooms;
  for (SceneNode const& node : FindGroup(scene.root, "plot")->nodes) {
    auto const* group = std::get_if<std::unique_ptr<Group>>(&node);
    if (group != nullptr && (*group)->role == "marks") CollectRooms(**group, {0, 0}, setter, rooms);
  }
  return rooms;
}

TEST(Scales, FitTheTextsThatStandOnThem) {
  auto const measurer = services::MakeFixedMeasurer();
  TextSetter const setter(*measurer, kFontFamily);
  ChartDrawing const drawing;
  struct Case {
    char const* scale;
    char const* mark;
  };
  Case const cases[] = {
      {R"("zero":false,"nice":false)", R"("align":"left","dx":5,"baseline":"bottom","dy":-3)"},
      {R"("zero":false,"nice":false)", R"("align":"right","baseline":"top")"},
      {R"("type":"log","nice":false)", R"("align":"left","dx":5)"},
      {R"("type":"log","nice":false,"reverse":true)", R"("align":"left","baseline":"bottom")"},
      {R"("zero":false,"nice":false,"reverse":true)", R"("fontSize":14,"angle":-90)"},
  };
  for (Case const& c : cases) {
    auto const draw = [&](char const* fit) {
      std::string const channel =
          R"("type":"quantitative","scale":{)" + std::string(c.scale) + fit + R"(},"axis":null})";
      return drawing
          .Draw(
              R"({"width":200,"height":150,"data":{"values":[{"a":10,"b":3},{"a":40,"b":8},{"a":90,"b":20}]},)"
              R"("encoding":{"x":{"field":"a",)" +
              channel + R"(,"y":{"field":"b",)" + channel +
              R"(},"layer":[{"mark":{"type":"rule","strokeWidth":3}},{"mark":{"type":"text","text":"abc",)" +
              c.mark + "}}]}")
          .scene;
    };
    auto const countOutside = [](std::vector<Rect> const& rooms) {
      return std::ranges::count_if(rooms, [](Rect const& room) {
        return room.x < 0 || room.y < 0 || room.Right() > 200 || room.Bottom() > 150;
      });
    };
    std::vector<Rect> const before = FindTexts(draw(""), setter);
    std::vector<Rect> const after = FindTexts(draw(R"(,"fit":true)"), setter);
    EXPECT_EQ(after.size(), 3u);
    EXPECT_GT(countOutside(before), 0) << c.scale << c.mark;
    EXPECT_EQ(countOutside(after), 0) << c.scale << c.mark;
  }
}

// Two layers with y axes of their own: the second one's scale, and what of resolve they share.
std::string TwoLayers(std::string const& scale, std::string const& resolve) {
  return R"({"width":100,"height":60,"data":{"values":[{"a":0,"b":0},{"a":90,"b":-5},{"a":20,"b":10}]},)"
         R"("resolve":{"scale":{"y":"independent"})" +
         resolve +
         R"(},"layer":[)"
         R"({"mark":"point","encoding":{"y":{"field":"a","type":"quantitative"}}},)"
         R"({"mark":"point","encoding":{"y":{"field":"b","type":"quantitative","scale":)" +
         scale + R"(}}}]})";
}

// The row of zeros stands at one height, and every row inside the pane.
TEST(Layers, ShareTheZeroOfTheirScales) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& scale, std::string const& shared) {
    return DescribePlaces(drawing.Draw(TwoLayers(scale, shared)).scene);
  };
  EXPECT_EQ(draw("{}", ""), "60 0 47 / 38 56 0");
  EXPECT_EQ(draw("{}", R"(,"zero":{"y":"shared"})"), "38 0 29 / 38 56 0");
  EXPECT_EQ(draw(R"({"reverse":true})", R"(,"zero":{"y":"shared"})"), "30 0 23 / 30 15 60");
  EXPECT_EQ(draw("{}", R"(,"zero":{"y":"independent"})"), draw("{}", ""));
  try {
    draw(R"({"type":"sqrt"})", R"(,"zero":{"y":"shared"})");
    ADD_FAILURE();
  } catch (DocumentError const& error) {
    EXPECT_STREQ(error.what(),
                 "chart.vl.json: $.layer[1].encoding.y.scale.type: has no zero to align; use \"linear\", or "
                 "leave resolve.zero out");
  }
}

// Both layers stand on one domain; a label that the first one's marks have gets room in it.
TEST(Layers, ShareTheDomainOfTheirScales) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& scale, std::string const& domain) {
    return DescribePlaces(drawing.Draw(TwoLayers(scale, domain)).scene);
  };
  std::string const shared = R"(,"domain":{"y":"shared"})";
  // From -5 to 90.
  EXPECT_EQ(draw(R"({"nice":false})", shared), "57 0 44 / 57 60 51");
  EXPECT_EQ(draw(R"({"domain":[-30,90]})", shared), "45 0 35 / 45 48 40");
  EXPECT_EQ(draw(R"({"nice":false,"reverse":true})", shared), "57 0 44 / 3 0 9");
  EXPECT_EQ(draw("{}", R"(,"domain":{"y":"independent"})"), draw("{}", ""));
}

// The units of a pixel on both axes of every pane: "0.5 0.5 | ...".
std::string DescribeUnits(Scene const& scene) {
  std::string text;
  for (Group const* pane : FindPanes(scene)) {
    auto const& symbols = std::get<SymbolMarks>(FindGroup(*pane, "marks")->nodes.front());
    auto const& x = symbols.x->AsTypedArray<double>();
    auto const& y = symbols.y->AsTypedArray<double>();
    text += fmt::format("{}{:.3f} {:.3f}", text.empty() ? "" : " | ",
                        10 / (x.GetElement(1) - x.GetElement(0)), 10 / (y.GetElement(0) - y.GetElement(1)));
  }
  return text;
}

// The first two rows of each pane are ten apart in both fields; the greatest extents need most.
TEST(Scales, ShareTheAmountOfAPixel) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& resolve) {
    return DescribeUnits(
        drawing
            .Draw(
                R"({"width":100,"height":50,"data":{"values":[{"g":"p","a":0,"b":0},{"g":"p","a":10,"b":10},)"
                R"({"g":"p","a":50,"b":0},{"g":"q","a":5,"b":100},{"g":"q","a":15,"b":110},)"
                R"({"g":"q","a":5,"b":140}]},"mark":"point","encoding":{)"
                R"("column":{"field":"g","type":"nominal"},)"
                R"("x":{"field":"a","type":"quantitative","scale":{"zero":false,"nice":false}},)"
                R"("y":{"field":"b","type":"quantitative","scale":{"zero":false,"nice":false}}},)"
                R"("resolve":{)" +
                resolve + "}}")
            .scene);
  };
  std::string const own = R"("scale":{"x":"independent","y":"independent"})";
  EXPECT_EQ(draw(own), "0.500 0.200 | 0.100 0.800");
  EXPECT_EQ(draw(own + R"(,"unit":{"x":"shared"})"), "0.500 0.200 | 0.500 0.800");
  EXPECT_EQ(draw(own + R"(,"unit":{"x":"shared","y":"shared"})"), "0.800 0.800 | 0.800 0.800");
  EXPECT_EQ(draw(R"("unit":{"x":"shared","y":"shared"})"), "2.800 2.800 | 2.800 2.800");
}

TEST(Scales, RefuseToShareWhatTheyDoNotHave) {
  ChartDrawing const drawing;
  auto const describe = [&](std::string const& y, std::string const& resolve) {
    return drawing.DescribeError(R"({"data":{"values":[{"a":1,"b":"2"}]},"mark":"point","encoding":{)"
                                 R"("x":{"field":"a","type":"quantitative"},"y":{"field":"b",)" +
                                 y + R"(}},"resolve":{)" + resolve + "}}");
  };
  std::string const both = R"("unit":{"x":"shared","y":"shared"})";
  std::string const number = R"("type":"quantitative")";
  EXPECT_EQ(describe(number, both), "no error");
  EXPECT_EQ(
      describe(number, R"("unit":{"y":"shared"})"),
      "chart.vl.json: $.resolve.unit: one scale has nothing to share its unit with; name x and y, or give "
      "panes scales of their own");
  EXPECT_EQ(describe(R"("type":"nominal")", both),
            "chart.vl.json: $.encoding.y.type: has no unit to share; use \"quantitative\" or \"temporal\"");
  EXPECT_EQ(describe(number + R"(,"scale":{"type":"log"})", both),
            "chart.vl.json: $.encoding.y.scale.type: differs from that of $.encoding.x, with which it shares "
            "its unit");
  EXPECT_EQ(describe(number, R"("domain":{"y":"shared"})"),
            "chart.vl.json: $.resolve.domain.y: layers of one scale share its domain; set resolve.scale");
}

}  // namespace
}  // namespace ostrel::charts
