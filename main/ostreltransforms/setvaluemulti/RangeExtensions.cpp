#include "ostreltransforms/setvaluemulti/RangeExtensions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "ostrelrtcore/Factory.h"
#include "ostrelsys/OMath.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/setvaluemulti/ScaleRange.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr double kLatitudeLimit = 90;
constexpr double kLongitudeLimit = 180;
constexpr double kFullTurn = 360;
// Where a Mercator map ends.
constexpr double kMercatorLimit = 85.05112878;

void TakeIn(ScaleRange& range, double value) {
  if (std::isnan(value)) return;
  if (!range.fixesMinimum && !(range.minimum <= value)) range.minimum = value;
  if (!range.fixesMaximum && !(range.maximum >= value)) range.maximum = value;
}

// A range with one end is a point.
void Complete(ScaleRange& range) {
  if (std::isnan(range.minimum)) range.minimum = range.maximum;
  if (std::isnan(range.maximum)) range.maximum = range.minimum;
}

void AddShares(ScaleRange& range, double shareBelow, double shareAbove, bool stopsAtZero) {
  double const extent = range.GetExtent();
  double minimum = range.minimum - shareBelow * extent;
  double maximum = range.maximum + shareAbove * extent;
  if (stopsAtZero && !range.isLog) {
    if (range.minimum >= 0) minimum = std::max(minimum, 0.0);
    if (range.maximum <= 0) maximum = std::min(maximum, 0.0);
  }
  if (!range.fixesMinimum && std::isfinite(minimum)) range.minimum = minimum;
  if (!range.fixesMaximum && std::isfinite(maximum)) range.maximum = maximum;
}

// An end that lies beyond a limit stays where it is.
void AddDegrees(ScaleRange& range, double degrees, double limit) {
  if (!range.fixesMinimum) range.minimum = std::min(range.minimum, std::max(range.minimum - degrees, -limit));
  if (!range.fixesMaximum) range.maximum = std::max(range.maximum, std::min(range.maximum + degrees, limit));
}

double GetLengthFactor(ScaleRange const& latitudes) {
  if (!latitudes.IsComplete() || latitudes.isLog) return 1.0;
  double const middle = latitudes.minimum * 0.5 + latitudes.maximum * 0.5;
  return 1.0 / std::cos(std::clamp(middle, -kMercatorLimit, kMercatorLimit) * OMath::PI / 180.0);
}

// As the ends stand in the tuple, for a range across the 180th meridian.
bool IsInverted(Value const& range) {
  RangeUtilities::Ends const ends = RangeUtilities::GetEnds(range->AsTuple());
  return StoreValueOperators::ConvertToDouble(*ends.maximum) <
         StoreValueOperators::ConvertToDouble(*ends.minimum);
}

Value MakeLongitudes(ScaleRange range, Value const& source, double degrees, bool wraps) {
  if (!range.IsComplete() || range.isLog) return source;
  if (!wraps) {
    AddDegrees(range, degrees, kLongitudeLimit);
    return MakeRange(range, source);
  }
  if (IsInverted(source)) {
    std::swap(range.minimum, range.maximum);
    std::swap(range.fixesMinimum, range.fixesMaximum);
    range.maximum += kFullTurn;
  }
  double const most = std::max(range.GetExtent(), kFullTurn);
  AddDegrees(range, degrees, std::numeric_limits<double>::infinity());
  if (range.GetExtent() > most) {
    double const middle = range.minimum * 0.5 + range.maximum * 0.5;
    if (range.fixesMaximum) range.minimum = range.maximum - most;
    if (!range.fixesMinimum && !range.fixesMaximum) range.minimum = middle - most * 0.5;
    range.maximum = range.minimum + most;
  }
  return MakeRange(range, source);
}

}  // namespace

Value ExtendRangeColumn(Value const& ranges, Value const& least, Value const& greatest, double shareBelow,
                        double shareAbove, bool stopsAtZero, bool keepsLogarithms) {
  RequireNotNegative(shareBelow, L"shareBelow");
  RequireNotNegative(shareAbove, L"shareAbove");
  RangeColumn const column(ranges);
  NumberColumn const low(least), high(greatest);
  RequireCount(low.GetCount(), column.GetCount(), L"least");
  RequireCount(high.GetCount(), column.GetCount(), L"greatest");
  std::vector<ScaleRange> extended = column.GetRanges();
  for (std::size_t row = 0; row < extended.size(); ++row) {
    ScaleRange& range = extended[row];
    Complete(range);
    TakeIn(range, range.ToScale(low[row]));
    TakeIn(range, range.ToScale(high[row]));
    range.OpenPoint();
    if (range.IsComplete()) AddShares(range, shareBelow, shareAbove, stopsAtZero);
  }
  return column.Make(extended, keepsLogarithms);
}

Value ExtendXRangesByDegree(Value const& ranges, double degrees, Value const& latitudes, bool wraps) {
  RequireNotNegative(degrees, L"degrees");
  RangeColumn const column(ranges), north(latitudes);
  if (north.GetCount() != 0) RequireCount(north.GetCount(), column.GetCount(), L"latitudes");
  return column.MakeEach([&](std::size_t row, ScaleRange const& range, Value const& source) {
    double const factor = north.GetCount() == 0 ? 1.0 : GetLengthFactor(north.GetRanges()[row]);
    return MakeLongitudes(range, source, degrees * factor, wraps);
  });
}

Value ExtendYRangesByDegree(Value const& ranges, double degrees) {
  RequireNotNegative(degrees, L"degrees");
  RangeColumn const column(ranges);
  return column.MakeEach([&](std::size_t, ScaleRange range, Value const& source) {
    if (range.IsComplete() && !range.isLog) AddDegrees(range, degrees, kLatitudeLimit);
    return MakeRange(range, source);
  });
}

}  // namespace OstrelTransforms
