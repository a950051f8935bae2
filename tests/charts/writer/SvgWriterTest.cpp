#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "charts/writer/LinePath.h"
#include "charts/writer/SvgWriter.h"
#include "charts/writer/SymbolOutline.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtRuntimeException.h"

namespace {

using namespace ort::core;
using namespace ostrel::charts;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

OrtColor MakeColor(std::uint32_t argb) { return {static_cast<int>(argb)}; }

template <class T>
std::shared_ptr<StoreValue> MakeColumn(StoreTypeInfo const& type, std::vector<T> values,
                                       std::vector<int> const& specialRows = {}) {
  auto rows = std::make_unique<std::vector<int>>(specialRows);
  auto kinds = std::make_unique<std::vector<SpecialKind>>(specialRows.size(), SpecialKind::Missing);
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(std::move(values)), std::move(rows),
                               std::move(kinds));
}

std::shared_ptr<StoreValue> MakeReals(std::vector<double> values, std::vector<int> const& specialRows = {}) {
  return MakeColumn(StoreTypeInfo::Real64, std::move(values), specialRows);
}

std::string Write(Scene const& scene) {
  StringSink sink;
  WriteSvg(scene, *ostrel::services::MakeFixedMeasurer(), sink);
  return sink.GetText();
}

/// What stands between the root element's tags.
template <class... Nodes>
std::string WriteNodes(Nodes... nodes) {
  Scene scene;
  scene.background = MakeColor(0);
  (scene.root.nodes.emplace_back(std::move(nodes)), ...);
  std::string const text = Write(scene);
  std::size_t const start = text.find(">\n") + 2;
  return text.substr(start, text.rfind("</svg>") - start);
}

SymbolMarks MakeSymbols(std::shared_ptr<StoreValue> x, std::shared_ptr<StoreValue> y) {
  SymbolMarks marks;
  marks.x = std::move(x);
  marks.y = std::move(y);
  marks.size.constant = 100;
  marks.color.constant = MakeColor(0xFF112233);
  marks.opacity.constant = 1;
  marks.paint.strokeWidth = 1.5;
  return marks;
}

TextMark MakeText(std::string text) {
  TextMark mark;
  mark.text = std::move(text);
  mark.at = {10, 20};
  return mark;
}

TEST(SvgWriter, WritesAWholeScene) {
  Scene scene;
  scene.width = 200.5;
  scene.height = 100;
  scene.title = "Sales & \"more\"";
  scene.description = "a < b";
  auto axis = std::make_unique<Group>();
  axis->role = "axis x";
  axis->origin = {30, 80.25};
  RuleMarks ticks;
  ticks.stroke = {MakeColor(0xFF888888), 1, {}};
  ticks.rules = {{{0, 0}, {0, 5}}, {{10, 0}, {20, 0}}, {{kNaN, 0}, {0, 0}}, {{1, -1}, {2, -2}}};
  axis->nodes.emplace_back(std::move(ticks));
  for (double const x : {0.0, 50.0}) {
    TextMark label = MakeText(x == 0 ? "zero" : "fifty");
    label.at = {x, 7};
    label.anchor = TextAnchor::Middle;
    label.baseline = TextBaseline::Top;
    axis->nodes.emplace_back(std::move(label));
  }
  auto marks = std::make_unique<Group>();
  marks->role = "marks";
  marks->clip = Rect{0, 0, 150, 70};
  SymbolMarks symbols = MakeSymbols(MakeReals({1.5, 20}), MakeReals({2, 3.1416}));
  symbols.color.constant = MakeColor(0x804C78A8);
  symbols.tooltips = MakeColumn<RIndirectString>(
      StoreTypeInfo::String, {RIndirectString::FromUtf8("x: 1\ny: <2>"), RIndirectString()});
  marks->nodes.emplace_back(std::move(symbols));
  marks->nodes.emplace_back(
      RectMark{{5, 20, 10, -12}, MakeColor(0xFFFF0000), {MakeColor(0xFF000000), 2, {4, 2}}});
  marks->nodes.emplace_back(GradientMark{{0, 0, 10, 60}, {MakeColor(0xFF000000), MakeColor(0x00FFFFFF)}});
  scene.root.nodes.emplace_back(std::move(axis));
  scene.root.nodes.emplace_back(std::move(marks));

  EXPECT_EQ(
      Write(scene),
      R"svg(<svg xmlns="http://www.w3.org/2000/svg" version="1.1" width="200.5" height="100" viewBox="0 0 200.5 100" font-family="'DejaVu Sans', sans-serif" text-rendering="geometricPrecision">
<title>Sales &amp; &quot;more&quot;</title>
<desc>a &lt; b</desc>
<rect fill="#fff" width="200.5" height="100"/>
<g class="axis x" transform="translate(30,80.25)">
<path stroke="#888" d="M0 0V5M10 0H20M1-1L2-2"/>
<g font-size="10" fill="#333" text-anchor="middle">
<text x="0" y="15">zero</text>
<text x="50" y="15">fifty</text>
</g>
</g>
<clipPath id="clip1"><rect x="0" y="0" width="150" height="70"/></clipPath>
<g class="marks" clip-path="url(#clip1)">
<g fill="#4c78a8" fill-opacity=".502">
<circle cx="1.5" cy="2" r="5"><title>x: 1
y: &lt;2&gt;</title></circle>
<circle cx="20" cy="3.142" r="5"/>
</g>
<rect fill="#f00" stroke="#000" stroke-width="2" stroke-dasharray="4,2" x="5" y="8" width="10" height="12"/>
<linearGradient id="gradient1" x1="0" y1="1" x2="0" y2="0">
<stop offset="0" stop-color="#000"/>
<stop offset="1" stop-color="#fff" stop-opacity="0"/>
</linearGradient>
<rect fill="url(#gradient1)" x="0" y="0" width="10" height="60"/>
</g>
</svg>
)svg");
  EXPECT_EQ(Write(scene), Write(scene));
}

