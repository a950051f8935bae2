// Zip-withs and running computations against the loops that one would write by hand.

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <random>
#include <unordered_map>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

std::size_t RowsOf(benchmark::State const& state) { return static_cast<std::size_t>(state.range(0)); }
void SetRows(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

std::vector<double> MakeNumbers(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<double> numbers(count);
  for (double& number : numbers) number = static_cast<double>(static_cast<int>(random())) / 2147483648.0;
  return numbers;
}

FunctionRegistry& GetRegistry() {
  static FunctionRegistry registry;
  static bool const isFilled = OstrelTransforms::RegisterFunctionsForTest(&registry);
  return static_cast<void>(isFilled), registry;
}

template <class Functor>
class Made {
 public:
  Made(wchar_t const* name, StoreTypeInfo const& a, StoreTypeInfo const& b,
       std::vector<Value> const& parameters)
      : owner_(GetRegistry()
                   .GetBinaryFunctions()
                   .Find(FunctionKey(OStringCore(name), a, b))
                   .front()
                   .GetFactory()(parameters)) {}
  Functor& operator*() const { return *functor_; }

 private:
  std::unique_ptr<OrtFunctor> owner_;
  Functor* functor_ = &dynamic_cast<Functor&>(*owner_);
};

struct Operands {
  explicit Operands(std::size_t count)
      : a(MakeNumbers(count, 1)), b(MakeNumbers(count, 2)), out(count), expected(count) {
    flags.reset(new bool[count]);
    for (std::size_t i = 0; i < count; ++i) flags[i] = b[i] < 0;
  }
  std::span<bool const> GetFlags() const { return {flags.get(), a.size()}; }
  bool Agrees() const { return std::memcmp(out.data(), expected.data(), out.size() * sizeof(double)) == 0; }

  std::vector<double> a, b, out, expected;
  std::unique_ptr<bool[]> flags;
};

#define PLAIN_LOOP __attribute__((target_clones("default", "avx2", "avx512f"), noinline))

PLAIN_LOOP void PlainMax(double const* a, double const* b, double* out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = a[i] > b[i] ? a[i] : b[i];
}
PLAIN_LOOP void PlainLeft(double const* a, double const* b, double* out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = a[i] > 0.25 ? b[i] + (a[i] - 0.25) * 0.5 : b[i];
}
PLAIN_LOOP void PlainAddToRight(double const* a, bool const* b, double* out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = b[i] ? a[i] : a[i] + 0.25;
}

using RealZip = IBinaryFunctor<double, double, double>;
using FlagZip = IBinaryFunctor<double, bool, double>;

template <class Run, class Plain>
void Compare(benchmark::State& state, Operands& operands, bool isPlain, Run const& run, Plain const& plain) {
  plain(operands.expected.data());
  run(std::span<double>(operands.out));
  if (!operands.Agrees()) return state.SkipWithError("the rows differ from the plain loop's");
  for (auto _ : state) {
    if (isPlain) {
      plain(operands.expected.data());
    } else {
      run(std::span<double>(operands.out));
    }
    benchmark::ClobberMemory();
  }
  SetRows(state);
}

template <bool isPlain>
void Max(benchmark::State& state) {
  Operands operands(RowsOf(state));
  Made<RealZip> const made(TransformNames::MAX_ZIPWITH, StoreTypeInfo::Real64, StoreTypeInfo::Real64, {});
  Compare(
      state, operands, isPlain,
      [&](std::span<double> out) { (*made).ApplyToArrays(operands.a, operands.b, out); },
      [&](double* out) { PlainMax(operands.a.data(), operands.b.data(), out, operands.a.size()); });
}

template <bool isPlain>
void AdjustLeft(benchmark::State& state) {
  Operands operands(RowsOf(state));
  Made<RealZip> const made(TransformNames::ADJUST_LEFT_WRAPPED, StoreTypeInfo::Real64, StoreTypeInfo::Real64,
                           {factory::MakeReal64(0.25)});
  Compare(
      state, operands, isPlain,
      [&](std::span<double> out) { (*made).ApplyToArrays(operands.a, operands.b, out); },
      [&](double* out) { PlainLeft(operands.a.data(), operands.b.data(), out, operands.a.size()); });
}

template <bool isPlain>
void AddToRight(benchmark::State& state) {
  Operands operands(RowsOf(state));
  Made<FlagZip> const made(TransformNames::ADD_TO_RIGHT, StoreTypeInfo::Real64, StoreTypeInfo::Bool,
                           {factory::MakeReal64(0.25)});
  Compare(
      state, operands, isPlain,
      [&](std::span<double> out) { (*made).ApplyToArrays(operands.a, operands.GetFlags(), out); },
      [&](double* out) { PlainAddToRight(operands.a.data(), operands.flags.get(), out, operands.a.size()); });
}

void Stepping(benchmark::State& state) {
  Operands operands(RowsOf(state));
  Made<FlagZip> const made(TransformNames::APPLY_STEPPING_FOR_DIVERGING_PALETTE, StoreTypeInfo::Real64,
                           StoreTypeInfo::Bool, {factory::MakeReal64(4), factory::MakeReal64(4.5)});
  for (auto _ : state) (*made).ApplyToArrays(operands.a, operands.GetFlags(), operands.out);
  SetRows(state);
}

void DivideSpecial(benchmark::State& state) {
  Operands operands(RowsOf(state));
  std::vector<SpecialKind> const kinds(operands.a.size());
  std::vector<SpecialKind> outKinds(operands.a.size());
  Made<IBinarySpecialFunctor<double, double, double>> const made(
      TransformNames::DIVIDE_SPECIAL, StoreTypeInfo::Real64, StoreTypeInfo::Real64, {});
  for (auto _ : state) (*made).ApplyToArrays(operands.a, kinds, operands.b, kinds, operands.out, outKinds);
  SetRows(state);
}

// Numbers whose signs follow no pattern.
void Stack(benchmark::State& state) {
  Operands operands(RowsOf(state));
  std::vector<SpecialKind> const kinds(operands.a.size());
  std::vector<SpecialKind> outKinds(operands.a.size());
  Made<IBinarySpecialFunctor<double, double, double>> const made(
      TransformNames::CURR_STACK_VALUE, StoreTypeInfo::Real64, StoreTypeInfo::Real64, {});
  for (auto _ : state) (*made).ApplyToArrays(operands.a, kinds, operands.b, kinds, operands.out, outKinds);
  SetRows(state);
}
// The same as the engine scans.
void ScanStack(benchmark::State& state) {
  Operands operands(RowsOf(state));
  std::vector<SpecialKind> const kinds(operands.a.size());
  std::vector<SpecialKind> outKinds(operands.a.size());
  Made<IBinarySpecialFunctor<double, double, double>> const made(
      TransformNames::CURR_STACK_VALUE, StoreTypeInfo::Real64, StoreTypeInfo::Real64, {});
  double accumulator = 0;
  SpecialKind kind = SpecialKind::None;
  for (auto _ : state)
    (*made).AccumulateForward(accumulator, kind, operands.b, kinds, operands.out, outKinds);
  SetRows(state);
}
void PlainStack(benchmark::State& state) {
  Operands operands(RowsOf(state));
  for (auto _ : state) {
    double positive = 0, negative = 0;
    for (std::size_t i = 0; i < operands.b.size(); ++i) {
      double& pile = operands.b[i] < 0 ? negative : positive;
      operands.out[i] = pile += operands.b[i];
    }
    benchmark::ClobberMemory();
  }
  SetRows(state);
}

std::vector<int> MakeKeys(benchmark::State const& state) {
  std::mt19937 random(7);
  std::vector<int> keys(RowsOf(state));
  for (int& key : keys) key = static_cast<int>(random() % static_cast<unsigned>(state.range(1))) * 3;
  return keys;
}

void IncOnNew(benchmark::State& state) {
  std::vector<int> const keys = MakeKeys(state);
  std::vector<int> out(keys.size());
  for (auto _ : state) {
    Made<IBinaryFunctor<int, int, int>> const made(TransformNames::INC_ON_NEW, StoreTypeInfo::Int32,
                                                   StoreTypeInfo::Int32, {});
    (*made).ApplyToArrays(keys, keys, out);
  }
  SetRows(state);
}
void StandardNumbering(benchmark::State& state) {
  std::vector<int> const keys = MakeKeys(state);
  std::vector<int> out(keys.size());
  for (auto _ : state) {
    std::unordered_map<int, int> numbers;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      out[i] = numbers.try_emplace(keys[i], static_cast<int>(numbers.size())).first->second;
    }
  }
  SetRows(state);
}

void Sizes(benchmark::internal::Benchmark* benchmark) { benchmark->Arg(1000)->Arg(100'000)->Arg(10'000'000); }
BENCHMARK(Max<false>)->Apply(Sizes);
BENCHMARK(Max<true>)->Apply(Sizes);
BENCHMARK(AdjustLeft<false>)->Apply(Sizes);
BENCHMARK(AdjustLeft<true>)->Apply(Sizes);
BENCHMARK(AddToRight<false>)->Apply(Sizes);
BENCHMARK(AddToRight<true>)->Apply(Sizes);
BENCHMARK(Stepping)->Apply(Sizes);
BENCHMARK(DivideSpecial)->Apply(Sizes);
BENCHMARK(Stack)->Apply(Sizes);
BENCHMARK(ScanStack)->Apply(Sizes);
BENCHMARK(PlainStack)->Apply(Sizes);

void KeySizes(benchmark::internal::Benchmark* benchmark) {
  for (int const rows : {1000, 1'000'000}) {
    for (int const different : {8, 1000, 100'000, 1'000'000}) benchmark->Args({rows, different});
  }
}
BENCHMARK(IncOnNew)->Apply(KeySizes);
BENCHMARK(StandardNumbering)->Apply(KeySizes);

}  // namespace
