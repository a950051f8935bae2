#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "ostrelrtcore/Export.h"
#include "ostrelrtcore/OrtTimeSpan.h"

namespace ort::core {

/// The calendar parts of an OrtDateTime, in the proleptic Gregorian calendar with a year 0.
class OrtDateTimeParts {
 public:
  /// The parts of the empty date-time.
  constexpr OrtDateTimeParts() noexcept : OrtDateTimeParts(-4713, 11, 25, 0, 0, 0, 0) {}
  constexpr OrtDateTimeParts(int year, int month, int day, int hour, int minute, int second,
                             int fraction) noexcept
      : year_(year),
        month_(month),
        day_(day),
        hour_(hour),
        minute_(minute),
        second_(second),
        fraction_(fraction) {}

  constexpr int GetYear() const noexcept { return year_; }
  constexpr int GetMonth() const noexcept { return month_; }        ///< 1 to 12
  constexpr int GetDay() const noexcept { return day_; }            ///< 1 to 31
  constexpr int GetHour() const noexcept { return hour_; }          ///< 0 to 23
  constexpr int GetMinute() const noexcept { return minute_; }      ///< 0 to 59
  constexpr int GetSecond() const noexcept { return second_; }      ///< 0 to 59
  constexpr int GetFraction() const noexcept { return fraction_; }  ///< ticks, 0 to 9999

  friend constexpr bool operator==(OrtDateTimeParts const&, OrtDateTimeParts const&) noexcept = default;

 private:
  int year_, month_, day_, hour_, minute_, second_, fraction_;
};

/// A point in time: an unsigned count of ticks of 100 microseconds, 864,000,000 a day. Tick 0 is midnight
/// of -4713-11-25 in the proleptic Gregorian calendar, so that 1899-12-30 is day 2,415,018; the last tick
/// lies in the year 58,450,692. There is no time zone. All arithmetic saturates at both ends.
class ORTCORE_API OrtDateTime {
 public:
  static constexpr std::uint64_t kTicksPerDay = 864'000'000;
  /// The day (counted from tick 0) whose day number is 0: 1899-12-30.
  static constexpr std::uint64_t kDayNumberZero = 2'415'018;

  /// The empty date-time, tick 0.
  constexpr OrtDateTime() noexcept = default;

  /// Parts beyond their range carry over: month 13 is January of the next year, day 0 the last day of the
  /// month before, second -1 the last second of the minute before. `fraction` is in ticks.
  constexpr OrtDateTime(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                        int fraction = 0) noexcept;

  static constexpr OrtDateTime FromValue(std::uint64_t ticks) noexcept {
    OrtDateTime result;
    result.ticks_ = ticks;
    return result;
  }
  constexpr std::uint64_t GetValue() const noexcept { return ticks_; }

  /// The day number: days since 1899-12-30 with the time of day as fraction.
  constexpr double ToDouble() const noexcept;
  /// The tick nearest to a day number; of two equally near, the one farther from 1899-12-30. NaN gives the
  /// empty date-time.
  static constexpr OrtDateTime FromDouble(double dayNumber) noexcept;

  /// Whole days since tick 0.
  constexpr std::uint64_t GetDayCount() const noexcept { return ticks_ / kTicksPerDay; }
  /// Midnight of the same day.
  constexpr OrtDateTime TruncateTime() const noexcept { return FromValue(ticks_ - TicksOfDay()); }
  constexpr bool HasTime() const noexcept { return TicksOfDay() != 0; }
  constexpr OrtDateTimeParts GetOrtDateTimeParts() const noexcept;

  /// ISO 8601, e.g. "2020-03-01T12:00:00.0000". Years outside 0 to 9999 are written with a sign and as many
  /// digits as they need, e.g. "+12020-03-01T12:00:00.0000" and "-4713-11-25T00:00:00.0000".
  std::string ToIsoText() const;
  /// The date alone, e.g. "2020-03-01".
  std::string ToIsoDateText() const;

  /// Reads a whole text: "2020-03-01", or a date, 'T' or one blank, and "12:00", "12:00:00" or
  /// "12:00:00.5" (1 to 9 fraction digits, rounded to the nearest tick), which may be followed by 'Z' or an
  /// offset such as "+01:00"; the result is then in UTC. Years are 0001 to 9999. Anything else, also a date
  /// that does not exist or an hour of 24, gives nullopt. `carriesTime`, when given, tells on success whether
  /// a time of day was written.
  static std::optional<OrtDateTime> FromIsoText(std::string_view text, bool* carriesTime = nullptr);
  static std::optional<OrtDateTime> FromIsoText(std::u16string_view text, bool* carriesTime = nullptr);

