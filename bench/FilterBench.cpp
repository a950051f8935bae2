#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <unordered_set>
#include <vector>

#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;

// Numbers with `state.range(1)` different values among `state.range(0)` rows.
std::vector<int> MakeNumbers(benchmark::State const& state) {
  std::mt19937 random(7);
  std::vector<int> numbers(static_cast<std::size_t>(state.range(0)));
  for (int& number : numbers) number = static_cast<int>(random() % static_cast<unsigned>(state.range(1))) * 3;
  return numbers;
}

std::size_t CountDifferent(std::vector<int> const& numbers) {
  return std::unordered_set<int>(numbers.begin(), numbers.end()).size();
}

template <class Mark>
void MarkUnique(benchmark::State& state, Mark const& mark) {
  std::vector<int> const numbers = MakeNumbers(state);
  std::unique_ptr<bool[]> const mask(new bool[numbers.size()]);
  std::span<bool> const rows(mask.get(), numbers.size());
  mark(numbers, rows);
  if (static_cast<std::size_t>(std::count(rows.begin(), rows.end(), true)) != CountDifferent(numbers)) {
    state.SkipWithError("not every first row is marked");
  }
  for (auto _ : state) mark(numbers, rows);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void KeepOnlyUnique(benchmark::State& state) {
  FunctionRegistry registry;
  OstrelTransforms::RegisterOstrelFilterFunctions(registry);
  auto const entry =
      registry.GetUnaryFunctions()
          .Find(FunctionKey(OStringCore(TransformNames::KEEP_ONLY_UNIQUE), StoreTypeInfo::Int32))
          .front();
  MarkUnique(state, [&](std::vector<int> const& numbers, std::span<bool> rows) {
    auto const functor = entry.GetFactory()();
    dynamic_cast<IUnaryFunctor<int, bool>&>(*functor).ApplyToArray(numbers, rows);
  });
}

void PlainLoopWithStandardSet(benchmark::State& state) {
  MarkUnique(state, [](std::vector<int> const& numbers, std::span<bool> rows) {
    std::unordered_set<int> seen;
    for (std::size_t row = 0; row < numbers.size(); ++row) rows[row] = seen.insert(numbers[row]).second;
  });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (int const rows : {10, 1000, 100'000, 10'000'000}) {
    for (int const different : {8, 1'000'000}) benchmark->Args({rows, different});
  }
  for (int const different : {1000, 100'000, 1'000'000}) benchmark->Args({1'000'000, different});
}
BENCHMARK(KeepOnlyUnique)->Apply(Sizes);
BENCHMARK(PlainLoopWithStandardSet)->Apply(Sizes);

}  // namespace
