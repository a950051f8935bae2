// Writing a scene of many symbols, and the numbers that most of its text is made of.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "charts/writer/SvgNumber.h"
#include "charts/writer/SvgWriter.h"
#include "ostrelrtcore/Factory.h"

namespace {

using namespace ort::core;
using namespace ostrel::charts;

constexpr std::uint32_t kSeed = 7;

std::vector<double> MakeNumbers(std::int64_t count, double limit) {
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> distribution(-limit, limit);
  std::vector<double> numbers(static_cast<std::size_t>(count));
  for (double& number : numbers) number = distribution(random);
  return numbers;
}

template <class T>
std::shared_ptr<StoreValue> MakeColumn(StoreTypeInfo const& type, std::vector<T> values) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(std::move(values)));
}

enum Look { Plain, Coloured, Bubbles };

Scene MakeScene(std::int64_t count, Look look) {
  SymbolMarks marks;
  marks.x = MakeColumn(StoreTypeInfo::Real64, MakeNumbers(count, 500));
  marks.y = MakeColumn(StoreTypeInfo::Real64, MakeNumbers(count, 400));
  marks.size.constant = 30;
  marks.color.constant = OrtColor(static_cast<int>(0xFF4C78A8));
  marks.opacity.constant = 0.7;
  if (look != Plain) {
    std::vector<OrtColor> colors(static_cast<std::size_t>(count));
    for (std::size_t row = 0; row < colors.size(); ++row)
      colors[row] = OrtColor(static_cast<int>(0xFF4C7800 + row % 10));
    marks.color.column = MakeColumn(StoreTypeInfo::Color, std::move(colors));
  }
  if (look == Bubbles) {
    std::vector<double> sizes = MakeNumbers(count, 1000);
    for (double& size : sizes) size += 1001;
    marks.size.column = MakeColumn(StoreTypeInfo::Real64, std::move(sizes));
    marks.shape.constant = SymbolShape::Cross;
  }
  Scene scene;
  scene.width = 1000;
  scene.height = 800;
  scene.root.nodes.emplace_back(std::move(marks));
  return scene;
}

class CountingSink final : public ByteSink {
 public:
  void Write(std::string_view bytes) override {
    bytes_ += bytes.size();
    lines_ += static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
  }
  std::size_t bytes_ = 0;
  std::size_t lines_ = 0;
};

class NullSink final : public ByteSink {
 public:
  void Write(std::string_view bytes) override { benchmark::DoNotOptimize(bytes.data()); }
};

void WriteSymbolScene(benchmark::State& state, Look look) {
  constexpr std::size_t kFrameLines = 5;
  Scene const scene = MakeScene(state.range(0), look);
  auto const fonts = ostrel::services::MakeFixedMeasurer();
  CountingSink counted;
  WriteSvg(scene, *fonts, counted);
  if (counted.lines_ != static_cast<std::size_t>(state.range(0)) + kFrameLines)
    return state.SkipWithError("a symbol is missing");
  NullSink sink;
  for (auto _ : state) WriteSvg(scene, *fonts, sink);
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(counted.bytes_));
}
BENCHMARK_CAPTURE(WriteSymbolScene, plain, Plain)->Arg(10)->Arg(1000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK_CAPTURE(WriteSymbolScene, coloured, Coloured)->Arg(100'000);
BENCHMARK_CAPTURE(WriteSymbolScene, bubbles, Bubbles)->Arg(100'000);

template <class Write>
void WriteNumbers(benchmark::State& state, Write const& write) {
  std::vector<double> const numbers = MakeNumbers(10'000, 1000);
  char text[kMaxSvgNumberLength];
  for (auto _ : state) {
    for (double const number : numbers) benchmark::DoNotOptimize(write(number, text));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(numbers.size()));
}
void WriteNumbersFixed(benchmark::State& state) { WriteNumbers(state, WriteSvgNumber); }
void WriteNumbersPrintf(benchmark::State& state) {
  WriteNumbers(state, [](double number, char* out) {
    return std::snprintf(out, kMaxSvgNumberLength, "%.3f", number);
  });
}
BENCHMARK(WriteNumbersFixed);
BENCHMARK(WriteNumbersPrintf);

}  // namespace
