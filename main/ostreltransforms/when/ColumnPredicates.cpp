#include "ostreltransforms/when/ColumnPredicates.h"

#include <algorithm>

#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/when/CellComparison.h"

namespace OstrelTransforms {

using namespace ort::core;

bool ArrayContains(Value const& column, int value) {
  detail::RequireColumnOf(StoreType::Int32, column);
  ColumnView const& view = column->AsColumn();
  if (view.GetUniformSpecialKind() != SpecialKind::None || view.GetCount() == 0) return false;
  auto const* const first = static_cast<int const*>(view.GetFirstElement());
  auto const* const end = first + (view.IsConstant() ? 1 : view.GetCount());
  auto const* found = std::find(first, end, value);
  // The slot of a special row is no number.
  while (found != end && view.IsSpecial(static_cast<int>(found - first))) {
    found = std::find(found + 1, end, value);
  }
  return found != end;
}

bool ShouldAdjustFontSize(double widthFactor, double heightFactor, Value const& sizes) {
  if (widthFactor != 1.0 || heightFactor != 1.0) return true;
  detail::RequireColumnOf(StoreType::Real64, sizes);
  CellComparison const cells(*sizes);
  for (int row = 1; row < cells.GetCount(); ++row) {
    if (!cells.AreEqual(row, 0)) return true;
  }
  return false;
}

bool AreRowsDistinct(Value const& table) {
  IStoreNamedValues const& columns = table->AsNamedValues();
  std::vector<CellComparison> cells;
  for (OStringCore const& name : columns.GetNames()) {
    cells.emplace_back(*columns.Get(name));
    if (cells.back().GetCount() != cells.front().GetCount())
      throw OrtRuntimeException(OrtError_LengthsDiffer, name);
  }
  int const count = cells.empty() ? 0 : cells.front().GetCount();
  for (int row = 1; row < count; ++row) {
    if (std::all_of(cells.begin(), cells.end(),
                    [row](CellComparison const& column) { return column.AreEqual(row, row - 1); })) {
      return false;
    }
  }
  return true;
}

}  // namespace OstrelTransforms
