// Functions of whole values: the rows of axes, sums and extrema, and dates through the engine.

#include <benchmark/benchmark.h>

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

void Accumulate(benchmark::State& state) {
  std::mt19937 random(1);
  Call(state, TransformNames::ACCUMULATE,
       {MakeColumn<double>(StoreTypeInfo::Real64, state.range(0),
                           [&] { return static_cast<double>(random()); })},
       state.range(0));
}
BENCHMARK(Accumulate)->Arg(1'000'000);

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

void AreRowsDistinct(benchmark::State& state) {
  int row = 0;
  factory::NamedValues columns;
  columns.emplace(L"a", MakeColumn<int>(StoreTypeInfo::Int32, state.range(0), [] { return 1; }));
  columns.emplace(L"b", MakeColumn<int>(StoreTypeInfo::Int32, state.range(0), [&] { return row++; }));
  Call(state, TransformNames::ARE_ROWS_DISTINCT, {factory::MakeTable(std::move(columns))}, state.range(0));
}
BENCHMARK(AreRowsDistinct)->Arg(1'000'000);

}  // namespace
