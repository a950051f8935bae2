#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "ostrelrtcore/OrtDateTime.h"

namespace {

using ort::core::OrtDateTime;

constexpr std::size_t kRows = 1'000'000;

std::vector<OrtDateTime> const& Dates() {
  static std::vector<OrtDateTime> const dates = [] {
    std::mt19937_64 random(7);
    std::uint64_t const first = OrtDateTime(1900, 1, 1).GetValue();
    std::uint64_t const span = OrtDateTime(2100, 1, 1).GetValue() - first;
    std::vector<OrtDateTime> made(kRows);
    for (OrtDateTime& date : made) date = OrtDateTime::FromValue(first + random() % span);
    return made;
  }();
  return dates;
}

/// Writes operation(date) for every date; `isRight(date, result)` must hold for all of them.
template <typename Result, typename Operation, typename IsRight>
void RunOverDates(benchmark::State& state, Operation operation, IsRight isRight) {
  std::vector<OrtDateTime> const& dates = Dates();
  std::vector<Result> results(kRows);
  auto const run = [&] {
    for (std::size_t row = 0; row < kRows; ++row) results[row] = operation(dates[row]);
  };
  run();
  for (std::size_t row = 0; row < kRows; ++row) {
    if (!isRight(dates[row], results[row])) return state.SkipWithError("wrong answer");
  }
  for (auto _ : state) {
    run();
    benchmark::DoNotOptimize(results.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
  state.counters["ns_per_row"] =
      benchmark::Counter(static_cast<double>(kRows) * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Year(benchmark::State& state) {
  RunOverDates<int>(
      state, [](OrtDateTime date) { return date.GetOrtDateTimeParts().GetYear(); },
      [](OrtDateTime date, int year) {
        return OrtDateTime(year, 1, 1) <= date && date < OrtDateTime(year + 1, 1, 1);
      });
}
BENCHMARK(Year);

void Month(benchmark::State& state) {
  RunOverDates<int>(
      state, [](OrtDateTime date) { return date.GetOrtDateTimeParts().GetMonth(); },
      [](OrtDateTime date, int month) {
        int const year = date.GetOrtDateTimeParts().GetYear();
        return OrtDateTime(year, month, 1) <= date && date < OrtDateTime(year, month + 1, 1);
      });
}
BENCHMARK(Month);

void MonthFloor(benchmark::State& state) {
  RunOverDates<OrtDateTime>(
      state,
      [](OrtDateTime date) {
        auto const parts = date.GetOrtDateTimeParts();
        return OrtDateTime(parts.GetYear(), parts.GetMonth(), 1);
      },
      [](OrtDateTime date, OrtDateTime floor) {
        auto const parts = floor.GetOrtDateTimeParts();
        return parts.GetDay() == 1 && !floor.HasTime() && floor <= date &&
               date < OrtDateTime(parts.GetYear(), parts.GetMonth() + 1, 1);
      });
}
BENCHMARK(MonthFloor);

void AllParts(benchmark::State& state) {
  RunOverDates<ort::core::OrtDateTimeParts>(
      state, [](OrtDateTime date) { return date.GetOrtDateTimeParts(); },
      [](OrtDateTime date, auto const& p) {
        return OrtDateTime(p.GetYear(), p.GetMonth(), p.GetDay(), p.GetHour(), p.GetMinute(), p.GetSecond(),
                           p.GetFraction()) == date;
      });
}
BENCHMARK(AllParts);

void ToDouble(benchmark::State& state) {
  RunOverDates<double>(
      state, [](OrtDateTime date) { return date.ToDouble(); },
      [](OrtDateTime date, double number) { return OrtDateTime::FromDouble(number) == date; });
}
BENCHMARK(ToDouble);

void FromDouble(benchmark::State& state) {
  RunOverDates<OrtDateTime>(
      state,
      [](OrtDateTime date) {
        // Day numbers of the 20th century, at the cost of one multiplication.
        return OrtDateTime::FromDouble(static_cast<double>(static_cast<std::int64_t>(date.GetValue())) *
                                       0x1p-36);
      },
      [](OrtDateTime date, OrtDateTime made) {
        return made == OrtDateTime::FromDouble(static_cast<double>(date.GetValue()) * 0x1p-36) &&
               made > OrtDateTime(1899, 12, 30);
      });
}
BENCHMARK(FromDouble);

void TruncateTime(benchmark::State& state) {
  RunOverDates<OrtDateTime>(
      state, [](OrtDateTime date) { return date.TruncateTime(); },
      [](OrtDateTime date, OrtDateTime midnight) {
        return !midnight.HasTime() && (date - midnight).GetWholeDays() == 0 && midnight <= date;
      });
}
BENCHMARK(TruncateTime);

void ToIsoText(benchmark::State& state) {
  RunOverDates<std::size_t>(
      state, [](OrtDateTime date) { return date.ToIsoText().size(); },
      [](OrtDateTime, std::size_t length) { return length == 24; });
}
BENCHMARK(ToIsoText);

}  // namespace
