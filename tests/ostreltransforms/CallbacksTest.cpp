#include <gtest/gtest.h>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/CallbackAccess.h"
#include "ostreltransforms/Callbacks.h"
#include "render/MeasurerGeneration.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

std::shared_ptr<StoreValue> const kNoFont;

TextWidthMeasurer MeasureAs(float width) {
  return [width](OStringCore const&, std::shared_ptr<StoreValue> const&) { return width; };
}

float Measure() { return MeasureTextWidth(OStringCore(L"a"), kNoFont); }

class Callbacks : public testing::Test {
 protected:
  void SetUp() override { SetRuntimeFunctionCallbacks({}, {}, {}, {}); }
  void TearDown() override { SetRuntimeFunctionCallbacks({}, {}, {}, {}); }
};

TEST_F(Callbacks, AnEmptyCallbackThrowsBadFunctionCall) {
  auto const tuple = factory::MakeTuple(std::vector<std::shared_ptr<StoreValue>>());
  EXPECT_THROW(FormatNumber(1.0, tuple->AsTuple()), std::bad_function_call);
  EXPECT_THROW(Measure(), std::bad_function_call);
  EXPECT_THROW(ConvertHostValue(tuple), std::bad_function_call);
  EXPECT_THROW(TransformString(OStringCore()), std::bad_function_call);
}

TEST_F(Callbacks, EachGoesToItsOwnPlace) {
  auto const tuple = factory::MakeTuple(std::vector{factory::MakeInt32(3)});
  SetRuntimeFunctionCallbacks(
      [](double value, IStoreTuple const& format) {
        return OStringCore(value == 2.5 && format.GetCount() == 1 ? L"formatted" : L"");
      },
      MeasureAs(4.0F), [](std::shared_ptr<StoreValue> const& value) { return value->AsTuple().GetMember(0); },
      [](OStringCore const& text) { return text + OStringCore(L"!"); });
  EXPECT_EQ(FormatNumber(2.5, tuple->AsTuple()), OStringCore(L"formatted"));
  EXPECT_EQ(Measure(), 4.0F);
  EXPECT_EQ(ConvertHostValue(tuple)->GetInt32(), 3);
  EXPECT_EQ(TransformString(OStringCore(L"a")), OStringCore(L"a!"));
}

TEST_F(Callbacks, ACallRunsOnACopy) {
  auto const kept = std::make_shared<int>(7);
  std::weak_ptr<int> const watched = kept;
  SetRuntimeFunctionCallbacks({}, {}, {}, [held = kept](OStringCore const& text) {
    SetRuntimeFunctionCallbacks({}, {}, {}, {});  // would pull the running callback away
    return *held == 7 ? text : OStringCore();
  });
  EXPECT_EQ(TransformString(OStringCore(L"a")), OStringCore(L"a"));
  EXPECT_EQ(watched.use_count(), 1) << "the library kept a callback that was taken back";
}

TEST_F(Callbacks, AScopeRestoresWhatItFound) {
  SetRuntimeFunctionCallbacks({}, MeasureAs(1.0F), {}, {});
  {
    TestCallbackScope const outer = SetMeasureTextWidthCallbackForTest(MeasureAs(2.0F));
    EXPECT_EQ(Measure(), 2.0F);
    {
      TestCallbackScope const inner = SetMeasureTextWidthCallbackForTest({});
      EXPECT_THROW(Measure(), std::bad_function_call);
    }
    EXPECT_EQ(Measure(), 2.0F);
  }
  EXPECT_EQ(Measure(), 1.0F);
}

TEST_F(Callbacks, AScopeThatFoundNoneLeavesTheTestCallback) {
  { TestCallbackScope const scope = SetMeasureTextWidthCallbackForTest(MeasureAs(2.0F)); }
  EXPECT_EQ(Measure(), 2.0F);
}

TEST_F(Callbacks, AMovedFromScopeRestoresNothing) {
  SetRuntimeFunctionCallbacks({}, MeasureAs(1.0F), {}, {});
  {
    auto source = std::make_unique<TestCallbackScope>(SetMeasureTextWidthCallbackForTest(MeasureAs(2.0F)));
    TestCallbackScope const target(std::move(*source));
    source.reset();
    EXPECT_EQ(Measure(), 2.0F);
  }
  EXPECT_EQ(Measure(), 1.0F);
}

int g_cleared = 0;

TEST_F(Callbacks, EveryInstalledMeasurerBeginsAGenerationAndClears) {
  SetRuntimeFunctionCallbacks({}, MeasureAs(1.0F), {}, {});
  auto* const former = runtime::SetComposedTextsClearer([]() noexcept { ++g_cleared; });
  auto step = [generation = runtime::TextMeasurerGeneration(), cleared = g_cleared]() mutable {
    bool const isNew = runtime::TextMeasurerGeneration() == generation + 1 && g_cleared == cleared + 1;
    generation = runtime::TextMeasurerGeneration();
    cleared = g_cleared;
    return isNew;
  };
  SetRuntimeFunctionCallbacks({}, MeasureAs(1.0F), {}, {});
  EXPECT_TRUE(step());
  {
    TestCallbackScope const scope = SetMeasureTextWidthCallbackForTest(MeasureAs(2.0F));
    EXPECT_TRUE(step());
    EXPECT_FALSE(step());
  }
  EXPECT_TRUE(step()) << "putting the old measurer back";
  runtime::SetComposedTextsClearer(former);
}

}  // namespace
}  // namespace OstrelTransforms
