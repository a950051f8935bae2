#include <benchmark/benchmark.h>

#include "ostreltransforms/OstrelTransforms.h"

namespace {

// A host registers everything once at start-up, which is to stay below two milliseconds.
void RegisterEverything(benchmark::State& state) {
  for (auto _ : state) {
    ort::core::FunctionRegistry registry;
    OstrelTransforms::RegisterAllRuntimeFunctions(registry);
    if (registry.GetUnaryFunctions().Find(OStringCore(TransformNames::KEEP_ONLY_UNIQUE)).size() != 2) {
      state.SkipWithError("the registry is not complete");
    }
  }
}
BENCHMARK(RegisterEverything)->Unit(benchmark::kMicrosecond);

void DocumentEverything(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(OstrelTransforms::GetFunctionDocumentation());
}
BENCHMARK(DocumentEverything)->Unit(benchmark::kMicrosecond);

}  // namespace
