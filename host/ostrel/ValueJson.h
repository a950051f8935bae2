#pragma once

#include "ostrel/PayloadJson.h"

namespace ostrel::program {

/// Reads a value of a call: {"Real64": 1.5}, {"Array": {"type": "String", "values": ["a"]}}, ... Throws
/// InvalidRequest for anything that is not exactly one of the forms.
Value ReadValue(Json const& json, JsonPlace const& place);

/// Appends a value in the same form; what is read back from it equals the value.
void WriteValue(ort::core::StoreValue const& value, std::string& out);

}  // namespace ostrel::program
