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

/// The registration for a call's mode, name and inputs, by the rules of Engine. Throws InvalidCall where
/// there is none, for a wrong count of inputs and for values that the mode does not take; 55 for a null
/// value.
FoundFunction FindFunction(FunctionRegistry const& registry, FunctionCall const& call);

/// Every registered name once, as UTF-8.
std::vector<std::string> ListFunctionNames(FunctionRegistry const& registry);

std::string DescribeUnknownFunction(FunctionRegistry const& registry, OStringCore const& name);

}  // namespace ort::core::engine
