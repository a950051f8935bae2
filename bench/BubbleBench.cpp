// Packed bubbles: layoutBubbles on circles of several kinds, and the plain rule, which walks the whole ring
// for every circle, beside it. What is packed is compared bit by bit in the tests.

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "../tests/ostreltransforms/PlainPacking.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/engine/Engine.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

FunctionRegistry& GetRegistry() {
  static FunctionRegistry registry;
  static bool const isFilled = OstrelTransforms::RegisterFunctionsForTest(&registry);
  return static_cast<void>(isFilled), registry;
}

double Lognormal(std::mt19937_64& random, std::size_t) { return std::lognormal_distribution()(random); }
double Equal(std::mt19937_64&, std::size_t) { return 1; }
double OneGiant(std::mt19937_64&, std::size_t row) { return row == 0 ? 1000 : 1; }
// Nothing leaves the ring, since the tolerance is absolute.
double Tiny(std::mt19937_64&, std::size_t) { return 1e-3; }

using Draw = double(std::mt19937_64&, std::size_t);

std::vector<double> MakeRadii(benchmark::State const& state, Draw* draw) {
  std::mt19937_64 random(7);
  std::vector<double> radii(static_cast<std::size_t>(state.range(0)));
  for (std::size_t row = 0; row < radii.size(); ++row) radii[row] = draw(random, row);
  return radii;
}

void LayoutBubbles(benchmark::State& state, Draw* draw) {
  std::vector<double> const radii = MakeRadii(state, draw);
  FunctionCall call;
  call.function = OStringCore(TransformNames::LAYOUT_BUBBLES);
  call.mode = EvaluationMode::Call;
  call.inputs = {
      factory::MakeArray<double>(StoreTypeInfo::Real64, std::make_unique<std::vector<double>>(radii))};
  Engine const engine(GetRegistry());
  if (state.range(0) <= 10'000) {
    auto const x = engine.Call(call)->AsNamedValues().Get(OStringCore(L"x"));
    if (x->AsTypedArray<double>().GetElement(static_cast<int>(state.range(0)) - 1) !=
        PlainPacking(radii).x.back()) {
      state.SkipWithError("not where the plain rule puts it");
    }
  }
  for (auto _ : state) benchmark::DoNotOptimize(engine.Call(call));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->RangeMultiplier(10)->Range(100, 1'000'000)->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(LayoutBubbles, lognormal, Lognormal)->Apply(Sizes);
BENCHMARK_CAPTURE(LayoutBubbles, equal, Equal)->Apply(Sizes);
BENCHMARK_CAPTURE(LayoutBubbles, oneGiant, OneGiant)->Apply(Sizes);
BENCHMARK_CAPTURE(LayoutBubbles, tiny, Tiny)->Apply(Sizes);

void PlainRule(benchmark::State& state, Draw* draw) {
  std::vector<double> const radii = MakeRadii(state, draw);
  for (auto _ : state) benchmark::DoNotOptimize(PlainPacking(radii));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(PlainRule, lognormal, Lognormal)
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
