#include "ostrelrtcore/engine/Engine.h"

#include "ostrelrtcore/engine/Fold.h"
#include "ostrelrtcore/engine/FunctionLookup.h"
#include "ostrelrtcore/engine/Functors.h"
#include "ostrelrtcore/engine/GraphEvaluation.h"
#include "ostrelrtcore/engine/Rowwise.h"

namespace ort::core {
namespace engine {
namespace {

factory::Value ApplyMultinary(FoundFunction const& function, CallView const& call) {
  auto result = MakeMultinary(function).functor->Apply({call.inputs.begin(), call.inputs.end()});
  if (result == nullptr) throw OrtRuntimeException(OrtError_WrongValueKind, function.key->GetName());
  return result;
}

}  // namespace

Value ApplyFunction(FunctionRegistry const& registry, CallView const& call) {
  auto const function = FindFunction(registry, call);
  switch (call.mode) {
    case EvaluationMode::Map:
    case EvaluationMode::Zip:
      return ApplyRowwise(function, call);
    case EvaluationMode::Scan:
    case EvaluationMode::ScanBackward:
    case EvaluationMode::Fold:
      return ApplyFold(function, call);
    case EvaluationMode::Call:
      break;
  }
  return ApplyMultinary(function, call);
}

}  // namespace engine

namespace {

std::string Describe(std::exception_ptr const& cause) {
  try {
    std::rethrow_exception(cause);
  } catch (std::exception const& error) {
    return error.what();
  } catch (...) {
    return "unknown error";
  }
}

}  // namespace

struct EvaluationError::Texts {
  OStringCore nodeName;
  OStringCore function;
  std::string what;
};

InvalidCall::~InvalidCall() = default;
InvalidGraph::~InvalidGraph() = default;

EvaluationError::EvaluationError(NodeId node, OStringCore const& nodeName, OStringCore const& function,
                                 std::exception_ptr cause)
    : node_(node), cause_(std::move(cause)) {
  std::string const place = "node '" + nodeName.toUtf8() + "' (" + function.toUtf8() + "): ";
  texts_ = std::make_shared<Texts const>(Texts{nodeName, function, place + Describe(cause_)});
}

EvaluationError::~EvaluationError() = default;

OStringCore const& EvaluationError::GetNodeName() const noexcept { return texts_->nodeName; }
OStringCore const& EvaluationError::GetFunction() const noexcept { return texts_->function; }
char const* EvaluationError::what() const noexcept { return texts_->what.c_str(); }

std::vector<Engine::Value> Engine::Evaluate(FunctionGraph const& graph, factory::NamedValues const& inputs,
                                            std::span<NodeId const> outputs) const {
  return engine::GraphEvaluation(*registry_, graph, inputs, outputs).Run();
}

Engine::Value Engine::Call(FunctionCall const& call) const {
  return engine::ApplyFunction(
      *registry_, {call.function, call.mode, call.inputs, call.parameters, call.initial, call.groups});
}

Engine::Forms Engine::GetForms(OStringCore const& function) const {
  return {!registry_->GetUnaryFunctions().GetEntries(function).empty(),
          !registry_->GetBinaryFunctions().GetEntries(function).empty(),
          !registry_->GetMultinaryFunctions().GetEntries(function).empty()};
}

std::string Engine::DescribeUnknownFunction(OStringCore const& function) const {
  return engine::DescribeUnknownFunction(*registry_, function);
}

}  // namespace ort::core
