// Ticks, their texts and the labels that are shown: what every axis of a chart costs before anything is
// drawn.

#include <benchmark/benchmark.h>

#include "charts/functions/LabelVisibility.h"
#include "charts/functions/LinearTicks.h"
#include "charts/functions/TickFormat.h"
#include "charts/functions/TimeTicks.h"

namespace {

using namespace ostrel::charts;

void LinearTicksOfAnAxis(benchmark::State& state) {
  auto const count = static_cast<double>(state.range(0));
  if (LinearTicks(0, 1, 10).size() != 11) state.SkipWithError("wrong ticks");
  for (auto _ : state) benchmark::DoNotOptimize(LinearTicks(-0.13, 9.7, count));
}
BENCHMARK(LinearTicksOfAnAxis)->Arg(10)->Arg(1000);

void TimeTicksOfAnAxis(benchmark::State& state) {
  auto const count = static_cast<double>(state.range(0));
  if (TimeTicks(43'831, 43'835, 4).size() != 5) state.SkipWithError("wrong ticks");
  for (auto _ : state) benchmark::DoNotOptimize(TimeTicks(43'831, 45'123.4, count));
}
BENCHMARK(TimeTicksOfAnAxis)->Arg(10)->Arg(1000);

void TextsOfTicks(benchmark::State& state) {
  auto const ticks = LinearTicks(0, 1, static_cast<double>(state.range(0)));
  if (TickFormat(ticks, u"").Format(0.5).isEmpty()) state.SkipWithError("no text");
  for (auto _ : state) {
    TickFormat const format(ticks, u"");
    for (double const tick : ticks) benchmark::DoNotOptimize(format.Format(tick));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(ticks.size()));
}
BENCHMARK(TextsOfTicks)->Arg(10)->Arg(1000);

void LabelsOfAnAxis(benchmark::State& state, LabelStrategy strategy) {
  auto const count = static_cast<std::size_t>(state.range(0));
  std::vector<double> positions(count);
  for (std::size_t i = 0; i < count; ++i)
    positions[i] = 600.0 * static_cast<double>(i) / static_cast<double>(count);
  std::vector<double> const sizes(count, 30);
  if (VisibleLabels(positions, sizes, 2, strategy)[0] != 1) state.SkipWithError("the first label is hidden");
  for (auto _ : state) benchmark::DoNotOptimize(VisibleLabels(positions, sizes, 2, strategy));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(LabelsOfAnAxis, parity, LabelStrategy::Parity)->Arg(10)->Arg(1000)->Arg(100'000);
BENCHMARK_CAPTURE(LabelsOfAnAxis, greedy, LabelStrategy::Greedy)->Arg(10)->Arg(1000)->Arg(100'000);

}  // namespace
