#include <gtest/gtest.h>

#include "engine/EngineTestSupport.h"

namespace enginetest {
namespace {

TEST(EngineLookup, TellsWhatIsWrongWithACall) {
  FunctionRegistry registry;
  RegisterTestFunctions(registry);
  Engine const engine(registry);
  auto const one = factory::MakeReal64(1);
  auto const column = MakeReals("1 2");
  auto const date = factory::MakeDate(OrtDateTime());
  using M = EvaluationMode;
  struct Case {
    FunctionCall call;
    char const* expected;
  };
  Case const cases[] = {
      {{L"halv", M::Map, {one}, {}}, "no function is named 'halv'; did you mean 'halve'?"},
      {{L"unheard of", M::Call, {}, {}}, "no function is named 'unheard of'"},
      {{L"halve", M::Zip, {one, one}, {}}, "mode zip does not suit 'halve'; use map"},
      {{L"count", M::Map, {one}, {}}, "mode map does not suit 'count'; use call"},
      {{L"mix", M::Call, {one, one}, {}},
       "mode call does not suit 'mix'; use zip, scan, scanBackward or fold"},
      {{L"halve", M::Map, {one, one}, {}}, "map takes 1 input, 'halve' was given 2"},
      {{L"mix", M::Zip, {one}, {}}, "zip takes 2 inputs, 'mix' was given 1"},
      {{L"mix", M::Scan, {column, column}, {}}, "scan takes 1 input, 'mix' was given 2"},
      {{L"halve", M::Map, {date}, {}}, "'halve' can't map (Date); it takes: (Real64)"},
      {{L"mix", M::Zip, {column, MakeStrings({"a"})}, {}},
       "'mix' can't zip (Array of Real64, Array of String); it takes: (Real64, Real64)"},
      {{L"append", M::Fold, {column}, {}},
       "'append' can't fold (Array of Real64); it takes, after the type of its accumulator: (String, "
       "String)"},
      {{L"halve", M::Map, {one}, {}, one}, "mode map takes no initial value"},
      {{L"mix", M::Zip, {one, one}, {}, nullptr, one}, "mode zip takes no groups"},
      {{L"count", M::Call, {column}, {one}},
       "mode call takes no parameters; all values are inputs of 'count'"},
      {{L"count", M::Call, {one, nullptr}, {}}, "55 null as input of 'count'"},
  };
  for (auto const& [call, expected] : cases) {
    EXPECT_EQ(Failure([&engine, &call = call] { engine.Call(call); }), expected);
  }
}

TEST(EngineLookup, InvalidCallsAreTheirOwnType) {
  FunctionRegistry registry;
  EXPECT_THROW(Engine(registry).Call({L"halve", EvaluationMode::Map, {factory::MakeReal64(1)}, {}}),
               InvalidCall);
}

template <int Answer>
Value Give(std::vector<Value> const&) {
  return factory::MakeInt32(Answer);
}

// A multinary function with one registration makes its own check of what it is given.
TEST(EngineLookup, MultinaryFunctionsAreToldApartByTheirInputs) {
  FunctionRegistry registry;
  RegisterTestFunctions(registry);
  auto const reg = [&](char const* name, std::vector<KeySegmentType> const& inputs, FunctorFactory factory) {
    registry.GetMultinaryFunctions().Register(FunctionKey(OStringCore::fromUtf8(name), inputs),
                                              KeySegmentType(StoreTypeInfo::Int32), std::move(factory));
  };
  auto const array = [](StoreTypeInfo const& element) {
    return KeySegmentType(StoreTypeInfo::Array, StoreTypeInfo::Empty, element, StoreTypeInfo::Empty);
  };
  auto const keySet = [](StoreTypeInfo const& key, StoreTypeInfo const& value) {
    return KeySegmentType(StoreTypeInfo::KeySet, key, value, StoreTypeInfo::Empty);
  };
  reg("pick", {array(StoreTypeInfo::Real64)},
      [] { return std::make_unique<OrtMultinaryFunctor<Give<1>>>(); });
  reg("pick", {array(StoreTypeInfo::String)},
      [] { return std::make_unique<OrtMultinaryFunctor<Give<2>>>(); });
  reg("pick", {StoreTypeInfo::Real64}, [] { return std::make_unique<OrtMultinaryFunctor<Give<3>>>(); });
  reg("pick", {keySet(StoreTypeInfo::Int64, StoreTypeInfo::Real64)},
      [] { return std::make_unique<OrtMultinaryFunctor<Give<4>>>(); });
  reg("any", {array(StoreTypeInfo::Empty)}, [] { return std::make_unique<OrtMultinaryFunctor<Give<5>>>(); });
  reg("any", {StoreTypeInfo::Bool}, [] { return std::make_unique<OrtMultinaryFunctor<Give<6>>>(); });

  auto const makeKeySet = [](StoreTypeInfo const& value) {
    return factory::MakeKeySet<uint64, uint64>(
        StoreTypeInfo::Int64, value, value, std::make_unique<std::unordered_map<uint64, uint64>>(), nullptr);
  };
  auto const call = [&](wchar_t const* name, std::vector<Value> inputs) {
    return Engine(registry)
        .Call({OStringCore(name), EvaluationMode::Call, std::move(inputs), {}})
        ->GetInt32();
  };
  EXPECT_EQ(call(L"pick", {MakeReals("1")}), 1);
  EXPECT_EQ(call(L"pick", {MakeStrings({"a"})}), 2);
  EXPECT_EQ(call(L"pick", {factory::MakeReal64(1)}), 3);
  EXPECT_EQ(call(L"pick", {makeKeySet(StoreTypeInfo::Real64)}), 4);
  EXPECT_EQ(call(L"any", {MakeStrings({})}), 5);
  EXPECT_EQ(Failure([&] { call(L"pick", {makeKeySet(StoreTypeInfo::String)}); }),
            "'pick' can't call (KeySet of Int64 to String); it takes: (Array of Real64), (Array of String), "
            "(Real64), (KeySet of Int64 to Real64)");
  EXPECT_EQ(call(L"count", {factory::MakeInt32(1), factory::MakeInt32(2)}), 2);
  EXPECT_EQ(Failure([&] { call(L"count", std::vector<Value>(10, factory::MakeInt32(1))); }), "219 count");
}

}  // namespace
}  // namespace enginetest
