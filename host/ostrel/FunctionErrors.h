#pragma once

#include <string>
#include <vector>

#include "ostrel/FunctionList.h"

namespace ostrel::program {

/// How a function answers what it does not take.
struct FunctionError {
  std::string code;               ///< "55", or the type of an exception without a code, e.g. "out_of_range"
  std::vector<std::string> when;  ///< "another number of inputs", "columns of different lengths"
};

/// The errors of a function's registrations, found by calling it with its examples after one thing was made
/// wrong in each: too few and too many inputs, inputs and parameters of another kind, columns of different
/// lengths. By ascending code; errors that only certain values cause are for the function's details to tell.
std::vector<FunctionError> FindErrors(std::vector<ListedFunction const*> const& registrations,
                                      CallSession& session);

}  // namespace ostrel::program
