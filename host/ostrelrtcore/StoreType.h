#pragma once

#include <cstdint>

#include "ostrelrtcore/Export.h"
#include "ostrelsys/IntTypes.h"
#include "ostrelsys/OStringCore.h"

namespace ort::core {

/// What a value is. Numeric is exactly 1 to 4, temporal exactly 6 and 7.
enum class StoreType : std::uint8_t {
  Empty = 0,
  Int32 = 1,
  Int64 = 2,
  Real32 = 3,
  Real64 = 4,
  String = 5,
  Date = 6,
  DateTime = 7,
  Color = 8,
  Bool = 9,
  Array = 10,
  KeySet = 11,
  KeyMap = 12,
  Tuple = 13,
  Table = 14
};

/// Why a row or scalar holds no ordinary value. Kinds without a name pass through unchanged.
enum class SpecialKind : std::uint8_t { None = 0, Missing = 1, Null = 9 };

/// A value's type: its main type, for a column the type of its elements, and the host's flag (a hint that
/// rows may be special; it takes part in equality and in nothing else).
class ORTCORE_API StoreTypeInfo {
 public:
  constexpr StoreTypeInfo() noexcept = default;
  constexpr StoreTypeInfo(StoreType type, bool flag) noexcept : type_(type), flag_(flag) {}

  /// The type of a column whose elements are of type `element`.
  static constexpr StoreTypeInfo MakeArrayType(StoreType element) noexcept {
    StoreTypeInfo info(StoreType::Array, false);
    info.element_ = element;
    return info;
  }

  constexpr StoreType GetStoreType() const noexcept { return type_; }
  constexpr bool GetFlag() const noexcept { return flag_; }
  /// The element type of a column; the empty type for everything else.
  constexpr StoreTypeInfo GetElementType() const noexcept { return {element_, false}; }

  /// A type info stands for its main type wherever a plain StoreType is wanted.
  constexpr operator StoreType() const noexcept { return type_; }

  friend constexpr bool operator==(StoreTypeInfo const& a, StoreTypeInfo const& b) noexcept = default;
  friend constexpr bool operator==(StoreTypeInfo const& a, StoreType b) noexcept { return a.type_ == b; }

  static StoreTypeInfo const Empty;
  static StoreTypeInfo const Bool;
  static StoreTypeInfo const Int32;
  static StoreTypeInfo const Int64;
  static StoreTypeInfo const Real32;
  static StoreTypeInfo const Real64;
  static StoreTypeInfo const String;
  static StoreTypeInfo const Date;
  static StoreTypeInfo const DateTime;
  static StoreTypeInfo const Color;
  static StoreTypeInfo const Array;
  static StoreTypeInfo const Tuple;
  static StoreTypeInfo const Table;
  static StoreTypeInfo const KeySet;
  static StoreTypeInfo const KeyMap;

 private:
  StoreType type_ = StoreType::Empty;
  bool flag_ = false;
  StoreType element_ = StoreType::Empty;
};

/// The type's display name, as used in messages: "Int32", "Real64", "KeyMap". "Unknown" beyond the list.
ORTCORE_API OStringCore StoreTypeToString(StoreType type);

/// True for the scalar types (1 to 9), false for the empty type and for containers.
ORTCORE_API bool IsPrimitiveStoreType(StoreType type);

}  // namespace ort::core
