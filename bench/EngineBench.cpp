// Functions applied by the engine, all of its own work included, against the plain loop of each.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>

#include "ostrelrtcore/BufferPool.h"
#include "ostrelrtcore/OrtBinaryFunctor.h"
#include "ostrelrtcore/OrtUnaryFunctor.h"
#include "ostrelrtcore/OrtUnarySpecialFunctor.h"
#include "ostrelrtcore/engine/Engine.h"

namespace {

using namespace ort::core;
using factory::Value;

struct ClampMin {
  static constexpr wchar_t const* kName = L"clampMin";
  double Apply(double x) const { return x > minimum ? x : minimum; }
  double minimum = 0.25;
};
struct Invlerp {
  static constexpr wchar_t const* kName = L"invlerp";
  double Apply(double x) const { return (x - lower) / range; }
  double lower = 0.1;
  double range = 0.7;
};
struct InvlerpSpecial {
  std::pair<double, SpecialKind> Apply(double x, SpecialKind kind) const {
    return {Invlerp().Apply(kind == SpecialKind::None ? x : 0.0), kind};
  }
};
struct Add {
  double Apply(double a, double b) const { return a + b; }
};

template <class Functor>
FunctorFactory Make() {
  return FunctorFactory([] { return std::make_unique<Functor>(); });
}

FunctionRegistry const& GetRegistry() {
  static FunctionRegistry registry;
  static bool const isFilled = [] {
    auto& unary = registry.GetUnaryFunctions();
    auto const real = StoreType::Real64;
    using U = UnaryFunctionType;
    unary.Register(L"clampMin", real, real, U::Plain, Make<OrtUnaryFunctor<double, double, ClampMin>>());
    unary.Register(L"invlerp", real, real, U::Plain, Make<OrtUnaryFunctor<double, double, Invlerp>>());
    unary.Register(L"invlerpSpecial", real, real, U::Special,
                   Make<OrtUnarySpecialFunctor<double, double, InvlerpSpecial>>());
    registry.GetBinaryFunctions().Register(L"add", real, real, real, BinaryFunctionType::Plain,
                                           Make<OrtBinaryFunctor<double, double, double, Add>>());
    return true;
  }();
  return static_cast<void>(isFilled), registry;
}

std::vector<double> MakeNumbers(std::size_t count) {
  std::mt19937 random(7);
  std::vector<double> numbers(count);
  for (double& number : numbers) number = static_cast<double>(random()) / 4294967296.0;
  return numbers;
}

// A column where every `specialEvery`th row is special; none for 0.
Value MakeColumn(std::vector<double> const& numbers, int specialEvery = 0) {
  ColumnBuilder<double> builder(StoreTypeInfo::Real64, static_cast<int>(numbers.size()));
  std::copy(numbers.begin(), numbers.end(), builder.GetValues().begin());
  for (int row = 0; specialEvery != 0 && row < static_cast<int>(numbers.size()); row += specialEvery) {
    builder.SetSpecial(row, SpecialKind::Null);
  }
  return builder.Finish();
}

FunctionGraph MakeGraph(wchar_t const* function) {
  FunctionGraph graph;
  auto const x = graph.AddInput(L"x");
  graph.AddFunction({L"result", OStringCore(function), EvaluationMode::Map, {x}, {}});
  return graph;
}

factory::NamedValues MakeInputs(Value const& x) { return {{OStringCore(L"x"), x}}; }

Value Evaluate(FunctionGraph const& graph, factory::NamedValues const& inputs) {
  NodeId const output = graph.GetCount() - 1;
  return Engine(GetRegistry()).Evaluate(graph, inputs, {&output, 1})[0];
}

// What the engine must give, row by row; the program ends when it does not.
template <class Operation>
void RequireRows(Value const& result, std::vector<double> const& numbers, int specialEvery = 0) {
  auto const& column = result->AsTypedArray<double>();
  if (column.GetCount() != static_cast<int>(numbers.size())) std::abort();
  for (int row = 0; row < column.GetCount(); ++row) {
    bool const isSpecial = specialEvery != 0 && row % specialEvery == 0;
    double const expected = isSpecial ? 0.0 : Operation().Apply(numbers[static_cast<std::size_t>(row)]);
    if (column.GetElement(row) != expected || column.IsSpecial(row) != isSpecial) std::abort();
  }
}

// Loops as they are written by hand, compiled for the same processors.
#define PLAIN_LOOP __attribute__((target_clones("default", "avx2", "avx512f"), noinline))

PLAIN_LOOP void RunPlainLoop(ClampMin operation, double const* in, double* out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = in[i] > operation.minimum ? in[i] : operation.minimum;
}
PLAIN_LOOP void RunPlainLoop(Invlerp operation, double const* in, double* out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = (in[i] - operation.lower) / operation.range;
}

void SetRows(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

template <class Operation>
void WarmLoop(benchmark::State& state) {
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  std::vector<double> out(numbers.size());
  for (auto _ : state) {
    RunPlainLoop(Operation(), numbers.data(), out.data(), numbers.size());
    benchmark::ClobberMemory();
  }
  SetRows(state);
}

template <class Operation>
void EngineAgain(benchmark::State& state) {
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  auto const inputs = MakeInputs(MakeColumn(numbers));
  auto const graph = MakeGraph(Operation::kName);
  RequireRows<Operation>(Evaluate(graph, inputs), numbers);
  for (auto _ : state) benchmark::DoNotOptimize(Evaluate(graph, inputs));
  SetRows(state);
}

template <class Operation>
void FreshLoop(benchmark::State& state) {
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::unique_ptr<double[]> out(new double[numbers.size()]);
    RunPlainLoop(Operation(), numbers.data(), out.get(), numbers.size());
    benchmark::DoNotOptimize(out.get());
    benchmark::ClobberMemory();
    state.PauseTiming();
    out.reset();
    state.ResumeTiming();
  }
  SetRows(state);
}

template <class Operation>
void EngineFirst(benchmark::State& state) {
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  auto const inputs = MakeInputs(MakeColumn(numbers));
  auto const graph = MakeGraph(Operation::kName);
  RequireRows<Operation>(Evaluate(graph, inputs), numbers);
  for (auto _ : state) {
    auto result = Evaluate(graph, inputs);
    benchmark::DoNotOptimize(result.get());
    state.PauseTiming();
    result.reset();
    BufferPool::Trim();
    state.ResumeTiming();
  }
  SetRows(state);
}

void EngineWithSpecialRows(benchmark::State& state, wchar_t const* function) {
  auto const specialEvery = static_cast<int>(state.range(1));
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  auto const inputs = MakeInputs(MakeColumn(numbers, specialEvery));
  auto const graph = MakeGraph(function);
  RequireRows<Invlerp>(Evaluate(graph, inputs), numbers, specialEvery);
  for (auto _ : state) benchmark::DoNotOptimize(Evaluate(graph, inputs));
  SetRows(state);
}

void GroupedScan(benchmark::State& state) {
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  auto const groupCount = static_cast<int>(state.range(1));
  auto groups = std::make_unique<std::vector<int>>();
  std::mt19937 random(8);
  std::vector<double> sums(static_cast<std::size_t>(groupCount));
  std::vector<double> expected;
  for (double const number : numbers) {
    groups->push_back(static_cast<int>(random() % static_cast<unsigned>(groupCount)));
    expected.push_back(sums[static_cast<std::size_t>(groups->back())] += number);
  }
  Engine const engine(GetRegistry());
  FunctionCall const call{L"add",
                          EvaluationMode::Scan,
                          {MakeColumn(numbers)},
                          {},
                          nullptr,
                          factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(groups))};
  auto const values = engine.Call(call);
  auto const view = values->AsTypedArray<double>().GetValues();
  if (!std::equal(view.begin(), view.end(), expected.begin(), expected.end())) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(engine.Call(call));
  SetRows(state);
}

