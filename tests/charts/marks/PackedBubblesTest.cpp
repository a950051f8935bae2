#include <cmath>
#include <random>

#include "ChartDrawing.h"
#include "charts/guides/GuideStyle.h"
#include "charts/marks/BubbleOverlaps.h"

namespace ostrel::charts {
namespace {

constexpr char kSize[] = R"("size":{"field":"f0","type":"quantitative"})";

struct Bubbles {
  std::vector<double> x, y, diameter;
};

Bubbles ReadBubbles(Scene const& scene) {
  Bubbles bubbles;
  SymbolMarks const& marks = *FindMarks<SymbolMarks>(scene, "marks").at(0);
  for (int row = 0; row < marks.x->AsColumn().GetCount(); ++row) {
    bubbles.x.push_back(marks.x->AsTypedArray<double>().GetElement(row));
    bubbles.y.push_back(marks.y->AsTypedArray<double>().GetElement(row));
    bubbles.diameter.push_back(std::sqrt(marks.size.column->AsTypedArray<double>().GetElement(row)));
  }
  return bubbles;
}

TEST(PackedBubbles, AreasAreTheValuesAndThePlotIsFilled) {
  ChartDrawing const drawing;
  struct {
    char const* rows;
    std::vector<double> values;  // in drawing order
    char const* sort;
  } const cases[] = {
      {"5", {5}, ""},
      {"1|4", {4, 1}, ""},
      {"1|4", {1, 4}, R"(,"sort":null)"},
      {"9|4|1|4|2|7|1|1", {9, 7, 4, 4, 2, 1, 1, 1}, ""},
      {"9|4|1|4|2|7|1|1", {1, 1, 1, 2, 4, 4, 7, 9}, R"(,"sort":"ascending")"},
      {"1e300|1e290|4e300", {4e300, 1e300, 1e290}, ""},
      {"1e-300|4e-300", {4e-300, 1e-300}, ""},
  };
  for (auto const& [rows, values, sort] : cases) {
    SCOPED_TRACE(rows);
    std::string const size = R"("size":{"field":"f0","type":"quantitative")" + std::string(sort) + "}";
    DrawnChart const chart = drawing.Draw(MakeDocument("\"packedBubbles\"", rows, size));
    EXPECT_TRUE(chart.warnings.empty());
    Bubbles const bubbles = ReadBubbles(chart.scene);
    ASSERT_EQ(bubbles.x.size(), values.size());
    Extent extent(Rect{50, 50, 0, 0});
    for (std::size_t i = 0; i < values.size(); ++i) {
      double const diameter = bubbles.diameter[i];
      EXPECT_NEAR(diameter / bubbles.diameter[0], std::sqrt(values[i] / values[0]), 1e-9);
      extent.Add({bubbles.x[i] - diameter / 2, bubbles.y[i] - diameter / 2, diameter, diameter});
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_GT(std::hypot(bubbles.x[i] - bubbles.x[j], bubbles.y[i] - bubbles.y[j]),
                  (diameter + bubbles.diameter[j]) / 2 - 1e-4);
      }
    }
    Rect const used = extent.GetRect();
    EXPECT_NEAR(std::max(used.width, used.height), 100, 1e-9);
    EXPECT_NEAR(used.x + used.Right(), 100, 1e-9);
    EXPECT_NEAR(used.y + used.Bottom(), 100, 1e-9);
  }
}

TEST(PackedBubbles, RowsWithoutAPlaceAreToldOf) {
  ChartDrawing const drawing;
  struct {
    char const* rows;
    char const* encoding;
    std::size_t drawn;
    std::vector<std::string> warnings;
  } const cases[] = {
      {"1|0|-3|null|4", "", 2, {"3 of 5 rows have no number above 0 in 'f0' for the bubbles; not drawn"}},
      {"1 2|2 null|3 4",
       R"(,"color":{"field":"f1","type":"quantitative"})",
       2,
       {"1 of 3 rows have no finite number in 'f1' that its scale can place; not drawn"}},
      {"1 2|2 null|3 4", R"(,"text":{"field":"f1"},"tooltip":{"field":"f1"})", 3, {}},
  };
  for (auto const& [rows, encoding, drawn, warnings] : cases) {
    DrawnChart const chart =
        drawing.Draw(MakeDocument("\"packedBubbles\"", rows, std::string(kSize) + encoding));
    EXPECT_EQ(ReadBubbles(chart.scene).x.size(), drawn);
    EXPECT_EQ(chart.warnings, warnings);
  }
}

TEST(PackedBubbles, DocumentsThatCannotBeDrawnAreRefused) {
  ChartDrawing const drawing;
  std::string const place = "chart.vl.json: $.encoding";
  struct {
    char const* rows;
    std::string encoding;
    std::string message;
  } const cases[] = {
      {"1", "", place + ": packedBubbles need a quantitative field in the channel size"},
      {"1", R"("size":{"value":9})",
       place + ".size: packedBubbles need a quantitative field in the channel size"},
      {"1", R"("size":{"field":"f0","type":"nominal"})",
       place + R"(.size.type: a bubble's area is a number; use "quantitative")"},
      {"1", R"("size":{"field":"f0","type":"quantitative","scale":{"range":[1,9]}})",
       place + ".size.scale: bubbles are as large as the plot has room for; leave it out"},
      {"1", std::string(kSize) + R"(,"x":{"field":"f0","type":"quantitative"})",
       place + ".x: is for the marks point, circle, square, line, bar, area, rect, rule, tick, text and "
               "textTable only; leave it out"},
      {"0|-1|null", kSize,
       place + ".size.field: field 'f0' of $.data.values has no value above 0, which bubbles need"},
  };
  for (auto const& [rows, encoding, message] : cases)
    EXPECT_EQ(drawing.DescribeError(MakeDocument("\"packedBubbles\"", rows, encoding)), message);
}

TEST(PackedBubbles, LabelsAreTheRowsOwnInColoursThatContrast) {
  ChartDrawing const drawing;
  Scene const scene =
      drawing
          .Draw(MakeDocument("\"packedBubbles\"", R"(1 "a"|4 "b"|2 "c")",
                             std::string(kSize) + R"(,"text":{"field":"f1"},"tooltip":{"field":"f1"},)"
                                                  R"("color":{"field":"f1","type":"nominal","scale":)"
                                                  R"({"range":["black","white","yellow"]}})"))
          .scene;
  Bubbles const bubbles = ReadBubbles(scene);
  auto const labels = FindMarks<TextMark>(scene, "labels");
  ASSERT_EQ(labels.size(), 3U);
  char const* const texts[] = {"b", "c", "a"};
  int const colors[] = {static_cast<int>(0xFF222222), static_cast<int>(0xFF222222), -1};
  auto const& tooltips =
      FindMarks<SymbolMarks>(scene, "marks")[0]->tooltips->AsTypedArray<ort::core::RIndirectString>();
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(labels[i]->text, texts[i]);
    EXPECT_EQ(tooltips.GetElement(static_cast<int>(i)).Get().toUtf8(), texts[i]);
    EXPECT_EQ(labels[i]->color.GetValue(), colors[i]);
    EXPECT_EQ(labels[i]->at.x, bubbles.x[i]);
    // The middle of a line stands 0.3 of its height above its baseline.
    EXPECT_NEAR(labels[i]->at.y, bubbles.y[i] + 0.3 * labels[i]->font.size, 1e-5);
  }
}

