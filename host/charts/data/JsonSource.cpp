#include <fmt/format.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "charts/data/JsonRows.h"
#include "charts/data/Sources.h"
#include "charts/data/TextCheck.h"

namespace ostrel::charts {

namespace {

using nlohmann::json;

/// The parser's own words without its name for the error, its place (which is told in our way), and the end
/// of a long token.
std::string ShortenCause(std::string cause) {
  constexpr std::size_t kMostBytes = 200;
  if (auto const label = cause.find("] "); label != std::string::npos) cause.erase(0, label + 2);
  if (auto const column = cause.find("column ");
      column != std::string::npos && cause.starts_with("parse error at")) {
    cause.erase(0, cause.find(": ", column) + 2);
  }
  if (cause.size() <= kMostBytes) return cause;
  auto end = kMostBytes;
  while ((static_cast<unsigned char>(cause[end]) & 0xC0U) == 0x80U) --end;
  return cause.substr(0, end) + "...";
}

/// The parser's events.
class Events : public nlohmann::json_sax<json> {
 public:
  Events(std::string_view text, std::string const& sourceName, JsonRows& rows)
      : text_(text), sourceName_(sourceName), rows_(rows) {}

  bool null() override { return rows_.OnNull(), true; }
  bool boolean(bool value) override { return rows_.OnBool(value), true; }
  bool number_integer(std::int64_t value) override { return rows_.OnInteger(value), true; }
  bool number_unsigned(std::uint64_t value) override {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      rows_.OnReal(static_cast<double>(value));
    } else {
      rows_.OnInteger(static_cast<std::int64_t>(value));
    }
    return true;
  }
  bool number_float(double value, std::string const&) override { return rows_.OnReal(value), true; }
  bool string(std::string& value) override { return rows_.OnText(value), true; }
  bool binary(json::binary_t&) override { return false; }
  bool start_object(std::size_t) override { return rows_.BeginObject(), true; }
  bool key(std::string& value) override { return rows_.OnKey(value), true; }
  bool end_object() override { return rows_.End(), true; }
  bool start_array(std::size_t) override { return rows_.BeginArray(), true; }
  bool end_array() override { return rows_.End(), true; }
  bool parse_error(std::size_t position, std::string const&,
                   nlohmann::detail::exception const& error) override {
    auto const place = DescribePlace(text_, position > 0 ? position - 1 : 0, sourceName_);
    throw DataError(fmt::format("{}: {}", place, ShortenCause(error.what())));
  }

 private:
  std::string_view text_;
  std::string const& sourceName_;
  JsonRows& rows_;
};

/// The same events of a document in memory. The depth is limited by JsonRows.
void Walk(json const& value, JsonRows& rows) {
  switch (value.type()) {
    case json::value_t::object:
      rows.BeginObject();
      for (auto const& [key, member] : value.items()) {
        rows.OnKey(key);
        Walk(member, rows);
      }
      return rows.End();
    case json::value_t::array:
      rows.BeginArray();
      for (auto const& element : value) Walk(element, rows);
      return rows.End();
    case json::value_t::string:
      return rows.OnText(value.get_ref<std::string const&>());
    case json::value_t::boolean:
      return rows.OnBool(value.get<bool>());
    case json::value_t::number_integer:
      return rows.OnInteger(value.get<std::int64_t>());
    case json::value_t::number_unsigned: {
      auto const number = value.get<std::uint64_t>();
      bool const fits = number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
      return fits ? rows.OnInteger(static_cast<std::int64_t>(number))
                  : rows.OnReal(static_cast<double>(number));
    }
    case json::value_t::number_float:
      return rows.OnReal(value.get<double>());
    default:
      return rows.OnNull();
  }
}

DataTable FinishRows(JsonRows& rows, DataFormat const& format) {
  auto table = rows.Finish();
  for (auto& column : table.columns) {
    bool const isPlain = !format.parse.contains(column.name);
    column = isPlain ? InferDates(std::move(column)) : ApplyParse(std::move(column), format);
  }
  return table;
}

}  // namespace

DataTable LoadJson(std::string_view text, std::string const& sourceName, DataFormat const& format) {
  CheckText(text, sourceName);
  text = WithoutByteOrderMark(text);
  JsonRows rows(format.property, sourceName, false);
  Events events(text, sourceName, rows);
  json::sax_parse(text.begin(), text.end(), &events);
  return FinishRows(rows, format);
}

DataTable LoadJsonValues(json const& values, std::string const& sourceName, DataFormat const& format) {
  JsonRows rows(format.property, sourceName, true);
  Walk(values, rows);
  return FinishRows(rows, format);
}

}  // namespace ostrel::charts
