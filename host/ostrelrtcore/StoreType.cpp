#include "ostrelrtcore/StoreType.h"

#include <array>

namespace ort::core {

constinit StoreTypeInfo const StoreTypeInfo::Empty;
constinit StoreTypeInfo const StoreTypeInfo::Bool(StoreType::Bool, false);
constinit StoreTypeInfo const StoreTypeInfo::Int32(StoreType::Int32, false);
constinit StoreTypeInfo const StoreTypeInfo::Int64(StoreType::Int64, false);
constinit StoreTypeInfo const StoreTypeInfo::Real32(StoreType::Real32, false);
constinit StoreTypeInfo const StoreTypeInfo::Real64(StoreType::Real64, false);
constinit StoreTypeInfo const StoreTypeInfo::String(StoreType::String, false);
constinit StoreTypeInfo const StoreTypeInfo::Date(StoreType::Date, false);
constinit StoreTypeInfo const StoreTypeInfo::DateTime(StoreType::DateTime, false);
constinit StoreTypeInfo const StoreTypeInfo::Color(StoreType::Color, false);
constinit StoreTypeInfo const StoreTypeInfo::Array(StoreType::Array, false);
constinit StoreTypeInfo const StoreTypeInfo::Tuple(StoreType::Tuple, false);
constinit StoreTypeInfo const StoreTypeInfo::Table(StoreType::Table, false);
constinit StoreTypeInfo const StoreTypeInfo::KeySet(StoreType::KeySet, false);
constinit StoreTypeInfo const StoreTypeInfo::KeyMap(StoreType::KeyMap, false);

OStringCore StoreTypeToString(StoreType type) {
  static constexpr std::array<wchar_t const*, 15> kNames = {
      L"Empty", L"Int32", L"Int64", L"Real32", L"Real64", L"String", L"Date", L"DateTime",
      L"Color", L"Bool",  L"Array", L"KeySet", L"KeyMap", L"Tuple",  L"Table"};
  auto const index = static_cast<std::size_t>(type);
  return OStringCore(index < kNames.size() ? kNames[index] : L"Unknown");
}

bool IsPrimitiveStoreType(StoreType type) { return type >= StoreType::Int32 && type <= StoreType::Bool; }

}  // namespace ort::core
