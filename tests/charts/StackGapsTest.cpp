#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <random>

#include "ChartDrawing.h"

namespace ostrel::charts {
namespace {

/// Numbers by series and place; a series has none where it has no row.
using Table = std::map<std::string, std::map<int, double>>;

/// "x base top ..." of each area, in pixels of a pane of 100 by 100 whose measure goes up to `most`.
using Outlines = std::map<std::string, std::vector<std::array<double, 3>>>;

/// Series stand on one another from the last name to the first, in horizontal stacks from the first to the
/// last, and count 0 where they have no row.
Outlines StackPlainly(Table const& table, std::string const& offset, double most, bool isHorizontal) {
  std::map<int, double> sums;
  for (auto const& [name, rows] : table) {
    for (auto const& [place, number] : rows) sums[place] += number;
  }
  double largest = 0;
  for (auto const& [place, sum] : sums) largest = std::max(largest, sum);
  Outlines outlines;
  std::map<int, double> tops;
  std::vector<std::pair<std::string, std::map<int, double>>> stacked(table.begin(), table.end());
  if (!isHorizontal) std::ranges::reverse(stacked);
  for (auto const& [name, rows] : stacked) {
    for (auto const& [place, sum] : sums) {
      auto const row = rows.find(place);
      double const base = tops[place];
      double const top = base + (row == rows.end() ? 0 : row->second);
      tops[place] = top;
      auto const pixel = [&, whole = sum](double number) {
        if (offset == "normalize") number /= whole;
        if (offset == "center") number += (largest - whole) / 2;
        return 100 - number / most * 100;
      };
      outlines[name].push_back({place * 10.0, pixel(base), pixel(top)});
    }
  }
  return outlines;
}

TEST(StackGaps, SeriesCountZeroWhereTheyHaveNoRow) {
  std::mt19937 random(5);
  ChartDrawing const drawing;
  for (int round = 0; round < 45; ++round) {
    Table table;
    for (char const* name : {"a", "b", "c"}) {
      for (int place = 0; place <= 10; ++place) {
        if (random() % 3 != 0) table[name][place] = 1 + static_cast<double>(random() % 9);
      }
    }
    std::string rows;
    for (auto const& [name, numbers] : table) {
      for (auto const& [place, number] : numbers)
        rows += fmt::format("{}{} \"{}\" {}", rows.empty() ? "" : "|", place, name, number);
    }
    std::string const offset = std::array{"zero", "normalize", "center"}[static_cast<std::size_t>(round % 3)];
    bool const isHorizontal = round % 2 == 1;
    std::string const mark =
        fmt::format(R"({{"type":"area","orient":"{}"}})", isHorizontal ? "horizontal" : "vertical");
    double const most = offset == "normalize" ? 1 : 40;
    std::string const encoding =
        fmt::format(R"("{}":{{"field":"f0","type":"quantitative","scale":{{"domain":[0,10]}}}},)"
                    R"("{}":{{"field":"f2","type":"quantitative","stack":"{}","scale":{{"domain":[0,{}]}}}},)"
                    R"("color":{{"field":"f1","type":"nominal"}})",
                    isHorizontal ? "y" : "x", isHorizontal ? "x" : "y", offset, most);
    Scene const scene = drawing.Draw(MakeDocument(mark, rows, encoding)).scene;
    auto const areas = FindMarks<AreaMark>(scene, "marks");
    Outlines const expected = StackPlainly(table, offset, most, isHorizontal);
    ASSERT_EQ(areas.size(), expected.size()) << round;
    auto area = areas.begin();
    for (auto const& [name, outline] : expected) {
      ASSERT_EQ((*area)->points.size(), outline.size()) << round << name;
      for (std::size_t i = 0; i < outline.size(); ++i) {
        auto const turned = [&](Point point) {
          return isHorizontal ? Point{100 - point.y, 100 - point.x} : point;
        };
        Point const top = turned((*area)->points[i]);
        Point const base = turned((*area)->basePoints[i]);
        EXPECT_NEAR(top.x, outline[i][0], 1e-9) << round << name << i;
        EXPECT_NEAR(base.y, outline[i][1], 1e-9) << round << name << i;
        EXPECT_NEAR(top.y, outline[i][2], 1e-9) << round << name << i;
      }
      ++area;
    }
  }
}

TEST(StackGaps, AreFilledAmongAggregates) {
  ChartDrawing const drawing;
  std::string const measure = R"("y":{"aggregate":"sum","field":"f2","scale":{"domain":[0,10]}},)";
  std::string const place = R"("x":{"timeUnit":"yearmonth","field":"f0","type":"temporal"},)";
  std::string const series = R"("color":{"field":"f1","type":"nominal"})";
  std::string const rows =
      R"("2020-01-01" "a" 1|"2020-01-05" "a" 2|"2020-02-01" "b" 4|"2020-03-01" "b" 2|null "b" 9)";
  DrawnChart const drawn = drawing.Draw(MakeDocument("\"area\"", rows, place + measure + series));
  auto const areas = FindMarks<AreaMark>(drawn.scene, "marks");
  ASSERT_EQ(areas.size(), 2U);
  auto const heights = [](AreaMark const& area) {
    std::string text;
    for (std::size_t i = 0; i < area.points.size(); ++i)
      text += fmt::format("{:.0f} ", area.basePoints[i].y - area.points[i].y);
    return text;
  };
  EXPECT_EQ(heights(*areas[0]), "30 0 0 ");
  // A row without a place is drawn nowhere and needs no others.
  EXPECT_EQ(heights(*areas[1]), "0 40 20 nan ");
}

// A number that is missing is a gap, also between series that stand on one another; it counts 0 for them.
TEST(StackGaps, RowsWithoutNumbersBreakAreas) {
  ChartDrawing const drawing;
  std::string const axes =
      R"("x":{"field":"f0","type":"quantitative"},"y":{"field":"f1","type":"quantitative","stack":"zero",)"
      R"("scale":{"domain":[0,10]}})";
  auto const draw = [&](std::string const& rows, std::string const& more) {
    std::string tops;
    DrawnChart const drawn = drawing.Draw(MakeDocument("\"area\"", rows, axes + more));
    for (AreaMark const* area : FindMarks<AreaMark>(drawn.scene, "marks")) {
      for (Point const& point : area->points) tops += fmt::format("{:.0f} ", 100 - point.y);
      tops += "|";
    }
    return tops;
  };
  EXPECT_EQ(draw("1 3|2 5|3 null|4 2|5 null", ""), "30 50 nan 20 nan |");
  EXPECT_EQ(draw(R"(1 3 "a"|2 null "a"|3 2 "a"|1 1 "b"|2 4 "b"|3 1 "b")", R"(,"color":{"field":"f2"})"),
            "40 nan 30 |10 40 10 |");
}

}  // namespace
}  // namespace ostrel::charts
