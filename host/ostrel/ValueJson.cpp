#include "ostrel/ValueJson.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "ostrelrtcore/NearestName.h"
#include "ostrelrtcore/engine/ElementSlot.h"

namespace ostrel::program {
namespace {

using namespace ort::core;
using ort::core::engine::VisitStorage;

StoreTypeInfo MakeType(StoreType type) { return StoreTypeInfo(type, false); }

// An object that has the required members and no others than the named ones.
class Members {
 public:
  Members(Json const& json, JsonPlace const& place, std::initializer_list<std::string_view> names)
      : json_(json), place_(place) {
    if (!json.is_object()) place.Fail("an object is needed, " + DescribeJson(json) + " was given");
    for (auto const& [name, member] : json.items()) {
      if (std::find(names.begin(), names.end(), name) != names.end()) continue;
      std::vector<std::string> const candidates(names.begin(), names.end());
      std::string const nearest = NearestName(name, candidates);
      JsonPlace(place, name)
          .Fail("there is no such property" + (nearest.empty() ? "" : "; did you mean '" + nearest + "'?"));
    }
  }

  JsonPlace At(std::string_view name) const { return JsonPlace(place_, name); }

  Json const& Get(std::string_view name) const {
    auto const found = json_.find(name);
    if (found == json_.end()) place_.Fail(fmt::format("'{}' is missing", name));
    return *found;
  }

  /// Null when it is left out.
  Json const* FindArray(std::string_view name) const {
    auto const found = json_.find(name);
    if (found == json_.end()) return nullptr;
    if (!found->is_array()) At(name).Fail("a list is needed, " + DescribeJson(*found) + " was given");
    return &*found;
  }

  Json const& GetArray(std::string_view name) const {
    Get(name);
    return *FindArray(name);
  }

