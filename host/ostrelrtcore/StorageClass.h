#pragma once

#include <memory>
#include <type_traits>

#include "ostrelrtcore/Export.h"
#include "ostrelrtcore/OrtColor.h"
#include "ostrelrtcore/OrtDateTime.h"
#include "ostrelrtcore/RIndirectString.h"
#include "ostrelrtcore/StoreType.h"

namespace ort::core {

/// Exported from its first declaration on: what is instantiated for it takes its visibility from there.
class ORTCORE_API StoreValue;

/// A column is stored by the width of its elements, never by their meaning.
enum class StorageClass : std::uint8_t { UInt8, UInt32, UInt64, String, Value };

/// The storage class in which elements of a store type live.
constexpr StorageClass GetStorageClass(StoreType elementType) noexcept {
  switch (elementType) {
    case StoreType::Bool:
      return StorageClass::UInt8;
    case StoreType::Int32:
    case StoreType::Real32:
    case StoreType::Color:
      return StorageClass::UInt32;
    case StoreType::Int64:
    case StoreType::Real64:
    case StoreType::Date:
    case StoreType::DateTime:
      return StorageClass::UInt64;
    case StoreType::String:
      return StorageClass::String;
    default:
      return StorageClass::Value;
  }
}

/// The bytes of one element.
constexpr std::size_t GetElementSize(StorageClass storage) noexcept {
  switch (storage) {
    case StorageClass::UInt8:
      return 1;
    case StorageClass::UInt32:
      return 4;
    case StorageClass::UInt64:
      return 8;
    case StorageClass::String:
      return sizeof(RIndirectString);
    default:
      return sizeof(std::shared_ptr<StoreValue>);
  }
}

template <class T>
struct ElementTraits;

template <StorageClass Class, StoreType Type, class T>
struct ElementTraitsOf {
  static constexpr StorageClass kStorage = Class;
  /// The store type that T stands for; Empty for a bare storage element.
  static constexpr StoreType kStoreType = Type;
  using Result = std::conditional_t<std::is_trivially_copyable_v<T>, T, T const&>;
};

// clang-format off
template <> struct ElementTraits<uint8> : ElementTraitsOf<StorageClass::UInt8, StoreType::Empty, uint8> {};
template <> struct ElementTraits<bool> : ElementTraitsOf<StorageClass::UInt8, StoreType::Bool, bool> {};
template <> struct ElementTraits<uint32> : ElementTraitsOf<StorageClass::UInt32, StoreType::Empty, uint32> {};
template <> struct ElementTraits<int> : ElementTraitsOf<StorageClass::UInt32, StoreType::Int32, int> {};
template <> struct ElementTraits<float> : ElementTraitsOf<StorageClass::UInt32, StoreType::Real32, float> {};
template <> struct ElementTraits<OrtColor> : ElementTraitsOf<StorageClass::UInt32, StoreType::Color, OrtColor> {};
template <> struct ElementTraits<uint64> : ElementTraitsOf<StorageClass::UInt64, StoreType::Empty, uint64> {};
template <> struct ElementTraits<int64> : ElementTraitsOf<StorageClass::UInt64, StoreType::Int64, int64> {};
template <> struct ElementTraits<double> : ElementTraitsOf<StorageClass::UInt64, StoreType::Real64, double> {};
template <> struct ElementTraits<OrtDateTime>
    : ElementTraitsOf<StorageClass::UInt64, StoreType::DateTime, OrtDateTime> {};
template <> struct ElementTraits<RIndirectString>
    : ElementTraitsOf<StorageClass::String, StoreType::String, RIndirectString> {};
template <> struct ElementTraits<std::shared_ptr<StoreValue>>
    : ElementTraitsOf<StorageClass::Value, StoreType::Empty, std::shared_ptr<StoreValue>> {};
// clang-format on

}  // namespace ort::core
