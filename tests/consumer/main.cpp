// Registers all functions, then lets "clampMin" run over a column with a special row, as a host would that
// knows the library by its installed headers alone.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "ostrelrtcore/RuntimeCore.h"
#include "ostreltransforms/OstrelTransforms.h"

using namespace ort::core;

namespace {

std::vector<double> ClampMin(FunctionRegistry& registry, StoreValue const& column, double bound) {
  FunctionKey const key(OStringCore(TransformNames::CLAMP_MIN, -1), KeySegmentType(StoreTypeInfo::Real64));
  auto const entries = registry.GetUnaryFunctions().Find(key);
  if (entries.empty()) throw std::runtime_error("clampMin is not registered");

  std::vector<std::shared_ptr<StoreValue>> const parameters{factory::MakeReal64(bound)};
  std::unique_ptr<OrtFunctor> const made = entries.front().GetFactory()(parameters);
  auto& functor = dynamic_cast<IUnaryFunctor<double, double>&>(*made);

  auto const input = column.AsTypedArray<double>().GetValues();
  std::vector<double> output(input.size());
  functor.ApplyToArray(input, output);
  return output;
}

int CodeForWrongParameter(FunctionRegistry& registry) {
  FunctionKey const key(OStringCore(L"clampMin", -1), KeySegmentType(StoreTypeInfo::Real64));
  try {
    registry.GetUnaryFunctions().Find(key).front().GetFactory()(std::vector{factory::MakeBool(true)});
  } catch (OrtRuntimeException const& error) {
    return error.GetError();
  }
  return -1;
}

// Of the host's own, by a template that is compiled here.
bool HasCaches() {
  runtime::RandomCache<int, std::string> cache(OStringCore(L"numbers"), 0);
  for (int key = 0; key < 6; ++key) cache.get(key, [] { return std::make_shared<std::string>("number"); });
  return cache.GetSize() == 5 && cache.GetLookups() == 6 && cache.GetInsertions() == 6;
}

}  // namespace

int main() {
  FunctionRegistry registry;
  OstrelTransforms::RegisterAllRuntimeFunctions(registry);

  auto const column = factory::MakeArray<double>(
      StoreTypeInfo::Real64, std::make_unique<std::vector<double>>(std::vector{1.5, -2.0, 0.5, 7.0}),
      std::make_unique<std::vector<int>>(1, 3),
      std::make_unique<std::vector<SpecialKind>>(1, SpecialKind::Null));
  std::vector<double> const clamped = ClampMin(registry, *column, 0.5);
  for (double const value : clamped) std::cout << value << ' ';
  std::cout << CodeForWrongParameter(registry) << '\n';

  std::vector<double> const bounded = {1.5, -2.0, 7.0};
  auto const called = CallByName(registry, "clampMin", {bounded}, {0.5});
  auto const rows = called->AsTypedArray<double>().GetValues();
  bool const isCalled = std::ranges::equal(rows, std::vector{1.5, 0.5, 7.0});

  // The slot of the special row is 0 by contract, which the bound lifts.
  bool const right = isCalled && HasCaches() && clamped == std::vector{1.5, 0.5, 0.5, 0.5} &&
                     CodeForWrongParameter(registry) == 55 &&
                     registry.GetMultinaryFunctions().GetEntries().size() > 10;
  return right ? 0 : 1;
}
