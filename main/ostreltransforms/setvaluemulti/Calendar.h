#pragma once

#include "ostrelrtcore/OrtDateTime.h"
#include "ostrelsys/IntTypes.h"

// Differences of dates, and the periods of calendar and fiscal years. A fiscal year begins with a month, 1 to
// 12, and is named after the calendar year in which it ends.
namespace OstrelTransforms::Calendar {

using ort::core::int64;
using ort::core::OrtDateTime;

/// Whole units of a - b, truncated toward zero.
int64 DaysDifference(OrtDateTime a, OrtDateTime b);
int64 HoursDifference(OrtDateTime a, OrtDateTime b);
int64 MinutesDifference(OrtDateTime a, OrtDateTime b);
int64 SecondsDifference(OrtDateTime a, OrtDateTime b);

/// The weekday, 0 to 6, less the week's start plus 1. Below 0 where the week starts later; it is not brought
/// back, on purpose.
int DaysToWeekStart(OrtDateTime date, int weekStart);

/// Throws 0 for a start month outside 1 to 12.
int FiscalYear(int startMonth, OrtDateTime date);

/// Whether one of the named parts of the time of day is not 0.
bool HasTime(OrtDateTime date, bool checksHour, bool checksMinute, bool checksSecond, bool checksFraction);

enum class Period : int { FiscalYear, FiscalQuarter, Month, Week, Day, Hour, Minute, Second };

/// The first instant of the period that holds a date. A month other than on its first day gives the month
/// that follows, and a week whose start lies ahead a later date, on purpose. The default instant for a code
/// that names no period.
OrtDateTime StartOfPeriod(int periodCode, OrtDateTime date, int startMonth, int weekStart);

}  // namespace OstrelTransforms::Calendar
