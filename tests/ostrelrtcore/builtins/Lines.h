#pragma once

#include <random>
#include <string>
#include <vector>

#include "ostrelrtcore/Factory.h"

/// Values as one line of text: "Real64: 1 2.5 NaN <9>" is a column whose last row is special of kind 9,
/// "Real64 1.5" a scalar and "Real64 <9>" a special one. Bool is T or F; a String has no blanks and "''" is
/// the empty one.
namespace builtins_test {

using ort::core::factory::Value;

Value Parse(std::string const& text);
std::string Show(ort::core::StoreValue const& value);
inline std::string Show(Value const& value) { return Show(*value); }

/// Calls a built-in function in the mode that its registration has. An error gives its text, "error 259:
/// ...", and a call that nothing answers "no candidate".
Value Call(std::string const& function, std::vector<Value> const& inputs,
           std::vector<Value> const& parameters = {});
std::string ShowCall(std::string const& function, std::vector<Value> const& inputs,
                     std::vector<Value> const& parameters = {});

struct Case {
  std::string function;
  std::vector<std::string> inputs;
  std::string expected;
  std::vector<std::string> parameters = {};
};

/// Runs every case and sees that it leaves its inputs as they are.
void RunCases(std::vector<Case> const& cases);

std::vector<ort::core::StoreType> const& ColumnTypes();

/// A column with few different values, the type's edge values among them, and special rows of two kinds where
/// it is asked for.
Value RandomColumn(ort::core::StoreType type, int count, bool hasSpecials, std::mt19937& random);
/// Int32 numbers from 0 to below `limit`.
Value RandomRows(int count, int limit, std::mt19937& random);

/// The row as text, "<9>" for a special one.
std::string ShowRow(Value const& column, int row);
std::vector<std::string> ShowRows(Value const& column);
int CountRows(Value const& column);

}  // namespace builtins_test
