#include <benchmark/benchmark.h>

#include "ostrel/CallProtocol.h"
#include "ostrel/FunctionList.h"
#include "ostrel/Runtime.h"

namespace {

using namespace ostrel::program;

// Everything that the program can evaluate, registered anew.
void RegisterAll(benchmark::State& state) {
  for (auto _ : state) {
    ort::core::FunctionRegistry registry;
    RegisterAllFunctions(registry, nullptr);
    if (registry.GetBinaryFunctions().Find(OStringCore(L"add")).empty()) state.SkipWithError("no add");
  }
}
BENCHMARK(RegisterAll)->Unit(benchmark::kMicrosecond);

void ListWithHelp(benchmark::State& state) {
  ort::core::FunctionRegistry registry;
  RegisterAllFunctions(registry, nullptr);
  for (auto _ : state)
    benchmark::DoNotOptimize(MakeFunctionsText(ListFunctions(registry, GetAllDocumentation())));
}
BENCHMARK(ListWithHelp)->Unit(benchmark::kMicrosecond);

// A request and its response, JSON on both sides: one half is added to every row.
void AddRows(benchmark::State& state) {
  std::string values;
  std::string sums;
  for (int64_t row = 0; row < state.range(0); ++row) {
    values += (row > 0 ? "," : "") + std::to_string(row) + ".25";
    sums += (row > 0 ? "," : "") + std::to_string(row) + ".75";
  }
  std::string const request = R"({"function":"add","inputs":[{"Array":{"type":"Real64","values":[)" + values +
                              R"(]}},{"Real64":0.5}]})";
  CallSession session(ostrel::services::MakeFixedMeasurer());
  if (session.Answer(request) != R"({"result":{"Array":{"type":"Real64","values":[)" + sums + "]}}}") {
    state.SkipWithError("the sums are wrong");
  }
  for (auto _ : state) benchmark::DoNotOptimize(session.Answer(request));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(request.size()));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(AddRows)->Arg(1)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

}  // namespace
