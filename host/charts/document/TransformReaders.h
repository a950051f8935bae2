#pragma once

#include "charts/document/JsonValue.h"
#include "charts/document/Transforms.h"

/// Readers of what derives rows and fields. All throw DocumentError with the place.
namespace ostrel::charts {

/// The steps of a "transform" list, in order.
std::vector<TransformSpec> ReadTransforms(JsonValue const& value);

AggregateOperation ReadAggregateOperation(JsonValue const& value);
/// "sum": the operation's name in the grammar.
char const* NameOf(AggregateOperation operation);

/// true, "binned" or an object; nullopt where it is off.
std::optional<BinSpec> ReadBin(JsonValue const& value);
/// A unit's name, or an object with one; empty where it is off.
TimeUnitSpec ReadTimeUnit(JsonValue const& value);
/// "week", or an object with such an interval of ticks.
TickInterval ReadTickInterval(JsonValue const& value);
StackOffset ReadStack(JsonValue const& value);

}  // namespace ostrel::charts
