#include "ostrelrtcore/values/ValueBase.h"

namespace ort::core {

void ThrowWrongKind(StoreTypeInfo const& type, wchar_t const* wanted) {
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            StoreTypeToString(type) + OStringCore(L" read as ") + OStringCore(wanted));
}

std::shared_ptr<StoreValue> ValueBase::ConvertTo(StoreType type) const {
  if (type == GetStoreType()) return Clone();
  throw OrtRuntimeException(OrtError_UnsupportedType, StoreTypeToString(GetStoreType()) +
                                                          OStringCore(L" to ") + StoreTypeToString(type));
}

bool ValueBase::IsLessThan(StoreValue const& other) const {
  throw OrtRuntimeException(OrtError_TypesDiffer, StoreTypeToString(GetStoreType()) +
                                                      OStringCore(L" ordered against ") +
                                                      StoreTypeToString(other.GetStoreType()));
}

}  // namespace ort::core
