#include "ostreltransforms/map/LookupMaps.h"

namespace OstrelTransforms::detail {

using namespace ort::core;

namespace {

OStringCore DescribeTypes(StoreType keyType, StoreType payloadType) {
  OStringCore text = StoreTypeToString(keyType);
  text += OStringCore(L" to ");
  text += StoreTypeToString(payloadType);
  return text;
}

}  // namespace

void RequireKeySetOf(StoreType keyType, StoreType payloadType, Value const& keySet) {
  RequireValue(keySet);
  KeySetTypes const& types = keySet->GetKeySetTypes();
  if (types.keyType == keyType && types.valueType == payloadType) return;
  OStringCore message(L"a key set from ");
  message += DescribeTypes(keyType, payloadType);
  message += OStringCore(L" is needed, one from ");
  message += DescribeTypes(types.keyType, types.valueType);
  message += OStringCore(L" was given");
  throw OrtRuntimeException(OrtError_UnsuitableLookupTable, message);
}

}  // namespace OstrelTransforms::detail
