// How fast tables are read: a text of 10^6 rows with its types inferred, on one core, and the interning of
// strings.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "charts/data/LoadTable.h"

namespace {

using ort::core::StoreType;
using namespace ostrel::charts;

constexpr int kRows = 1'000'000;

struct Sample {
  std::string text;
  std::int64_t sumOfIntegers = 0;
  double sumOfReals = 0.0;
};

std::uint64_t NextRandom(std::uint64_t& state) {
  state = state * 6364136223846793005U + 1442695040888963407U;
  return state >> 33;
}

Sample MakeSample(int rows) {
  constexpr char const* categories[] = {"Information", "Agriculture", "Wholesale and Retail Trade", "Mining",
                                        "\"Leisure, Hospitality\""};
  Sample sample;
  sample.text = "id,category,date,price,latitude,count\n";
  std::uint64_t state = 1;
  for (int row = 0; row < rows; ++row) {
    auto const count = static_cast<std::int64_t>(NextRandom(state) % 100'000);
    // Quarters sum exactly in any order.
    auto const price = static_cast<double>(NextRandom(state) % 1'000'000) / 4;
    auto const latitude = static_cast<double>(NextRandom(state) % 1'800'000) / 10'000 - 90;
    sample.sumOfIntegers += count;
    sample.sumOfReals += price;
    fmt::format_to(std::back_inserter(sample.text), "{},{},20{:02}-{:02}-{:02},{:.2f},{:.4f},{}\n", row,
                   categories[NextRandom(state) % 5], NextRandom(state) % 24, NextRandom(state) % 12 + 1,
                   NextRandom(state) % 28 + 1, price, latitude, count);
  }
  return sample;
}

void Require(bool holds, char const* what) {
  if (!holds) throw std::logic_error(what);
}

void CheckAnswer(Sample const& sample, int rows) {
  auto const table = LoadText(sample.text, "sample.csv");
  Require(table.rowCount == rows && table.columns.size() == 6, "the table's size");
  Require(table.Get("category").GetType() == StoreType::String, "the categories' type");
  Require(table.Get("date").GetType() == StoreType::Date, "the dates' type");
  std::int64_t integers = 0;
  for (auto const value : table.Get("count").values->AsTypedArray<std::int64_t>().GetValues())
    integers += value;
  double reals = 0.0;
  for (auto const value : table.Get("price").values->AsTypedArray<double>().GetValues()) reals += value;
  Require(integers == sample.sumOfIntegers, "the sum of the integers");
  Require(reals == sample.sumOfReals, "the sum of the reals");
}

void ReadMixedCsv(benchmark::State& state) {
  auto const rows = static_cast<int>(state.range(0));
  auto const sample = MakeSample(rows);
  CheckAnswer(sample, rows);
  for (auto _ : state) benchmark::DoNotOptimize(LoadText(sample.text, "sample.csv"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sample.text.size()));
}
BENCHMARK(ReadMixedCsv)->Arg(10)->Arg(1'000)->Arg(100'000)->Arg(kRows)->Unit(benchmark::kMillisecond);

/// The worst case of strings: every one is new to the pool.
void ReadDifferentStrings(benchmark::State& state) {
  std::string text = "name,place\n";
  for (int row = 0; row < kRows; ++row) {
    fmt::format_to(std::back_inserter(text), "\"customer, number {}\",somewhere else {}\n", row, row * 7);
  }
  Require(LoadText(text, "names.csv").rowCount == kRows, "the number of rows");
  for (auto _ : state) benchmark::DoNotOptimize(LoadText(text, "names.csv"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(ReadDifferentStrings)->Unit(benchmark::kMillisecond);

/// A column that looks like numbers up to its last row is read twice.
void ReadLateText(benchmark::State& state) {
  auto sample = MakeSample(kRows);
  sample.text += "none,none,none,none,none,none\n";
  auto const table = LoadText(sample.text, "late.csv");
  for (auto const& column : table.columns) Require(column.GetType() == StoreType::String, "the types");
  for (auto _ : state) benchmark::DoNotOptimize(LoadText(sample.text, "late.csv"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sample.text.size()));
}
BENCHMARK(ReadLateText)->Unit(benchmark::kMillisecond);

void ReadJsonRows(benchmark::State& state) {
  constexpr int rows = 100'000;
  std::string text = "[";
  for (int row = 0; row < rows; ++row) {
    fmt::format_to(std::back_inserter(text), R"({}{{"x":{:.3f},"y":{},"name":"series {}"}})",
                   row == 0 ? "" : ",\n", row * 0.125, row, row % 20);
  }
  text += "]";
  auto const table = LoadText(text, "rows.json");
  Require(table.rowCount == rows && table.Get("x").GetType() == StoreType::Real64, "the table");
  for (auto _ : state) benchmark::DoNotOptimize(LoadText(text, "rows.json"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(ReadJsonRows)->Unit(benchmark::kMillisecond);

}  // namespace
