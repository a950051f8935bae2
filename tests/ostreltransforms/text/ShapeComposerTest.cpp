#include <gtest/gtest.h>

#include <sstream>

#include "render/ShapeComposer.h"

namespace runtime {
namespace {

// Runs as "id@x,y", and the status behind them where it is not 0.
std::string Describe(ComposedShapes const& composed) {
  std::ostringstream text;
  for (ComposedShapeRun const& run : composed.GetRuns()) {
    if (&run != composed.GetRuns().data()) text << ' ';
    text << run.shapeId << '@' << run.x << ',' << run.y;
  }
  if (composed.GetStatus() != AllPlaced) text << " !" << composed.GetStatus();
  return text.str();
}

struct ShapesCase {
  std::uint32_t orientation, hAlign;
  bool allowFinerBreaks;
  std::uint32_t wrapMode;
  Size size;
  std::string runs;
};

TEST(ShapeComposer, StacksRowsFromTheBottom) {
  std::vector<Shape> const shapes = {{7, 10, 10}, {8, 20, 5}, {9, 10, 20}};
  ShapesCase const cases[] = {
      {0, 0, true, NoWrap, {100, 50}, "7@0,50 8@10,50 9@30,50"},
      {0, 1, true, NoWrap, {100, 50}, "7@30,50 8@40,50 9@60,50"},
      {0, 2, true, NoWrap, {100, 50}, "7@60,50 8@70,50 9@90,50"},
      {0, 0, true, WordWrap, {30, 50}, "7@0,50 8@10,50 9@0,40"},
      {0, 0, true, WordWrap, {29, 50}, "7@0,50 8@0,40 9@0,35"},
      {0, 0, false, WordWrap, {30, 50}, "7@0,50 8@10,50 9@30,50 !1"},
      {0, 0, true, NoWrap, {30, 50}, "7@0,50 8@10,50 9@30,50 !1"},
      {0, 0, true, Clip, {30, 50}, "7@0,50 8@10,50 9@30,50 !1"},
      {1, 0, true, WordWrap, {50, 30}, "7@-1,0 8@-1,10 9@9,0"},
      {2, 0, true, WordWrap, {50, 30}, "7@50,29 8@50,19 9@40,29"},
      {0, 0, true, WordWrap, {0, 0}, "7@0,0 8@10,0 9@30,0"},
      {0, 2, true, NoWrap, {0, 0}, "7@-40,0 8@-30,0 9@-10,0"},
  };
  for (auto const& [orientation, hAlign, allowFinerBreaks, wrapMode, size, runs] : cases) {
    ShapeComposer composer(orientation, hAlign, allowFinerBreaks);
    composer.SetWrapMode(wrapMode);
    EXPECT_EQ(composer.GetWrapMode(), wrapMode == Clip ? NoWrap : wrapMode);
    EXPECT_EQ(composer.GetVerticalAlignment(), 2U);
    ComposedShapes composed;
    composer.compose(shapes, size, composed);
    EXPECT_EQ(Describe(composed), runs)
        << orientation << hAlign << allowFinerBreaks << wrapMode << ' ' << size.width;
  }
}

TEST(ShapeComposer, HasNoToleranceAndNeedsNoMeasurer) {
  ShapeComposer composer(0, 0, true);
  ComposedShapes composed;
  std::vector<Shape> const shapes = {{1, 10.5F, 1}};
  composer.compose(shapes, {10, 10}, composed);
  EXPECT_EQ(Describe(composed), "1@0,10 !1");
  composer.SetClipWidth(true);
  composer.compose(shapes, {10, 10}, composed);
  EXPECT_EQ(Describe(composed), " !1");
  composer.compose({}, {10, 10}, composed);
  EXPECT_EQ(Describe(composed), "");
  EXPECT_EQ(composed.GetBounds(), Rect{});
}

TEST(ShapeComposer, LaysOutManyShapes) {
  std::vector<Shape> const shapes(100'000, Shape{3, 1, 1});
  ShapeComposer composer(0, 0, true);
  composer.SetWrapMode(WordWrap);
  ComposedShapes composed;
  composer.compose(shapes, {1000, 200}, composed);
  ASSERT_EQ(composed.GetRuns().size(), shapes.size());
  EXPECT_EQ(composed.GetLineCount(), 100U);
  EXPECT_EQ(composed.GetBounds(), (Rect{0, 100, 1000, 100}));
  EXPECT_EQ(composed.GetRuns().back().x, 999.0F);
  EXPECT_EQ(composed.GetRuns().back().y, 101.0F);
}

}  // namespace
}  // namespace runtime
