#pragma once

#include <memory>

#include "ostrelrtcore/StoreValue.h"

// Conversion between scalar types. A pair of types without a rule throws 178.
//
// Numbers: real to integer rounds to the nearest, halves away from zero; every narrowing saturates; NaN
// becomes a special value of kind 1. Bool counts as 0 or 1, and every number but 0 is true. Numbers and
// instants meet in day numbers, integers in whole days. Date to DateTime keeps the instant, DateTime to Date
// the value with its time. Integers and colours share their low 32 bits. Numbers become their shortest text
// that reads back to the same value, instants their ISO text; text that is not wholly a number or an instant
// becomes a special value of kind 1. A special value keeps its kind.
namespace ort::core {

std::shared_ptr<StoreValue> ConvertScalar(StoreType from, uint64 bits, SpecialKind kind, StoreType to);
std::shared_ptr<StoreValue> ConvertString(RIndirectString const& text, StoreType to);

}  // namespace ort::core