// A label's lines follow one another, all with the middle of their bubble.
TEST(PackedBubbles, LabelsStandWithinTheCirclesAndSayTheTextOrItsBeginning) {
  auto const measurer = services::MakeFixedMeasurer();
  TextSetter const setter(*measurer, kFontFamily);
  ChartDrawing const drawing;
  std::mt19937 random(3);
  int whole = 0, cut = 0, silent = 0;
  for (int round = 0; round < 30; ++round) {
    std::string rows;
    for (int row = 0; row < 12; ++row) {
      std::string text;
      for (std::size_t word = random() % 5; word > 0; --word)
        text += (text.empty() ? "" : "\\u0020") + std::string(1 + random() % 9, 'a') +
                (word == 3 ? "\u00e9" : "");
      rows += (row == 0 ? "" : "|") + std::to_string(1 + random() % 90) + " \"" + text + "\"";
    }
    std::string document = MakeDocument(
        "\"packedBubbles\"", rows, std::string(kSize) + R"(,"text":{"field":"f1"},"tooltip":{"field":"f1"})");
    document.replace(document.find("\"width\":100,\"height\":100"), 24, "\"width\":400,\"height\":400");
    Scene const scene = drawing.Draw(document).scene;
    Bubbles const bubbles = ReadBubbles(scene);
    auto const& texts =
        FindMarks<SymbolMarks>(scene, "marks")[0]->tooltips->AsTypedArray<ort::core::RIndirectString>();
    auto const labels = FindMarks<TextMark>(scene, "labels");
    for (std::size_t row = 0; row < bubbles.x.size(); ++row) {
      std::string const text = texts.GetElement(static_cast<int>(row)).Get().toUtf8();
      std::string said;
      for (TextMark const* label : labels) {
        double const below = label->at.y - bubbles.y[row];
        if (label->at.x != bubbles.x[row] || std::abs(below) > bubbles.diameter[row] / 2) continue;
        said += (said.empty() ? "" : " ") + label->text;
        Rect const line = setter.MeasureRect(*label);
        for (double const x : {line.x, line.Right()}) {
          for (double const y : {line.y, line.Bottom()})
            EXPECT_LE(std::hypot(x - bubbles.x[row], y - bubbles.y[row]), bubbles.diameter[row] / 2) << text;
        }
      }
      bool const isCut = said != text && !said.empty();
      ++(said.empty() ? silent : isCut ? cut : whole);
      if (!isCut) continue;
      ASSERT_TRUE(said.ends_with("..")) << said << " of " << text;
      said.resize(said.size() - 2);
      EXPECT_GE(said.size(), 3U) << text;
      EXPECT_TRUE(text.starts_with(said)) << text << " and " << said;
    }
  }
  EXPECT_GT(whole, 30);
  EXPECT_GT(cut, 30);
  EXPECT_GT(silent, 30);
}

