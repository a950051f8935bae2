#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;

// Rows with `state.range(1)` different values among `state.range(0)`.
template <class T, class MakeValue>
std::vector<T> MakeRows(benchmark::State const& state, MakeValue const& makeValue) {
  std::vector<T> different(static_cast<std::size_t>(state.range(1)));
  for (std::size_t i = 0; i < different.size(); ++i) different[i] = makeValue(static_cast<int>(i));
  std::mt19937 random(7);
  std::vector<T> rows(static_cast<std::size_t>(state.range(0)));
  for (T& row : rows) row = different[random() % different.size()];
  return rows;
}

std::vector<int> MakeNear(benchmark::State const& state) {
  return MakeRows<int>(state, [](int i) { return i * 3; });
}
std::vector<int> MakeFar(benchmark::State const& state) {
  std::mt19937 random(11);
  return MakeRows<int>(state, [&](int) { return static_cast<int>(random()); });
}
std::vector<RIndirectString> MakeTexts(benchmark::State const& state) {
  return MakeRows<RIndirectString>(
      state, [](int i) { return RIndirectString::FromUtf8("customer " + std::to_string(i)); });
}

template <class T, class Mark>
void MarkUnique(benchmark::State& state, std::vector<T> const& values, Mark const& mark) {
  std::unique_ptr<bool[]> const mask(new bool[values.size()]);
  std::span<bool> const rows(mask.get(), values.size());
  mark(values, rows);
  std::unordered_set<T> seen;
  for (std::size_t row = 0; row < values.size(); ++row) {
    if (rows[row] != seen.insert(values[row]).second) return state.SkipWithError("a wrong row is marked");
  }
  for (auto _ : state) mark(values, rows);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void KeepOnlyUnique(benchmark::State& state, std::vector<T> (*make)(benchmark::State const&)) {
  FunctionRegistry registry;
  OstrelTransforms::RegisterOstrelFilterFunctions(registry);
  StoreTypeInfo const& type = std::is_same_v<T, int> ? StoreTypeInfo::Int32 : StoreTypeInfo::String;
  auto const entry = registry.GetUnaryFunctions()
                         .Find(FunctionKey(OStringCore(TransformNames::KEEP_ONLY_UNIQUE), type))
                         .front();
  MarkUnique(state, make(state), [&](std::vector<T> const& values, std::span<bool> rows) {
    auto const functor = entry.GetFactory()();
    dynamic_cast<IUnaryFunctor<T, bool>&>(*functor).ApplyToArray(values, rows);
  });
}

template <class T>
void StandardSet(benchmark::State& state, std::vector<T> (*make)(benchmark::State const&)) {
  MarkUnique(state, make(state), [](std::vector<T> const& values, std::span<bool> rows) {
    std::unordered_set<T> seen;
    for (std::size_t row = 0; row < values.size(); ++row) rows[row] = seen.insert(values[row]).second;
  });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (int const rows : {10, 1000, 100'000, 10'000'000}) {
    for (int const different : {8, 1'000'000}) benchmark->Args({rows, different});
  }
  for (int const different : {1000, 100'000, 1'000'000}) benchmark->Args({1'000'000, different});
}
BENCHMARK_CAPTURE(KeepOnlyUnique, near, MakeNear)->Apply(Sizes);
BENCHMARK_CAPTURE(StandardSet, near, MakeNear)->Apply(Sizes);
BENCHMARK_CAPTURE(KeepOnlyUnique, far, MakeFar)->Apply(Sizes);
BENCHMARK_CAPTURE(StandardSet, far, MakeFar)->Apply(Sizes);
BENCHMARK_CAPTURE(KeepOnlyUnique, texts, MakeTexts)->Apply(Sizes);
BENCHMARK_CAPTURE(StandardSet, texts, MakeTexts)->Apply(Sizes);

}  // namespace
