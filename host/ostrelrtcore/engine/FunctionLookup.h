#pragma once

#include "ostrelrtcore/engine/Engine.h"

namespace ort::core::engine {

/// The registration that answers a call. Refers to the registry.
struct FoundFunction {
  FunctionKey const* key = nullptr;
  KeySegmentType const* output = nullptr;
  FunctorFactory const* factory = nullptr;
  bool isOrderDependent = false;

  StoreType GetInputType(std::size_t slot) const {
    return key->GetInputTypes()[slot].GetMainType().GetStoreType();
  }
  StoreType GetOutputType() const { return output->GetMainType().GetStoreType(); }
};

/// A FunctionCall over values that stand elsewhere.
struct CallView {
  OStringCore const& function;
  EvaluationMode mode;
  std::span<factory::Value const> inputs;
  std::span<factory::Value const> parameters;
  factory::Value initial;
  factory::Value groups;
};

/// The registration for a call's mode, name and inputs, by the rules of Engine. Throws InvalidCall where
/// there is none, for a wrong count of inputs and for values that the mode does not take; 55 for a null
/// value.
FoundFunction FindFunction(FunctionRegistry const& registry, CallView const& call);

/// Applies one function, by the rules of Engine.
factory::Value ApplyFunction(FunctionRegistry const& registry, CallView const& call);

/// Every registered name once, as UTF-8.
std::vector<std::string> ListFunctionNames(FunctionRegistry const& registry);

std::string DescribeUnknownFunction(FunctionRegistry const& registry, OStringCore const& name);

}  // namespace ort::core::engine
