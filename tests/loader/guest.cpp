// A host's module: installs callbacks, registers all functions, places ticks on several threads, with labels
// formatted and measured through the callbacks, and takes its callbacks back.
#include <exception>
#include <string>
#include <thread>
#include <vector>

#include "ostrelrtcore/RuntimeCore.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

Value Tuple(std::vector<Value> members) { return factory::MakeTuple(std::move(members)); }

int CountTicks(FunctionRegistry const& registry) {
  FunctionCall call;
  call.function = OStringCore(L"calcLogTicks");
  call.mode = EvaluationMode::Call;
  Value const font = Tuple({factory::MakeString(OStringCore(L"Sans")), factory::MakeReal64(12.0)});
  call.inputs = {factory::MakeReal64(1),
                 factory::MakeReal64(1000),
                 factory::MakeInt32(100),
                 factory::MakeBool(true),
                 factory::MakeInt32(4),
                 Tuple({factory::MakeString(OStringCore())}),
                 font,
                 factory::MakeReal64(1),
                 factory::MakeReal64(10)};
  return Engine(registry).Call(call)->AsColumn().GetCount();
}

void UseEverything() {
  OstrelTransforms::SetRuntimeFunctionCallbacks(
      [](double, IStoreTuple const&) { return OStringCore(L"abc"); },
      [](OStringCore const& text, Value const&) { return 10.0F * static_cast<float>(text.length()); },
      [](Value const& value) { return value; }, [](OStringCore const& text) { return text; });
  FunctionRegistry registry;
  OstrelTransforms::RegisterAllRuntimeFunctions(registry);

  std::vector<int> counts(4);
  std::vector<std::thread> threads;
  for (int& count : counts) {
    threads.emplace_back([&count, &registry] {
      try {
        count = CountTicks(registry);
      } catch (std::exception const&) {
        count = -1;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  // Labels 30 wide leave room on 100 pixels for the powers of ten alone, 33 apart, less the gap: the last
  // set.
  for (int const count : counts) {
    if (count != 4) throw std::runtime_error("the ticks were not placed");
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) char const* UsePlugin() {
  static std::string fault;
  fault.clear();
  try {
    UseEverything();
  } catch (std::exception const& error) {
    fault = error.what();
  }
  OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {});
  return fault.c_str();
}