 private:
  Json const& json_;
  JsonPlace const& place_;
};

Json const& RequirePair(Json const& json, JsonPlace const& place, char const* form) {
  if (!json.is_array() || json.size() != 2) {
    place.Fail(fmt::format("{} is needed, {} was given", form,
                           json.is_array() ? fmt::format("a list of {}", json.size()) : DescribeJson(json)));
  }
  return json;
}

struct SpecialRows {
  std::vector<int> rows;
  std::vector<SpecialKind> kinds;
  std::vector<bool> marks;  ///< one for each row of the column; empty when there are none
};

SpecialRows ReadSpecialRows(Json const* json, JsonPlace const& place, std::size_t count) {
  SpecialRows specials;
  if (json == nullptr || json->empty()) return specials;
  specials.marks.resize(count);
  for (std::size_t i = 0; i < json->size(); ++i) {
    JsonPlace const at(place, i);
    auto const& entry = RequirePair((*json)[i], at, "[row, kind]");
    int const row = ReadIndex(entry[0], at);
    SpecialKind const kind = ReadSpecialKind(entry[1], at);
    if (static_cast<std::size_t>(row) >= count)
      at.Fail(fmt::format("row {} of a column of {} rows", row, count));
    specials.rows.push_back(row);
    specials.kinds.push_back(kind);
    specials.marks[static_cast<std::size_t>(row)] = kind != SpecialKind::None;
  }
  return specials;
}

Value ReadArray(Json const& json, JsonPlace const& place) {
  Members const members(json, place, {"type", "values", "specials"});
  StoreType const type = ReadStoreType(members.Get("type"), members.At("type"));
  auto const& values = members.GetArray("values").get_ref<Json::array_t const&>();
  auto specials = ReadSpecialRows(members.FindArray("specials"), members.At("specials"), values.size());
  JsonPlace const at = members.At("values");
  return VisitStorage(GetStorageClass(type), [&]<class T>() {
    auto elements = std::make_unique<std::vector<T>>(values.size());
    for (std::size_t row = 0; row < values.size(); ++row) {
      JsonPlace const here(at, row);
      bool const isSpecial = !specials.marks.empty() && specials.marks[row];
      if (values[row].is_null()) {
        if (!isSpecial) here.Fail("null stands for special rows only, and 'specials' does not name this row");
      } else {
        (*elements)[row] = ReadPayload<T>(type, values[row], here);
      }
    }
    return factory::MakeArray<T>(MakeType(type), std::move(elements),
                                 std::make_unique<std::vector<int>>(std::move(specials.rows)),
                                 std::make_unique<std::vector<SpecialKind>>(std::move(specials.kinds)));
  });
}

Value ReadSpecial(Json const& json, JsonPlace const& place) {
  Members const members(json, place, {"type", "kind"});
  StoreType const type = ReadStoreType(members.Get("type"), members.At("type"));
  return factory::MakeSpecial(MakeType(type), ReadSpecialKind(members.Get("kind"), members.At("kind")));
}

Value ReadTuple(Json const& json, JsonPlace const& place) {
  if (!json.is_array()) place.Fail("a list of values is needed, " + DescribeJson(json) + " was given");
  std::vector<Value> values;
  values.reserve(json.size());
  for (std::size_t i = 0; i < json.size(); ++i) values.push_back(ReadValue(json[i], JsonPlace(place, i)));
  return factory::MakeTuple(std::move(values));
}

factory::NamedValues ReadNamedValues(Json const& json, JsonPlace const& place) {
  if (!json.is_object())
    place.Fail("an object of named values is needed, " + DescribeJson(json) + " was given");
  factory::NamedValues values;
  for (auto const& [name, value] : json.items()) {
    values.emplace(OStringCore::fromUtf8(name), ReadValue(value, JsonPlace(place, name)));
  }
  return values;
}

// A payload as a key set holds it: the bits of a slot, or a value.
uint64 ReadSlot(StoreType type, Json const& json, JsonPlace const& place, uint64*) {
  switch (GetStorageClass(type)) {
    case StorageClass::UInt8:
      return ReadPayload<uint8>(type, json, place);
    case StorageClass::UInt32:
      return ReadPayload<uint32>(type, json, place);
    default:
      return ReadPayload<uint64>(type, json, place);
  }
}
Value ReadSlot(StoreType type, Json const& json, JsonPlace const& place, Value*) {
  return IsPrimitiveStoreType(type) ? ReadScalar(type, json, place) : ReadPayload<Value>(type, json, place);
}

// Finds equal keys that are whole values, which a map of pointers takes for different ones.
class ValueKeys {
 public:
  bool Add(Value const& key) {
    auto const [begin, end] = keys_.equal_range(key->GetHash());
    bool const isNew =
        std::none_of(begin, end, [&](auto const& other) { return other.second->Equals(*key); });
    if (isNew) keys_.emplace(key->GetHash(), key);
    return isNew;
  }
  template <class K>
  bool Add(K const&) {
    return true;
  }

