// Functions of whole values: the rows of axes, sums and extrema, and dates through the engine.

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

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

template <class T, class Make>
Value MakeColumn(StoreTypeInfo const& type, std::int64_t count, Make const& make) {
  auto column = factory::MakeColumnBuilder<T>(type, static_cast<int>(count));
  for (T& row : column.GetValues()) row = make();
  return column.Finish();
}

void Call(benchmark::State& state, wchar_t const* name, std::vector<Value> inputs, std::int64_t rows) {
  FunctionCall call;
  call.function = OStringCore(name);
  call.mode = EvaluationMode::Call;
  call.inputs = std::move(inputs);
  Engine const engine(GetRegistry());
  for (auto _ : state) benchmark::DoNotOptimize(engine.Call(call));
  state.SetItemsProcessed(state.iterations() * rows);
}

void ComputeAxisExtents(benchmark::State& state) {
  int const axes = static_cast<int>(state.range(1));
  auto const zero = factory::MakeReal64(0), one = factory::MakeReal64(1), ten = factory::MakeReal64(10);
  Value const domain = factory::MakeTuple(
      std::vector{zero, ten, factory::MakeInt32(0), factory::MakeInt32(4), factory::MakeBool(false)});
  Value const range = factory::MakeTuple(std::vector{one, ten});
  std::mt19937 random(1);
  Call(state, TransformNames::COMPUTE_AXIS_EXTENTS,
       {MakeColumn<Value>(StoreTypeInfo::Tuple, axes, [&] { return domain; }),
        MakeColumn<Value>(StoreTypeInfo::Tuple, axes, [&] { return range; }),
        MakeColumn<bool>(StoreTypeInfo::Bool, axes, [] { return false; }),
        MakeColumn<int>(StoreTypeInfo::Int32, state.range(0),
                        [&] { return static_cast<int>(random() % static_cast<unsigned>(axes + 1)); }),
        factory::MakeBool(true)},
       state.range(0));
}
BENCHMARK(ComputeAxisExtents)->Args({1'000'000, 4})->Args({1'000'000, 1000})->Args({1000, 4});

template <class T>
Value MakeNumbers(std::int64_t count) {
  std::mt19937 random(1);
  StoreTypeInfo const type(ElementTraits<T>::kStoreType, false);
  return MakeColumn<T>(type, count, [&] { return static_cast<T>(random()); });
}

template <class T>
void Accumulate(benchmark::State& state) {
  Call(state, TransformNames::ACCUMULATE, {MakeNumbers<T>(state.range(0))}, state.range(0));
  state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<std::int64_t>(sizeof(T)));
}
BENCHMARK(Accumulate<int64>)->Arg(1'000'000)->Arg(10'000'000);
BENCHMARK(Accumulate<double>)->Arg(1'000'000)->Arg(10'000'000);

// What the sums are to be compared with: reals are added in order, integers wrap.
template <class T>
void PlainSum(benchmark::State& state) {
  Value const column = MakeNumbers<T>(state.range(0));
  using Sum = std::conditional_t<std::is_integral_v<T>, std::uint64_t, T>;
  auto const rows = column->AsTypedArray<Sum>().GetValues();
  for (auto _ : state) {
    Sum sum = 0;
    for (Sum const row : rows) sum += row;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<std::int64_t>(sizeof(T)));
}
BENCHMARK(PlainSum<int64>)->Arg(1'000'000)->Arg(10'000'000);
BENCHMARK(PlainSum<double>)->Arg(1'000'000)->Arg(10'000'000);

void GreatestReal(benchmark::State& state) {
  std::mt19937 random(1);
  Call(state, TransformNames::MAX_MULTI_R64,
       {MakeColumn<double>(StoreTypeInfo::Real64, state.range(0),
                           [&] { return static_cast<double>(random()); })},
       state.range(0));
}
BENCHMARK(GreatestReal)->Arg(1'000'000);

Value MakeNoon() { return factory::MakeDateTime(OrtDateTime(2020, 3, 1, 12)); }

void StartOfWeek(benchmark::State& state) {
  Call(state, TransformNames::START_OF_PERIOD,
       {factory::MakeInt32(3), MakeNoon(), factory::MakeInt32(1), factory::MakeInt32(1)}, 1);
}
BENCHMARK(StartOfWeek);

void HoursDifference(benchmark::State& state) {
  Call(state, TransformNames::HOURS_DIFFERENCE, {MakeNoon(), MakeNoon()}, 1);
}
BENCHMARK(HoursDifference);

// A function by itself, with the making of its result and without the engine's look-up.
void Apply(benchmark::State& state, wchar_t const* name, std::vector<Value> const& inputs,
           Value const& expected) {
  auto const functor = GetRegistry().GetMultinaryFunctions().Find(OStringCore(name)).at(0).GetFactory()();
  auto& function = dynamic_cast<IMultinaryFunctor&>(*functor);
  if (!function.Apply(inputs)->Equals(*expected)) return state.SkipWithError("wrong answer");
  for (auto _ : state) benchmark::DoNotOptimize(function.Apply(inputs));
}

void StartOfWeekAlone(benchmark::State& state) {
  Apply(state, TransformNames::START_OF_PERIOD,
        {factory::MakeInt32(3), MakeNoon(), factory::MakeInt32(1), factory::MakeInt32(1)},
        factory::MakeDateTime(OrtDateTime(2020, 3, 1)));
}
BENCHMARK(StartOfWeekAlone);

void FiscalQuarterAlone(benchmark::State& state) {
  Apply(state, TransformNames::START_OF_PERIOD,
        {factory::MakeInt32(1), MakeNoon(), factory::MakeInt32(4), factory::MakeInt32(1)},
        factory::MakeDateTime(OrtDateTime(2020, 1, 1)));
}
BENCHMARK(FiscalQuarterAlone);

void HoursDifferenceAlone(benchmark::State& state) {
  Value const before = factory::MakeDateTime(OrtDateTime(2020, 2, 28, 13));
  Apply(state, TransformNames::HOURS_DIFFERENCE, {MakeNoon(), before}, factory::MakeInt64(47));
}
BENCHMARK(HoursDifferenceAlone);

// Without a length no label is measured.
void LogTicksOfNineDecades(benchmark::State& state) {
  std::vector<double> positions;
  for (double power = 1; power < 5e9; power *= 10) positions.push_back(std::log10(power) / std::log10(1e9));
  Value const nothing = factory::MakeTuple(std::vector<Value>{});
  Apply(state, TransformNames::CALC_LOG_TICKS,
        {factory::MakeReal64(1), factory::MakeReal64(1e9), factory::MakeInt32(0), factory::MakeBool(true),
         factory::MakeInt32(4), nothing, nothing, factory::MakeReal64(1), factory::MakeReal64(10)},
        factory::MakeArray(StoreTypeInfo::Real64, std::make_unique<std::vector<double>>(positions)));
}
BENCHMARK(LogTicksOfNineDecades);

void AreRowsDistinct(benchmark::State& state) {
  int row = 0;
  factory::NamedValues columns;
  columns.emplace(L"a", MakeColumn<int>(StoreTypeInfo::Int32, state.range(0), [] { return 1; }));
  columns.emplace(L"b", MakeColumn<int>(StoreTypeInfo::Int32, state.range(0), [&] { return row++; }));
  Call(state, TransformNames::ARE_ROWS_DISTINCT, {factory::MakeTable(std::move(columns))}, state.range(0));
}
BENCHMARK(AreRowsDistinct)->Arg(1'000'000);

}  // namespace