TEST(SvgWriter, EscapesTextsAndKeepsTheirBlanks) {
  struct Case {
    char const* text;
    char const* element;  ///< from behind the coordinates
  };
  std::string const replaced = "\xEF\xBF\xBD";
  Case const cases[] = {
      {"a<b>&\"c'", ">a&lt;b&gt;&amp;&quot;c'<"},
      {"a b", ">a b<"},
      {" a", " xml:space=\"preserve\"> a<"},
      {"a ", " xml:space=\"preserve\">a <"},
      {"a  b", " xml:space=\"preserve\">a  b<"},
      {"a \xE2\x80\x8B b", " xml:space=\"preserve\">a  b<"},
      {"a\tb\r\nc", " xml:space=\"preserve\">a b  c<"},
      {"\xE6\xBC\xA2\xE2\x80\x8B\xE5\xAD\x97", ">\xE6\xBC\xA2\xE5\xAD\x97<"},
      {"a\x01\x1F\x7F", ">a\xEF\xBF\xBD\xEF\xBF\xBD\x7F<"},
      {"a\xFF\xC3", ">a\xEF\xBF\xBD\xEF\xBF\xBD<"},
      {"\xED\xA0\x80|", ">\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD|<"},  // a surrogate
      {"\xEF\xBF\xBE\xEF\xBF\xBF", ">\xEF\xBF\xBD\xEF\xBF\xBD<"},    // U+FFFE and U+FFFF
      {"\xF0\x9F\x98\x80", ">\xF0\x9F\x98\x80<"},
  };
  for (Case const& test : cases)
    EXPECT_EQ(WriteNodes(MakeText(test.text)), "<text font-size=\"10\" fill=\"#333\" x=\"10\" y=\"20\"" +
                                                   std::string(test.element) + "/text>\n");
}

