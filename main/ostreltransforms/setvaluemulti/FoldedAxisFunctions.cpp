#include "ostreltransforms/setvaluemulti/FoldedAxisFunctions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/setvaluemulti/FoldedAxes.h"
#include "ostreltransforms/setvaluemulti/OverflowFunctions.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using FoldedAxes::Reach;
using PixelRoom::Room;

constexpr wchar_t kUniqueId[] = L"UniqueID";
constexpr wchar_t kBarLabelsOverflow[] = L"BarLabelsOverflow";

using RowsOfPanes = std::map<int64, std::vector<std::size_t>>;

void IncludeZero(ScaleRange& range) {
  if (!range.fixesMinimum) range.minimum = std::min(range.minimum, 0.0);
  if (!range.fixesMaximum) range.maximum = std::max(range.maximum, 0.0);
}

// Of an axis that can take part.
Reach MakeReach(ScaleRange const& range, bool isReversed) {
  Reach const reach = {-range.minimum, range.maximum, range.fixesMinimum, range.fixesMaximum};
  return isReversed ? Reach{reach.after, reach.before, reach.fixesAfter, reach.fixesBefore} : reach;
}

bool HasZero(ScaleRange const& range) {
  return range.HasExtent() && range.minimum <= 0 && range.maximum >= 0;
}

void AlignPane(std::vector<ScaleRange>& ranges, std::vector<bool> const& reversed,
               std::vector<std::size_t> const& rows, std::vector<ScaleRange> const& opened) {
  std::vector<Reach> axes;
  for (std::size_t const row : rows) axes.push_back(MakeReach(opened[row], reversed[row]));
  auto const zero = FoldedAxes::FindCommonZero(axes);
  if (!zero) return;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Reach const moved = FoldedAxes::MoveZero(axes[i], *zero);
    bool const isReversed = reversed[rows[i]];
    ScaleRange& range = ranges[rows[i]] = opened[rows[i]];
    double const below = isReversed ? moved.after : moved.before;
    double const above = isReversed ? moved.before : moved.after;
    if (below > -range.minimum) range.minimum = -below;
    if (above > range.maximum) range.maximum = above;
  }
}

// The room that the axes' labels need, by the axes' numbers.
std::unordered_map<int64, Room> ReadRooms(Value const& table) {
  detail::RequireValue(table);
  std::vector<int64> const ids = ReadIntegers(table->AsNamedValues().Get(kUniqueId));
  Value const overflow = table->AsNamedValues().Get(kBarLabelsOverflow);
  detail::RequireColumnOf(StoreType::Tuple, overflow);
  auto const& tuples = overflow->AsTypedArray<Value>();
  RequireCount(static_cast<std::size_t>(tuples.GetCount()), ids.size(), kBarLabelsOverflow);
  std::unordered_map<int64, Room> rooms;
  for (std::size_t row = 0; row < ids.size(); ++row) {
    if (tuples.IsSpecial(static_cast<int>(row))) continue;
    IStoreTuple const& pixels = RangeUtilities::GetTuple(tuples.GetElement(static_cast<int>(row)));
    Room& room = rooms[ids[row]];
    room.lower = std::max(room.lower, FetchStoreValue<double>(pixels.GetMember(0)));
    room.upper = std::max(room.upper, FetchStoreValue<double>(pixels.GetMember(1)));
  }
  return rooms;
}

void RequireOneScale(ScaleRange const& a, ScaleRange const& b) {
  namespace Operators = StoreValueOperators;
  if (a.isLog != b.isLog || Operators::IsTemporal(a.fieldType) != Operators::IsTemporal(b.fieldType))
    throw OrtRuntimeException(OrtError_TypesDiffer, OStringCore(L"axes of two scales are folded together"));
}

// The outermost of several ends; of fixed ones where there are any.
class CommonEnd {
 public:
  explicit CommonEnd(double direction) : direction_(direction) {}

  void Add(double end, bool isFixed) {
    if (std::isnan(end) || (isFixed_ && !isFixed)) return;
    bool const isOutside = !(direction_ * end_ >= direction_ * end);
    if (isOutside || isFixed != isFixed_) end_ = end;
    isFixed_ = isFixed;
  }
  double GetEnd() const { return end_; }
  bool IsFixed() const { return isFixed_; }

 private:
  double direction_;
  double end_ = std::numeric_limits<double>::quiet_NaN();
  bool isFixed_ = false;
};

