// The rows of each number of a column: few groups, as marks have, up to as many as there are rows.

#include <benchmark/benchmark.h>

#include <random>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtFunctor.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace ort::core;

// With the columns of all keys read, where `isRead`.
void IndexOfGroups(benchmark::State& state, bool isRead) {
  auto const rows = static_cast<int>(state.range(0));
  auto const groups = static_cast<unsigned>(state.range(1));
  std::mt19937 random(7);
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, rows);
  for (int& value : column.GetValues()) value = static_cast<int>(random() % groups);
  FunctionRegistry registry;
  OstrelTransforms::RegisterOstrelComposerFunctions(registry);
  OStringCore const name(TransformNames::BUILD_INDEX_KEYSET_INT32);
  auto const functor = registry.GetMultinaryFunctions().Find(name).at(0).GetFactory()();
  auto& function = dynamic_cast<IMultinaryFunctor&>(*functor);
  std::vector const inputs{column.Finish()};
  auto const keySet = function.Apply(inputs);
  auto const& index = keySet->AsDictionary<uint32, std::shared_ptr<StoreValue>>();
  int found = 0;
  for (auto const& entry : index.GetEntries()) found += entry.second->AsColumn().GetCount();
  if (found != rows) state.SkipWithError("rows are missing");
  for (auto _ : state) {
    auto const made = function.Apply(inputs);
    if (!isRead) continue;
    for (auto const& entry : made->AsDictionary<uint32, std::shared_ptr<StoreValue>>().GetEntries()) {
      benchmark::DoNotOptimize(entry.second->AsTypedArray<int>().GetValues().data());
    }
  }
  state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK_CAPTURE(IndexOfGroups, made, false)
    ->Args({10, 3})
    ->Args({1000, 20})
    ->Args({1'000'000, 2})
    ->Args({1'000'000, 1000})
    ->Args({1'000'000, 100'000})
    ->Args({1'000'000, 1'000'000'000});
BENCHMARK_CAPTURE(IndexOfGroups, made_and_read, true)
    ->Args({1'000'000, 1000})
    ->Args({1'000'000, 100'000})
    ->Args({1'000'000, 1'000'000'000});

}  // namespace