TEST(SvgWriter, PlacesTextsByAnchorBaselineAndAngle) {
  struct Case {
    TextAnchor anchor;
    TextBaseline baseline;
    double angle;
    bool isRightToLeft;
    char const* attributes;
  };
  // The fixed measurer's ascent is 8 and its height 10.
  Case const cases[] = {
      {TextAnchor::Start, TextBaseline::Alphabetic, 0, false, R"( x="10" y="20")"},
      {TextAnchor::Start, TextBaseline::Top, 0, false, R"( x="10" y="28")"},
      {TextAnchor::Middle, TextBaseline::Middle, 0, false, R"( text-anchor="middle" x="10" y="23")"},
      {TextAnchor::End, TextBaseline::Bottom, 0, false, R"( text-anchor="end" x="10" y="18")"},
      {TextAnchor::Start, TextBaseline::Middle, -90, false,
       R"a( transform="translate(10,20)rotate(-90)" y="3")a"},
      {TextAnchor::Start, TextBaseline::Alphabetic, 45, false,
       R"a( transform="translate(10,20)rotate(45)")a"},
      {TextAnchor::Start, TextBaseline::Alphabetic, 0, true,
       R"( text-anchor="end" x="10" y="20" direction="rtl" unicode-bidi="embed")"},
      {TextAnchor::Middle, TextBaseline::Alphabetic, 0, true,
       R"( text-anchor="middle" x="10" y="20" direction="rtl" unicode-bidi="embed")"},
      {TextAnchor::End, TextBaseline::Alphabetic, 0, true,
       R"( x="10" y="20" direction="rtl" unicode-bidi="embed")"},
  };
  for (Case const& test : cases) {
    TextMark mark = MakeText("t");
    mark.anchor = test.anchor;
    mark.baseline = test.baseline;
    mark.angle = test.angle;
    mark.isRightToLeft = test.isRightToLeft;
    EXPECT_EQ(WriteNodes(mark),
              R"(<text font-size="10" fill="#333")" + std::string(test.attributes) + ">t</text>\n");
  }
}

TEST(SvgWriter, SharesAStyleAmongNeighboursOnly) {
  TextMark bold = MakeText("bold");
  bold.font.weight = 700;
  bold.font.isItalic = true;
  bold.font.family = "A\"B";
  bold.color = MakeColor(0x80000000);
  TextMark const plain = MakeText("plain");
  RectMark const bar{{0, 0, 1, 2}, MakeColor(0xFF0000FF), {}};
  EXPECT_EQ(WriteNodes(plain, bold, bar, bar, plain, TextMark{}, plain),
            R"(<text font-size="10" fill="#333" x="10" y="20">plain</text>
<text font-family="'A&quot;B', sans-serif" font-size="10" font-weight="700" font-style="italic" fill="#000" fill-opacity=".502" x="10" y="20">bold</text>
<g fill="#00f">
<rect x="0" y="0" width="1" height="2"/>
<rect x="0" y="0" width="1" height="2"/>
</g>
<g font-size="10" fill="#333">
<text x="10" y="20">plain</text>
<text x="10" y="20">plain</text>
</g>
)");
}

TEST(SvgWriter, LeavesOutWhatHasNoPlaceOrPaintsNothing) {
  SymbolMarks symbols = MakeSymbols(MakeReals({0, 1, kNaN, 3, 4, 5, 6, 7}, {0}),
                                    MakeReals({0, 1, 2, kInfinity, 4, 5, 6, 7}, {1}));
  symbols.color.column =
      MakeColumn<OrtColor>(StoreTypeInfo::Color, std::vector<OrtColor>(8, MakeColor(0xFFABCDEF)));
  symbols.size.column = MakeReals({4, 4, 4, 4, 0, kNaN, 4, 4});
  symbols.opacity.column = MakeReals({1, 1, 1, 1, 1, 1, 0, 0.5});
  EXPECT_EQ(WriteNodes(std::move(symbols)),
            "<g>\n<circle cx=\"7\" cy=\"7\" r=\"1\" fill=\"#abcdef\" fill-opacity=\".5\"/>\n</g>\n");

  auto allMissing = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, 3, SpecialKind::Null);
  EXPECT_EQ(WriteNodes(MakeSymbols(allMissing, MakeReals({1, 2, 3}))), "<g fill=\"#123\">\n</g>\n");
  EXPECT_EQ(WriteNodes(MakeSymbols(MakeReals({}), MakeReals({}))), "");

  TextMark nowhere = MakeText("t");
  nowhere.at.x = kNaN;
  TextMark clear = MakeText("t");
  clear.color.SetA(0);
  LineMark gap;
  gap.stroke.color = MakeColor(0xFF000000);
  gap.points = {{kNaN, 1}, {1, kInfinity}};
  RuleMarks thin;
  thin.rules = {{{0, 0}, {1, 1}}};
  thin.stroke = {MakeColor(0xFF000000), 0, {}};
  std::string const rest = WriteNodes(
      nowhere, clear, MakeText(""), gap, thin, RectMark{{0, 0, kNaN, 1}, MakeColor(0xFF000000), {}},
      RectMark{{0, 0, 1, 1}, MakeColor(0), {MakeColor(0), 1, {}}}, GradientMark{}, std::make_unique<Group>());
  EXPECT_EQ(rest, "");
}

