#include "charts/functions/CalendarInterval.h"

namespace ostrel::charts {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;

namespace {

// 1970-01-11: a Sunday whose day number since 1970 is even.
constexpr std::uint64_t kOrigin = OrtDateTime(1970, 1, 11).GetValue();

std::int64_t FloorTo(std::int64_t value, std::int64_t unit) {
  std::int64_t const rest = value % unit;
  return value - (rest < 0 ? rest + unit : rest);
}

OrtDateTime BeginningOf(std::int64_t month) {
  std::int64_t const first = FloorTo(month, 12);
  return OrtDateTime(static_cast<int>(first / 12), static_cast<int>(month - first) + 1, 1);
}

}  // namespace

std::uint64_t CalendarInterval::TicksInto(OrtDateTime date) const {
  return (date.GetValue() % ticks_ + ticks_ - kOrigin % ticks_) % ticks_;
}

std::int64_t CalendarInterval::FloorMonth(OrtDateTime date) const {
  auto const parts = date.GetOrtDateTimeParts();
  return FloorTo(std::int64_t{parts.GetYear()} * 12 + parts.GetMonth() - 1, months_);
}

OrtDateTime CalendarInterval::Floor(OrtDateTime date) const {
  if (months_ != 0) return BeginningOf(FloorMonth(date));
  return date - OrtTimeSpan::FromTicks(static_cast<std::int64_t>(TicksInto(date)));
}

OrtDateTime CalendarInterval::After(OrtDateTime date) const {
  if (months_ != 0) return BeginningOf(FloorMonth(date) + months_);
  return date + OrtTimeSpan::FromTicks(static_cast<std::int64_t>(ticks_ - TicksInto(date)));
}

}  // namespace ostrel::charts
