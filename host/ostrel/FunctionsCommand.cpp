#include "ostrel/CallProtocol.h"
#include "ostrel/CommandLine.h"
#include "ostrel/FunctionList.h"
#include "ostrel/Runtime.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

std::vector<ListedFunction> SelectFunctions(FunctionRegistry const& registry, std::string const& name) {
  auto functions = ListFunctions(registry, GetAllDocumentation());
  if (name.empty()) return functions;
  std::erase_if(functions, [&](auto const& function) { return function.name != name; });
  if (!functions.empty()) return functions;
  throw std::runtime_error(Engine(registry).DescribeUnknownFunction(OStringCore::fromUtf8(name)));
}

std::string MakeText(FunctionsOptions const& options) {
  FunctionRegistry registry;
  RegisterAllFunctions(registry, nullptr);
  auto const functions = SelectFunctions(registry, options.name);
  if (options.makesManifest) return MakeManifest(functions);
  if (options.makesMarkdown) {
    CallSession session(services::MakeFixedMeasurer());
    return MakeFunctionsMarkdown(functions, session);
  }
  if (options.name.empty() && !options.makesJson) return MakeFunctionsText(functions);
  CallSession session(std::make_shared<services::FontService const>());
  if (options.makesJson) return MakeFunctionsJson(functions, session);
  return MakeFunctionPage(functions, session);
}

}  // namespace

int RunFunctions(FunctionsOptions const& options) {
  StandardOutput output;
  output.Write(MakeText(options));
  output.Flush();
  return ExitCode_Done;
}

}  // namespace ostrel::program