TEST(SvgWriter, WritesOutlinedSymbolsOfEveryShape) {
  SymbolMarks symbols =
      MakeSymbols(MakeReals({10, 30, 50, 70, 90, 110, 130, 150}), MakeReals(std::vector<double>(8, 10)));
  symbols.paint.isFilled = false;
  symbols.opacity.constant = 0.25;
  symbols.shape.column = MakeColumn<int>(StoreTypeInfo::Int32, {0, 1, 2, 3, 4, 5, 6, 7});
  symbols.tooltips = MakeColumn<RIndirectString>(StoreTypeInfo::String, std::vector<RIndirectString>(8), {});
  EXPECT_EQ(WriteNodes(std::move(symbols)),
            R"(<g fill="none" stroke-width="1.5" stroke="#123" stroke-opacity=".25" pointer-events="all">
<circle cx="10" cy="10" r="5"/>
<path d="M25 5h10v10h-10z"/>
<path d="M45 8h3v-3h4v3h3v4h-3v3h-4v-3h-3z"/>
<path d="M65 10l5-5l5 5l-5 5z"/>
<path d="M90 5.67l5 8.66h-10z"/>
<path d="M110 14.33l-5-8.66h10z"/>
<path d="M134.33 10l-8.66 5v-10z"/>
<path d="M145.67 10l8.66-5v10z"/>
</g>
)");
}

TEST(SvgWriter, RefusesColumnsThatDoNotFit) {
  struct Case {
    OrtError error;
    SymbolMarks marks;
  };
  std::vector<Case> cases;
  auto const add = [&](OrtError error, auto const& change) {
    SymbolMarks marks = MakeSymbols(MakeReals({1, 2}), MakeReals({1, 2}));
    change(marks);
    cases.push_back({error, std::move(marks)});
  };
  add(OrtError_LengthsDiffer, [](SymbolMarks& marks) { marks.y = MakeReals({1}); });
  add(OrtError_LengthsDiffer, [](SymbolMarks& marks) { marks.size.column = MakeReals({1, 2, 3}); });
  add(OrtError_WrongValueKind, [](SymbolMarks& marks) { marks.y = nullptr; });
  add(OrtError_WrongValueKind, [](SymbolMarks& marks) { marks.color.column = MakeReals({1, 2}); });
  add(OrtError_WrongValueKind, [](SymbolMarks& marks) {
    marks.shape.column = MakeColumn<int>(StoreTypeInfo::Int32, {0, 8});
  });
  for (Case& test : cases) {
    try {
      WriteNodes(std::move(test.marks));
      ADD_FAILURE() << "no error";
    } catch (OrtRuntimeException const& error) {
      EXPECT_EQ(error.GetError(), test.error);
    }
  }
}

TEST(SvgWriter, BreaksLinesAtGaps) {
  LineMark line;
  line.stroke = {MakeColor(0xFF4C78A8), 2, {}};
  line.opacity = 0.5;
  line.points = {{0, 0}, {1, 10}, {2, -5}, {3, kNaN}, {4, 4}, {kInfinity, 0}, {kNaN, 0}, {6, 1}, {7, 2}};
  struct Case {
    LineInterpolation interpolation;
    char const* first;
    char const* last;
  };
  Case const cases[] = {
      {LineInterpolation::Linear, "M0 0L1 10 2-5", "M6 1L7 2"},
      {LineInterpolation::StepBefore, "M0 0V10H1V-5H2", "M6 1V2H7"},
      {LineInterpolation::StepAfter, "M0 0H1V10H2V-5", "M6 1H7V2"},
      {LineInterpolation::Step, "M0 0H.5V10H1.5V-5H2", "M6 1H6.5V2H7"},
      {LineInterpolation::Monotone, "M0 0C.333 5 .667 10 1 10C1.333 10 1.667 2.5 2-5", "M6 1L7 2"},
  };
  for (Case const& test : cases) {
    line.interpolation = test.interpolation;
    EXPECT_EQ(WriteNodes(line), "<path d=\"" + std::string(test.first) + "M4 4h.001" + test.last +
                                    "\" fill=\"none\" stroke=\"#4c78a8\" stroke-opacity=\".5\""
                                    " stroke-width=\"2\" stroke-linecap=\"round\"/>\n");
  }
  line.points.resize(3);
  line.interpolation = LineInterpolation::Linear;
  line.tooltip = "a & b";
  EXPECT_EQ(WriteNodes(line),
            "<path d=\"M0 0L1 10 2-5\" fill=\"none\" stroke=\"#4c78a8\" stroke-opacity=\".5\""
            " stroke-width=\"2\"><title>a &amp; b</title></path>\n");
}

