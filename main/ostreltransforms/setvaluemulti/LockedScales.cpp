#include "ostreltransforms/setvaluemulti/LockedScales.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/map/NiceNumbers.h"
#include "ostreltransforms/setvaluemulti/OverflowFunctions.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using PixelRoom::Room;

constexpr std::size_t kInputCount = 15;
constexpr double kMiddle = 0.5;
// As a share of a range's extent: what rounding may add to the axis that gives its units to the others.
constexpr double kSlack = 1e-12;

struct Axis {
  ScaleRange range;
  double length;
  double weight;  // units of this axis for one of the group
  double anchor;  // the part of what is added that goes below the minimum
  Room room;
  ScaleRange limits;

  bool IsFixed() const { return range.fixesMinimum && range.fixesMaximum; }
  double GetNeed() const {
    double const rest = IsFixed() ? length : length - room.lower - room.upper;
    return range.GetExtent() / rest / weight;
  }
};

// How far a widened range may slide upwards (or, below 0, downwards) without losing what it must hold.
struct Slide {
  double down;
  double up;
  double Limit(double shift) const { return std::clamp(shift, -down, up); }
};

void Move(ScaleRange& range, double shift) {
  range.minimum += shift;
  range.maximum += shift;
}

double GetShiftToZero(ScaleRange const& before, ScaleRange const& after) {
  if (before.minimum >= 0 && after.minimum < 0) return -after.minimum;
  if (before.maximum <= 0 && after.maximum > 0) return -after.maximum;
  return 0;
}

double GetShiftToLimits(ScaleRange const& range, ScaleRange const& limits) {
  if (!limits.IsComplete() || !(range.GetExtent() <= limits.GetExtent())) return 0;
  if (range.minimum < limits.minimum) return limits.minimum - range.minimum;
  return std::min(limits.maximum - range.maximum, 0.0);
}

ScaleRange Widen(Axis const& axis, double units, bool stopsAtZero) {
  ScaleRange const& before = axis.range;
  double const unitsPerPixel = units * axis.weight;
  double const added = unitsPerPixel * axis.length - before.GetExtent();
  ScaleRange after = before;
  if (axis.IsFixed() || !(added > before.GetExtent() * kSlack)) return after;
  double const lower = axis.room.lower * unitsPerPixel;
  double const upper = axis.room.upper * unitsPerPixel;
  double const below = lower + std::max(added - lower - upper, 0.0) * axis.anchor;
  after.minimum -= before.fixesMinimum ? 0.0 : before.fixesMaximum ? added : below;
  after.maximum = before.fixesMaximum ? before.maximum : after.minimum + before.GetExtent() + added;
  if (before.fixesMinimum || before.fixesMaximum) return after;

  auto const slide = [&](double shift) {
    Slide const room = {std::max(after.maximum - before.maximum - upper, 0.0),
                        std::max(before.minimum - after.minimum - lower, 0.0)};
    Move(after, room.Limit(shift));
  };
  if (stopsAtZero && !before.isLog) slide(GetShiftToZero(before, after));
  slide(GetShiftToLimits(after, axis.limits));
  return after;
}

// The columns of the call; those that may be empty hold nothing for any row then.
class Inputs {
 public:
  explicit Inputs(std::vector<Value> const& inputs)
      : ranges(inputs[0]),
        isLocked(ReadFlags(inputs[2])),
        groups(ReadIntegers(inputs[3])),
        roundsUp(FetchStoreValue<bool>(inputs[9])),
        stopsAtZero(FetchStoreValue<bool>(inputs[11])),
        lengths_(inputs[1]),
        isHorizontal_(ReadFlags(inputs[4])),
        reversed_(ReadFlags(inputs[5])),
        anchors_(inputs[6]),
        ratio_(FetchStoreValue<double>(inputs[7])),
        limits_(inputs[10]),
        lower_(inputs[12]),
        upper_(inputs[13]),
        largestShare_(ReadLargestShare(inputs[14])) {
    if (!(ratio_ > 0 && std::isfinite(ratio_))) Refuse(L"ratio", L"finite and above 0");
    if (!inputs[8]->IsSpecial()) leastUnits = FetchStoreValue<double>(inputs[8]);
    RequireNotNegative(leastUnits, L"leastUnits");
    std::size_t const count = ranges.GetCount();
    RequireCount(lengths_.GetCount(), count, L"lengths");
    RequireCount(isLocked.size(), count, L"isLocked");
    RequireCount(groups.size(), count, L"groups");
    RequireCount(isHorizontal_.size(), count, L"isHorizontal");
    RequireCount(reversed_.size(), count, L"reversed");
    RequireCount(anchors_.GetCount(), count, L"anchors");
    if (limits_.GetCount() != 0) RequireCount(limits_.GetCount(), count, L"limits");
    if (lower_.GetCount() != 0) RequireCount(lower_.GetCount(), count, L"lower");
    if (upper_.GetCount() != 0) RequireCount(upper_.GetCount(), count, L"upper");
  }

