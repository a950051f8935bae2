#include "charts/functions/Periods.h"

#include "ostrelrtcore/builtins/Columns.h"

namespace ostrel::charts {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;

namespace {

constexpr std::size_t kMostPeriods = 10'000;

std::int64_t DivideDown(std::int64_t value, std::int64_t unit) {
  return value / unit - (value % unit < 0 ? 1 : 0);
}

std::int64_t MonthOf(OrtDateTime date) {
  auto const parts = date.GetOrtDateTimeParts();
  return std::int64_t{parts.GetYear()} * 12 + parts.GetMonth() - 1;
}

std::int64_t DayOf(OrtDateTime date) { return static_cast<std::int64_t>(date.GetDayCount()); }

}  // namespace

Periods::Periods(OrtDateTime beginning, int months, int days)
    : beginning_(months > 0 ? MonthOf(beginning) : DayOf(beginning)), months_(months), days_(days) {
  if (months < 0 || days < 0 || (months == 0) == (days == 0)) {
    ort::core::builtins::ThrowError(ort::core::OrtError_InputKindNotAccepted,
                                    "a period is so many months or so many days, above 0");
  }
}

std::int64_t Periods::CountTo(OrtDateTime date) const {
  return months_ > 0 ? DivideDown(MonthOf(date) - beginning_, months_)
                     : DivideDown(DayOf(date) - beginning_, days_);
}

OrtDateTime Periods::At(std::int64_t count) const {
  if (months_ > 0) {
    std::int64_t const month = beginning_ + count * months_;
    std::int64_t const year = DivideDown(month, 12);
    return OrtDateTime(static_cast<int>(year), static_cast<int>(month - year * 12) + 1, 1);
  }
  std::int64_t const day = beginning_ + count * days_;
  return day < 0 ? OrtDateTime() : OrtDateTime() + OrtTimeSpan::FromTicks(day * OrtTimeSpan::kTicksPerDay);
}

std::vector<OrtDateTime> Periods::List(OrtDateTime first, OrtDateTime last, std::int64_t number,
                                       int step) const {
  std::vector<OrtDateTime> beginnings;
  if (step < 1) return beginnings;
  std::int64_t count = CountTo(first);
  if (At(count) < first) ++count;
  count = (DivideDown(number + count - 1, step) + 1) * step - number;
  for (; beginnings.size() < kMostPeriods; count += step) {
    OrtDateTime const beginning = At(count);
    // The calendar saturates at its end.
    bool const isStuck = !beginnings.empty() && beginning <= beginnings.back();
    if (beginning > last || isStuck) break;
    beginnings.push_back(beginning);
  }
  return beginnings;
}

}  // namespace ostrel::charts
