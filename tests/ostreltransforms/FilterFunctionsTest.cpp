#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace RowDriver;
using Value = std::shared_ptr<StoreValue>;

class FilterFunctions : public testing::Test {
 protected:
  FilterFunctions() { OstrelTransforms::RegisterOstrelFilterFunctions(registry_); }
  Factory Find(wchar_t const* name, StoreTypeInfo const& input, std::vector<Value> parameters = {}) {
    return FindFactory(registry_.GetUnaryFunctions(), FunctionKey(OStringCore(name), input),
                       std::move(parameters));
  }
  Factory KeepUnique(StoreTypeInfo const& input) { return Find(TransformNames::KEEP_ONLY_UNIQUE, input); }
  Factory KeepRect() { return Find(TransformNames::KEEP_ONLY_NON_EMPTY_RECT, StoreTypeInfo::Tuple); }

  FunctionRegistry registry_;
};

TEST_F(FilterFunctions, KeepOnlyUniqueMarksTheFirstRowOfEachValue) {
  struct {
    std::vector<int> input;
    std::vector<bool> expected;
  } const cases[] = {
      {{4, 4, 7, 4, 7, 1}, {true, false, true, false, false, true}},
      {{}, {}},
      {{0, 0, -1, 0, -1}, {true, false, true, false, false}},
      {{INT_MIN, INT_MAX, INT_MIN}, {true, true, false}},
  };
  for (auto const& [input, expected] : cases) {
    ExpectUnary<int, bool>(KeepUnique(StoreTypeInfo::Int32), input, expected, State::Carried);
  }
}

TEST_F(FilterFunctions, KeepOnlyUniqueComparesTextsWithTheirCase) {
  std::vector<RIndirectString> input;
  for (wchar_t const* const text : {L"a", L"A", L"", L"a", L"", L"ä", L"A"})
    input.emplace_back(OStringCore(text));
  ExpectUnary<RIndirectString, bool>(KeepUnique(StoreTypeInfo::String), input,
                                     {true, true, true, false, false, true, false}, State::Carried);
}

TEST_F(FilterFunctions, KeepOnlyUniqueTakesNoParameters) {
  auto const factory = Find(TransformNames::KEEP_ONLY_UNIQUE, StoreTypeInfo::Int32, {factory::MakeInt32(1)});
  EXPECT_EQ(ErrorOf(factory), 55);
}

Value Rect(float width, float height) {
  return factory::MakeTuple(std::vector{factory::MakeReal32(-1.0F), factory::MakeReal32(-1.0F),
                                        factory::MakeReal32(width), factory::MakeReal32(height)});
}

TEST_F(FilterFunctions, KeepOnlyNonEmptyRectWantsBothSidesAboveZero) {
  float const nan = std::numeric_limits<float>::quiet_NaN();
  float const tiny = std::numeric_limits<float>::denorm_min();
  ExpectUnary<Value, bool>(KeepRect(),
                           {Rect(10, 0), Rect(0.5F, 0.5F), Rect(0, 10), Rect(-1, 1), Rect(1, -1),
                            Rect(nan, 1), Rect(1, nan), Rect(tiny, tiny), Rect(-0.0F, 1)},
                           {false, true, false, false, false, false, false, true, false});
}

TEST_F(FilterFunctions, KeepOnlyNonEmptyRectReadsTheHeightOnlyBesideAWidth) {
  auto const functor = KeepRect()();
  auto& rect = dynamic_cast<IUnaryFunctor<Value, bool>&>(*functor);
  auto const text = factory::MakeString(OStringCore(L"tall"));
  auto const tuple = [](std::vector<Value> members) { return factory::MakeTuple(std::move(members)); };
  auto const zero = factory::MakeReal32(0.0F);
  auto const one = factory::MakeReal32(1.0F);
  EXPECT_FALSE(rect.Apply(tuple({zero, zero, zero, text})));
  struct {
    Value rectangle;
    int error;
  } const cases[] = {
      {tuple({zero, zero, one, text}), 55},
      {tuple({zero, zero, factory::MakeReal64(1.0), one}), 55},
      {tuple({zero, zero, one}), 219},
      {one, 55},
      {nullptr, 55},
  };
  for (auto const& [rectangle, error] : cases) {
    EXPECT_EQ(ErrorOf([&, &value = rectangle] { rect.Apply(value); }), error);
  }
}

}  // namespace
