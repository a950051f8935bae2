#include "ostreltransforms/composer/RunLists.h"

#include <cmath>
#include <limits>

#include "ostrelrtcore/RFormatString.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {

using namespace ort::core;

std::vector<RunList> ReadRunLists(Value const& firstRuns, Value const& runCounts, int runCount) {
  detail::RequireColumnOf(StoreType::Int32, firstRuns);
  auto const& firsts = firstRuns->AsTypedArray<int>();
  RequireRows(runCounts, StoreType::Int32, firsts.GetCount(), L"the numbers of runs");
  auto const& counts = runCounts->AsTypedArray<int>();

  std::vector<RunList> lists(static_cast<std::size_t>(firsts.GetCount()));
  int64 total = 0;
  for (int row = 0; row < firsts.GetCount(); ++row) {
    if (firsts.IsSpecial(row) || counts.IsSpecial(row)) continue;
    RunList const list{firsts.GetElement(row), counts.GetElement(row)};
    if (list.first < 0 || list.count < 0 || int64{list.first} + list.count > runCount) {
      throw OrtRuntimeException(OrtError_WrongValueKind,
                                RFormatString(L"row %1 names runs outside of the %2 that there are")
                                    .arg(row, 0, 10, L' ')
                                    .arg(runCount, 0, 10, L' '));
    }
    total += list.count;
    lists[static_cast<std::size_t>(row)] = list;
  }
  if (total > std::numeric_limits<int>::max()) {
    throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(L"more runs than a column has rows"));
  }
  return lists;
}

void RequireRows(Value const& column, StoreType elementType, int count, wchar_t const* name) {
  detail::RequireColumnOf(elementType, column);
  if (column->AsColumn().GetCount() != count) {
    throw OrtRuntimeException(OrtError_LengthsDiffer, OStringCore(name));
  }
}

float ReadLength(double length, wchar_t const* name) {
  auto const pixels = static_cast<float>(length);
  if (!std::isfinite(pixels) || pixels < 0) {
    throw OrtRuntimeException(OrtError_InputKindNotAccepted, OStringCore(name));
  }
  return pixels;
}

void RequireWithin(int number, int least, int most, wchar_t const* name) {
  if (number < least || number > most) {
    throw OrtRuntimeException(OrtError_InputKindNotAccepted, OStringCore(name));
  }
}

}  // namespace OstrelTransforms
