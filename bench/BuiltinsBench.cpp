#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <unordered_map>

#include "ostrelrtcore/engine/Engine.h"

// Built-in functions over whole columns, beside the plain loop that does the same where there is one.
namespace {

using namespace ort::core;
using factory::Value;

FunctionRegistry const& Registry() {
  static auto const& registry = *[] {
    auto* made = new FunctionRegistry();
    RegisterAllBuiltinFunctions(*made);
    return made;
  }();
  return registry;
}

Value Call(wchar_t const* function, std::vector<Value> const& inputs,
           EvaluationMode mode = EvaluationMode::Call) {
  return Engine(Registry()).Call({.function = function, .mode = mode, .inputs = inputs, .parameters = {}});
}

template <class T, class Make>
Value MakeColumn(StoreTypeInfo const& type, int count, Make const& make) {
  auto builder = factory::MakeColumnBuilder<T>(type, count);
  for (auto& value : builder.GetValues()) value = make();
  return builder.Finish();
}

Value RandomReals(int count) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(0, 1000);
  return MakeColumn<double>(StoreTypeInfo::Real64, count, [&] { return normal(random); });
}

Value RandomTexts(int count, int different) {
  std::mt19937 random(2);
  std::vector<RIndirectString> texts;
  for (int i = 0; i < different; ++i) texts.push_back(RIndirectString::FromUtf8("text " + std::to_string(i)));
  return MakeColumn<RIndirectString>(StoreTypeInfo::String, count,
                                     [&] { return texts[random() % texts.size()]; });
}

Value RandomGroups(int count, int groups) {
  std::mt19937 random(3);
  return MakeColumn<int>(StoreTypeInfo::Int32, count,
                         [&] { return static_cast<int>(random() % static_cast<unsigned>(groups)); });
}

Value RandomMask(int count) {
  std::mt19937 random(4);
  return MakeColumn<uint8>(StoreTypeInfo::Bool, count, [&] { return random() % 2; });
}

void CountRows(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (int const rows : {10, 1'000, 100'000, 1'000'000}) benchmark->Arg(rows);
}

void Add(benchmark::State& state) {
  int const rows = static_cast<int>(state.range(0));
  Value const a = RandomReals(rows);
  Value const b = Call(L"reverse", {a});
  for (auto _ : state) benchmark::DoNotOptimize(Call(L"add", {a, b}, EvaluationMode::Zip));
  CountRows(state);
}
BENCHMARK(Add)->Apply(Sizes);

void AddPlainLoop(benchmark::State& state) {
  int const rows = static_cast<int>(state.range(0));
  Value const a = RandomReals(rows);
  auto const values = a->AsTypedArray<double>().GetValues();
  std::vector<double> sums(values.size());
  for (auto _ : state) {
    for (std::size_t row = 0; row < sums.size(); ++row)
      sums[row] = values[row] + values[sums.size() - 1 - row];
    benchmark::DoNotOptimize(sums.data());
    benchmark::ClobberMemory();
  }
  CountRows(state);
}
BENCHMARK(AddPlainLoop)->Apply(Sizes);

void EqualTexts(benchmark::State& state) {
  int const rows = static_cast<int>(state.range(0));
  Value const texts = RandomTexts(rows, 5);
  Value const one = Call(L"element", {texts, factory::MakeInt32(0)});
  for (auto _ : state) benchmark::DoNotOptimize(Call(L"equal", {texts, one}, EvaluationMode::Zip));
  CountRows(state);
}
BENCHMARK(EqualTexts)->Apply(Sizes);

void Filter(benchmark::State& state) {
  int const rows = static_cast<int>(state.range(0));
  Value const values = RandomReals(rows);
  Value const mask = RandomMask(rows);
  for (auto _ : state) benchmark::DoNotOptimize(Call(L"filter", {values, mask}));
  CountRows(state);
}
BENCHMARK(Filter)->Apply(Sizes);

