#include <fmt/format.h>

#include <algorithm>

#include "TextRooms.h"

namespace ostrel::charts {
namespace {

/// An axis from 1 over some decades, in a given direction and length.
Scene DrawLogAxis(ChartDrawing const& drawing, bool isHorizontal, int length, int decades,
                  std::string const& base) {
  std::string const size = isHorizontal ? fmt::format(R"("width":{},"height":50)", length)
                                        : fmt::format(R"("width":50,"height":{})", length);
  return drawing
      .Draw(fmt::format(
          R"({{{},"data":{{"values":[{{"a":1}},{{"a":3e{}}}]}},"mark":"point","encoding":{{"{}":)"
          R"({{"field":"a","type":"quantitative","title":null,"scale":{{"type":"log","nice":false{}}}}}}}}})",
          size, decades - 1, isHorizontal ? "x" : "y", base))
      .scene;
}

// Whatever the size and the number of decades: labels keep apart, no tick is told twice, and two labels at
// least are shown where there is room for two.
TEST(LogAxes, ShowLabelsThatKeepApartAtAllSizes) {
  auto const measurer = services::MakeFixedMeasurer();
  TextSetter const setter(*measurer, kFontFamily);
  ChartDrawing const drawing;
  for (bool const isHorizontal : {false, true}) {
    std::string const role = isHorizontal ? "axis x" : "axis y";
    for (int const length : {40, 55, 80, 120, 200, 310, 500, 800, 1'250, 2'000}) {
      for (int decades = 1; decades <= 12; ++decades) {
        for (char const* base : {"", R"(,"base":2)"}) {
          Scene const scene = DrawLogAxis(drawing, isHorizontal, length, decades, base);
          SCOPED_TRACE(fmt::format("{} of {} pixels, {} decades{}", role, length, decades, base));
          std::vector<Rect> rooms;
          Group const* const axis = FindGroup(scene.root, role);
          ASSERT_NE(axis, nullptr);
          CollectRooms(*axis, {0, 0}, setter, rooms);
          std::ranges::sort(rooms, {}, [&](Rect const& room) { return isHorizontal ? room.x : room.y; });
          for (std::size_t i = 1; i < rooms.size(); ++i) {
            double const before = isHorizontal ? rooms[i - 1].Right() : rooms[i - 1].Bottom();
            EXPECT_LE(before, isHorizontal ? rooms[i].x : rooms[i].y);
          }
          // The widest label, 100,000,000,000, takes 150 pixels.
          if (length >= (isHorizontal ? 310 : 40)) {
            EXPECT_GE(rooms.size(), 2u) << ReadTexts(scene, role);
          }
          auto texts = FindMarks<TextMark>(scene, role);
          std::ranges::sort(texts, {}, &TextMark::text);
          auto const same = [](TextMark const* a, TextMark const* b) { return a->text == b->text; };
          EXPECT_EQ(std::ranges::adjacent_find(texts, same), texts.end()) << ReadTexts(scene, role);
        }
      }
    }
  }
}

}  // namespace
}  // namespace ostrel::charts
