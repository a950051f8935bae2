#include "ostrel/PayloadJson.h"

#include <fmt/format.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <span>

#include "ostrel/ValueJson.h"
#include "ostrelrtcore/NearestName.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

constexpr StoreType kLastType = StoreType::Table;

std::vector<std::string> const& GetTypeNames() {
  static std::vector<std::string> const names = [] {
    std::vector<std::string> all;
    for (int type = 0; type <= static_cast<int>(kLastType); ++type) {
      all.push_back(StoreTypeToString(static_cast<StoreType>(type)).toUtf8());
    }
    return all;
  }();
  return names;
}

[[noreturn]] void FailForm(StoreType type, char const* form, Json const& json, JsonPlace const& place) {
  place.Fail(
      fmt::format("{} must be {}, {} was given", StoreTypeToString(type).toUtf8(), form, DescribeJson(json)));
}

template <class Number>
bool ParseWhole(std::string const& text, Number& number) {
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

bool ReadInteger(Json const& json, int64& value) {
  if (!json.is_number_integer()) return false;
  value = json.get<int64>();
  return !json.is_number_unsigned() || value >= 0;
}

uint32 ReadInt32(Json const& json, JsonPlace const& place) {
  int64 value = 0;
  using Limits = std::numeric_limits<int>;
  if (!ReadInteger(json, value) || value < Limits::min() || value > Limits::max()) {
    FailForm(StoreType::Int32, "a whole number from -2147483648 to 2147483647", json, place);
  }
  return static_cast<uint32>(value);
}

uint64 ReadInt64(Json const& json, JsonPlace const& place) {
  int64 value = 0;
  if (json.is_string() ? ParseWhole(json.get_ref<std::string const&>(), value) : ReadInteger(json, value)) {
    return static_cast<uint64>(value);
  }
  FailForm(StoreType::Int64, "a whole number of 64 bits, as number or text", json, place);
}

double ReadReal(StoreType type, Json const& json, JsonPlace const& place) {
  if (json.is_number()) {
    // "-0" is read as an integer; of those only this one loses its sign.
    bool const isNegativeZero =
        json.is_number_integer() && !json.is_number_unsigned() && json.get<int64>() == 0;
    return isNegativeZero ? -0.0 : json.get<double>();
  }
  if (json.is_string()) {
    auto const& text = json.get_ref<std::string const&>();
    if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
    if (text == "Infinity") return std::numeric_limits<double>::infinity();
    if (text == "-Infinity") return -std::numeric_limits<double>::infinity();
  }
  FailForm(type, R"(a number, "NaN", "Infinity" or "-Infinity")", json, place);
}

uint32 ReadReal32(Json const& json, JsonPlace const& place) {
  double const value = ReadReal(StoreType::Real32, json, place);
  auto const narrow = static_cast<float>(value);
  if (std::isinf(narrow) && !std::isinf(value)) {
    FailForm(StoreType::Real32, "within the range of 32-bit reals", json, place);
  }
  return std::bit_cast<uint32>(narrow);
}

uint32 ReadColor(Json const& json, JsonPlace const& place) {
  uint32 argb = 0;
  if (json.is_string()) {
    auto const& text = json.get_ref<std::string const&>();
    if (text.size() == 9 && text[0] == '#') {
      auto const [end, error] = std::from_chars(text.data() + 1, text.data() + 9, argb, 16);
      if (error == std::errc() && end == text.data() + 9) return argb;
    }
  }
  FailForm(StoreType::Color, R"("#AARRGGBB")", json, place);
}

uint64 ReadInstant(StoreType type, Json const& json, JsonPlace const& place) {
  if (json.is_string()) {
    auto const& text = json.get_ref<std::string const&>();
    uint64 ticks = 0;
    if (ParseWhole(text, ticks)) return ticks;
    if (auto const instant = OrtDateTime::FromIsoText(text)) return instant->GetValue();
  }
  FailForm(type,
           type == StoreType::Date ? R"(a text like "2020-03-01" or a count of ticks as text)"
                                   : R"(a text like "2020-03-01T12:00:00.0000" or a count of ticks as text)",
           json, place);
}

// The text is at most 40 bytes.
template <class... Arguments>
void AppendNumber(std::string& out, Arguments... arguments) {
  std::array<char, 40> buffer;
  auto const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...).ptr;
  out.append(buffer.data(), end);
}

// A number of JSON that keeps the sign of zero in readers that know whole numbers.
void AppendDigits(double value, std::string& out) {
  if (value == 0.0 && std::signbit(value)) {
    out += "-0.0";
  } else {
    AppendNumber(out, value);
  }
}

bool WriteNotFinite(double value, std::string& out) {
  if (std::isfinite(value)) return false;
  out += std::isnan(value) ? R"("NaN")" : value < 0 ? R"("-Infinity")" : R"("Infinity")";
  return true;
}

void WriteReal64(double value, std::string& out) {
  if (!WriteNotFinite(value, out)) AppendDigits(value, out);
}

void WriteReal32(float value, std::string& out) {
  if (WriteNotFinite(value, out)) return;
  if (value == 0.0F) return AppendDigits(value, out);
  std::size_t const start = out.size();
  AppendNumber(out, value);
  // Readers go by way of a double, which may round twice.
  double wide = 0;
  std::from_chars(out.data() + start, out.data() + out.size(), wide);
  if (static_cast<float>(wide) == value) return;
  out.resize(start);
  AppendNumber(out, static_cast<double>(value));
}

void WriteInt64(int64 value, std::string& out) {
  // 2^63, to which the largest numbers round, is no Int64 any more.
  auto const wide = static_cast<double>(value);
  bool const isExact = wide < 9223372036854775808.0 && static_cast<int64>(wide) == value;
  if (!isExact) out += '"';
  AppendNumber(out, value);
  if (!isExact) out += '"';
}

void WriteInstant(StoreType type, OrtDateTime instant, std::string& out) {
  int const year = instant.GetOrtDateTimeParts().GetYear();
  out += '"';
  if (year < 1 || year > 9999) {
    AppendNumber(out, instant.GetValue());
  } else {
    out += type == StoreType::Date && !instant.HasTime() ? instant.ToIsoDateText() : instant.ToIsoText();
  }
  out += '"';
}

}  // namespace

