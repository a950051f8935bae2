#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ostrelrtcore/KeySegmentType.h"
#include "ostreltransforms/Export.h"

namespace OstrelTransforms {

// The sub-registry in which a function stands.
enum class Arity : std::uint8_t { Unary = 1, Binary = 2, Multinary = 3 };

struct SlotDocumentation {
  std::string name;
  ort::core::KeySegmentType type;
};

// What is known about one registration; all texts are UTF-8.
struct FunctionDocumentation {
  std::string family;  // "filter", "map", ...
  std::string name;
  Arity arity;
  int type;               // the registry's Type; 1 and 3 see special rows; 0 for multinary functions
  bool isOrderDependent;  // carries state from row to row
  std::vector<SlotDocumentation> inputs;
  ort::core::KeySegmentType output;
  std::vector<SlotDocumentation> parameters;
  std::string help;     // one sentence
  std::string example;  // a call request, one JSON object on one line, that runs
};

// One entry a registration, in the order in which RegisterOstrelTransformFunctions makes them; made from the
// rows that it registers.
OSTREL_API std::vector<FunctionDocumentation> GetFunctionDocumentation();

}  // namespace OstrelTransforms
