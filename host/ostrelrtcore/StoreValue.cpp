#include "ostrelrtcore/StoreValue.h"

#include "ostrelrtcore/values/ValueBase.h"

namespace ort::core {
namespace {

StoreValue const& Require(std::shared_ptr<StoreValue> const& value) {
  if (value == nullptr) throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"no value"));
  return *value;
}

[[noreturn]] void ThrowWrongKind(StoreValue const& value, wchar_t const* wanted) {
  OStringCore const special(value.IsSpecial() ? L"special " : L"");
  throw OrtRuntimeException(OrtError_WrongValueKind, special + StoreTypeToString(value.GetStoreType()) +
                                                         OStringCore(L" read as ") + OStringCore(wanted));
}

}  // namespace

IStoreTuple::~IStoreTuple() = default;
IStoreNamedValues::~IStoreNamedValues() = default;
StoreValue::~StoreValue() = default;

IStoreTuple const& StoreValue::AsTuple() const {
  if (auto const* tuple = FindTuple()) return *tuple;
  ThrowWrongKind(*this, L"Tuple");
}

IStoreNamedValues const& StoreValue::AsNamedValues() const {
  if (auto const* named = FindNamedValues()) return *named;
  ThrowWrongKind(*this, L"Table or KeyMap");
}

ColumnView const& StoreValue::AsColumn() const {
  if (auto const* column = FindColumn()) return *column;
  ThrowWrongKind(*this, L"Array");
}

KeySetTypes const& StoreValue::GetKeySetTypes() const {
  if (auto const* types = FindKeySetTypes()) return *types;
  ThrowWrongKind(*this, L"KeySet");
}

ColumnView const& StoreValue::GetColumn(StorageClass storage) const {
  auto const& column = AsColumn();
  if (column.GetStorage() == storage) return column;
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            OStringCore(L"Array of ") +
                                StoreTypeToString(GetTypeInfo().GetElementType().GetStoreType()) +
                                OStringCore(L" read as elements of another width"));
}

void const* StoreValue::GetDictionary(StorageClass key, StorageClass payload) const {
  if (auto const* dictionary = FindDictionary(key, payload)) return dictionary;
  ThrowWrongKind(*this, L"a dictionary of other keys or payloads");
}

// clang-format off
template <> bool FetchStoreValue<bool>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetBool(); }
template <> int FetchStoreValue<int>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetInt32(); }
template <> int64 FetchStoreValue<int64>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetInt64(); }
template <> float FetchStoreValue<float>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetReal32(); }
template <> double FetchStoreValue<double>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetReal64(); }
template <> OrtDateTime FetchStoreValue<OrtDateTime>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetDateTime(); }
template <> OrtColor FetchStoreValue<OrtColor>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetColor(); }
template <> OStringCore FetchStoreValue<OStringCore>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetString().Get(); }
template <> RIndirectString FetchStoreValue<RIndirectString>(std::shared_ptr<StoreValue> const& value) { return Require(value).GetString(); }
// clang-format on

}  // namespace ort::core