StoreType ReadStoreType(Json const& json, JsonPlace const& place) {
  if (!json.is_string())
    place.Fail("a type must be a text like \"Real64\", " + DescribeJson(json) + " was given");
  auto const& name = json.get_ref<std::string const&>();
  auto const& names = GetTypeNames();
  for (std::size_t i = 1; i < names.size(); ++i) {
    if (names[i] == name) return static_cast<StoreType>(i);
  }
  std::string const nearest = NearestName(name, std::span(names).subspan(1));
  place.Fail("no type is named " + DescribeJson(json) +
             (nearest.empty() ? "" : "; did you mean '" + nearest + "'?"));
}

SpecialKind ReadSpecialKind(Json const& json, JsonPlace const& place) {
  int64 kind = 0;
  if (!ReadInteger(json, kind) || kind < 0 || kind > 255) {
    place.Fail("a special kind must be a whole number from 0 to 255, " + DescribeJson(json) + " was given");
  }
  return static_cast<SpecialKind>(kind);
}

int ReadIndex(Json const& json, JsonPlace const& place) {
  int64 index = 0;
  if (!ReadInteger(json, index) || index < 0 || index > std::numeric_limits<int>::max()) {
    place.Fail("a row must be a whole number from 0 on, " + DescribeJson(json) + " was given");
  }
  return static_cast<int>(index);
}

template <>
uint8 ReadPayload<uint8>(StoreType type, Json const& json, JsonPlace const& place) {
  if (!json.is_boolean()) FailForm(type, "true or false", json, place);
  return json.get<bool>() ? 1 : 0;
}

template <>
uint32 ReadPayload<uint32>(StoreType type, Json const& json, JsonPlace const& place) {
  switch (type) {
    case StoreType::Int32:
      return ReadInt32(json, place);
    case StoreType::Real32:
      return ReadReal32(json, place);
    default:
      return ReadColor(json, place);
  }
}

template <>
uint64 ReadPayload<uint64>(StoreType type, Json const& json, JsonPlace const& place) {
  switch (type) {
    case StoreType::Int64:
      return ReadInt64(json, place);
    case StoreType::Real64:
      return std::bit_cast<uint64>(ReadReal(type, json, place));
    default:
      return ReadInstant(type, json, place);
  }
}

template <>
RIndirectString ReadPayload<RIndirectString>(StoreType type, Json const& json, JsonPlace const& place) {
  if (!json.is_string()) FailForm(type, "a text", json, place);
  return RIndirectString::FromUtf8(json.get_ref<std::string const&>());
}