  Axis MakeAxis(std::size_t row) const {
    Axis axis = {ranges.GetRanges()[row],
                 lengths_[row],
                 isHorizontal_[row] ? 1.0 : ratio_,
                 GetAnchor(row),
                 {},
                 axis.range};
    axis.range.OpenPoint();
    axis.limits.minimum = axis.limits.maximum = std::nan("");
    if (limits_.GetCount() != 0) axis.limits = limits_.GetRanges()[row];
    axis.room = {axis.range.fixesMinimum || lower_.GetCount() == 0 ? 0.0 : lower_[row],
                 axis.range.fixesMaximum || upper_.GetCount() == 0 ? 0.0 : upper_[row]};
    axis.room = PixelRoom::Limit(axis.room, axis.length, largestShare_);
    return axis;
  }

  RangeColumn const ranges;
  std::vector<bool> const isLocked;
  std::vector<int64> const groups;
  double leastUnits = 0;
  bool const roundsUp;
  bool const stopsAtZero;

 private:
  double GetAnchor(std::size_t row) const {
    double const anchor = std::isnan(anchors_[row]) ? kMiddle : anchors_[row];
    if (!(anchor >= 0 && anchor <= 1)) Refuse(L"anchors", L"from 0 to 1");
    return reversed_[row] ? 1 - anchor : anchor;
  }

  NumberColumn lengths_;
  std::vector<bool> isHorizontal_;
  std::vector<bool> reversed_;
  NumberColumn anchors_;
  double ratio_;
  RangeColumn limits_;
  NumberColumn lower_;
  NumberColumn upper_;
  double largestShare_;
};

bool HasUnits(Axis const& axis) {
  return axis.range.HasExtent() && axis.length > 0 && std::isfinite(axis.length);
}

}  // namespace

Value AdjustAxesForLockedScales(std::vector<Value> const& inputs) {
  detail::RequireInputCount(inputs.size(), kInputCount);
  for (Value const& input : inputs) detail::RequireValue(input);
  Inputs const read(inputs);

  struct Member {
    std::size_t row;
    Axis axis;
  };
  std::map<int64, std::vector<Member>> members;
  std::vector<ScaleRange> ranges = read.ranges.GetRanges();
  for (std::size_t row = 0; row < ranges.size(); ++row) {
    if (!read.isLocked[row]) continue;
    Axis const axis = read.MakeAxis(row);
    if (HasUnits(axis)) members[read.groups[row]].push_back({row, axis});
  }
  for (auto const& [group, axes] : members) {
    double units = read.leastUnits;
    for (Member const& member : axes) units = std::max(units, member.axis.GetNeed());
    if (read.roundsUp) units = RoundingUpNiceNum(units);
    if (!std::isfinite(units)) continue;
    for (Member const& member : axes) ranges[member.row] = Widen(member.axis, units, read.stopsAtZero);
  }
  return read.ranges.Make(ranges);
}

Value RangeUnitsPerPixel(Value const& ranges, Value const& isHorizontal, Value const& widths,
                         Value const& heights, double scale) {
  if (!(scale > 0 && std::isfinite(scale))) Refuse(L"scale", L"finite and above 0");
  RangeColumn const column(ranges);
  std::vector<bool> const horizontal = ReadFlags(isHorizontal);
  NumberColumn const width(widths), height(heights);
  RequireCount(horizontal.size(), column.GetCount(), L"isHorizontal");
  RequireCount(width.GetCount(), column.GetCount(), L"widths");
  RequireCount(height.GetCount(), column.GetCount(), L"heights");

  auto units = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, static_cast<int>(column.GetCount()));
  for (std::size_t row = 0; row < column.GetCount(); ++row) {
    ScaleRange const& range = column.GetRanges()[row];
    double const pixels = (horizontal[row] ? width[row] : height[row]) * scale;
    bool const hasUnits = range.IsComplete() && pixels > 0 && std::isfinite(pixels);
    units.GetValues()[row] = hasUnits ? range.GetExtent() / pixels : 0.0;
    if (!hasUnits) units.SetSpecial(static_cast<int>(row), SpecialKind::Missing);
  }
  return units.Finish();
}

}  // namespace OstrelTransforms
