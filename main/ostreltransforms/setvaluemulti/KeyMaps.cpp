#include "ostreltransforms/setvaluemulti/KeyMaps.h"

#include <stdexcept>

#include "ostrelrtcore/Factory.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

void AddPair(Value const& pair, factory::NamedValues& members) {
  constexpr int kName = 0, kValue = 1, kCount = 2;
  IStoreTuple const& tuple = pair->AsTuple();
  if (tuple.GetCount() != kCount) {
    throw OrtRuntimeException(OrtError_WrongValueKind,
                              OStringCore(L"a pair of a name and a value is needed"));
  }
  members.insert_or_assign(FetchStoreValue<OStringCore>(tuple.GetMember(kName)), tuple.GetMember(kValue));
}

void AddColumn(StoreValue const& column, factory::NamedValues& members) {
  auto const& pairs = column.AsTypedArray<Value>();
  for (int row = 0; row < pairs.GetCount(); ++row) {
    if (!pairs.IsSpecial(row)) AddPair(pairs.GetElement(row), members);
  }
}

void AddTuple(StoreValue const& value, factory::NamedValues& members) {
  IStoreTuple const& pairs = value.AsTuple();
  for (int position = 0; position < pairs.GetCount(); ++position) AddPair(pairs.GetMember(position), members);
}

void AddNamedValues(StoreValue const& value, factory::NamedValues& members) {
  IStoreNamedValues const& named = value.AsNamedValues();
  for (OStringCore const& name : named.GetNames()) members.emplace(name, named.Get(name));
}

}  // namespace

Value ToKeyMap(std::vector<Value> const& inputs) {
  if (inputs.empty()) throw std::out_of_range("invalid vector<T> subscript");
  detail::RequireValue(inputs[0]);
  StoreValue const& input = *inputs[0];
  factory::NamedValues members;
  switch (input.GetStoreType()) {
    case StoreType::Array:
      AddColumn(input, members);
      break;
    case StoreType::Tuple:
      AddTuple(input, members);
      break;
    default:
      AddNamedValues(input, members);
  }
  return factory::MakeKeyMap(std::move(members));
}

}  // namespace OstrelTransforms
