// Treemaps of one level and of several, through the engine; each asserts first that the leaves tile the
// whole.

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/engine/Engine.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

constexpr double kWidth = 1600, kHeight = 1000;

FunctionRegistry& GetRegistry() {
  static FunctionRegistry registry;
  static bool const isFilled = OstrelTransforms::RegisterFunctionsForTest(&registry);
  return static_cast<void>(isFilled), registry;
}

template <class T>
Value MakeColumn(StoreTypeInfo const& type, std::vector<T> const& rows) {
  auto column = factory::MakeColumnBuilder<T>(type, static_cast<int>(rows.size()));
  std::copy(rows.begin(), rows.end(), column.GetValues().begin());
  return column.Finish();
}

bool TilesTheWhole(StoreValue const& nodes, std::vector<int> const& parents) {
  std::vector<bool> isInner(parents.size());
  for (int const parent : parents) {
    if (parent >= 0) isInner[static_cast<std::size_t>(parent)] = true;
  }
  auto const column = [&](wchar_t const* name) {
    return nodes.AsNamedValues().Get(OStringCore(name))->AsTypedArray<double>().GetValues();
  };
  auto const left = column(L"x"), top = column(L"y"), right = column(L"x1"), bottom = column(L"y1");
  double area = 0;
  for (std::size_t row = 0; row < parents.size(); ++row) {
    if (!isInner[row]) area += (right[row] - left[row]) * (bottom[row] - top[row]);
  }
  return std::fabs(area - kWidth * kHeight) < 1e-6 * kWidth * kHeight;
}

void Run(benchmark::State& state, std::vector<int> const& parents) {
  std::mt19937 random(1);
  std::lognormal_distribution<double> size(0, 1.5);
  std::vector<double> sizes(parents.size());
  for (double& each : sizes) each = size(random);
  FunctionCall call;
  call.function = OStringCore(TransformNames::COMPUTE_TREEMAP_NODES_LAYOUT);
  call.mode = EvaluationMode::Call;
  Value const none = MakeColumn<double>(StoreTypeInfo::Real64, {});
  call.inputs = {MakeColumn(StoreTypeInfo::Int32, parents),
                 MakeColumn(StoreTypeInfo::Real64, sizes),
                 factory::MakeReal64(kWidth),
                 factory::MakeReal64(kHeight),
                 none,
                 none};
  Engine const engine(GetRegistry());
  if (!TilesTheWhole(*engine.Call(call), parents)) return state.SkipWithError("the leaves leave gaps");
  for (auto _ : state) benchmark::DoNotOptimize(engine.Call(call));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(parents.size()));
}

// All leaves at the top level.
void FlatTreemap(benchmark::State& state) {
  Run(state, std::vector<int>(static_cast<std::size_t>(state.range(0)), -1));
}
BENCHMARK(FlatTreemap)->RangeMultiplier(10)->Range(10, 1'000'000)->Unit(benchmark::kMillisecond);

// Every inner node has about 30 children, in random order of rows.
void DeepTreemap(benchmark::State& state) {
  std::mt19937 random(2);
  std::vector<int> parents(static_cast<std::size_t>(state.range(0)), -1);
  for (std::size_t row = 1; row < parents.size(); ++row) {
    parents[row] = static_cast<int>(random() % (row / 30 + 1));
  }
  Run(state, parents);
}
BENCHMARK(DeepTreemap)->RangeMultiplier(10)->Range(100, 1'000'000)->Unit(benchmark::kMillisecond);

// Each node holds the next.
void ChainTreemap(benchmark::State& state) {
  std::vector<int> parents(static_cast<std::size_t>(state.range(0)));
  for (std::size_t row = 0; row < parents.size(); ++row) parents[row] = static_cast<int>(row) - 1;
  Run(state, parents);
}
BENCHMARK(ChainTreemap)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