template <>
Value ReadPayload<Value>(StoreType type, Json const& json, JsonPlace const& place) {
  auto value = ReadValue(json, place);
  if (value->GetStoreType() != type) {
    place.Fail(fmt::format("a value of type {} is needed, one of type {} was given",
                           StoreTypeToString(type).toUtf8(),
                           StoreTypeToString(value->GetStoreType()).toUtf8()));
  }
  return value;
}

Value ReadScalar(StoreType type, Json const& json, JsonPlace const& place) {
  switch (type) {
    case StoreType::Bool:
      return factory::MakeBool(ReadPayload<uint8>(type, json, place) != 0);
    case StoreType::Int32:
      return factory::MakeInt32(static_cast<int>(ReadInt32(json, place)));
    case StoreType::Int64:
      return factory::MakeInt64(static_cast<int64>(ReadInt64(json, place)));
    case StoreType::Real32:
      return factory::MakeReal32(std::bit_cast<float>(ReadReal32(json, place)));
    case StoreType::Real64:
      return factory::MakeReal64(ReadReal(type, json, place));
    case StoreType::Color:
      return factory::MakeColor(OrtColor(static_cast<int>(ReadColor(json, place))));
    case StoreType::Date:
      return factory::MakeDate(OrtDateTime::FromValue(ReadInstant(type, json, place)));
    case StoreType::DateTime:
      return factory::MakeDateTime(OrtDateTime::FromValue(ReadInstant(type, json, place)));
    default:
      return factory::MakeString(ReadPayload<RIndirectString>(StoreType::String, json, place));
  }
}

void WritePayload(StoreType, uint8 element, std::string& out) { out += element != 0 ? "true" : "false"; }

void WritePayload(StoreType type, uint32 element, std::string& out) {
  switch (type) {
    case StoreType::Int32:
      return AppendNumber(out, static_cast<int>(element));
    case StoreType::Real32:
      return WriteReal32(std::bit_cast<float>(element), out);
    default:
      out += fmt::format(R"("#{:08X}")", element);
  }
}

void WritePayload(StoreType type, uint64 element, std::string& out) {
  switch (type) {
    case StoreType::Int64:
      return WriteInt64(static_cast<int64>(element), out);
    case StoreType::Real64:
      return WriteReal64(std::bit_cast<double>(element), out);
    default:
      return WriteInstant(type, OrtDateTime::FromValue(element), out);
  }
}

void WritePayload(StoreType, RIndirectString const& element, std::string& out) {
  WriteText(element.Get(), out);
}

void WritePayload(StoreType, Value const& element, std::string& out) { WriteValue(*element, out); }

void WriteScalarPayload(StoreValue const& scalar, std::string& out) {
  StoreType const type = scalar.GetStoreType();
  switch (type) {
    case StoreType::Bool:
      return WritePayload(type, static_cast<uint8>(scalar.GetBool()), out);
    case StoreType::Int32:
      return AppendNumber(out, scalar.GetInt32());
    case StoreType::Int64:
      return WriteInt64(scalar.GetInt64(), out);
    case StoreType::Real32:
      return WriteReal32(scalar.GetReal32(), out);
    case StoreType::Real64:
      return WriteReal64(scalar.GetReal64(), out);
    case StoreType::Color:
      return WritePayload(type, static_cast<uint32>(scalar.GetColor().GetValue()), out);
    case StoreType::Date:
    case StoreType::DateTime:
      return WriteInstant(type, scalar.GetDateTime(), out);
    default:
      return WritePayload(type, scalar.GetString(), out);
  }
}

void WriteText(std::string_view utf8, std::string& out) {
  constexpr std::string_view kShort = "\"\\\b\f\n\r\t";
  constexpr std::string_view kLetters = "\"\\bfnrt";
  out += '"';
  for (char const unit : utf8) {
    if (auto const found = kShort.find(unit); found != std::string_view::npos) {
      out += '\\';
      out += kLetters[found];
    } else if (static_cast<unsigned char>(unit) < 0x20) {
      out += fmt::format("\\u{:04x}", static_cast<unsigned>(unit));
    } else {
      out += unit;
    }
  }
  out += '"';
}

void WriteText(OStringCore const& text, std::string& out) { WriteText(std::string_view(text.toUtf8()), out); }

}  // namespace ostrel::program
