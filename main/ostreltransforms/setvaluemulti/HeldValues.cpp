#include "ostreltransforms/setvaluemulti/HeldValues.h"

#include <bit>

#include "ostrelrtcore/Factory.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using Visit = std::function<void(Value const&)>;

Value MakeFromBits(uint64 bits, StoreTypeInfo const& type) {
  switch (type.GetStoreType()) {
    case StoreType::Int64:
      return factory::MakeInt64(static_cast<int64>(bits));
    case StoreType::Real64:
      return factory::MakeReal64(std::bit_cast<double>(bits));
    case StoreType::Date:
      return factory::MakeDate(OrtDateTime::FromValue(bits));
    case StoreType::DateTime:
      return factory::MakeDateTime(OrtDateTime::FromValue(bits));
    default:
      throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(type.GetStoreType()));
  }
}

template <class K, class V>
bool Visited(StoreValue const& keySet, Visit const& visit) {
  IStoreDictionary<K, V> const* dictionary = nullptr;
  try {
    dictionary = &keySet.AsDictionary<K, V>();
  } catch (OrtRuntimeException const&) {
    return false;
  }
  auto const visitPayload = [&](auto const& entry) {
    if constexpr (std::is_same_v<V, Value>) {
      visit(entry.second);
    } else {
      visit(MakeFromBits(entry.second, keySet.GetKeySetTypes().valueType));
    }
  };
  for (auto const& entry : dictionary->GetEntries()) visitPayload(entry);
  for (auto const& entry : dictionary->GetSpecialEntries()) visitPayload(entry);
  return true;
}

// Payloads are bits or whole values; a key set's types don't tell which.
template <class K>
void VisitKeySet(StoreValue const& keySet, Visit const& visit) {
  if (!Visited<K, uint64>(keySet, visit)) Visited<K, Value>(keySet, visit);
}

void VisitKeySet(StoreValue const& keySet, Visit const& visit) {
  switch (GetStorageClass(keySet.GetKeySetTypes().keyType)) {
    case StorageClass::UInt8:
      return VisitKeySet<uint8>(keySet, visit);
    case StorageClass::UInt32:
      return VisitKeySet<uint32>(keySet, visit);
    case StorageClass::UInt64:
      return VisitKeySet<uint64>(keySet, visit);
    case StorageClass::String:
      return VisitKeySet<RIndirectString>(keySet, visit);
    case StorageClass::Value:
      return VisitKeySet<Value>(keySet, visit);
  }
}

}  // namespace

void ForEachHeldValue(StoreValue const& collection, Visit const& visit) {
  if (collection.GetStoreType() == StoreType::KeySet) return VisitKeySet(collection, visit);
  if (collection.GetStoreType() != StoreType::KeyMap) {
    throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(collection.GetStoreType()));
  }
  IStoreNamedValues const& members = collection.AsNamedValues();
  for (OStringCore const& name : members.GetNames()) visit(members.Get(name));
}

}  // namespace OstrelTransforms