void GroupTexts(benchmark::State& state) {
  Value const texts = RandomTexts(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(Call(L"groupIndex", {texts}));
  CountRows(state);
}
BENCHMARK(GroupTexts)
    ->Args({10, 3})
    ->Args({1'000, 10})
    ->Args({1'000'000, 10})
    ->Args({1'000'000, 1'000})
    ->Args({1'000'000, 100'000})
    ->Args({1'000'000, 1'000'000});

void GroupTextsStandardMap(benchmark::State& state) {
  Value const texts = RandomTexts(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  auto const values = texts->AsTypedArray<RIndirectString>().GetValues();
  std::vector<int> groups(values.size());
  for (auto _ : state) {
    std::unordered_map<RIndirectString, int> numbers;
    for (std::size_t row = 0; row < groups.size(); ++row) {
      groups[row] = numbers.try_emplace(values[row], static_cast<int>(numbers.size())).first->second;
    }
    if (!Call(L"groupIndex", {texts})
             ->Equals(*factory::MakeArray<int>(StoreTypeInfo::Int32,
                                               std::make_unique<std::vector<int>>(groups)))) {
      state.SkipWithError("groups differ");
    }
  }
  CountRows(state);
}
BENCHMARK(GroupTextsStandardMap)->Args({1'000'000, 1'000});

void SortReals(benchmark::State& state) {
  Value const values = RandomReals(static_cast<int>(state.range(0)));
  auto const reals = values->AsTypedArray<double>().GetValues();
  auto const order = Call(L"sortIndices", {values});
  auto const rows = order->AsTypedArray<int>().GetValues();
  if (!std::ranges::is_sorted(rows, {}, [&](int row) { return reals[static_cast<std::size_t>(row)]; })) {
    state.SkipWithError("not sorted");
  }
  for (auto _ : state) benchmark::DoNotOptimize(Call(L"sortIndices", {values}));
  CountRows(state);
}
BENCHMARK(SortReals)->Apply(Sizes)->Unit(benchmark::kMillisecond);

void SortRealsStandard(benchmark::State& state) {
  Value const values = RandomReals(static_cast<int>(state.range(0)));
  auto const reals = values->AsTypedArray<double>().GetValues();
  std::vector<int> rows(reals.size());
  for (auto _ : state) {
    std::iota(rows.begin(), rows.end(), 0);
    std::ranges::stable_sort(rows, {}, [&](int row) { return reals[static_cast<std::size_t>(row)]; });
    benchmark::DoNotOptimize(rows.data());
  }
  CountRows(state);
}
BENCHMARK(SortRealsStandard)->Apply(Sizes)->Unit(benchmark::kMillisecond);

void SortTexts(benchmark::State& state) {
  Value const texts = RandomTexts(static_cast<int>(state.range(0)), 1'000);
  for (auto _ : state) benchmark::DoNotOptimize(Call(L"sortIndices", {texts}));
  CountRows(state);
}
BENCHMARK(SortTexts)->Apply(Sizes)->Unit(benchmark::kMillisecond);

void GroupAggregate(benchmark::State& state, wchar_t const* function) {
  int const rows = static_cast<int>(state.range(0));
  Value const values = RandomReals(rows);
  Value const groups = RandomGroups(rows, 50);
  for (auto _ : state) benchmark::DoNotOptimize(Call(function, {values, groups}));
  CountRows(state);
}
BENCHMARK_CAPTURE(GroupAggregate, Sum, L"groupSum")->Apply(Sizes);
BENCHMARK_CAPTURE(GroupAggregate, Max, L"groupMax")->Apply(Sizes);
BENCHMARK_CAPTURE(GroupAggregate, Median, L"groupMedian")->Apply(Sizes);

void ColumnAggregate(benchmark::State& state, wchar_t const* function) {
  Value const values = RandomReals(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(Call(function, {values}));
  CountRows(state);
}
BENCHMARK_CAPTURE(ColumnAggregate, Sum, L"columnSum")->Apply(Sizes);
BENCHMARK_CAPTURE(ColumnAggregate, Min, L"columnMin")->Apply(Sizes);
BENCHMARK_CAPTURE(ColumnAggregate, Median, L"columnMedian")->Apply(Sizes);

}  // namespace
