// A host's module: installs callbacks, registers all functions, places ticks on several threads, with labels
// formatted and measured through the callbacks, and texts composed through the cache of compositions, which
// lives until the plug-in is unloaded; and takes its callbacks back. Now and then a callback fails meanwhile.
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

Value Column(StoreTypeInfo const& type, int row) { return factory::MakeConstantArray<int>(type, row, 1); }

// The lines of three words in a box that is wide enough for one.
int CountLines(FunctionRegistry const& registry) {
  FunctionCall call;
  call.mode = EvaluationMode::Call;
  call.function = OStringCore(L"updateTextStyleTable");
  factory::NamedValues columns;
  columns.emplace(L"text_font", factory::MakeConstantArray<Value>(StoreTypeInfo::Tuple, Tuple({}), 1));
  call.inputs = {factory::MakeTable(columns)};
  Value const styles = Engine(registry).Call(call);

  call.function = OStringCore(L"composeText");
  RIndirectString const text(OStringCore(L"one two six"));
  call.inputs = {Column(StoreTypeInfo::Int32, 0),
                 Column(StoreTypeInfo::Int32, 1),
                 factory::MakeConstantArray<RIndirectString>(StoreTypeInfo::String, text, 1),
                 Column(StoreTypeInfo::Int32, 0),
                 styles,
                 factory::MakeReal64(40),
                 factory::MakeReal64(100),
                 factory::MakeInt32(runtime::DotsRight),
                 factory::MakeInt32(runtime::WordWrap)};
  Value const composed = Engine(registry).Call(call);
  return composed->AsNamedValues().Get(OStringCore(L"text_run"))->AsColumn().GetCount();
}

void InstallCallbacks(bool fails) {
  OstrelTransforms::SetRuntimeFunctionCallbacks(
      [](double, IStoreTuple const&) { return OStringCore(L"abc"); },
      [fails](OStringCore const& text, Value const&) {
        if (fails) throw std::length_error("the text can't be measured");
        return 10.0F * static_cast<float>(text.length());
      },
      [](Value const& value) { return value; }, [](OStringCore const& text) { return text; });
}

void UseFailing() {
  InstallCallbacks(true);
  FunctionRegistry registry;
  OstrelTransforms::RegisterAllRuntimeFunctions(registry);
  for (auto* const use : {CountTicks, CountLines}) {
    try {
      use(registry);
      throw std::runtime_error("a callback's exception was lost");
    } catch (std::length_error const&) {
      // The one that the callback threw.
    }
  }
}

void UseEverything() {
  InstallCallbacks(false);
  FunctionRegistry registry;
  OstrelTransforms::RegisterAllRuntimeFunctions(registry);

  std::vector<int> counts(4);
  std::vector<int> lines(counts.size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    threads.emplace_back([&count = counts[i], &line = lines[i], &registry] {
      try {
        count = CountTicks(registry);
        line = CountLines(registry);
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
  for (int const count : lines) {
    if (count != 3) throw std::runtime_error("the text was not wrapped");
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) char const* UsePlugin(int round) {
  static std::string fault;
  fault.clear();
  try {
    if (round % 3 == 0) UseFailing();
    UseEverything();
  } catch (std::exception const& error) {
    fault = error.what();
  }
  OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {});
  return fault.c_str();
}
