#include "ostreltransforms/setvaluemulti/HiddenMarks.h"

#include <algorithm>
#include <array>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// The rows of the columns that have rows.
int CountMarks(std::span<Value const> columns) {
  int count = 0;
  for (Value const& column : columns) {
    int const rows = column->AsColumn().GetCount();
    if (rows == 0) continue;
    if (count != 0 && rows != count) throw OrtRuntimeException(OrtError_LengthsDiffer);
    count = rows;
  }
  return count;
}

// Which entries of a legend show; behind them stands what rows get that name none.
std::vector<uint8> ListShown(ColumnParameter<bool> const& hidden, bool keepsUnlisted) {
  std::vector<uint8> shown;
  shown.reserve(hidden.GetCount() + 1);
  for (std::size_t i = 0; i < hidden.GetCount(); ++i) shown.push_back(hidden.GetData()[i] ? 0 : 1);
  shown.push_back(keepsUnlisted ? 1 : 0);
  return shown;
}

void HideEntries(Value const& marks, Value const& hiddenEntries, bool keepsUnlisted, std::span<uint8> stays) {
  ColumnParameter<int> const entries(marks);
  std::vector<uint8> const shown = ListShown(ColumnParameter<bool>(hiddenEntries), keepsUnlisted);
  std::size_t const unlisted = shown.size() - 1;
  int const* const entry = entries.GetData();
  auto const hideIn = [&](std::size_t row, std::size_t end) {
    // A negative entry becomes one past the end.
    for (; row < end; ++row) stays[row] &= shown[std::min(static_cast<std::size_t>(entry[row]), unlisted)];
  };
  std::size_t begin = 0;
  if (marks->AsColumn().HasSpecials()) {
    for (int const special : marks->AsColumn().GetSpecialRows()) {
      auto const row = static_cast<std::size_t>(special);
      hideIn(begin, row);
      stays[row] &= shown[unlisted];
      begin = row + 1;
    }
  }
  hideIn(begin, entries.GetCount());
}

}  // namespace

Value ExcludeHiddenMarks(Value const& colors, Value const& hiddenColors, Value const& shapes,
                         Value const& hiddenShapes, Value const& sizes, Value const& hiddenSizes,
                         Value const& hiddenMarks, bool keepsUnlisted) {
  std::array const columns = {colors, shapes, sizes, hiddenMarks};
  auto column = factory::MakeColumnBuilder<uint8>(StoreTypeInfo::Bool, CountMarks(columns));
  std::span<uint8> const stays = column.GetValues();
  std::ranges::fill(stays, uint8{1});
  HideEntries(colors, hiddenColors, keepsUnlisted, stays);
  HideEntries(shapes, hiddenShapes, keepsUnlisted, stays);
  HideEntries(sizes, hiddenSizes, keepsUnlisted, stays);
  ColumnParameter<bool> const hidden(hiddenMarks);
  for (std::size_t row = 0; row < hidden.GetCount(); ++row) stays[row] &= hidden.GetData()[row] ? 0 : 1;
  return column.Finish();
}

}  // namespace OstrelTransforms
