#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>

#include "engine/EngineTestSupport.h"

namespace enginetest {
namespace {

constexpr auto kFoldModes = {EvaluationMode::Scan, EvaluationMode::ScanBackward, EvaluationMode::Fold};

class EngineFold : public testing::Test {
 protected:
  EngineFold() { RegisterTestFunctions(registry); }

  Value Apply(EvaluationMode mode, wchar_t const* function, Value input, Value initial = nullptr,
              Value groups = nullptr) const {
    return Engine(registry).Call({OStringCore(function), mode, {input}, {}, initial, groups});
  }

  FunctionRegistry registry;
};

// The rows of one group after the other, in row order or, backward, against it.
template <class Operation>
Rows FoldRows(EvaluationMode mode, Rows const& rows, Row const& initial, std::vector<int> const& groups) {
  constexpr bool kIsPlain = !requires(Operation o) { o.Apply(0.0, SpecialKind(), 0.0, SpecialKind()); };
  std::map<int, std::pair<Operation, Row>> states;
  Rows result(rows.size());
  for (std::size_t step = 0; step < rows.size(); ++step) {
    std::size_t const i = mode == EvaluationMode::ScanBackward ? rows.size() - 1 - step : step;
    auto& [operation, accumulator] = states.try_emplace(groups[i], Operation(), initial).first->second;
    if (kIsPlain && rows[i].kind != SpecialKind::None) {
      result[i] = rows[i];
      continue;
    }
    if constexpr (kIsPlain) {
      accumulator.value = operation.Apply(accumulator.value, rows[i].value);
    } else {
      std::tie(accumulator.value, accumulator.kind) =
          operation.Apply(accumulator.value, accumulator.kind, rows[i].value, rows[i].kind);
    }
    result[i] = accumulator;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    bool const keepsKind = kIsPlain && rows[i].kind != SpecialKind::None;
    if (mode == EvaluationMode::Fold && !keepsKind) result[i] = states.at(groups[i]).second;
    if (result[i].kind != SpecialKind::None) result[i].value = 0;
  }
  return result;
}

// A fold without groups gives its last accumulator, which a special row at the end does not show.
template <class Operation>
Rows FoldAll(EvaluationMode mode, Rows rows, Row const& initial) {
  std::vector<int> const oneGroup(rows.size() + 1, 0);
  if (mode != EvaluationMode::Fold) return FoldRows<Operation>(mode, rows, initial, oneGroup);
  if constexpr (!requires(Operation o) { o.Apply(0.0, SpecialKind(), 0.0, SpecialKind()); }) {
    std::erase_if(rows, [](Row const& row) { return row.kind != SpecialKind::None; });
  }
  if (rows.empty()) return {initial};
  return {FoldRows<Operation>(mode, rows, initial, oneGroup).back()};
}

Sample DrawColumn(int most) {
  auto const form = static_cast<Sample::Form>(*rc::gen::inRange(0, static_cast<int>(Sample::Scalar)));
  int const count =
      *rc::gen::weightedOneOf<int>({{4, rc::gen::inRange(0, 40)}, {1, rc::gen::inRange(4000, most)}});
  return {form, count, *rc::gen::arbitrary<unsigned>()};
}

RC_GTEST_FIXTURE_PROP(EngineFold, FoldsGiveWhatStepsOneByOneGive, ()) {
  Sample const input = DrawColumn(13000);
  auto const initial = factory::MakeReal64(3);
  for (auto const mode : kFoldModes) {
    RC_ASSERT(Compare(ReadRows(Apply(mode, L"mix", input.value, initial)),
                      FoldAll<Mix>(mode, input.rows, {3})) == "same");
    RC_ASSERT(Compare(ReadRows(Apply(mode, L"mixDecay", input.value)),
                      FoldAll<MixDecay>(mode, input.rows, {0})) == "same");
    RC_ASSERT(Compare(ReadRows(Apply(mode, L"mixDecaySpecial", input.value, initial)),
                      FoldAll<MixDecaySpecial>(mode, input.rows, {3})) == "same");
  }
}

RC_GTEST_FIXTURE_PROP(EngineFold, GroupsAreFoldedEachByItself, ()) {
  Sample const input = DrawColumn(9000);
  auto const initial = factory::MakeReal64(3);
  int const groupCount = *rc::gen::elementOf(std::vector<int>{1, 2, 5, 1000});
  // In order, groups are ranges; else they lie across each other.
  bool const isOrdered = *rc::gen::arbitrary<bool>();
  std::mt19937 random(*rc::gen::arbitrary<unsigned>());
  std::vector<int> groups(input.rows.size());
  for (int& group : groups) group = static_cast<int>(random() % static_cast<unsigned>(groupCount));
  if (isOrdered) std::sort(groups.begin(), groups.end());
  auto const keys = factory::MakeArray<int>(StoreTypeInfo::Int32, std::make_unique<std::vector<int>>(groups));
  for (auto const mode : kFoldModes) {
    RC_ASSERT(Compare(ReadRows(Apply(mode, L"mixDecay", input.value, initial, keys)),
                      FoldRows<MixDecay>(mode, input.rows, {3}, groups)) == "same");
    RC_ASSERT(Compare(ReadRows(Apply(mode, L"mixDecaySpecial", input.value, initial, keys)),
                      FoldRows<MixDecaySpecial>(mode, input.rows, {3}, groups)) == "same");
  }
}

TEST_F(EngineFold, GroupsOfAnyScalarTypeFormByValueAndByKind) {
  auto const input = MakeReals("1 2 4 8 16 32");
  auto const bytes = std::make_unique<std::vector<uint8>>(std::vector<uint8>{1, 0, 1, 0, 1, 0});
  struct Case {
    Value groups;
    char const* expected;
  };
  Case const cases[] = {
      {MakeReals("0 -0 nan nan !1 !9"), "1 2.5 4 10 16 32"},
      {MakeReals("!1 !1 !2 !1 0 0"), "1 2.5 4 9.25 16 40"},
      {MakeStrings({"a", "b", "a", "b", "", ""}, {5}), "1 2 4.5 9 16 32"},
      {factory::MakeArray<uint8>(StoreTypeInfo::Bool, std::make_unique<std::vector<uint8>>(*bytes)),
       "1 2 4.5 9 18.25 36.5"},
      {factory::MakeString(OStringCore(L"all")), "1 2.5 5.25 10.625 21.3125 42.65625"},
      {factory::MakeConstantArray<uint64>(StoreTypeInfo::Int64, uint64{7}, 6),
       "1 2.5 5.25 10.625 21.3125 42.65625"},
  };
  for (auto const& [groups, expected] : cases) {
    EXPECT_EQ(ReadRows(Apply(EvaluationMode::Scan, L"mix", input, nullptr, groups)), ParseRows(expected));
  }
}

TEST_F(EngineFold, GroupedFoldGivesEveryRowItsGroupsLastAccumulator) {
  auto const result = Apply(EvaluationMode::Fold, L"mix", MakeReals("1 2 !9 4 8 !1"), factory::MakeReal64(2),
                            MakeReals("7 5 7 7 5 6"));
  EXPECT_EQ(ReadRows(result), ParseRows("5 9.5 !9 5 9.5 !1"));
}

TEST_F(EngineFold, ScalarsAreOneRow) {
  auto const four = factory::MakeReal64(4);
  auto const special = factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Null);
  auto const two = factory::MakeReal64(2);
  for (auto const mode : kFoldModes) {
    EXPECT_EQ(ReadRows(Apply(mode, L"mix", four, two)), ParseRows("5"));
    EXPECT_EQ(ReadRows(Apply(mode, L"mix", four, two, factory::MakeInt32(1))), ParseRows("5"));
    EXPECT_EQ(ReadRows(Apply(mode, L"mixSpecial", special, two)), ParseRows("181"));
    EXPECT_EQ(ReadRows(Apply(mode, L"mix", special, two)),
              ParseRows(mode == EvaluationMode::Fold ? "2" : "!9"));
  }
  EXPECT_EQ(ReadRows(Apply(EvaluationMode::Scan, L"mix", four, two, MakeReals("1 1 2"))),
            ParseRows("5 6.5 5"));
}

TEST_F(EngineFold, StringsStartEmpty) {
  auto const result = Apply(EvaluationMode::Scan, L"append", MakeStrings({"a", "b", "c", "d"}, {1}), nullptr,
                            MakeReals("1 1 1 2"));
  EXPECT_EQ(ReadTexts(result), (std::vector<std::string>{"a", "!", "ac", "d"}));
}

TEST_F(EngineFold, WrongFoldsAreRefused) {
  auto const input = MakeReals("1 2");
  auto const scan = EvaluationMode::Scan;
  auto const special = factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Null);
  EXPECT_EQ(Failure([&] { Apply(scan, L"mix", input, nullptr, MakeReals("1 2 3")); }), "259");
  EXPECT_EQ(Failure([&] { Apply(scan, L"mix", input, special); }), "55 mix: the initial value is special");
  EXPECT_EQ(Failure([&] { Apply(scan, L"mix", input, factory::MakeInt32(0)); }),
            "the initial value of 'mix' is Int32, it must be Real64");
  registry.GetBinaryFunctions().Register(
      FunctionKey(OStringCore(L"mix"), StoreTypeInfo::Real64, StoreTypeInfo::Int32), StoreTypeInfo::Int32,
      BinaryFunctionType::Plain, [] {
        struct First {
          int Apply(double, int b) const { return b; }
        };
        return std::make_unique<OrtBinaryFunctor<double, int, int, First>>();
      });
  EXPECT_EQ(Failure([&] { Apply(scan, L"mix", factory::MakeInt32(1)); }),
            "55 a fold needs an output of the first input's type");
}

}  // namespace
}  // namespace enginetest
