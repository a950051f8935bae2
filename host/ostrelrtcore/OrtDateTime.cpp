#include "ostrelrtcore/OrtDateTime.h"

#include <cstdlib>

namespace ort::core {

namespace {

constexpr int DaysInMonth(int year, int month) {
  if (month != 2) return 30 + ((month + month / 8) & 1);
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
}

template <typename Char>
class IsoReader {
 public:
  explicit IsoReader(std::basic_string_view<Char> text) : text_(text) {}

  bool AtEnd() const { return text_.empty(); }

  bool Accept(char wanted) {
    if (AtEnd() || text_.front() != static_cast<Char>(wanted)) return false;
    text_.remove_prefix(1);
    return true;
  }

  /// Exactly `digits` digits that make a number from `least` to `most`.
  bool Number(int digits, int least, int most, int& value) {
    value = 0;
    for (int i = 0; i < digits; ++i) {
      if (!StartsWithDigit()) return false;
      value = 10 * value + TakeDigit();
    }
    return least <= value && value <= most;
  }

  /// One to nine digits behind a decimal point, in ticks; the result may be a whole second.
  bool Fraction(int& ticks) {
    if (!StartsWithDigit()) return false;
    int nanoseconds = 0;
    for (int unit = 100'000'000; unit > 0 && StartsWithDigit(); unit /= 10) {
      nanoseconds += unit * TakeDigit();
    }
    ticks = (nanoseconds + 50'000) / 100'000;
    return true;
  }

 private:
  bool StartsWithDigit() const { return !AtEnd() && text_.front() >= '0' && text_.front() <= '9'; }
  int TakeDigit() {
    int const digit = text_.front() - '0';
    text_.remove_prefix(1);
    return digit;
  }

  std::basic_string_view<Char> text_;
};

struct ClockTime {
  int hour = 0, minute = 0, second = 0, fraction = 0;
};

template <typename Char>
bool ReadTime(IsoReader<Char>& in, ClockTime& time) {
  if (!in.Number(2, 0, 23, time.hour) || !in.Accept(':') || !in.Number(2, 0, 59, time.minute)) return false;
  if (!in.Accept(':')) return true;
  if (!in.Number(2, 0, 59, time.second)) return false;
  return !in.Accept('.') || in.Fraction(time.fraction);
}

/// The offset from UTC; none written is an offset of 0.
template <typename Char>
bool ReadOffset(IsoReader<Char>& in, OrtTimeSpan& offset) {
  if (in.AtEnd() || in.Accept('Z')) return true;
  bool const isEast = in.Accept('+');
  if (!isEast && !in.Accept('-')) return false;
  int hours = 0;
  int minutes = 0;
  if (!in.Number(2, 0, 23, hours) || !in.Accept(':') || !in.Number(2, 0, 59, minutes)) return false;
  OrtTimeSpan const distance(0, hours, minutes, 0);
  offset = isEast ? distance : -distance;
  return true;
}

template <typename Char>
std::optional<OrtDateTime> ReadIsoText(std::basic_string_view<Char> text, bool* carriesTime) {
  IsoReader<Char> in(text);
  int year = 0;
  int month = 0;
  int day = 0;
  bool const isDate = in.Number(4, 1, 9999, year) && in.Accept('-') && in.Number(2, 1, 12, month) &&
                      in.Accept('-') && in.Number(2, 1, DaysInMonth(year, month), day);
  if (!isDate) return std::nullopt;

  ClockTime time;
  OrtTimeSpan offset;
  bool const hasTime = in.Accept('T') || in.Accept(' ');
  if (hasTime && !(ReadTime(in, time) && ReadOffset(in, offset))) return std::nullopt;
  if (!in.AtEnd()) return std::nullopt;

  if (carriesTime != nullptr) *carriesTime = hasTime;
  return OrtDateTime(year, month, day, time.hour, time.minute, time.second, time.fraction) - offset;
}

/// Appends at least `width` digits.
void AppendNumber(std::string& text, int number, int width) {
  char digits[10];
  int count = 0;
  for (int rest = number; rest > 0 || count < width; rest /= 10) {
    digits[count++] = static_cast<char>('0' + rest % 10);
  }
  while (count > 0) text += digits[--count];
}

void AppendDate(std::string& text, OrtDateTimeParts const& parts) {
  int const year = parts.GetYear();
  if (year < 0 || year > 9999) text += year < 0 ? '-' : '+';
  AppendNumber(text, std::abs(year), 4);
  text += '-';
  AppendNumber(text, parts.GetMonth(), 2);
  text += '-';
  AppendNumber(text, parts.GetDay(), 2);
}

}  // namespace

std::string OrtDateTime::ToIsoDateText() const {
  std::string text;
  AppendDate(text, GetOrtDateTimeParts());
  return text;
}

std::string OrtDateTime::ToIsoText() const {
  OrtDateTimeParts const parts = GetOrtDateTimeParts();
  std::string text;
  text.reserve(32);
  AppendDate(text, parts);
  text += 'T';
  AppendNumber(text, parts.GetHour(), 2);
  text += ':';
  AppendNumber(text, parts.GetMinute(), 2);
  text += ':';
  AppendNumber(text, parts.GetSecond(), 2);
  text += '.';
  AppendNumber(text, parts.GetFraction(), 4);
  return text;
}

std::optional<OrtDateTime> OrtDateTime::FromIsoText(std::string_view text, bool* carriesTime) {
  return ReadIsoText(text, carriesTime);
}

std::optional<OrtDateTime> OrtDateTime::FromIsoText(std::u16string_view text, bool* carriesTime) {
  return ReadIsoText(text, carriesTime);
}

}  // namespace ort::core
