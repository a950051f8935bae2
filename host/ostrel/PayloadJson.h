#pragma once

#include <string>

#include "ostrel/RequestJson.h"
#include "ostrelrtcore/Factory.h"

/// The bare payloads of calls: what stands in {"Real64": 1.5}, and what a column's values are.
namespace ostrel::program {

using ort::core::StoreType;
using ort::core::uint32;
using ort::core::uint64;
using ort::core::uint8;
using ort::core::factory::Value;

/// The type of a name as in calls: "Real64", "Tuple". Fails with the nearest name for another one.
StoreType ReadStoreType(Json const& json, JsonPlace const& place);
/// Special kinds are 0 to 255.
ort::core::SpecialKind ReadSpecialKind(Json const& json, JsonPlace const& place);
/// Fails for an ill-fitting index; gives 0 to INT_MAX.
int ReadIndex(Json const& json, JsonPlace const& place);

/// The storage element of a payload of a type. T is the element of the type's storage class; payloads of
/// whole values are V forms whose type must be the named one.
template <class T>
T ReadPayload(StoreType type, Json const& json, JsonPlace const& place);

// clang-format off
template <> uint8 ReadPayload<uint8>(StoreType, Json const&, JsonPlace const&);
template <> uint32 ReadPayload<uint32>(StoreType, Json const&, JsonPlace const&);
template <> uint64 ReadPayload<uint64>(StoreType, Json const&, JsonPlace const&);
template <> ort::core::RIndirectString ReadPayload<ort::core::RIndirectString>(StoreType, Json const&, JsonPlace const&);
template <> Value ReadPayload<Value>(StoreType, Json const&, JsonPlace const&);
// clang-format on

/// A scalar of a primitive type from its bare payload.
Value ReadScalar(StoreType type, Json const& json, JsonPlace const& place);

void WritePayload(StoreType type, uint8 element, std::string& out);
void WritePayload(StoreType type, uint32 element, std::string& out);
void WritePayload(StoreType type, uint64 element, std::string& out);
void WritePayload(StoreType type, ort::core::RIndirectString const& element, std::string& out);
void WritePayload(StoreType type, Value const& element, std::string& out);
/// The bare payload of a scalar that is not special.
void WriteScalarPayload(ort::core::StoreValue const& scalar, std::string& out);

/// A JSON string. Unpaired surrogates become U+FFFD.
void WriteText(std::string_view utf8, std::string& out);
void WriteText(OStringCore const& text, std::string& out);

}  // namespace ostrel::program
