#include "ostrelrtcore/engine/Operand.h"

#include <algorithm>

#include "ostrelrtcore/OrtFunctor.h"

namespace ort::core::engine {

Operand::Operand(Value const& value)
    : elementType_(GetRowType(*value)),
      storage_(GetStorageClass(elementType_)),
      isBroadcast_(true),
      uniformKind_(value->GetSpecialKind()),
      slot_(storage_) {
  if (!IsColumn(*value)) {
    slot_ = ElementSlot(value);
    return;
  }
  column_ = &value->AsColumn();
  storage_ = column_->GetStorage();
  elements_ = column_->GetFirstElement();
  uniformKind_ = column_->GetUniformSpecialKind();
  if (uniformKind_ == SpecialKind::None && column_->HasSpecials()) {
    specialRows_ = column_->GetSpecialRows();
    specialKinds_ = column_->GetSpecialKinds();
  }
  isBroadcast_ = column_->IsConstant() && specialRows_.empty();
  if (!isBroadcast_) elements_ = column_->GetRawValues();
}

SpecialKind Operand::GetKind(int row) const {
  auto const found = std::lower_bound(specialRows_.begin(), specialRows_.end(), row);
  if (found == specialRows_.end() || *found != row) return uniformKind_;
  return specialKinds_[static_cast<std::size_t>(found - specialRows_.begin())];
}

int GetCommonCount(std::initializer_list<Operand const*> operands) {
  int count = -1;
  for (Operand const* operand : operands) {
    if (operand->IsScalar()) continue;
    if (count >= 0 && operand->GetCount() != count) ort::core::detail::ThrowLengthMismatch();
    count = operand->GetCount();
  }
  return count;
}

}  // namespace ort::core::engine
