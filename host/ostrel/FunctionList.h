#pragma once

#include <string>
#include <vector>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostrelrtcore/FunctionRegistry.h"

namespace ostrel::program {

/// One registration as help tells it.
struct ListedFunction {
  std::string name;
  std::string form;  ///< "unary", "binary" or "multinary"
  std::string type;  ///< "plain", "special", "operation" or "special operation"
  std::vector<ort::core::KeySegmentType> inputs;
  ort::core::KeySegmentType output;
  std::vector<ort::core::KeySegmentType> parameters;
  bool isOrderDependent = false;
  /// Family, help, names of inputs and parameters, example; empty where there is none.
  ort::core::FunctionDocumentation documentation;
};

/// All registrations: the unary ones, the binary and the multinary ones, each in order of registration.
std::vector<ListedFunction> ListFunctions(ort::core::FunctionRegistry const& registry,
                                          std::vector<ort::core::FunctionDocumentation> const& documentation);

/// "clampMin(values: Real64; minimum: Real64) -> Real64": inputs, and after a semicolon parameters.
std::string GetSignature(ListedFunction const& function);
/// A slot in words; "any" for an empty one.
std::string DescribeSlot(ort::core::KeySegmentType const& slot);
/// "unary operation, in order": how it is registered.
std::string DescribeRegistration(ListedFunction const& function);

/// One line a registration, with a head line, for comparing what is registered over time.
std::string MakeManifest(std::vector<ListedFunction> const& functions);
/// One line a registration: signature, registration and help.
std::string MakeFunctionsText(std::vector<ListedFunction> functions);

class CallSession;
/// A list of objects, one for each registration, its example run.
std::string MakeFunctionsJson(std::vector<ListedFunction> const& functions, CallSession& session);
/// Everything about the registrations of one name, its example run.
std::string MakeFunctionPage(std::vector<ListedFunction> const& registrations, CallSession& session);
/// The reference of all functions by family, with their examples and what these give.
std::string MakeFunctionsMarkdown(std::vector<ListedFunction> const& functions, CallSession& session);

}  // namespace ostrel::program
