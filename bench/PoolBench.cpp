#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "ostrelrtcore/BufferPool.h"

namespace {

using ort::core::PooledBuffer;
namespace BufferPool = ort::core::BufferPool;

/// Taking a buffer, writing every row of it and releasing it: what one column of a graph costs.
void WriteColumn(benchmark::State& state, bool warm) {
  auto const rows = static_cast<std::size_t>(state.range(0));
  BufferPool::Trim();
  for (auto _ : state) {
    PooledBuffer buffer(rows * sizeof(double));
    auto* const values = static_cast<double*>(buffer.data());
    for (std::size_t row = 0; row < rows; ++row) values[row] = static_cast<double>(row);
    benchmark::DoNotOptimize(values);
    benchmark::ClobberMemory();
    if (values[rows - 1] != static_cast<double>(rows - 1)) return state.SkipWithError("wrong answer");
    if (!warm) {
      buffer = {};
      BufferPool::Trim();
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(rows * sizeof(double)));
}

/// The same through the system's zeroed memory.
void WriteZeroedColumn(benchmark::State& state) {
  auto const rows = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    auto* const values = static_cast<double*>(std::calloc(rows, sizeof(double)));
    if (values == nullptr) return state.SkipWithError("out of memory");
    for (std::size_t row = 0; row < rows; ++row) values[row] = static_cast<double>(row);
    benchmark::DoNotOptimize(values);
    benchmark::ClobberMemory();
    std::free(values);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(rows * sizeof(double)));
}

BENCHMARK_CAPTURE(WriteColumn, Warm, true)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000);
BENCHMARK_CAPTURE(WriteColumn, Fresh, false)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000);
BENCHMARK(WriteZeroedColumn)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000);

/// Taking and releasing alone, by size in bytes.
void TakeAndRelease(benchmark::State& state) {
  auto const bytes = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    PooledBuffer buffer(bytes);
    if (buffer.size() != bytes) return state.SkipWithError("wrong answer");
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK(TakeAndRelease)->Arg(80)->Arg(800)->Arg(8'000)->Arg(60'000)->Arg(100'000)->Arg(8'000'000);

}  // namespace
