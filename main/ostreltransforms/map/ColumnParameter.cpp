#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms::detail {

using namespace ort::core;

void RequireColumnOf(StoreType elementType, Value const& column) {
  RequireValue(column);
  column->AsColumn();
  StoreType const given = column->GetTypeInfo().GetElementType();
  if (!IsPrimitiveStoreType(given) || given == elementType) return;
  OStringCore message(L"a column of ");
  message += StoreTypeToString(elementType);
  message += OStringCore(L" is needed, one of ");
  message += StoreTypeToString(given);
  message += OStringCore(L" was given");
  throw OrtRuntimeException(OrtError_WrongValueKind, message);
}

}  // namespace OstrelTransforms::detail
