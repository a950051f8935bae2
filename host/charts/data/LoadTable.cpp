#include "charts/data/LoadTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "charts/data/DateText.h"
#include "charts/data/Sources.h"

namespace ostrel::charts {

namespace {

using nlohmann::json;

DataFormatType ReadType(json const& type, std::string const& jsonPath, char& delimiter) {
  if (type == "json") return DataFormatType::Json;
  if (type == "tsv") return DataFormatType::Tsv;
  if (type == "text") return DataFormatType::Text;
  if (type != "csv" && type != "dsv") {
    throw DataError(
        fmt::format("{}: {} is not supported; csv, tsv, dsv, json and text are", jsonPath, type.dump()));
  }
  if (type == "dsv" && delimiter == 0) throw DataError(jsonPath + ": dsv needs a delimiter");
  return DataFormatType::Csv;
}

char ReadDelimiter(json const& delimiter, std::string const& jsonPath) {
  auto const* text = delimiter.get_ptr<std::string const*>();
  bool const isUsable = text != nullptr && text->size() == 1 &&
                        std::string_view("\"\r\n\0", 4).find(text->front()) == std::string_view::npos &&
                        static_cast<unsigned char>(text->front()) < 0x80;
  if (!isUsable) {
    throw DataError(jsonPath +
                    ": the delimiter must be one ASCII character other than a quote or a line break");
  }
  return text->front();
}

std::string ReadParseType(json const& type, std::string const& jsonPath) {
  auto const* text = type.get_ptr<std::string const*>();
  if (text != nullptr) {
    for (char const* plain : {"number", "boolean", "string", "date"}) {
      if (*text == plain) return *text;
    }
    if (*text == "utc") return "date";
    bool const hasPattern = (text->starts_with("date:") || text->starts_with("utc:"));
    auto const pattern =
        hasPattern ? std::string_view(*text).substr(text->find(':') + 1) : std::string_view();
    bool const isQuoted = pattern.size() > 2 && (pattern.front() == '\'' || pattern.front() == '"') &&
                          pattern.back() == pattern.front();
    if (isQuoted) {
      DatePattern const checked(std::string(pattern.substr(1, pattern.size() - 2)));
      return *text;
    }
  }
  throw DataError(fmt::format("{}: {} is not supported; number, boolean, string, date and date:'pattern' are",
                              jsonPath, type.dump()));
}

std::map<std::string, std::string> ReadParse(json const& parse, std::string const& jsonPath) {
  if (!parse.is_object()) throw DataError(jsonPath + ": an object of fields and types is expected");
  std::map<std::string, std::string> types;
  for (auto const& [field, type] : parse.items()) {
    types[field] = ReadParseType(type, fmt::format("{}['{}']", jsonPath, field));
  }
  return types;
}

std::vector<std::string> ReadStopWords(json const& words, std::string const& jsonPath) {
  std::vector<std::string> result;
  bool isList = words.is_array();
  for (std::size_t i = 0; isList && i < words.size(); ++i) {
    auto const* text = words[i].get_ptr<std::string const*>();
    isList = text != nullptr;
    if (isList) result.push_back(*text);
  }
  if (!isList) throw DataError(jsonPath + ": a list of words is expected; [] counts all words");
  return result;
}

std::size_t ReadWordLimit(json const& limit, std::string const& jsonPath) {
  if (!limit.is_number_unsigned() || limit == 0)
    throw DataError(jsonPath + ": a whole number of words above 0 is expected");
  return limit.get<std::size_t>();
}

/// Refuses what is for other types of sources.
void CheckFormat(json const& format, bool isText, std::string const& jsonPath) {
  for (char const* key : {"delimiter", "property", "parse"}) {
    if (isText && format.contains(key))
      throw DataError(fmt::format("{}.{}: is not for text; leave it out", jsonPath, key));
  }
  for (char const* key : {"stopWords", "limit"}) {
    if (!isText && format.contains(key))
      throw DataError(fmt::format("{}.{}: is for the type text only; leave it out", jsonPath, key));
  }
}

bool EndsWith(std::string_view name, std::string_view ending) {
  auto const sameLetter = [](char a, char b) {
    return a == b || (a >= 'A' && a <= 'Z' && static_cast<char>(a - 'A' + 'a') == b);
  };
  return name.size() >= ending.size() &&
         std::equal(ending.begin(), ending.end(), name.end() - static_cast<std::ptrdiff_t>(ending.size()),
                    [&sameLetter](char b, char a) { return sameLetter(a, b); });
}

DataFormatType FindType(std::string const& sourceName) {
  if (EndsWith(sourceName, ".csv")) return DataFormatType::Csv;
  if (EndsWith(sourceName, ".tsv")) return DataFormatType::Tsv;
  if (EndsWith(sourceName, ".json")) return DataFormatType::Json;
  throw DataError(sourceName +
                  ": the ending tells no format; name one of csv, tsv, json, text in the data's format");
}

/// Refuses tables of which nothing could be drawn.
DataTable Checked(DataTable table) {
  if (table.rowCount == 0) throw DataError(table.sourceName + ": there are no rows");
  auto const onlySpecials = [](DataColumn const& column) {
    return column.values->AsColumn().GetSpecialRows().size() ==
           static_cast<std::size_t>(column.values->AsColumn().GetCount());
  };
  // A row without fields is a mark without data.
  bool const hasValues =
      table.columns.empty() || !std::all_of(table.columns.begin(), table.columns.end(), onlySpecials);
  if (hasValues) return table;
  throw DataError(fmt::format("{}: {} row{} with only missing values", table.sourceName, table.rowCount,
                              table.rowCount == 1 ? "" : "s"));
}

}  // namespace

DataFormat ReadDataFormat(json const& format, std::string const& jsonPath) {
  if (!format.is_object()) throw DataError(jsonPath + ": an object is expected");
  DataFormat result;
  for (auto const& [key, value] : format.items()) {
    auto const path = fmt::format("{}.{}", jsonPath, key);
    if (key == "delimiter") {
      result.delimiter = ReadDelimiter(value, path);
    } else if (key == "property") {
      if (!value.is_string()) throw DataError(path + ": a text is expected");
      result.property = value.get<std::string>();
    } else if (key == "parse") {
      result.parse = ReadParse(value, path);
    } else if (key == "stopWords") {
      result.stopWords = ReadStopWords(value, path);
    } else if (key == "limit") {
      result.wordLimit = ReadWordLimit(value, path);
    } else if (key != "type") {
      throw DataError(path + ": is not supported; type, delimiter, property, parse, stopWords and limit are");
    }
  }
  if (auto const type = format.find("type"); type != format.end()) {
    result.type = ReadType(*type, jsonPath + ".type", result.delimiter);
  }
  CheckFormat(format, result.type == DataFormatType::Text, jsonPath);
  return result;
}

DataTable LoadText(std::string_view text, std::string const& sourceName, DataFormat const& format) {
  if (text.size() > std::numeric_limits<std::int32_t>::max()) {
    throw DataError(fmt::format("{}: {} bytes are more than 2 GiB", sourceName, text.size()));
  }
  auto const type = format.type == DataFormatType::FromExtension ? FindType(sourceName) : format.type;
  if (type == DataFormatType::Json) return Checked(LoadJson(text, sourceName, format));
  if (type == DataFormatType::Text) return Checked(LoadWords(text, sourceName, format));
  char const usual = type == DataFormatType::Tsv ? '\t' : ',';
  auto const delimiter = format.delimiter != 0 ? format.delimiter : usual;
  return Checked(LoadSeparatedValues(text, sourceName, delimiter, format));
}

DataTable LoadFile(std::string const& path, DataRoots const& roots, DataFormat const& format) {
  // Before the file is read, since it may be long.
  if (format.type == DataFormatType::FromExtension) FindType(path);
  auto const content = ReadDataFile(path, roots);
  return LoadText(content.Get(), path, format);
}

DataTable LoadValues(json const& values, std::string const& sourceName, DataFormat const& format) {
  return Checked(LoadJsonValues(values, sourceName, format));
}

DataTable LoadTable(json const& data, std::string const& jsonPath, DataRoots const& roots) {
  if (!data.is_object()) throw DataError(jsonPath + ": an object with 'url' or 'values' is expected");
  auto const format = data.find("format");
  auto const dataFormat = format != data.end() ? ReadDataFormat(*format, jsonPath + ".format") : DataFormat();
  if (auto const url = data.find("url"); url != data.end()) {
    if (!url->is_string()) throw DataError(jsonPath + ".url: a text is expected");
    return LoadFile(url->get_ref<std::string const&>(), roots, dataFormat);
  }
  auto const values = data.find("values");
  if (values == data.end()) throw DataError(jsonPath + ": has neither 'url' nor 'values'");
  auto const sourceName = jsonPath + ".values";
  if (!values->is_string() && dataFormat.type == DataFormatType::Text)
    throw DataError(sourceName + ": running text is one string; a list of rows was given");
  if (!values->is_string()) return LoadValues(*values, sourceName, dataFormat);
  auto textFormat = dataFormat;
  if (textFormat.type == DataFormatType::FromExtension) textFormat.type = DataFormatType::Json;
  return LoadText(values->get_ref<std::string const&>(), sourceName, textFormat);
}

}  // namespace ostrel::charts