  friend constexpr OrtDateTime operator+(OrtDateTime date, OrtTimeSpan span) noexcept {
    return span.GetTicks() < 0 ? date.Earlier(Magnitude(span)) : date.Later(Magnitude(span));
  }
  friend constexpr OrtDateTime operator-(OrtDateTime date, OrtTimeSpan span) noexcept {
    return span.GetTicks() < 0 ? date.Later(Magnitude(span)) : date.Earlier(Magnitude(span));
  }
  friend constexpr OrtTimeSpan operator-(OrtDateTime a, OrtDateTime b) noexcept {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (a.ticks_ >= b.ticks_) {
      std::uint64_t const distance = a.ticks_ - b.ticks_;
      return OrtTimeSpan::FromTicks(static_cast<std::int64_t>(distance < most ? distance : most));
    }
    std::uint64_t const distance = b.ticks_ - a.ticks_;
    return OrtTimeSpan::FromTicks(distance > most ? std::numeric_limits<std::int64_t>::min()
                                                  : -static_cast<std::int64_t>(distance));
  }

  friend constexpr auto operator<=>(OrtDateTime, OrtDateTime) noexcept = default;

 private:
  static constexpr std::uint64_t kLastTick = std::numeric_limits<std::uint64_t>::max();
  static constexpr std::uint64_t kLastDay = kLastTick / kTicksPerDay;

  // The computational calendar counts from -4800-03-01, 32,045 days before tick 0, so that a year ends with
  // the leap day and the count is never negative.
  static constexpr std::int64_t kCalendarYears = 4800;
  static constexpr std::uint64_t kCalendarDays = 32'045;

  constexpr std::uint32_t TicksOfDay() const noexcept {
    return static_cast<std::uint32_t>(ticks_ % kTicksPerDay);
  }
  constexpr OrtDateTime Later(std::uint64_t ticks) const noexcept {
    return FromValue(ticks > kLastTick - ticks_ ? kLastTick : ticks_ + ticks);
  }
  constexpr OrtDateTime Earlier(std::uint64_t ticks) const noexcept {
    return FromValue(ticks > ticks_ ? 0 : ticks_ - ticks);
  }
  static constexpr std::uint64_t Magnitude(OrtTimeSpan span) noexcept {
    auto const bits = static_cast<std::uint64_t>(span.GetTicks());
    return span.GetTicks() < 0 ? 0 - bits : bits;
  }
  static constexpr std::int64_t DaysFromCivil(int year, int month) noexcept;

