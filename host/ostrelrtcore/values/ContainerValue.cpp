#include "ostrelrtcore/values/ContainerValue.h"

#include <algorithm>

#include "ostrelrtcore/values/ReleaseQueue.h"
#include "ostrelrtcore/values/ScalarValue.h"
#include "ostrelsys/StringHash.h"

namespace ort::core {
namespace {

using Value = std::shared_ptr<StoreValue>;

std::size_t Combine(std::size_t hash, std::size_t next) {
  return StringHash::Mix(hash ^ next, 0xD1B54A32D192ED03ull);
}

}  // namespace

TupleValue::~TupleValue() { ReleaseWithoutRecursion(std::move(members_)); }

Value const& TupleValue::GetMember(int position) const {
  auto const index = static_cast<std::size_t>(position);
  if (index < members_->size()) return (*members_)[index];
  throw OrtRuntimeException(OrtError_WrongInputCount,
                            OStringCore::fromUtf8("member " + std::to_string(position) + " of a tuple of " +
                                                  std::to_string(members_->size())));
}

bool TupleValue::Equals(StoreValue const& other) const {
  if (other.GetStoreType() != StoreType::Tuple || other.IsSpecial()) return false;
  auto const& tuple = other.AsTuple();
  if (tuple.GetCount() != GetCount()) return false;
  for (int i = 0; i < GetCount(); ++i) {
    if (!(*members_)[static_cast<std::size_t>(i)]->Equals(*tuple.GetMember(i))) return false;
  }
  return true;
}

Value TupleValue::Clone() const { return std::make_shared<TupleValue>(members_); }

std::size_t TupleValue::GetHash() const {
  std::size_t hash = members_->size();
  for (auto const& member : *members_) hash = Combine(hash, member->GetHash());
  return hash;
}

std::shared_ptr<StoreValue> NamedValue::Make(StoreTypeInfo const& type,
                                             std::unordered_map<OStringCore, Value> const& values) {
  std::vector<OStringCore> names;
  std::unordered_map<RIndirectString, Value> members;
  std::unordered_map<RIndirectString, uint64> bits;
  for (auto const& [name, value] : values) {
    if (value == nullptr) throw OrtRuntimeException(OrtError_WrongValueKind, name);
    names.push_back(name);
    RIndirectString const key(name);
    members.emplace(key, value);
    if (auto const scalar = GetScalarBits(*value)) bits.emplace(key, *scalar);
  }
  std::ranges::sort(names);
  bool const isAllScalars = bits.size() == members.size();
  KeySetTypes const types{StoreTypeInfo::String, StoreTypeInfo::Empty, StoreTypeInfo::Empty};
  auto content =
      std::make_shared<Content>(Content{std::move(names), {types, std::move(members), {}}, nullptr});
  if (isAllScalars && type == StoreTypeInfo::KeyMap) {
    using Bits = IStoreDictionary<RIndirectString, uint64>;
    content->bits = std::make_unique<Bits>(types, std::move(bits), Bits::SpecialEntries{});
  }
  return std::make_shared<NamedValue>(type, std::move(content));
}

NamedValue::~NamedValue() { ReleaseWithoutRecursion(std::move(content_)); }

Value NamedValue::Find(OStringCore const& name) const {
  auto const& names = content_->names;
  auto const found = std::ranges::lower_bound(names, name);
  if (found == names.end() || *found != name) return nullptr;
  // Names and entries stand in one order.
  return content_->values.GetEntries()[static_cast<std::size_t>(found - names.begin())].second;
}

Value NamedValue::Get(OStringCore const& name) const {
  if (auto value = Find(name)) return value;
  throw OrtRuntimeException(OrtError_WrongInputCount, name);
}

bool NamedValue::Equals(StoreValue const& other) const {
  if (other.GetStoreType() != GetStoreType() || other.IsSpecial()) return false;
  auto const& named = other.AsNamedValues();
  if (named.GetNames() != content_->names) return false;
  return std::ranges::all_of(content_->names,
                             [&](OStringCore const& name) { return Find(name)->Equals(*named.Find(name)); });
}

Value NamedValue::Clone() const { return std::make_shared<NamedValue>(GetTypeInfo(), content_); }

std::size_t NamedValue::GetHash() const {
  std::size_t hash = content_->names.size();
  for (auto const& name : content_->names) {
    hash = Combine(Combine(hash, std::hash<OStringCore>{}(name)), Find(name)->GetHash());
  }
  return hash;
}

void const* NamedValue::FindDictionary(StorageClass key, StorageClass payload) const {
  if (GetStoreType() != StoreType::KeyMap || key != StorageClass::String) return nullptr;
  if (payload == StorageClass::Value) return &content_->values;
  return payload == StorageClass::UInt64 ? content_->bits.get() : nullptr;
}

namespace {

// Payloads are one when they are equal as values of their type, whatever their bits.
bool AreEqualPayloads(StoreType, Value const& a, Value const& b) { return a == b || a->Equals(*b); }
bool AreEqualPayloads(StoreType type, uint64 a, uint64 b) {
  return GetCanonicalBits(type, a) == GetCanonicalBits(type, b);
}

std::size_t HashPayload(StoreType, Value const& payload) { return payload->GetHash(); }
std::size_t HashPayload(StoreType type, uint64 payload) { return GetCanonicalBits(type, payload); }

template <class Listing>
bool AreEqualListings(StoreType payloadType, Listing const& a, Listing const& b) {
  return std::ranges::equal(a, b, [payloadType](auto const& x, auto const& y) {
    return detail::EqualKeys(x.first, y.first) && AreEqualPayloads(payloadType, x.second, y.second);
  });
}

}  // namespace

template <class K, class V>
KeySetValue<K, V>::~KeySetValue() {
  ReleaseWithoutRecursion(std::move(dictionary_));
}

template <class K, class V>
bool KeySetValue<K, V>::Equals(StoreValue const& other) const {
  auto const* keySet = dynamic_cast<KeySetValue const*>(&other);
  return keySet != nullptr && keySet->types_.keyType == types_.keyType &&
         keySet->types_.valueType == types_.valueType &&
         AreEqualListings(types_.valueType, dictionary_->GetEntries(), keySet->dictionary_->GetEntries()) &&
         AreEqualListings(types_.valueType, dictionary_->GetSpecialEntries(),
                          keySet->dictionary_->GetSpecialEntries());
}

template <class K, class V>
Value KeySetValue<K, V>::Clone() const {
  return std::make_shared<KeySetValue>(types_, dictionary_);
}

template <class K, class V>
std::size_t KeySetValue<K, V>::GetHash() const {
  std::size_t hash = dictionary_->GetEntries().size();
  for (auto const& [key, payload] : dictionary_->GetEntries()) {
    hash = Combine(Combine(hash, detail::HashKey(key)), HashPayload(types_.valueType, payload));
  }
  return hash;
}

template <class K, class V>
void const* KeySetValue<K, V>::FindDictionary(StorageClass key, StorageClass payload) const {
  bool const suits = key == ElementTraits<K>::kStorage && payload == ElementTraits<V>::kStorage;
  return suits ? dictionary_.get() : nullptr;
}

template class KeySetValue<uint8, uint64>;
template class KeySetValue<uint32, uint64>;
template class KeySetValue<uint64, uint64>;
template class KeySetValue<RIndirectString, uint64>;
template class KeySetValue<Value, uint64>;
template class KeySetValue<uint8, Value>;
template class KeySetValue<uint32, Value>;
template class KeySetValue<uint64, Value>;
template class KeySetValue<RIndirectString, Value>;
template class KeySetValue<Value, Value>;

}  // namespace ort::core
