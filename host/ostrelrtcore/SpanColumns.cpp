#include "ostrelrtcore/SpanColumns.h"

#include <limits>

#include "ostrelrtcore/values/ColumnValue.h"

namespace ort::core::factory::detail {

Value MakeSpanColumn(StoreTypeInfo const& elementType, StorageClass storage, void const* elements,
                     std::size_t count, std::shared_ptr<void const> owner) {
  if (GetStorageClass(elementType) != storage) {
    throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(elementType));
  }
  if (count > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"a column of too many rows"));
  }
  return std::make_shared<ColumnValue>(
      elementType,
      ColumnView::Content{
          storage, static_cast<int>(count), false, SpecialKind::None, elements, std::move(owner), {}, {}});
}

}  // namespace ort::core::factory::detail
