#pragma once

#include <string>

#include "ostrelrtcore/engine/FunctionGraph.h"

namespace ostrel::program {

/// One line a node: its number, its name and what it is: a value's type, or a function with the numbers of
/// the nodes that it takes.
std::string MakeGraphText(ort::core::FunctionGraph const& graph);
/// The graph in the DOT language. Names may hold any characters.
std::string MakeGraphDot(ort::core::FunctionGraph const& graph);

}  // namespace ostrel::program
