#pragma once

#include <limits>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "charts/data/DataPath.h"
#include "charts/data/DataTable.h"

namespace ostrel::charts {

enum class DataFormatType { FromExtension, Csv, Tsv, Json, Text };

/// How a source is read: the `format` object of a chart's data.
struct DataFormat {
  DataFormatType type = DataFormatType::FromExtension;
  /// Of separated values; 0 is the type's own: a comma, or a tab for TSV.
  char delimiter = 0;
  /// The way to the array of rows in a JSON document, e.g. "results.rows" or "sets[0].rows"; empty is the
  /// document itself.
  std::string property;
  /// Field to "number", "boolean", "string", "date", "date:'%d %b %Y'" or "utc:'...'". Fields that are not
  /// named get the type that fits all of their rows. A value that does not parse is a Missing row.
  std::map<std::string, std::string> parse;
  /// Of running text: the words that are not counted; those of English where it is left out.
  std::optional<std::vector<std::string>> stopWords;
  /// Of running text: how many words are kept, the most frequent ones.
  std::size_t wordLimit = std::numeric_limits<std::size_t>::max();
};

/// Reads the `format` object of a chart; `jsonPath` names it in messages ("$.data.format"). Throws DataError
/// for what is not supported.
DataFormat ReadDataFormat(nlohmann::json const& format, std::string const& jsonPath);

/// Reads the `data` object of a chart, {"url": ...} or {"values": ...} with an optional "format". Throws
/// DataError; nothing is returned of data that are partly bad.
///
/// A column's type is the narrowest that holds all its rows: Bool (true, false), Int64 (whole numbers without
/// point or exponent), Real64, Date (2020-03-01, 2020/03/01, 2020-03), DateTime (ISO 8601 with a time; an
/// offset is turned into UTC), and String. JSON strings become dates or stay strings. In text, an empty field
/// and null, NaN, nan, NA and N/A are Missing in a column that is not of strings; in a String column they
/// stand as they are. An absent JSON key is Missing, a JSON null is of kind Null. A nested object's members
/// are columns named "outer.inner", a nested array's "outer[0]". Running text (format type "text") becomes
/// the columns "word" and "count", the most frequent word first (see CountWords). Data without rows, or
/// without any value, are refused.
DataTable LoadTable(nlohmann::json const& data, std::string const& jsonPath, DataRoots const& roots);

/// A file named by a chart. See ResolveDataPath for what may be read.
DataTable LoadFile(std::string const& path, DataRoots const& roots, DataFormat const& format = {});

/// A text of the format's type (FromExtension goes by the ending of `sourceName`), at most 2 GiB.
DataTable LoadText(std::string_view text, std::string const& sourceName, DataFormat const& format = {});

/// An array of objects, an array of scalars (a single column "data"), or one object as the only row.
DataTable LoadValues(nlohmann::json const& values, std::string const& sourceName,
                     DataFormat const& format = {});

}  // namespace ostrel::charts
