#include "ostreltransforms/setvaluemulti/Calendar.h"

#include "ostrelrtcore/OrtRuntimeException.h"

namespace OstrelTransforms::Calendar {
namespace {

using namespace ort::core;

// Any two instants' distance fits without a sign only.
int64 CountUnits(OrtDateTime a, OrtDateTime b, std::int64_t ticksPerUnit) {
  auto const unit = static_cast<uint64>(ticksPerUnit);
  uint64 const x = a.GetValue();
  uint64 const y = b.GetValue();
  return x >= y ? static_cast<int64>((x - y) / unit) : -static_cast<int64>((y - x) / unit);
}

OrtDateTime StartOfFiscalQuarter(OrtDateTimeParts const& parts, int64 startMonth) {
  int64 const month = parts.GetMonth();
  int64 const firstYear = int64{parts.GetYear()} - 1 + (month >= startMonth ? 1 : 0);
  int64 const elapsed = (parts.GetYear() - firstYear) * 12 - startMonth + month;
  int64 const monthsFromFirstYear = startMonth + 3 * (elapsed / 3) - 1;
  return OrtDateTime(static_cast<int>(firstYear + monthsFromFirstYear / 12),
                     static_cast<int>(monthsFromFirstYear % 12) + 1, 1);
}

}  // namespace

int64 DaysDifference(OrtDateTime a, OrtDateTime b) { return CountUnits(a, b, OrtTimeSpan::kTicksPerDay); }
int64 HoursDifference(OrtDateTime a, OrtDateTime b) { return CountUnits(a, b, OrtTimeSpan::kTicksPerHour); }
int64 MinutesDifference(OrtDateTime a, OrtDateTime b) {
  return CountUnits(a, b, OrtTimeSpan::kTicksPerMinute);
}
int64 SecondsDifference(OrtDateTime a, OrtDateTime b) {
  return CountUnits(a, b, OrtTimeSpan::kTicksPerSecond);
}

int DaysToWeekStart(OrtDateTime date, int weekStart) {
  uint64 const day = date.GetValue() / static_cast<uint64>(OrtTimeSpan::kTicksPerDay);
  auto const weekday = static_cast<uint32>((day + 2) % 7);
  return static_cast<int>(weekday - static_cast<uint32>(weekStart) + 1);
}

int FiscalYear(int startMonth, OrtDateTime date) {
  if (startMonth < 1 || startMonth > 12) throw OrtRuntimeException(OrtError_InputNotAccepted);
  OrtDateTimeParts const parts = date.GetOrtDateTimeParts();
  return parts.GetYear() + (startMonth <= parts.GetMonth() && startMonth != 1 ? 1 : 0);
}

bool HasTime(OrtDateTime date, bool checksHour, bool checksMinute, bool checksSecond, bool checksFraction) {
  OrtDateTimeParts const parts = date.GetOrtDateTimeParts();
  return (checksHour && parts.GetHour() != 0) || (checksMinute && parts.GetMinute() != 0) ||
         (checksSecond && parts.GetSecond() != 0) || (checksFraction && parts.GetFraction() != 0);
}

OrtDateTime StartOfPeriod(int periodCode, OrtDateTime date, int startMonth, int weekStart) {
  OrtDateTimeParts const parts = date.GetOrtDateTimeParts();
  int const year = parts.GetYear(), month = parts.GetMonth(), day = parts.GetDay();
  int const hour = parts.GetHour(), minute = parts.GetMinute();
  switch (static_cast<Period>(periodCode)) {
    case Period::FiscalYear:
      return OrtDateTime(month >= startMonth ? year : year - 1, startMonth, 1);
    case Period::FiscalQuarter:
      return StartOfFiscalQuarter(parts, startMonth);
    case Period::Month:
      return OrtDateTime(year, day == 1 ? month : month + 1, 1);
    case Period::Week:
      return OrtDateTime(year, month, day) - OrtTimeSpan(DaysToWeekStart(date, weekStart), 0, 0, 0);
    case Period::Day:
      return OrtDateTime(year, month, day);
    case Period::Hour:
      return OrtDateTime(year, month, day, hour);
    case Period::Minute:
      return OrtDateTime(year, month, day, hour, minute);
    case Period::Second:
      return OrtDateTime(year, month, day, hour, minute, parts.GetSecond());
  }
  return {};
}

}  // namespace OstrelTransforms::Calendar
