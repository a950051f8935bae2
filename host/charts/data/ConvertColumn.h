#pragma once

#include <string>

#include "charts/data/DataTable.h"

namespace ostrel::charts {

// Special rows keep their kind in the new type; a row that cannot be converted becomes Missing.

/// Int64 and Real64 columns as they are; Bool as 0 and 1; strings by their text as numbers; dates as
/// milliseconds since 1970-01-01 (UTC).
DataColumn ConvertToNumber(DataColumn const& column);

/// Date and DateTime columns as they are. Strings are read as ISO dates and the common forms "2012/01/31",
/// "1/31/2012 14:05", "Jan 31 2012", "31 Jan 2012", "Tue, 31 Jan 2012 14:05:00 GMT", "2012-01" and "2012"; a
/// text without an offset stands as written. Numbers are milliseconds since 1970-01-01 (UTC), but whole
/// numbers of 1 to 9999 out of text are years. A column in which no row has a time of day written becomes
/// Date, else DateTime. Bool columns become all Missing.
DataColumn ConvertToDate(DataColumn const& column);

/// The same by a pattern of %Y %y %m %d %e %j %b %B %a %A %H %I %p %M %S %L %f %Z %% and plain text. Throws
/// DataError for another letter.
DataColumn ConvertToDate(DataColumn const& column, std::string const& pattern);

/// Strings as they are; numbers in the shortest form that reads back to the same value; dates in ISO form.
DataColumn ConvertToString(DataColumn const& column);

/// Bool columns as they are; numbers are true unless 0; strings are true unless "false", "0" or empty.
DataColumn ConvertToBoolean(DataColumn const& column);

}  // namespace ostrel::charts
