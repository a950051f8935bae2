#pragma once

#include <vector>

#include "ostrelrtcore/KeySegmentType.h"

namespace ort::core {

/// A registered function's identity: its name and the types of its inputs.
class ORTCORE_API FunctionKey {
 public:
  FunctionKey(OStringCore const& name, KeySegmentType const& input) : name_(name), inputs_{input} {}
  FunctionKey(OStringCore const& name, KeySegmentType const& first, KeySegmentType const& second)
      : name_(name), inputs_{first, second} {}
  FunctionKey(OStringCore const& name, std::vector<KeySegmentType> const& inputs)
      : name_(name), inputs_(inputs) {}

  OStringCore const& GetName() const { return name_; }
  std::vector<KeySegmentType> const& GetInputTypes() const { return inputs_; }

  friend bool operator==(FunctionKey const& a, FunctionKey const& b) = default;

 private:
  OStringCore name_;
  std::vector<KeySegmentType> inputs_;
};

/// Whether a call's key suits a registered one: the same name and count, and every segment matches.
ORTCORE_API bool Matches(FunctionKey const& registered, FunctionKey const& call);

}  // namespace ort::core