TEST(BubbleOverlaps, AreThoseThatEveryPairShows) {
  std::mt19937 random(4);
  auto const draw = [&](double length) { return length * std::generate_canonical<double, 32>(random); };
  for (int i = 0; i < 400; ++i) {
    std::size_t const count = random() % 60;
    double const spread = std::exp(draw(8));
    Bubbles bubbles;
    for (std::size_t row = 0; row < count; ++row) {
      bubbles.x.push_back(draw(spread) - 5);
      bubbles.y.push_back(random() % 9 == 0 ? 3 : draw(spread) + 7);
      bubbles.diameter.push_back(random() % 10 == 0 ? 0 : std::exp(draw(6) - 3));
    }
    int expected = 0;
    for (std::size_t a = 0; a < count; ++a) {
      bool overlaps = false;
      for (std::size_t b = 0; b < count; ++b) {
        double const distance = std::hypot(bubbles.x[a] - bubbles.x[b], bubbles.y[a] - bubbles.y[b]);
        overlaps |= a != b && (bubbles.diameter[a] + bubbles.diameter[b]) / 2 - distance > 0.1;
      }
      expected += overlaps ? 1 : 0;
    }
    EXPECT_EQ(CountOverlapping({bubbles.x, bubbles.y, bubbles.diameter}, 0.1), expected);
  }
}

}  // namespace
}  // namespace ostrel::charts