 private:
  std::unordered_multimap<std::size_t, Value> keys_;
};

template <class K, class V>
Value ReadEntries(StoreType keyType, StoreType valueType, Members const& members) {
  auto entries = std::make_unique<std::unordered_map<K, V>>();
  auto specials = std::make_unique<std::unordered_map<SpecialKind, V>>();
  JsonPlace const entryPlace = members.At("entries");
  Json const& entryList = members.GetArray("entries");
  ValueKeys valueKeys;
  for (std::size_t i = 0; i < entryList.size(); ++i) {
    JsonPlace const at(entryPlace, i);
    auto const& entry = RequirePair(entryList[i], at, "[key, payload]");
    K key = ReadPayload<K>(keyType, entry[0], JsonPlace(at, std::size_t{0}));
    V payload = ReadSlot(valueType, entry[1], JsonPlace(at, 1), static_cast<V*>(nullptr));
    if (!entries->emplace(key, std::move(payload)).second || !valueKeys.Add(key))
      at.Fail("the key stands twice");
  }
  Json const* const specialList = members.FindArray("specials");
  JsonPlace const specialPlace = members.At("specials");
  for (std::size_t i = 0; specialList != nullptr && i < specialList->size(); ++i) {
    JsonPlace const at(specialPlace, i);
    auto const& entry = RequirePair((*specialList)[i], at, "[kind, payload]");
    SpecialKind const kind = ReadSpecialKind(entry[0], at);
    V payload = ReadSlot(valueType, entry[1], JsonPlace(at, 1), static_cast<V*>(nullptr));
    if (!specials->emplace(kind, std::move(payload)).second) at.Fail("the kind stands twice");
  }
  return factory::MakeKeySet<K, V>(MakeType(keyType), MakeType(valueType), MakeType(valueType),
                                   std::move(entries), std::move(specials));
}

// Payloads of up to 64 bits stand in a slot, all others are values.
bool HasSlotPayload(StoreType type) {
  return GetStorageClass(type) != StorageClass::String && GetStorageClass(type) != StorageClass::Value;
}

Value ReadKeySet(Json const& json, JsonPlace const& place) {
  Members const members(json, place, {"key", "value", "entries", "specials"});
  StoreType const keyType = ReadStoreType(members.Get("key"), members.At("key"));
  StoreType const valueType = ReadStoreType(members.Get("value"), members.At("value"));
  return VisitStorage(GetStorageClass(keyType), [&]<class K>() {
    return HasSlotPayload(valueType) ? ReadEntries<K, uint64>(keyType, valueType, members)
                                     : ReadEntries<K, Value>(keyType, valueType, members);
  });
}

void WriteArray(StoreValue const& value, std::string& out) {
  ColumnView const& column = value.AsColumn();
  StoreType const type = value.GetTypeInfo().GetElementType();
  out += R"({"type":)";
  WriteText(StoreTypeToString(type), out);
  out += R"(,"values":[)";
  auto const specialRows = column.GetSpecialRows();
  VisitStorage(column.GetStorage(), [&]<class T>() {
    auto const values = value.AsTypedArray<T>().GetValues();
    std::size_t special = 0;
    for (std::size_t row = 0; row < values.size(); ++row) {
      if (row > 0) out += ',';
      if (special < specialRows.size() && static_cast<std::size_t>(specialRows[special]) == row) {
        ++special;
        out += "null";
      } else {
        WritePayload(type, values[row], out);
      }
    }
  });
  out += ']';
  if (!specialRows.empty()) {
    out += R"(,"specials":[)";
    for (std::size_t i = 0; i < specialRows.size(); ++i) {
      out += fmt::format("{}[{},{}]", i > 0 ? "," : "", specialRows[i],
                         static_cast<int>(column.GetSpecialKinds()[i]));
    }
    out += ']';
  }
  out += '}';
}

void WriteTuple(IStoreTuple const& tuple, std::string& out) {
  out += '[';
  for (int i = 0; i < tuple.GetCount(); ++i) {
    if (i > 0) out += ',';
    WriteValue(*tuple.GetMember(i), out);
  }
  out += ']';
}

void WriteNamedValues(IStoreNamedValues const& values, std::string& out) {
  out += '{';
  bool isFirst = true;
  for (auto const& name : values.GetNames()) {
    if (!std::exchange(isFirst, false)) out += ',';
    WriteText(name, out);
    out += ':';
    WriteValue(*values.Find(name), out);
  }
  out += '}';
}

void WriteSlot(StoreType type, uint64 slot, std::string& out) {
  switch (GetStorageClass(type)) {
    case StorageClass::UInt8:
      return WritePayload(type, static_cast<uint8>(slot), out);
    case StorageClass::UInt32:
      return WritePayload(type, static_cast<uint32>(slot), out);
    default:
      return WritePayload(type, slot, out);
  }
}
void WriteSlot(StoreType, Value const& slot, std::string& out) {
  if (IsPrimitiveStoreType(slot->GetStoreType()) && !slot->IsSpecial()) return WriteScalarPayload(*slot, out);
  WriteValue(*slot, out);
}

template <class Entries, class WriteKey>
void WriteEntries(Entries const& entries, StoreType valueType, WriteKey const& writeKey, std::string& out) {
  out += '[';
  bool isFirst = true;
  for (auto const& [key, payload] : entries) {
    if (!std::exchange(isFirst, false)) out += ',';
    out += '[';
    writeKey(key);
    out += ',';
    WriteSlot(valueType, payload, out);
    out += ']';
  }
  out += ']';
}

template <class K, class V>
void WriteDictionary(KeySetTypes const& types, IStoreDictionary<K, V> const& dictionary, std::string& out) {
  StoreType const valueType = types.valueType;
  out += R"(,"entries":)";
  WriteEntries(
      dictionary.GetEntries(), valueType, [&](K const& key) { WritePayload(types.keyType, key, out); }, out);
  if (dictionary.GetSpecialEntries().empty()) return;
  out += R"(,"specials":)";
  WriteEntries(
      dictionary.GetSpecialEntries(), valueType,
      [&](SpecialKind kind) { out += std::to_string(static_cast<int>(kind)); }, out);
}

void WriteKeySet(StoreValue const& value, std::string& out) {
  KeySetTypes const& types = value.GetKeySetTypes();
  out += R"({"key":)";
  WriteText(StoreTypeToString(types.keyType), out);
  out += R"(,"value":)";
  WriteText(StoreTypeToString(types.valueType), out);
  VisitStorage(GetStorageClass(types.keyType), [&]<class K>() {
    if (HasSlotPayload(types.valueType)) {
      WriteDictionary(types, value.AsDictionary<K, uint64>(), out);
    } else {
      WriteDictionary(types, value.AsDictionary<K, Value>(), out);
    }
  });
  out += '}';
}

void WriteSpecial(StoreValue const& value, std::string& out) {
  out += R"({"type":)";
  WriteText(StoreTypeToString(value.GetStoreType()), out);
  out += fmt::format(R"(,"kind":{}}})", static_cast<int>(value.GetSpecialKind()));
}

void WriteContent(StoreValue const& value, std::string& out) {
  switch (value.GetStoreType()) {
    case StoreType::Array:
      return WriteArray(value, out);
    case StoreType::Tuple:
      return WriteTuple(value.AsTuple(), out);
    case StoreType::Table:
    case StoreType::KeyMap:
      return WriteNamedValues(value.AsNamedValues(), out);
    case StoreType::KeySet:
      return WriteKeySet(value, out);
    default:
      return WriteScalarPayload(value, out);
  }
}

}  // namespace

Value ReadValue(Json const& json, JsonPlace const& place) {
  if (!json.is_object() || json.size() != 1) {
    place.Fail("a value is an object with one key like {\"Real64\": 1.5}, " +
               (json.is_object() ? fmt::format("one with {} keys", json.size()) : DescribeJson(json)) +
               " was given");
  }
  std::string const& form = json.begin().key();
  Json const& content = json.begin().value();
  JsonPlace const at(place, form);
  if (form == "Special") return ReadSpecial(content, at);
  switch (StoreType const type = ReadStoreType(Json(form), at)) {
    case StoreType::Array:
      return ReadArray(content, at);
    case StoreType::Tuple:
      return ReadTuple(content, at);
    case StoreType::Table:
      return factory::MakeTable(ReadNamedValues(content, at));
    case StoreType::KeyMap:
      return factory::MakeKeyMap(ReadNamedValues(content, at));
    case StoreType::KeySet:
      return ReadKeySet(content, at);
    default:
      return ReadScalar(type, content, at);
  }
}

void WriteValue(StoreValue const& value, std::string& out) {
  out += '{';
  if (value.IsSpecial()) {
    out += R"("Special":)";
    WriteSpecial(value, out);
  } else {
    WriteText(StoreTypeToString(value.GetStoreType()), out);
    out += ':';
    WriteContent(value, out);
  }
  out += '}';
}

}  // namespace ostrel::program
