#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "engine/EngineTestSupport.h"

namespace enginetest {
namespace {

class EngineRows : public testing::Test {
 protected:
  EngineRows() { RegisterTestFunctions(registry); }

  Value Apply(wchar_t const* function, std::vector<Value> inputs, std::vector<Value> parameters = {}) const {
    auto const mode = inputs.size() == 1 ? EvaluationMode::Map : EvaluationMode::Zip;
    return Engine(registry).Call({OStringCore(function), mode, std::move(inputs), std::move(parameters)});
  }

  FunctionRegistry registry;
};

// Counts around the ends of a block as well.
int DrawCount() {
  return *rc::gen::weightedOneOf<int>(
      {{4, rc::gen::inRange(0, 40)}, {1, rc::gen::inRange(4090, 4100)}, {1, rc::gen::inRange(8000, 13000)}});
}
Sample DrawSample(int count) {
  auto const form = static_cast<Sample::Form>(*rc::gen::inRange(0, Sample::kForms));
  return {form, count, *rc::gen::arbitrary<unsigned>()};
}

template <class Operation>
void CheckMap(Value const& result, Sample const& input) {
  Operation operation;
  Rows expected;
  for (auto const& row : input.rows) expected.push_back(ApplyToRow(operation, row));
  if (input.IsScalar()) expected.resize(1);
  RC_ASSERT((result->GetStoreType() == StoreType::Array) == !input.IsScalar());
  RC_ASSERT(Compare(ReadRows(result), expected) == "same");
}

template <class Operation>
void CheckZip(Value const& result, Sample const& a, Sample const& b) {
  Operation operation;
  Rows expected;
  for (std::size_t i = 0; i < a.rows.size(); ++i) {
    expected.push_back(ApplyToRow(operation, a.rows[i], b.rows[i]));
  }
  bool const isScalar = a.IsScalar() && b.IsScalar();
  if (isScalar) expected.resize(1);
  RC_ASSERT((result->GetStoreType() == StoreType::Array) == !isScalar);
  RC_ASSERT(Compare(ReadRows(result), expected) == "same");
}

RC_GTEST_FIXTURE_PROP(EngineRows, MapGivesWhatEachRowByItselfGives, ()) {
  Sample const input = DrawSample(std::max(1, DrawCount()));
  CheckMap<Halve>(Apply(L"halve", {input.value}), input);
  CheckMap<HalveSpecial>(Apply(L"halveSpecial", {input.value}), input);
  CheckMap<Decay>(Apply(L"decay", {input.value}), input);
  CheckMap<DecaySpecial>(Apply(L"decaySpecial", {input.value}), input);
}

RC_GTEST_FIXTURE_PROP(EngineRows, ZipGivesWhatEachPairOfRowsByItselfGives, ()) {
  int const count = std::max(1, DrawCount());
  Sample const a = DrawSample(count);
  Sample const b = DrawSample(count);
  CheckZip<Mix>(Apply(L"mix", {a.value, b.value}), a, b);
  CheckZip<MixSpecial>(Apply(L"mixSpecial", {a.value, b.value}), a, b);
  CheckZip<MixDecay>(Apply(L"mixDecay", {a.value, b.value}), a, b);
  CheckZip<MixDecaySpecial>(Apply(L"mixDecaySpecial", {a.value, b.value}), a, b);
}

TEST_F(EngineRows, SpecialRegistrationServesInputsWithSpecialRowsAlone) {
  EXPECT_EQ(ReadRows(Apply(L"both", {MakeReals("2 8")})), ParseRows("1 4"));
  EXPECT_EQ(ReadRows(Apply(L"both", {MakeReals("2 8 !9")})), ParseRows("1 !7 900"));
  EXPECT_EQ(ReadRows(Apply(L"both", {factory::MakeReal64(8)})), ParseRows("4"));
  EXPECT_EQ(ReadRows(Apply(L"both", {factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Null)})),
            ParseRows("900"));
}

TEST_F(EngineRows, LaterRegistrationShadowsAnEarlierOneOfItsShape) {
  registry.GetUnaryFunctions().Register(
      FunctionKey(OStringCore(L"both"), StoreTypeInfo::Real64), StoreTypeInfo::Real64,
      UnaryFunctionType::Plain,
      [] { return std::make_unique<OrtUnaryFunctor<double, double, RefuseThirteen>>(); });
  EXPECT_EQ(ReadRows(Apply(L"both", {MakeReals("2 8")})), ParseRows("2 8"));
  EXPECT_EQ(ReadRows(Apply(L"both", {MakeReals("2 !1")})), ParseRows("1 !1"));
}

TEST_F(EngineRows, FirstOperandsKindHoldsWhereBothAreSpecial) {
  auto const result = Apply(L"mix", {MakeReals("!3 !4 1 1"), MakeReals("!5 1 !6 1")});
  EXPECT_EQ(ReadRows(result), ParseRows("!3 !4 !6 1.5"));
}

TEST_F(EngineRows, ConstantColumnStaysConstantUnlessOrderMatters) {
  auto const column = factory::MakeConstantArray<double>(StoreTypeInfo::Real64, 8.0, 5);
  EXPECT_TRUE(Apply(L"halve", {column})->AsColumn().IsConstant());
  EXPECT_TRUE(Apply(L"mix", {column, factory::MakeReal64(1)})->AsColumn().IsConstant());
  EXPECT_FALSE(Apply(L"decay", {column})->AsColumn().IsConstant());
}

TEST_F(EngineRows, StringsKeepTheirSpecialRows) {
  auto const names = MakeStrings({"a", "b", "c", "d"}, {1});
  auto const dot = factory::MakeString(OStringCore(L"."));
  EXPECT_EQ(ReadTexts(Apply(L"append", {names, dot})), (std::vector<std::string>{"a.", "!", "c.", "d."}));
  auto const some = MakeStrings({"1", "2", "3", "4"}, {0, 2});
  EXPECT_EQ(ReadTexts(Apply(L"append", {names, some})), (std::vector<std::string>{"!", "!", "!", "d4"}));
}

TEST_F(EngineRows, ParametersReachTheFactory) {
  EXPECT_EQ(ReadRows(Apply(L"scale", {MakeReals("1 !1 3")}, {factory::MakeReal64(10)})),
            ParseRows("10 !1 30"));
  EXPECT_EQ(Failure([&] { Apply(L"scale", {MakeReals("")}); }), "55 scale");
}

TEST_F(EngineRows, EmptyColumnsGiveEmptyColumns) {
  for (auto const* name : {L"halve", L"halveSpecial", L"decay", L"decaySpecial"}) {
    EXPECT_EQ(ReadRows(Apply(name, {MakeReals("")})), Rows());
  }
  EXPECT_EQ(ReadRows(Apply(L"mix", {MakeReals(""), factory::MakeReal64(1)})), Rows());
}

TEST_F(EngineRows, FailuresComeUnchanged) {
  EXPECT_EQ(Failure([&] { Apply(L"mix", {MakeReals("1 2"), MakeReals("1 2 3")}); }), "259");
  EXPECT_EQ(Failure([&] { Apply(L"refuse", {MakeReals("1 13")}); }), "178 thirteen");
  EXPECT_EQ(Failure([&] { Apply(L"halve", {nullptr}); }), "55 null as input of 'halve'");
}

TEST_F(EngineRows, FunctorThatDoesNotFitItsRegistrationIsRefused) {
  registry.GetUnaryFunctions().Register(
      FunctionKey(OStringCore(L"liar"), StoreTypeInfo::Int32), StoreTypeInfo::Real64,
      UnaryFunctionType::Plain, [] { return std::make_unique<OrtUnaryFunctor<double, double, Halve>>(); });
  EXPECT_EQ(Failure([&] { Apply(L"liar", {factory::MakeInt32(1)}); }), "55 liar");
}

}  // namespace
}  // namespace enginetest
