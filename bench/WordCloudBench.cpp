// Word clouds of n words whose boxes cover 45 percent of 1000 by 1000, all starting in the middle or each
// somewhere on the line through it.

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

Value MakeColumn(std::vector<double> const& rows) {
  return factory::MakeArray<double>(StoreTypeInfo::Real64, std::make_unique<std::vector<double>>(rows));
}

// Words of 2 to 12 letters in sizes that fall off as those of a text do.
std::vector<Value> MakeCloud(std::int64_t count, bool isCentred, double share) {
  std::mt19937 random(1);
  std::vector<double> widths, heights, starts;
  double area = 0;
  for (std::int64_t i = 0; i < count; ++i) {
    double const height = 1 / std::sqrt(static_cast<double>(i % 97 + 1));
    widths.push_back(height * 0.6 * (2 + static_cast<double>(random() % 11)));
    heights.push_back(height);
    starts.push_back(isCentred ? 0.5 : static_cast<double>(random()) * 0x1p-32);
    area += widths.back() * heights.back();
  }
  double const unit = std::sqrt(share * 1e6 / area);
  for (double& width : widths) width *= unit;
  for (double& height : heights) height *= unit;
  auto const real = [](double value) { return factory::MakeReal64(value); };
  return {
      MakeColumn(widths), MakeColumn(heights), MakeColumn(starts), real(1000), real(1000), real(1), real(0)};
}

void LayOut(benchmark::State& state, std::int64_t count, bool isCentred, double share) {
  FunctionRegistry registry;
  OstrelTransforms::RegisterFunctionsForTest(&registry);
  auto const functor = registry.GetMultinaryFunctions()
                           .Find(OStringCore(TransformNames::LAYOUT_WORDLE_CELLS))
                           .at(0)
                           .GetFactory()();
  auto& layout = dynamic_cast<IMultinaryFunctor&>(*functor);
  auto const inputs = MakeCloud(count, isCentred, share);
  std::int64_t shown = 0;
  for (auto _ : state) {
    Value const cloud = layout.Apply(inputs);
    shown = 0;
    for (double const x : cloud->AsNamedValues().Get(OStringCore(L"x"))->AsTypedArray<double>().GetValues()) {
      shown += x >= 0;
    }
  }
  if (share < 0.5 && count <= 10'000 && shown != count) state.SkipWithError("words are not shown");
  state.counters["shown"] = static_cast<double>(shown);
  state.SetItemsProcessed(state.iterations() * count);
}

void Centred(benchmark::State& state) { LayOut(state, state.range(0), true, 0.45); }
void Spread(benchmark::State& state) { LayOut(state, state.range(0), false, 0.45); }
void CentredOverfull(benchmark::State& state) { LayOut(state, state.range(0), true, 1.5); }
void SpreadOverfull(benchmark::State& state) { LayOut(state, state.range(0), false, 1.5); }

#define OVER_COUNTS Unit(benchmark::kMillisecond)->Arg(100)->Arg(500)->Arg(2000)->Arg(10'000)->Arg(50'000)
BENCHMARK(Centred)->OVER_COUNTS;
BENCHMARK(Spread)->OVER_COUNTS;
BENCHMARK(CentredOverfull)->OVER_COUNTS;
BENCHMARK(SpreadOverfull)->OVER_COUNTS;

}  // namespace
