#include "ostrelrtcore/KeySegmentType.h"

#include "ostrelrtcore/FunctionKey.h"

namespace ort::core {
namespace {

bool MatchesComponent(StoreTypeInfo const& registered, StoreTypeInfo const& call) {
  StoreType const a = registered.GetStoreType();
  StoreType const b = call.GetStoreType();
  return a == b || a == StoreType::Empty || b == StoreType::Empty;
}

}  // namespace

OStringCore KeySegmentType::ToString() const {
  OStringCore text = StoreTypeToString(GetMainType());
  bool const hasElement = GetElementType().GetStoreType() != StoreType::Empty;
  if (GetKeyType().GetStoreType() != StoreType::Empty) {
    text += OStringCore(L" of ") + StoreTypeToString(GetKeyType());
    if (hasElement) text += OStringCore(L" to ") + StoreTypeToString(GetElementType());
  } else if (hasElement) {
    text += OStringCore(L" of ") + StoreTypeToString(GetElementType());
  }
  return text;
}

bool Matches(KeySegmentType const& registered, KeySegmentType const& call) {
  StoreType const main = registered.GetMainType().GetStoreType();
  if (main == StoreType::Empty) return true;
  return main == call.GetMainType().GetStoreType() &&
         MatchesComponent(registered.GetKeyType(), call.GetKeyType()) &&
         MatchesComponent(registered.GetElementType(), call.GetElementType()) &&
         MatchesComponent(registered.GetIndexType(), call.GetIndexType());
}

bool Matches(FunctionKey const& registered, FunctionKey const& call) {
  auto const& a = registered.GetInputTypes();
  auto const& b = call.GetInputTypes();
  if (a.size() != b.size() || registered.GetName() != call.GetName()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!Matches(a[i], b[i])) return false;
  }
  return true;
}

}  // namespace ort::core