TEST(SvgWriter, WritesRectanglesFromSideToSide) {
  auto const make = [](std::vector<int> const& special) {
    RectMarks marks;
    marks.x = MakeReals({0, 20, 40, 60}, special);
    marks.x2 = MakeReals({10, 10, 50, 60});
    marks.y = MakeReals({100, 100, kNaN, 100});
    marks.y2 = MakeReals({80, 120, 0, 0});
    marks.color.constant = MakeColor(0x80112233);
    marks.opacity.constant = 1;
    return marks;
  };
  // Of no width, without a place, or special in a side: not drawn.
  EXPECT_EQ(WriteNodes(make({})),
            "<g fill=\"#123\" fill-opacity=\".502\">\n"
            "<rect x=\"0\" y=\"80\" width=\"10\" height=\"20\"/>\n"
            "<rect x=\"10\" y=\"100\" width=\"10\" height=\"20\"/>\n</g>\n");
  EXPECT_EQ(WriteNodes(make({0, 1})), "<g fill=\"#123\" fill-opacity=\".502\">\n</g>\n");
  RectMarks styled = make({1});
  styled.color.column =
      MakeColumn<OrtColor>(StoreTypeInfo::Color, std::vector<OrtColor>(4, MakeColor(0xFF445566)));
  styled.opacity.column = MakeReals({0.5, 1, 1, 1});
  styled.paint.other = MakeColor(0xFFFFFFFF);
  styled.paint.strokeWidth = 2;
  styled.tooltips = MakeColumn<RIndirectString>(
      StoreTypeInfo::String, std::vector<RIndirectString>(4, RIndirectString::FromUtf8("a<b")));
  EXPECT_EQ(WriteNodes(std::move(styled)),
            "<g stroke=\"#fff\" stroke-width=\"2\">\n"
            "<rect x=\"0\" y=\"80\" width=\"10\" height=\"20\" fill=\"#456\" fill-opacity=\".5\""
            " stroke-opacity=\".5\"><title>a&lt;b</title></rect>\n</g>\n");
  // Corners that have no room for their radii share it.
  RectMarks rounded = make({1});
  rounded.corners = {{8, 2, 0, 0}, {}, {}, {}};
  rounded.paint = {
      .isFilled = false, .other = MakeColor(0xFFFF0000), .fillOpacity = 0.5, .strokeDash = {3, 1}};
  EXPECT_EQ(WriteNodes(std::move(rounded)),
            "<g fill=\"#f00\" fill-opacity=\".5\" stroke-dasharray=\"3,1\" stroke=\"#123\""
            " stroke-opacity=\".502\">\n"
            "<path d=\"M8 80H8a2 2 0 0 1 2 2V100H0V88a8 8 0 0 1 8-8Z\"/>\n</g>\n");
}

TEST(SvgWriter, ClosesAreasBetweenTheirLines) {
  AreaMark area;
  area.points = {{0, 10}, {10, 20}, {20, 5}};
  area.basePoints = {{0, 50}, {10, 50}, {20, 50}};
  area.fill = MakeColor(0xFF112233);
  EXPECT_EQ(WriteNodes(AreaMark(area)), "<path d=\"M0 10L10 20 20 5L20 50L10 50 0 50Z\" fill=\"#123\"/>\n");
  area.interpolation = LineInterpolation::StepAfter;
  area.opacity = 0.5;
  area.tooltip = "t";
  EXPECT_EQ(WriteNodes(AreaMark(area)),
            "<path d=\"M0 10H10V20H20V5L20 50V50H10V50H0Z\" fill=\"#123\" fill-opacity=\".5\">"
            "<title>t</title></path>\n");
  // A gap in either line parts the area; a single point has no extent.
  area = AreaMark();
  area.points = {{0, 1}, {1, 1}, {2, kNaN}, {3, 1}, {4, 1}, {5, 1}};
  area.basePoints = {{0, 9}, {1, 9}, {2, 9}, {3, 9}, {4, kNaN}, {5, 9}};
  area.fill = MakeColor(0xFF112233);
  EXPECT_EQ(WriteNodes(AreaMark(area)), "<path d=\"M0 1L1 1L1 9L0 9Z\" fill=\"#123\"/>\n");
  area.points.resize(1);
  EXPECT_EQ(WriteNodes(AreaMark(area)), "");
}

