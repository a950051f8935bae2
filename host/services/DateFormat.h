#pragma once

#include <string_view>

#include "ostrelrtcore/OrtDateTime.h"
#include "ostrelsys/OStringCore.h"

namespace ostrel::services {

/// Writes a date-time by a pattern of directives, as chart documents carry it; names are US English, and the
/// calendar is that of the value, without any time zone (UTC):
///
///   %a %A weekday, %b %B month, %c date and time, %d day, %e day padded with a blank, %f microseconds, %g %G
///   year of the ISO week, %H hour, %I hour of 12, %j day of the year, %L milliseconds, %m month, %M minute,
///   %p AM or PM, %q quarter, %Q milliseconds since 1970, %s seconds since 1970, %S second, %u weekday from
///   Monday 1, %U week from Sunday, %V ISO week, %w weekday from Sunday 0, %W week from Monday, %x date, %X
///   time, %y %Y year, %Z offset from UTC, %% a percent sign.
///
/// "-", "_" or "0" after the percent sign pads with nothing, blanks or zeros. A letter that is no directive
/// stands for itself.
OStringCore FormatDate(ort::core::OrtDateTime date, std::u16string_view pattern);

/// The pattern that labels one date of an axis by the largest unit that begins with it: the year at the start
/// of a year, else the month, the day and so on down to milliseconds.
std::u16string_view GetAxisDatePattern(ort::core::OrtDateTime date);
OStringCore FormatAxisDate(ort::core::OrtDateTime date);

}  // namespace ostrel::services
