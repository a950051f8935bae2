#pragma once

#include <string>
#include <string_view>

#include "charts/data/LoadTable.h"

// The readers behind LoadTable, one a kind of source. They apply what the format says of single fields;
// whether a table without rows or values is of use is for LoadTable to say.
namespace ostrel::charts {

DataTable LoadSeparatedValues(std::string_view text, std::string const& sourceName, char delimiter,
                              DataFormat const& format);
DataTable LoadJson(std::string_view text, std::string const& sourceName, DataFormat const& format);
DataTable LoadJsonValues(nlohmann::json const& values, std::string const& sourceName,
                         DataFormat const& format);
/// The words of a running text and how often each stands in it.
DataTable LoadWords(std::string_view text, std::string const& sourceName, DataFormat const& format);

/// The column as the format's `parse` wants it: see DataFormat::parse. An unknown type is refused when
/// the format is read.
DataColumn ApplyParse(DataColumn column, DataFormat const& format);

/// A String column that holds nothing but dates (see ReadPlainDate) as dates; any other as it is.
DataColumn InferDates(DataColumn column);

}  // namespace ostrel::charts
