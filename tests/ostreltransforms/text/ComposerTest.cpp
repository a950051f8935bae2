#include <gtest/gtest.h>

#include "Texts.h"
#include "render/ShapeComposer.h"
#include "render/TextComposer.h"

namespace runtime {
namespace {

TEST(TextComposer, WrapsWords) {
  auto const measuring = Texts::MeasureByCounting();
  TextComposer composer(Texts::MakeTable({{}}));
  composer.SetWrapMode(WordWrap);
  ComposedText composed;
  composer.compose(Texts::Make("hello big world"), {90, 100}, composed);
  ASSERT_EQ(composed.GetRuns().size(), 2U);
  EXPECT_EQ(composed.GetRuns()[0].text, OStringCore(u"hello big"));
  EXPECT_EQ(composed.GetRuns()[1].text, OStringCore(u"world"));
  EXPECT_EQ(composed.GetRuns()[1].y, 18.0F);
  EXPECT_EQ(composed.GetSize(), (Size{90, 20}));
}

}  // namespace
}  // namespace runtime