TEST(SvgWriter, KeepsMonotoneCurvesBetweenTheirPoints) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> step(-50, 50);
  for (int round = 0; round < 500; ++round) {
    std::vector<Point> points{{0, 0}};
    std::size_t const count = 3 + random() % 8;
    while (points.size() < count) {
      bool const isFlat = random() % 5 == 0;
      points.push_back(
          {points.back().x + std::fabs(step(random)), points.back().y + (isFlat ? 0 : step(random))});
    }
    StringSink sink;
    SvgStream out(sink);
    WriteLineStretch(points, LineInterpolation::Monotone, out);
    out.Flush();
    std::string text = sink.GetText();
    std::size_t segment = 0;
    for (std::size_t at = text.find('C'); at != std::string::npos; at = text.find('C', at + 1), ++segment) {
      double numbers[6];
      char const* position = text.c_str() + at + 1;
      for (double& number : numbers) {
        char* end = nullptr;
        number = std::strtod(position, &end);
        position = end;
      }
      // Control points within the ends keep the whole piece within them.
      double const kRounding = 0.0011;
      auto const [low, high] = std::minmax(points[segment].y, points[segment + 1].y);
      EXPECT_GE(std::min(numbers[1], numbers[3]), low - kRounding) << text;
      EXPECT_LE(std::max(numbers[1], numbers[3]), high + kRounding) << text;
      EXPECT_NEAR(numbers[4], points[segment + 1].x, kRounding);
      EXPECT_NEAR(numbers[5], points[segment + 1].y, kRounding);
    }
    ASSERT_EQ(segment, points.size() - 1) << text;
  }
}

TEST(SvgWriter, ShowsTranslucentRulesThroughOneAnother) {
  RuleMarks rules;
  rules.rules = {{{0, 0}, {9, 9}}, {{0, 9}, {9, 0}}};
  rules.stroke = {MakeColor(0x33FF0000), 3, {0, 0}};
  EXPECT_EQ(WriteNodes(std::move(rules)),
            "<g stroke=\"#f00\" stroke-opacity=\".2\" stroke-width=\"3\">\n"
            "<path d=\"M0 0L9 9\"/>\n<path d=\"M0 9L9 0\"/>\n</g>\n");
}

TEST(SvgWriter, HandsOverItsTextInPieces) {
  class PieceSink final : public ByteSink {
   public:
    void Write(std::string_view bytes) override {
      longest_ = std::max(longest_, bytes.size());
      text_ += bytes;
    }
    std::size_t longest_ = 0;
    std::string text_;
  };
  constexpr std::size_t kCount = 20'000;
  std::vector<double> x(kCount);
  for (std::size_t row = 0; row < kCount; ++row) x[row] = static_cast<double>(row) / 7;
  Scene scene;
  scene.root.nodes.emplace_back(MakeSymbols(MakeReals(x), MakeReals(x)));
  TextMark longText = MakeText(std::string(200'000, 'x'));
  scene.root.nodes.emplace_back(std::move(longText));
  PieceSink sink;
  WriteSvg(scene, *ostrel::services::MakeFixedMeasurer(), sink);
  EXPECT_LE(sink.longest_, 200'000U);
  EXPECT_EQ(sink.text_, Write(scene));
  EXPECT_NE(sink.text_.find("cx=\"2857\" cy=\"2857\" r=\"5\"/>\n"), std::string::npos);  // row 19,999
  EXPECT_NE(sink.text_.find(">" + std::string(200'000, 'x') + "</text>"), std::string::npos);
}

}  // namespace
