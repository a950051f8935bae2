#include "ostrelrtcore/engine/CallByName.h"

namespace ort::core {
namespace {

std::vector<factory::Value> GetValues(std::initializer_list<CallArgument> arguments) {
  std::vector<factory::Value> values;
  values.reserve(arguments.size());
  for (CallArgument const& argument : arguments) values.push_back(argument.GetValue());
  return values;
}

// A name may be registered in several forms; the number of inputs tells which is meant.
EvaluationMode ChooseMode(Engine::Forms const& forms, std::size_t inputCount) {
  if (forms.isUnary && inputCount == 1) return EvaluationMode::Map;
  if (forms.isBinary && inputCount == 2) return EvaluationMode::Zip;
  if (forms.isMultinary) return EvaluationMode::Call;
  if (forms.isBinary) return inputCount == 1 ? EvaluationMode::Scan : EvaluationMode::Zip;
  return EvaluationMode::Map;
}

}  // namespace

factory::Value CallByName(FunctionRegistry const& registry, std::string_view function,
                          std::initializer_list<CallArgument> inputs,
                          std::initializer_list<CallArgument> parameters) {
  Engine const engine(registry);
  FunctionCall call;
  call.function = OStringCore::fromUtf8(function);
  call.mode = ChooseMode(engine.GetForms(call.function), inputs.size());
  call.inputs = GetValues(inputs);
  call.parameters = GetValues(parameters);
  return engine.Call(call);
}

}  // namespace ort::core
