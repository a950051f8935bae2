#include "ostrelrtcore/builtins/BuiltinRow.h"

namespace ort::core {
namespace builtins {
namespace detail {

void RequireParameterCount(ParameterSpan parameters, std::size_t wanted) {
  if (parameters.size() == wanted) return;
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            OStringCore::fromUtf8(std::to_string(wanted) + " parameter(s) wanted, " +
                                                  std::to_string(parameters.size()) + " given"));
}

void RequireInputs(Values const& inputs, std::size_t wanted) {
  if (inputs.size() != wanted) {
    throw OrtRuntimeException(OrtError_WrongInputCount,
                              OStringCore::fromUtf8(std::to_string(wanted) + " input(s) wanted, " +
                                                    std::to_string(inputs.size()) + " given"));
  }
  for (Value const& input : inputs) {
    if (input == nullptr) throw OrtRuntimeException(OrtError_WrongValueKind);
  }
}

}  // namespace detail

namespace {

std::vector<BuiltinFamily> const& GetFamilies() {
  static std::vector<BuiltinFamily> const families = {
      ArithmeticFamily(),   ComparisonFamily(), LogicFamily(),   ConversionFamily(), SelectionFamily(),
      ConstructionFamily(), GroupingFamily(),   SortingFamily(), AggregationFamily()};
  return families;
}

void Register(FunctionRegistry& registry, OStringCore const& name, Registration const& row) {
  switch (row.arity) {
    case Arity::Unary:
      return registry.GetUnaryFunctions().Register(FunctionKey(name, row.inputs), row.output, row.parameters,
                                                   static_cast<UnaryFunctionType>(row.type), false,
                                                   row.factory);
    case Arity::Binary:
      return registry.GetBinaryFunctions().Register(FunctionKey(name, row.inputs), row.output, row.parameters,
                                                    static_cast<BinaryFunctionType>(row.type), false,
                                                    row.factory);
    case Arity::Multinary:
      return registry.GetMultinaryFunctions().Register(FunctionKey(name, row.inputs), row.output,
                                                       row.factory);
  }
}

}  // namespace

void RegisterFamily(FunctionRegistry& registry, BuiltinFamily const& family) {
  for (auto const& row : family.rows) {
    for (auto const& registration : row.registrations) {
      Register(registry, OStringCore::fromUtf8(row.name), registration);
    }
  }
}

void AppendDocumentation(BuiltinFamily const& family, std::vector<FunctionDocumentation>& documentation) {
  for (auto const& row : family.rows) {
    for (auto const& registration : row.registrations) {
      documentation.push_back({OStringCore::fromUtf8(row.name), registration.inputs, row.inputs,
                               registration.output, registration.parameters, row.parameters, family.name,
                               row.help,
                               "{\"function\": \"" + std::string(row.name) + "\", " + row.example + "}"});
    }
  }
}

}  // namespace builtins

void RegisterAllBuiltinFunctions(FunctionRegistry& registry) {
  for (auto const& family : builtins::GetFamilies()) builtins::RegisterFamily(registry, family);
}

std::vector<FunctionDocumentation> const& GetBuiltinDocumentation() {
  static auto const documentation = [] {
    std::vector<FunctionDocumentation> all;
    for (auto const& family : builtins::GetFamilies()) builtins::AppendDocumentation(family, all);
    return all;
  }();
  return documentation;
}

}  // namespace ort::core
