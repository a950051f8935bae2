#include "charts/marks/CornerRounding.h"

#include <algorithm>
#include <map>
#include <span>

#include "charts/transforms/ChannelFields.h"

namespace ostrel::charts {
namespace {

using Reals = std::span<double const>;

struct Ends {
  double low;
  double high;
};

// The sides of rectangles across and along the measure.
struct Sides {
  Reals place;
  Reals from;
  Reals to;

  Ends Along(std::size_t row) const { return {std::min(from[row], to[row]), std::max(from[row], to[row])}; }
};

Sides ReadSides(RectMarks const& marks, bool isHorizontal) {
  auto const read = [](Value const& column) { return column->AsTypedArray<double>().GetValues(); };
  return isHorizontal ? Sides{read(marks.y), read(marks.x), read(marks.x2)}
                      : Sides{read(marks.x), read(marks.y), read(marks.y2)};
}

// How far the stack of each place reaches.
std::map<double, Ends> FindStacks(Sides const& sides) {
  std::map<double, Ends> stacks;
  for (std::size_t row = 0; row < sides.place.size(); ++row) {
    Ends const own = sides.Along(row);
    auto const [stack, isNew] = stacks.try_emplace(sides.place[row], own);
    stack->second = {std::min(stack->second.low, own.low), std::max(stack->second.high, own.high)};
  }
  return stacks;
}

// At the left or the top, and at the opposite side.
struct Rounded {
  bool low = true;
  bool high = true;
};

CornerRadii Round(CornerRounding const& rounding, bool endsLow, Rounded const& rounded) {
  CornerRadii radii = rounding.radii;
  auto& [topLeft, topRight, bottomRight, bottomLeft] = radii;
  double* const low[] = {&topLeft, rounding.isHorizontal ? &bottomLeft : &topRight};
  double* const high[] = {&bottomRight, rounding.isHorizontal ? &topRight : &bottomLeft};
  if (rounding.end > 0) {
    for (double* const radius : endsLow ? low : high) *radius = rounding.end;
  }
  for (double* const radius : low) *radius = rounded.low ? *radius : 0;
  for (double* const radius : high) *radius = rounded.high ? *radius : 0;
  return radii;
}

}  // namespace

std::optional<CornerRounding> MakeRounding(MarkContext& context) {
  MarkSpec const& mark = context.GetMark();
  double const all = mark.cornerRadius.value_or(0);
  CornerRounding rounding{
      .radii = {mark.cornerRadiusTopLeft.value_or(all), mark.cornerRadiusTopRight.value_or(all),
                mark.cornerRadiusBottomRight.value_or(all), mark.cornerRadiusBottomLeft.value_or(all)},
      .end = mark.cornerRadiusEnd.value_or(0),
      .isHorizontal = IsHorizontal(mark, context.GetSpec().encodings)};
  if (rounding.radii == CornerRadii{} && rounding.end == 0) return std::nullopt;
  Encoding const* const end = context.GetSpec().Find(rounding.isHorizontal ? Channel::X : Channel::Y);
  Encoding const* const start = context.GetSpec().Find(rounding.isHorizontal ? Channel::X2 : Channel::Y2);
  // The start of a stack's part is the channel's own, derived from its field.
  rounding.isStacked = start != nullptr && end != nullptr && start->path == end->path;
  // A bar between two given values ends on both sides.
  if (start != nullptr && !rounding.isStacked && rounding.end > 0) {
    rounding.radii = {rounding.end, rounding.end, rounding.end, rounding.end};
    rounding.end = 0;
  }
  return rounding;
}

std::vector<CornerRadii> RoundCorners(CornerRounding const& rounding, RectMarks const& marks) {
  Sides const sides = ReadSides(marks, rounding.isHorizontal);
  auto const stacks = rounding.isStacked ? FindStacks(sides) : std::map<double, Ends>{};
  std::vector<CornerRadii> corners;
  corners.reserve(sides.place.size());
  for (std::size_t row = 0; row < sides.place.size(); ++row) {
    Rounded rounded;
    if (rounding.isStacked) {
      Ends const& stack = stacks.at(sides.place[row]);
      Ends const own = sides.Along(row);
      rounded = {own.low == stack.low, own.high == stack.high};
    }
    corners.push_back(Round(rounding, sides.to[row] < sides.from[row], rounded));
  }
  return corners;
}

}  // namespace ostrel::charts
