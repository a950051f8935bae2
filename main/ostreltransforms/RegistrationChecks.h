#pragma once

#include <span>

#include "ostrelrtcore/FunctionKey.h"
#include "ostrelrtcore/OrtRuntimeException.h"

// What is checked before a function is registered by key. Each failure is an OrtRuntimeException whose
// message is the function's name; it ends the whole registration, and what was registered before it stays.
namespace OstrelTransforms::RegistrationChecks {

using ort::core::StoreType;

inline void RequireInputCount(ort::core::FunctionKey const& key, std::size_t count,
                              ort::core::OrtError error) {
  if (key.GetInputTypes().size() != count) throw ort::core::OrtRuntimeException(error, key.GetName());
}

// Empty among the required types stands for an input whose type the implementation leaves open.
inline void RequireInputTypes(ort::core::FunctionKey const& key, std::span<StoreType const> required) {
  for (std::size_t i = 0; i < required.size(); ++i) {
    if (required[i] != StoreType::Empty &&
        key.GetInputTypes()[i].GetMainType().GetStoreType() != required[i]) {
      throw ort::core::OrtRuntimeException(ort::core::OrtError_WrongInputType, key.GetName());
    }
  }
}

inline void RequireOutputType(ort::core::FunctionKey const& key, ort::core::KeySegmentType const& output) {
  if (output.GetMainType().GetStoreType() == StoreType::Empty) {
    throw ort::core::OrtRuntimeException(ort::core::OrtError_EmptyOutputType, key.GetName());
  }
}

// One input, else 128; of the required type, else 120; an output that is not empty, else 121.
inline void RequireUnary(ort::core::FunctionKey const& key, ort::core::KeySegmentType const& output,
                         StoreType required) {
  RequireInputCount(key, 1, ort::core::OrtError_NotUnary);
  RequireInputTypes(key, {&required, 1});
  RequireOutputType(key, output);
}

// Two inputs, else 130; of the required types, else 120; an output that is not empty, else 121.
inline void RequireBinary(ort::core::FunctionKey const& key, ort::core::KeySegmentType const& output,
                          StoreType requiredFirst, StoreType requiredSecond) {
  RequireInputCount(key, 2, ort::core::OrtError_NotBinary);
  StoreType const required[] = {requiredFirst, requiredSecond};
  RequireInputTypes(key, required);
  RequireOutputType(key, output);
}

// Any inputs; an output that is not empty, else 121.
inline void RequireMultinary(ort::core::FunctionKey const& key, ort::core::KeySegmentType const& output) {
  RequireOutputType(key, output);
}

}  // namespace OstrelTransforms::RegistrationChecks