void Scan(benchmark::State& state) {
  auto const numbers = MakeNumbers(static_cast<std::size_t>(state.range(0)));
  Engine const engine(GetRegistry());
  FunctionCall const call{L"add", EvaluationMode::Scan, {MakeColumn(numbers)}, {}};
  double sum = 0;
  for (double const number : numbers) sum += number;
  auto const values = engine.Call(call);
  if (values->AsTypedArray<double>().GetValues().back() != sum) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(engine.Call(call));
  SetRows(state);
}

// A chain of nodes of one row each: the time of an item is the time of a node.
void ChainOfScalars(benchmark::State& state) {
  FunctionGraph graph;
  graph.AddInput(L"x");
  for (NodeId i = 0; i < state.range(0); ++i) {
    graph.AddFunction({L"link", L"clampMin", EvaluationMode::Map, {i}, {}});
  }
  auto const inputs = MakeInputs(factory::MakeReal64(1));
  if (Evaluate(graph, inputs)->GetReal64() != 1) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(Evaluate(graph, inputs));
  SetRows(state);
}

// Independent nodes of one row each.
void RowOfScalars(benchmark::State& state) {
  FunctionGraph graph;
  auto const x = graph.AddInput(L"x");
  std::vector<NodeId> nodes;
  for (int i = 0; i < state.range(0); ++i) {
    nodes.push_back(graph.AddFunction({L"node", L"clampMin", EvaluationMode::Map, {x}, {}}));
  }
  auto const inputs = MakeInputs(factory::MakeReal64(0));
  Engine const engine(GetRegistry());
  if (engine.Evaluate(graph, inputs, nodes).back()->GetReal64() != 0.25) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(engine.Evaluate(graph, inputs, nodes));
  SetRows(state);
}

