// Functions of ranges: what the marks of a pane cost, and the axes of a chart with many panes.

#include <benchmark/benchmark.h>

#include <random>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

// A registered function, called without the engine.
class Function {
 public:
  explicit Function(wchar_t const* name) {
    FunctionRegistry registry;
    OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry);
    functor_ = registry.GetMultinaryFunctions().Find(OStringCore(name)).at(0).GetFactory()();
  }
  Value operator()(std::vector<Value> const& inputs) const {
    return dynamic_cast<IMultinaryFunctor&>(*functor_).Apply(inputs);
  }

 private:
  std::unique_ptr<OrtFunctor> functor_;
};

template <class T, class Make>
Value MakeColumn(StoreTypeInfo const& type, std::int64_t count, Make const& make) {
  auto column = factory::MakeColumnBuilder<T>(type, static_cast<int>(count));
  for (T& row : column.GetValues()) row = make();
  return column.Finish();
}

Value MakeRange(double minimum, double maximum, bool isLog) {
  return factory::MakeTuple(std::vector{factory::MakeReal64(minimum), factory::MakeReal64(maximum),
                                        factory::MakeInt32(0), factory::MakeInt32(4),
                                        factory::MakeBool(isLog)});
}

Value MakeNumbers(std::int64_t count, double low, double high) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> number(low, high);
  return MakeColumn<double>(StoreTypeInfo::Real64, count, [&] { return number(random); });
}

// Labels all over a pane, of which those at its ends stick out.
void OverflowOfMarks(benchmark::State& state, bool isLog) {
  Value const values = MakeNumbers(state.range(0), 1, 100);
  Value const sizes = MakeNumbers(state.range(0), 1, 8), labels = MakeNumbers(state.range(0), 5, 80);
  Value const range = MakeRange(1, 100, isLog);
  Function const overflow(TransformNames::CALC_PIXEL_OVERFLOW);
  std::vector<Value> const inputs = {values,
                                     sizes,
                                     labels,
                                     factory::MakeInt32(1),
                                     factory::MakeReal64(2),
                                     range,
                                     factory::MakeReal64(600),
                                     factory::MakeBool(false)};
  if (overflow(inputs)->AsTuple().GetMember(1)->GetReal64() < 1)
    return state.SkipWithError("nothing sticks out");
  for (auto _ : state) benchmark::DoNotOptimize(overflow(inputs));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(OverflowOfMarks, linear, false)->Arg(10)->Arg(1000)->Arg(1'000'000);
BENCHMARK_CAPTURE(OverflowOfMarks, log, true)->Arg(10)->Arg(1000)->Arg(1'000'000);

Value MakeRanges(std::int64_t count) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> number(1, 100);
  return MakeColumn<Value>(StoreTypeInfo::Tuple, count,
                           [&] { return MakeRange(-number(random), number(random), false); });
}

void ExtendedRanges(benchmark::State& state) {
  Value const further = MakeNumbers(state.range(0), -90, 90), share = factory::MakeReal64(0.05);
  std::vector<Value> const inputs = {
      MakeRanges(state.range(0)), further, further, share, share, factory::MakeBool(true),
      factory::MakeBool(false)};
  Function const extend(TransformNames::EXTEND_RANGE_COLUMN);
  for (auto _ : state) benchmark::DoNotOptimize(extend(inputs));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ExtendedRanges)->Arg(10)->Arg(1000)->Arg(100'000);

// Two axes a pane.
void AlignedZeros(benchmark::State& state) {
  int axis = 0;
  auto const flags = [&](bool flag) {
    return MakeColumn<bool>(StoreTypeInfo::Bool, state.range(0), [flag] { return flag; });
  };
  Value const panes = MakeColumn<int>(StoreTypeInfo::Int32, state.range(0), [&] { return axis++ / 2; });
  std::vector<Value> const inputs = {MakeRanges(state.range(0)), panes, flags(true), flags(false),
                                     factory::MakeBool(true)};
  Function const align(TransformNames::ZERO_ALIGN_FOLDED_AXES);
  for (auto _ : state) benchmark::DoNotOptimize(align(inputs));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(AlignedZeros)->Arg(10)->Arg(1000)->Arg(100'000);

}  // namespace
