#pragma once

#include <memory>
#include <vector>

#include "ostrelrtcore/StoreDictionary.h"
#include "ostrelrtcore/TypedArray.h"

namespace ort::core {

/// The members of a tuple, by position.
class ORTCORE_API IStoreTuple {
 public:
  virtual ~IStoreTuple();
  virtual int GetCount() const = 0;
  /// Throws 219 for a position that the tuple does not have.
  virtual std::shared_ptr<StoreValue> const& GetMember(int position) const = 0;
};

/// The named columns of a table or the named members of a key map.
class ORTCORE_API IStoreNamedValues {
 public:
  virtual ~IStoreNamedValues();
  virtual int GetCount() const = 0;
  /// All names in ascending order of their code units.
  virtual std::vector<OStringCore> const& GetNames() const = 0;
  /// Null when there is no such name.
  virtual std::shared_ptr<StoreValue> Find(OStringCore const& name) const = 0;
  /// Throws 219 with the name as message when there is no such name.
  virtual std::shared_ptr<StoreValue> Get(OStringCore const& name) const = 0;
};

/// An immutable value: a scalar, a column, a tuple, a table, a key set, a key map, or a special value of any
/// of their types. Shared between threads as std::shared_ptr<StoreValue>; made only by the factory functions.
//
/// Accessors of another type than the value's, a column read in another storage class, and a special value
/// read as a scalar throw OrtRuntimeException with code 55.
class ORTCORE_API StoreValue {
 public:
  virtual StoreTypeInfo const& GetTypeInfo() const = 0;
  virtual StoreType GetStoreType() const = 0;
  /// None for an ordinary value.
  virtual SpecialKind GetSpecialKind() const = 0;
  /// The same type and the same content: reals by value (NaN equals NaN, both zeros are equal), special
  /// values by type and kind, containers member by member.
  virtual bool Equals(StoreValue const& other) const = 0;
  /// A new value of another scalar type (see Conversion.h for the rules). Throws 178 where there is none.
  virtual std::shared_ptr<StoreValue> ConvertTo(StoreType type) const = 0;
  virtual int GetInt32() const = 0;
  virtual int64 GetInt64() const = 0;
  virtual float GetReal32() const = 0;
  virtual double GetReal64() const = 0;
  /// The instant of a value of type Date.
  virtual OrtDateTime GetDate() const = 0;
  /// The instant of a value of type DateTime, and of type Date as well.
  virtual OrtDateTime GetDateTime() const = 0;
  /// A new value equal to this one; it shares the storage of a column.
  virtual std::shared_ptr<StoreValue> Clone() const = 0;

  virtual ~StoreValue();
  virtual bool GetBool() const = 0;
  virtual OrtColor GetColor() const = 0;
  virtual RIndirectString GetString() const = 0;
  /// Numbers by value across the numeric types, temporal values by instant, strings by code unit; anything
  /// else, special values included, throws 220. NaN is neither less nor greater.
  virtual bool IsLessThan(StoreValue const& other) const = 0;
  /// Equal values have equal hashes.
  virtual std::size_t GetHash() const = 0;

  bool IsSpecial() const { return GetSpecialKind() != SpecialKind::None; }

  /// The column as elements of type T: a storage element (uint8, uint32, uint64, RIndirectString,
  /// std::shared_ptr<StoreValue>) or a type of the same width (bool, int, float, OrtColor, int64, double,
  /// OrtDateTime). Another type of the same width reads the bit pattern. Throws 55 for another width or when
  /// the value is no column.
  template <class T>
  ITypedArray<T> const& AsTypedArray() const;

  /// The key set or key map as a mapping from K (a storage element) to V (uint64 or
  /// std::shared_ptr<StoreValue>). Throws 55 when its keys or payloads are of another class. A key map has
  /// RIndirectString keys.
  template <class K, class V>
  IStoreDictionary<K, V> const& AsDictionary() const;

  /// Throw 55 when the value is of another kind. AsNamedValues serves tables and key maps.
  IStoreTuple const& AsTuple() const;
  IStoreNamedValues const& AsNamedValues() const;
  ColumnView const& AsColumn() const;
  KeySetTypes const& GetKeySetTypes() const;

 protected:
  StoreValue() = default;
  StoreValue(StoreValue const&) = default;
  StoreValue& operator=(StoreValue const&) = delete;

  virtual ColumnView const* FindColumn() const { return nullptr; }
  virtual IStoreTuple const* FindTuple() const { return nullptr; }
  virtual IStoreNamedValues const* FindNamedValues() const { return nullptr; }
  virtual KeySetTypes const* FindKeySetTypes() const { return nullptr; }
  /// The dictionary when its K and V are the ones named by the two classes, else null. `V` tells the payload
  /// class: UInt64 or Value.
  virtual void const* FindDictionary(StorageClass, StorageClass) const { return nullptr; }

 private:
  ColumnView const& GetColumn(StorageClass storage) const;
  void const* GetDictionary(StorageClass key, StorageClass payload) const;
};

template <class T>
ITypedArray<T> const& StoreValue::AsTypedArray() const {
  /// The one place where a column's storage gets an element type of its width.
  return static_cast<ITypedArray<T> const&>(GetColumn(ElementTraits<T>::kStorage));
}

template <class K, class V>
IStoreDictionary<K, V> const& StoreValue::AsDictionary() const {
  return *static_cast<IStoreDictionary<K, V> const*>(
      GetDictionary(ElementTraits<K>::kStorage, ElementTraits<V>::kStorage));
}

/// Reads a scalar: T is bool, int, int64, float, double, OrtDateTime (either temporal type), OrtColor,
/// OStringCore or RIndirectString. Throws 55 for a null pointer, another type or a special value.
template <class T>
T FetchStoreValue(std::shared_ptr<StoreValue> const& value);

// clang-format off
template <> ORTCORE_API bool FetchStoreValue<bool>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API int FetchStoreValue<int>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API int64 FetchStoreValue<int64>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API float FetchStoreValue<float>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API double FetchStoreValue<double>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API OrtDateTime FetchStoreValue<OrtDateTime>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API OrtColor FetchStoreValue<OrtColor>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API OStringCore FetchStoreValue<OStringCore>(std::shared_ptr<StoreValue> const&);
template <> ORTCORE_API RIndirectString FetchStoreValue<RIndirectString>(std::shared_ptr<StoreValue> const&);
// clang-format on

}  // namespace ort::core
