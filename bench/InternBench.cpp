// Interning strings as a loader of columns does: distinct ones, and ones that the pool has already.

#include <benchmark/benchmark.h>

#include <barrier>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "ostrelrtcore/RIndirectString.h"

namespace {

using ort::core::RIndirectString;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kStrings = 1000000;

// 12 characters each, all different.
std::vector<OStringCore> const& GetTexts() {
  static auto const texts = [] {
    std::vector<OStringCore> made;
    made.reserve(kStrings);
    for (std::size_t i = 0; i < kStrings; ++i) {
      auto digits = std::to_string(i * 7919 % 100000000);
      made.push_back(OStringCore::fromUtf8("key-" + std::string(8 - digits.size(), '0') + digits));
    }
    return made;
  }();
  return texts;
}

void CheckAnswer(std::vector<RIndirectString> const& interned, std::size_t entriesBefore) {
  auto const& texts = GetTexts();
  bool isRight = RIndirectString::GetPoolStatistics().entries == entriesBefore + kStrings;
  for (std::size_t i = 0; i < kStrings; i += 997) isRight = isRight && interned[i].Get() == texts[i];
  if (!isRight) throw std::logic_error("the pool gave wrong strings");
}

// The time in which `threads` threads, begun together, intern all texts once, each its own share.
double InternOnThreads(std::vector<RIndirectString>& interned, std::size_t threads) {
  auto const& texts = GetTexts();
  std::barrier begin(static_cast<std::ptrdiff_t>(threads) + 1);
  std::vector<std::thread> workers;
  for (std::size_t t = 0; t < threads; ++t) {
    workers.emplace_back([&, t] {
      begin.arrive_and_wait();
      for (auto i = kStrings * t / threads; i < kStrings * (t + 1) / threads; ++i) interned[i] = texts[i];
    });
  }
  begin.arrive_and_wait();
  auto const start = Clock::now();
  for (auto& worker : workers) worker.join();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void Intern(benchmark::State& state, bool isKnown) {
  auto const before = RIndirectString::GetPoolStatistics().entries;
  std::vector<RIndirectString> known;
  if (isKnown) {
    known.resize(kStrings);
    InternOnThreads(known, 1);
  }
  for (auto _ : state) {
    std::vector<RIndirectString> interned(kStrings);
    state.SetIterationTime(InternOnThreads(interned, static_cast<std::size_t>(state.range(0))));
    CheckAnswer(interned, before);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kStrings));
}

void InternDistinct(benchmark::State& state) { Intern(state, false); }
void InternKnown(benchmark::State& state) { Intern(state, true); }

// What a loader does for each cell of a file, with a hundred different values.
void InternUtf8OfFewValues(benchmark::State& state) {
  std::vector<std::string> cells;
  for (int i = 0; i < 100; ++i) cells.push_back("category " + std::to_string(i));
  std::vector<RIndirectString> column(100000);
  for (auto _ : state) {
    for (std::size_t i = 0; i < column.size(); ++i)
      column[i] = RIndirectString::FromUtf8(cells[i % cells.size()]);
  }
  if (column[4217].Get() != OStringCore(L"category 17"))
    throw std::logic_error("the column holds wrong strings");
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(column.size()));
}

BENCHMARK(InternDistinct)->Arg(1)->Arg(2)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(InternKnown)->Arg(1)->Arg(2)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(InternUtf8OfFewValues)->Unit(benchmark::kMillisecond);

}  // namespace
