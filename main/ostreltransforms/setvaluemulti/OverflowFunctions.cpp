#include "ostreltransforms/setvaluemulti/OverflowFunctions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ostrelrtcore/Factory.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using PixelRoom::Item;
using PixelRoom::Room;

constexpr double kUsualLargestShare = 0.5;

bool IsLength(double length) { return length > 0 && std::isfinite(length); }

double CountPixels(double pixels) { return pixels > 0 && std::isfinite(pixels) ? pixels : 0.0; }

// What stands at a value, in the direction of the pane.
struct Drawn {
  double halfSize;
  double labelSize;  // 0 for none
  int64 labelSide;
};

Item MakeItem(double position, Drawn const& drawn, double gap, bool isReversed) {
  double const half = CountPixels(drawn.halfSize);
  double const label = CountPixels(drawn.labelSize);
  double const beside = label > 0 ? half + CountPixels(gap) + label : half;
  double const centred = std::max(half, label * 0.5);
  bool const isBefore = (drawn.labelSide < 0) != isReversed;
  if (drawn.labelSide == 0) return {position, centred, centred};
  return isBefore ? Item{position, beside, half} : Item{position, half, beside};
}

// The range that marks of an axis are placed on.
class Placement {
 public:
  Placement(Value const& range, double length, bool takesIn) : range_(ReadRange(range)), takesIn_(takesIn) {
    range_.OpenPoint();
    isUsable_ = range_.HasExtent() && IsLength(length);
  }

  bool IsUsable() const { return isUsable_; }
  // NaN for what is not drawn.
  double GetPosition(double value) const {
    double const position = (range_.ToScale(value) - range_.minimum) / range_.GetExtent();
    bool const isDrawn = takesIn_ ? std::isfinite(position) : position >= 0 && position <= 1;
    return isDrawn ? position : std::nan("");
  }
  // A fixed end gets no room.
  Item Restrict(Item item) const {
    if (range_.fixesMinimum) item.before = -std::numeric_limits<double>::infinity();
    if (range_.fixesMaximum) item.after = -std::numeric_limits<double>::infinity();
    return item;
  }

 private:
  ScaleRange range_;
  bool takesIn_;
  bool isUsable_;
};

// Whether an item sticks out when the range fills some pixels from `scale` to `length`.
bool CanMatter(Item const& item, double scale, double length) {
  double const rest = 1 - item.position;
  return item.before > std::min(item.position * scale, item.position * length) ||
         item.after > std::min(rest * scale, rest * length);
}

// Finds the room for `count` items, which `make(row)` makes. Only few marks can matter while the range keeps
// most of the pane, so that a short list nearly always does.
template <class Make>
Room FindRoom(std::size_t count, double length, Make const& make) {
  Room room;
  for (double const scale : {length * 0.75, 0.0}) {
    std::vector<Item> items;
    for (std::size_t row = 0; row < count; ++row) {
      Item const item = make(row);
      if (!std::isnan(item.position) && CanMatter(item, scale, length)) items.push_back(item);
    }
    room = PixelRoom::Find(items, length);
    if (length - room.lower - room.upper >= scale) break;
  }
  return room;
}

}  // namespace

Value CalcPixelOverflow(Value const& values, Value const& halfSizes, Value const& labelSizes, int labelSide,
                        double gap, Value const& range, double length, bool isReversed) {
  NumberColumn const at(values), half(halfSizes), label(labelSizes);
  RequireCount(half.GetCount(), at.GetCount(), L"halfSizes");
  RequireCount(label.GetCount(), at.GetCount(), L"labelSizes");
  Placement const placement(range, length, false);
  Room room;
  if (placement.IsUsable()) {
    room = FindRoom(at.GetCount(), length, [&](std::size_t row) {
      return placement.Restrict(
          MakeItem(placement.GetPosition(at[row]), {half[row], label[row], labelSide}, gap, isReversed));
    });
  }
  return factory::MakeTuple(std::vector{factory::MakeReal64(room.lower), factory::MakeReal64(room.upper)});
}

Value CalcReflineOverflow(Value const& values, Value const& thicknesses, Value const& labelSizes,
                          Value const& labelSides, double gap, bool includesLines, Value const& range,
                          double length, bool isReversed) {
  NumberColumn const at(values), thickness(thicknesses), label(labelSizes);
  std::vector<int64> const sides = ReadIntegers(labelSides);
  RequireCount(thickness.GetCount(), at.GetCount(), L"thicknesses");
  RequireCount(label.GetCount(), at.GetCount(), L"labelSizes");
  RequireCount(sides.size(), at.GetCount(), L"labelSides");
  Placement const placement(range, length, includesLines);
  Room room;
  if (placement.IsUsable()) {
    room = FindRoom(at.GetCount(), length, [&](std::size_t row) {
      Drawn const drawn = {thickness[row] * 0.5, label[row], sides[row]};
      return placement.Restrict(MakeItem(placement.GetPosition(at[row]), drawn, gap, isReversed));
    });
  }
  return factory::MakeKeyMap(
      {{L"lower", factory::MakeReal64(room.lower)}, {L"upper", factory::MakeReal64(room.upper)}});
}

double ReadLargestShare(Value const& share) {
  double const read = share->IsSpecial() ? kUsualLargestShare : FetchStoreValue<double>(share);
  if (!(read >= 0 && read <= 1)) Refuse(L"largestShare", L"from 0 to 1");
  return read;
}

void LeaveRoom(ScaleRange& range, Room const& room, double length) {
  double const unitsPerPixel = range.GetExtent() / (length - room.lower - room.upper);
  range.minimum -= room.lower * unitsPerPixel;
  range.maximum += room.upper * unitsPerPixel;
}

Value ExtendRangeWithOverflow(Value const& range, Value const& lower, Value const& upper, double length,
                              Value const& largestShare) {
  double const share = ReadLargestShare(largestShare);
  auto const readPixels = [](Value const& pixels) {
    return pixels->IsSpecial() ? 0.0 : FetchStoreValue<double>(pixels);
  };
  Room room = {readPixels(lower), readPixels(upper)};
  ScaleRange extended = ReadRange(range);
  if (extended.fixesMinimum) room.lower = 0;
  if (extended.fixesMaximum) room.upper = 0;
  if (!IsLength(length)) return range;
  room = PixelRoom::Limit(room, length, share);
  extended.OpenPoint();
  if (room.IsNone() || !extended.HasExtent()) return range;
  LeaveRoom(extended, room, length);
  return MakeRange(extended, range);
}

}  // namespace OstrelTransforms