  std::uint64_t ticks_ = 0;
};

// Both directions follow C. Neri and L. Schneider, "Euclidean affine functions and their application to
// calendar algorithms", Software: Practice and Experience 53 (2023), widened to 64-bit day counts: all
// divisions are by constants, and nothing branches.

constexpr OrtDateTimeParts OrtDateTime::GetOrtDateTimeParts() const noexcept {
  std::uint64_t const days = ticks_ / kTicksPerDay;
  auto const time = static_cast<std::uint32_t>(ticks_ - days * kTicksPerDay);

  std::uint64_t const n1 = 4 * (days + kCalendarDays) + 3;
  auto const century = static_cast<std::uint32_t>(n1 / 146'097);
  auto const dayOfCentury = static_cast<std::uint32_t>(n1 - century * std::uint64_t{146'097}) / 4;

  std::uint64_t const p2 = std::uint64_t{2'939'745} * (4 * dayOfCentury + 3);
  auto const yearOfCentury = static_cast<std::uint32_t>(p2 >> 32);
  std::uint32_t const dayOfYear = static_cast<std::uint32_t>(p2) / 2'939'745 / 4;

  std::uint32_t const n3 = 2'141 * dayOfYear + 197'913;
  std::uint32_t const afterDecember = dayOfYear >= 306 ? 1 : 0;
  std::uint32_t const year = 100 * century + yearOfCentury + afterDecember;
  std::uint32_t const month = (n3 >> 16) - 12 * afterDecember;
  std::uint32_t const day = (n3 & 0xFFFF) / 2'141 + 1;

  std::uint32_t const seconds = time / 10'000;
  std::uint32_t const minutes = seconds / 60;
  return {
      static_cast<int>(year - kCalendarYears), static_cast<int>(month),        static_cast<int>(day),
      static_cast<int>(minutes / 60),          static_cast<int>(minutes % 60), static_cast<int>(seconds % 60),
      static_cast<int>(time % 10'000)};
}

/// Days from tick 0 to the first of a month, which may be any int.
constexpr std::int64_t OrtDateTime::DaysFromCivil(int year, int month) noexcept {
  // Whole cycles of 400 years are lent, so that every int year and month stays above zero, and given back.
  constexpr std::int64_t lentCycles = 6'000'000;
  constexpr std::int64_t lentMonths = 12 * std::int64_t{200'000'000};
  auto const months = static_cast<std::uint64_t>(std::int64_t{month} - 3 + lentMonths);
  std::uint64_t const shiftedMonth = months % 12;  // March is 0
  std::uint64_t const shiftedYear =
      static_cast<std::uint64_t>(year + kCalendarYears + 400 * lentCycles) + months / 12 - lentMonths / 12;
  std::uint64_t const century = shiftedYear / 100;
  std::uint64_t const yearDays = 1461 * shiftedYear / 4 - century + century / 4;
  std::uint64_t const monthDays = (979 * shiftedMonth + 18) / 32;
  return static_cast<std::int64_t>(yearDays + monthDays) - 146'097 * lentCycles -
         static_cast<std::int64_t>(kCalendarDays);
}

constexpr OrtDateTime::OrtDateTime(int year, int month, int day, int hour, int minute, int second,
                                   int fraction) noexcept {
  constexpr std::int64_t lentDays = 100'000'000;
  std::int64_t const time = hour * OrtTimeSpan::kTicksPerHour + minute * OrtTimeSpan::kTicksPerMinute +
                            second * OrtTimeSpan::kTicksPerSecond + fraction;
  auto const lentTime = static_cast<std::uint64_t>(time + lentDays * OrtTimeSpan::kTicksPerDay);
  std::int64_t const days =
      DaysFromCivil(year, month) + day - 1 + static_cast<std::int64_t>(lentTime / kTicksPerDay) - lentDays;
  if (days < 0) return;
  ticks_ =
      static_cast<std::uint64_t>(days) > kLastDay
          ? kLastTick
          : FromValue(static_cast<std::uint64_t>(days) * kTicksPerDay).Later(lentTime % kTicksPerDay).ticks_;
}

constexpr double OrtDateTime::ToDouble() const noexcept {
  constexpr std::uint64_t zero = kDayNumberZero * kTicksPerDay;
  auto const difference = static_cast<std::int64_t>(ticks_ - zero);
  // The dates of the far end lie more than a signed count after 1899-12-30.
  double const ticks =
      difference < 0 && ticks_ > zero ? static_cast<double>(ticks_ - zero) : static_cast<double>(difference);
  return ticks / static_cast<double>(kTicksPerDay);
}

constexpr OrtDateTime OrtDateTime::FromDouble(double dayNumber) noexcept {
  constexpr auto first = -static_cast<double>(kDayNumberZero);
  constexpr auto beyond = static_cast<double>(kLastDay - kDayNumberZero + 1);
  if (!(dayNumber > first)) return {};
  if (dayNumber >= beyond) return FromValue(kLastTick);
  // Days and time are scaled apart, so that far dates do not lose ticks in one large product.
  auto const wholeDays = static_cast<std::int64_t>(dayNumber);
  double const time = (dayNumber - static_cast<double>(wholeDays)) * static_cast<double>(kTicksPerDay);
  auto ticks = static_cast<std::int64_t>(time);
  double const rest = time - static_cast<double>(ticks);
  ticks += static_cast<int>(rest >= 0.5) - static_cast<int>(rest <= -0.5);
  auto const midnight = FromValue((static_cast<std::uint64_t>(wholeDays) + kDayNumberZero) * kTicksPerDay);
  return midnight + OrtTimeSpan::FromTicks(ticks);
}

}  // namespace ort::core

template <>
struct std::hash<ort::core::OrtDateTime> {
  std::size_t operator()(ort::core::OrtDateTime date) const noexcept {
    return std::hash<std::uint64_t>{}(date.GetValue());
  }
};
