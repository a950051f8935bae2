#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Compares rows of one column by value: reals with NaN equal to NaN and both zeros equal, whole values by
// their own equality, special rows by kind. Refers to the column.
class CellComparison {
 public:
  // Throws 55 for anything but a column.
  explicit CellComparison(ort::core::StoreValue const& column);

  int GetCount() const { return view_->GetCount(); }
  bool AreEqual(int a, int b) const {
    using ort::core::SpecialKind;
    if (view_->IsConstant()) return true;
    if (!view_->HasSpecials()) return equalSlots_(elements_, a, b);
    SpecialKind const kind = view_->GetSpecialKind(a);
    if (kind != view_->GetSpecialKind(b)) return false;
    return kind != SpecialKind::None || equalSlots_(elements_, a, b);
  }

 private:
  using EqualSlots = bool (*)(void const* elements, int a, int b);
  static EqualSlots ChooseEqualSlots(ort::core::StoreType elementType, ort::core::StorageClass storage);

  ort::core::ColumnView const* view_;
  EqualSlots equalSlots_;
  void const* elements_;
};

}  // namespace OstrelTransforms