constexpr int kMost = 10'000'000;
void Sizes(benchmark::internal::Benchmark* b) {
  b->Arg(1)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(kMost)->UseRealTime();
}

BENCHMARK_TEMPLATE(WarmLoop, ClampMin)->Apply(Sizes);
BENCHMARK_TEMPLATE(EngineAgain, ClampMin)->Apply(Sizes);
BENCHMARK_TEMPLATE(WarmLoop, Invlerp)->Apply(Sizes);
BENCHMARK_TEMPLATE(EngineAgain, Invlerp)->Apply(Sizes);
BENCHMARK_TEMPLATE(FreshLoop, ClampMin)->Arg(kMost)->UseRealTime();
BENCHMARK_TEMPLATE(EngineFirst, ClampMin)->Arg(kMost)->UseRealTime();
BENCHMARK_TEMPLATE(FreshLoop, Invlerp)->Arg(kMost)->UseRealTime();
BENCHMARK_TEMPLATE(EngineFirst, Invlerp)->Arg(kMost)->UseRealTime();
BENCHMARK_CAPTURE(EngineWithSpecialRows, invlerp, L"invlerp")
    ->ArgsProduct({{kMost}, {0, 1000, 2}})
    ->UseRealTime();
BENCHMARK_CAPTURE(EngineWithSpecialRows, invlerpSpecial, L"invlerpSpecial")
    ->ArgsProduct({{kMost}, {0, 1000, 2}})
    ->UseRealTime();
BENCHMARK(Scan)->Arg(1000000)->UseRealTime();
BENCHMARK(GroupedScan)->ArgsProduct({{1000000}, {1, 100, 100000}})->UseRealTime();
BENCHMARK(ChainOfScalars)->Arg(1)->Arg(100)->Arg(10000)->UseRealTime();
BENCHMARK(RowOfScalars)->Arg(1)->Arg(10)->Arg(100)->UseRealTime();

}  // namespace
