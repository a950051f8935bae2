#include "charts/document/DateLiterals.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "charts/document/JsonObjectReader.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

namespace {

using ort::core::OrtDateTime;

constexpr std::string_view kMonths[] = {"january",   "february", "march",    "april",
                                        "may",       "june",     "july",     "august",
                                        "september", "october",  "november", "december"};
constexpr std::string_view kDays[] = {"sunday",   "monday", "tuesday", "wednesday",
                                      "thursday", "friday", "saturday"};
constexpr std::size_t kLettersOfName = 3;  // at least
// The parts of a unit's number; larger ones are milliseconds.
constexpr double kLargestPart = 9'999;
// A leap year that begins on a Sunday.
constexpr int kYearOfNone = 2012;
constexpr double kMillisecondsPerDay = 86'400'000;
constexpr int kTicksPerMillisecond = 10;

enum Part { Year, Quarter, Month, Date, DayOfYear, Day, Hours, Minutes, Seconds, Milliseconds, PartCount };

struct PartNumbers {
  char const* name;
  int least;
  int largest;
  std::span<std::string_view const> names = {};
};
constexpr PartNumbers kParts[PartCount] = {
    {"year", 1, 9'999},    {"quarter", 1, 4},       {"month", 1, 12, kMonths}, {"date", 1, 31},
    {"dayofyear", 1, 366}, {"day", 0, 7, kDays},    {"hours", 0, 23},          {"minutes", 0, 59},
    {"seconds", 0, 59},    {"milliseconds", 0, 999}};

using Parts = std::array<std::optional<int>, PartCount>;

// By all of a name or its first letters.
std::optional<int> FindNamed(PartNumbers const& part, std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  if (text.size() < kLettersOfName) return std::nullopt;
  auto const isMeant = [&](std::string_view name) { return name.starts_with(text); };
  auto const found = std::ranges::find_if(part.names, isMeant);
  if (found == part.names.end()) return std::nullopt;
  return static_cast<int>(found - part.names.begin()) + part.least;
}

std::optional<int> FindPart(PartNumbers const& part, Literal const& literal) {
  double number = -1;
  if (auto const* given = std::get_if<double>(&literal)) number = *given;
  if (auto const* text = std::get_if<std::string>(&literal)) {
    char const* const end = text->data() + text->size();
    if (std::from_chars(text->data(), end, number).ptr != end) return FindNamed(part, *text);
  }
  bool const isHeld = number >= part.least && number <= part.largest && number == std::floor(number);
  return isHeld ? std::optional(static_cast<int>(number)) : std::nullopt;
}

OrtDateTime MakeDate(Parts const& parts) {
  int month = parts[Month].value_or(1);
  int day = parts[Date].value_or(1);
  if (parts[Quarter] && !parts[Month]) month = *parts[Quarter] * 3 - 2;
  if (parts[DayOfYear]) day = *parts[DayOfYear];
  if (parts[Day]) day = *parts[Day] % 7 + 1;
  return {parts[Year].value_or(kYearOfNone),
          month,
          day,
          parts[Hours].value_or(0),
          parts[Minutes].value_or(0),
          parts[Seconds].value_or(0),
          parts[Milliseconds].value_or(0) * kTicksPerMillisecond};
}

// The only part of a unit that counts within the calendar.
std::optional<Part> FindSinglePart(TimeUnitSpec const& unit) {
  std::string_view name = unit.name;
  if (name.starts_with("utc")) name.remove_prefix(3);
  for (int part = Year; part < PartCount; ++part) {
    if (name == kParts[part].name && !unit.IsPeriod()) return static_cast<Part>(part);
  }
  return std::nullopt;
}

OrtDateTime FromMilliseconds(double milliseconds) {
  return OrtDateTime::FromDouble(OrtDateTime(1970, 1, 1).ToDouble() + milliseconds / kMillisecondsPerDay);
}

}  // namespace

OrtDateTime ReadDateObject(JsonValue const& value) {
  Parts parts;
  std::optional<bool> isUtc;
  JsonObjectReader reader(value);
  for (int i = Year; i < PartCount; ++i) {
    PartNumbers const& part = kParts[i];
    if (i == DayOfYear) continue;
    reader.On(part.name, [&part, &number = parts[static_cast<std::size_t>(i)]](JsonValue const& given) {
      number = FindPart(part, given.ReadLiteral());
      if (!number)
        given.Fail(fmt::format("expects a whole number from {} to {}{}", part.least, part.largest,
                               part.names.empty() ? "" : ", or a name"));
    });
  }
  reader.Bool("utc", isUtc).Read();
  auto const isGiven = [](std::optional<int> const& part) { return part.has_value(); };
  auto const count = std::ranges::count_if(parts, isGiven);
  if (count == 0) value.Fail("expects a date such as {\"year\": 2020, \"month\": 3}");
  if (parts[Day] && count > 1) value.FailAt("day", "stands alone; use date");
  return MakeDate(parts);
}

std::optional<OrtDateTime> FindDate(TimeUnitSpec const& unit, Literal const& literal) {
  if (auto const* date = std::get_if<OrtDateTime>(&literal)) return *date;
  auto const* text = std::get_if<std::string>(&literal);
  auto const* number = std::get_if<double>(&literal);
  auto const part = FindSinglePart(unit);
  if (part && (text != nullptr || (number != nullptr && *number <= kLargestPart))) {
    Parts parts;
    parts[*part] = FindPart(kParts[*part], literal);
    if (parts[*part]) return MakeDate(parts);
  }
  if (text != nullptr) return OrtDateTime::FromIsoText(std::string_view(*text));
  if (number == nullptr || (*number <= kLargestPart && (part || unit.IsPeriod()))) return std::nullopt;
  return FromMilliseconds(*number);
}

}  // namespace ostrel::charts