ScaleRange FindCommonRange(std::vector<ScaleRange> const& ranges, std::vector<std::size_t> const& rows) {
  CommonEnd minimum(-1), maximum(1);
  ScaleRange common = ranges[rows.front()];
  for (std::size_t const row : rows) {
    RequireOneScale(ranges[row], common);
    minimum.Add(ranges[row].minimum, ranges[row].fixesMinimum);
    maximum.Add(ranges[row].maximum, ranges[row].fixesMaximum);
  }
  common.minimum = minimum.GetEnd();
  common.maximum = maximum.GetEnd();
  common.fixesMinimum = minimum.IsFixed();
  common.fixesMaximum = maximum.IsFixed();
  return common;
}

// The labels of an axis' bars stand at the ends of its own range.
void AddLabels(ScaleRange const& axis, Room const& labels, ScaleRange const& common,
               std::vector<PixelRoom::Item>& items) {
  constexpr double kNothing = -std::numeric_limits<double>::infinity();
  if (!axis.IsComplete()) return;
  auto const getPosition = [&](double end) { return (end - common.minimum) / common.GetExtent(); };
  double const lower = common.fixesMinimum ? kNothing : labels.lower;
  double const upper = common.fixesMaximum ? kNothing : labels.upper;
  items.push_back({getPosition(axis.minimum), lower, kNothing});
  items.push_back({getPosition(axis.maximum), kNothing, upper});
}

struct LabelSpace {
  std::unordered_map<int64, Room> rooms;
  double length;
  double largestShare;
};

void SyncPane(std::vector<ScaleRange>& ranges, std::vector<int64> const& ids,
              std::vector<std::size_t> const& rows, LabelSpace const& space, bool includesZero) {
  ScaleRange common = FindCommonRange(ranges, rows);
  if (!common.IsComplete()) return;
  if (includesZero) IncludeZero(common);
  common.OpenPoint();
  if (common.HasExtent() && space.length > 0 && std::isfinite(space.length)) {
    std::vector<PixelRoom::Item> items;
    for (std::size_t const row : rows) {
      auto const room = space.rooms.find(ids[row]);
      if (room != space.rooms.end()) AddLabels(ranges[row], room->second, common, items);
    }
    Room const room =
        PixelRoom::Limit(PixelRoom::Find(items, space.length), space.length, space.largestShare);
    LeaveRoom(common, room, space.length);
  }
  for (std::size_t const row : rows) {
    ranges[row].minimum = common.minimum;
    ranges[row].maximum = common.maximum;
  }
}

}  // namespace

Value ZeroAlignFoldedAxes(Value const& ranges, Value const& panes, Value const& isFolded,
                          Value const& reversed, bool includesZero) {
  RangeColumn const column(ranges);
  std::vector<int64> const pane = ReadIntegers(panes);
  std::vector<bool> const folded = ReadFlags(isFolded), mirrored = ReadFlags(reversed);
  RequireCount(pane.size(), column.GetCount(), L"panes");
  RequireCount(folded.size(), column.GetCount(), L"isFolded");
  RequireCount(mirrored.size(), column.GetCount(), L"reversed");

  std::vector<ScaleRange> aligned = column.GetRanges(), opened = aligned;
  RowsOfPanes rowsOfPanes;
  for (std::size_t row = 0; row < opened.size(); ++row) {
    ScaleRange& range = opened[row];
    if (!folded[row] || range.isLog || StoreValueOperators::IsTemporal(range.fieldType)) continue;
    if (includesZero && range.IsComplete()) IncludeZero(range);
    range.OpenPoint();
    if (HasZero(range)) rowsOfPanes[pane[row]].push_back(row);
  }
  for (auto const& [number, rows] : rowsOfPanes) AlignPane(aligned, mirrored, rows, opened);
  return column.Make(aligned);
}

Value SyncFoldedAxes(Value const& axes, Value const& ids, Value const& ranges, Value const& panes,
                     Value const& folded, double length, Value const& largestShare, bool includesZero) {
  LabelSpace const space = {ReadRooms(axes), length, ReadLargestShare(largestShare)};
  RangeColumn const column(ranges);
  std::vector<int64> const id = ReadIntegers(ids), pane = ReadIntegers(panes);
  std::vector<int64> const foldedIds = ReadIntegers(folded);
  RequireCount(id.size(), column.GetCount(), L"ids");
  RequireCount(pane.size(), column.GetCount(), L"panes");

  std::unordered_set<int64> const isFolded(foldedIds.begin(), foldedIds.end());
  std::vector<ScaleRange> synced = column.GetRanges();
  RowsOfPanes rowsOfPanes;
  for (std::size_t row = 0; row < synced.size(); ++row) {
    if (!column.IsSpecial(row) && isFolded.contains(id[row])) rowsOfPanes[pane[row]].push_back(row);
  }
  for (auto const& [number, rows] : rowsOfPanes) SyncPane(synced, id, rows, space, includesZero);
  return column.Make(synced);
}

}  // namespace OstrelTransforms
