#pragma once

#include <string>
#include <vector>

#include "ostrelrtcore/KeySegmentType.h"

namespace ort::core {

/// What help pages tell of one registration of a function. A name with several registrations has one of these
/// for each; they share help and example.
struct FunctionDocumentation {
  OStringCore name;
  std::vector<KeySegmentType> inputs;
  /// One for each input. The last ends in "..." where a function takes any number of such inputs.
  std::vector<std::string> inputNames;
  /// Empty where the result's type follows from the inputs.
  KeySegmentType output;
  std::vector<KeySegmentType> parameters;
  std::vector<std::string> parameterNames;  ///< One for each parameter.
  /// The family's name in lower case, e.g. "arithmetic".
  std::string family;
  /// One sentence, UTF-8.
  std::string help;
  /// A request that runs, one line of JSON: {"function": "add", "inputs": [...]}.
  std::string example;
  /// What a sentence does not hold, as lines of Markdown: what each input means and in which unit, the rule,
  /// special values. May be empty.
  std::string details = {};
};

/// The functions that RegisterAllBuiltinFunctions registers, in order of registration.
ORTCORE_API std::vector<FunctionDocumentation> const& GetBuiltinDocumentation();

}  // namespace ort::core
