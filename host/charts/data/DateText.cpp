#include "charts/data/DateText.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <vector>

#include "charts/data/DataTable.h"
#include "charts/data/NumberText.h"

namespace ostrel::charts {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;

namespace {

constexpr std::size_t kLongestDate = 64;

constexpr std::array<std::string_view, 12> kMonths = {"january",   "february", "march",    "april",
                                                      "may",       "june",     "july",     "august",
                                                      "september", "october",  "november", "december"};
constexpr std::array<std::string_view, 7> kWeekdays = {"sunday",   "monday", "tuesday", "wednesday",
                                                       "thursday", "friday", "saturday"};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Parts of a date as they are read, and the check that they name a moment that exists.
struct Parts {
  int year = 1900, month = 1, day = 1, hour = 0, minute = 0, second = 0, ticks = 0;
  enum class HalfDay { None, Morning, Afternoon };
  HalfDay halfDay = HalfDay::None;
  int offsetMinutes = 0;

  std::optional<OrtDateTime> Combine() const {
    int hours = hour;
    if (halfDay != HalfDay::None) {
      if (hour < 1 || hour > 12) return std::nullopt;
      hours = hour % 12 + (halfDay == HalfDay::Afternoon ? 12 : 0);
    }
    bool const inRange = year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= 31 &&
                         hours <= 23 && minute <= 59 && second <= 59;
    if (!inRange) return std::nullopt;
    OrtDateTime const date(year, month, day, hours, minute, second, ticks);
    // A day that the month does not have would have carried over.
    if (OrtDateTime(year, month, day).GetOrtDateTimeParts().GetDay() != day) return std::nullopt;
    return date - OrtTimeSpan(0, 0, offsetMinutes, 0);
  }
};

int ExpandYear(int year, std::size_t digits) {
  if (digits > 2) return year;
  return year + (year < 50 ? 2000 : 1900);
}

std::string FoldCase(std::string_view word) {
  std::string folded(word);
  for (char& c : folded) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return folded;
}

/// The position of the name that a word of three or more letters begins, counted from 1; 0 for none.
template <std::size_t N>
int FindName(std::array<std::string_view, N> const& names, std::string_view folded) {
  if (folded.size() < 3) return 0;
  for (std::size_t i = 0; i < N; ++i) {
    if (names[i].starts_with(folded)) return static_cast<int>(i) + 1;
  }
  return folded == "sept" ? 9 : 0;
}

class Cursor {
 public:
  explicit Cursor(std::string_view text) : text_(text) {}

  bool AtEnd() const { return text_.empty(); }
  char Peek() const { return AtEnd() ? '\0' : text_.front(); }
  bool Accept(char wanted) {
    if (AtEnd() || Peek() != wanted) return false;
    text_.remove_prefix(1);
    return true;
  }
  void Skip() { text_.remove_prefix(1); }

  /// At most `most` digits (9 at the utmost); empty when there are none.
  std::string_view TakeDigits(std::size_t most = 9) {
    return Take([most](char c, std::size_t i) { return i < most && IsDigit(c); });
  }
  std::string_view TakeLetters() {
    return Take([](char c, std::size_t) { return IsLetter(c); });
  }

 private:
  template <typename Predicate>
  std::string_view Take(Predicate belongs) {
    std::size_t count = 0;
    while (count < text_.size() && belongs(text_[count], count)) ++count;
    auto const taken = text_.substr(0, count);
    text_.remove_prefix(count);
    return taken;
  }

  std::string_view text_;
};

int ToInt(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

/// Digits behind a decimal point, rounded to ticks.
int ToTicks(std::string_view digits) {
  int nanoseconds = 0;
  int unit = 100'000'000;
  for (char const digit : digits) {
    nanoseconds += unit * (digit - '0');
    unit /= 10;
  }
  return (nanoseconds + 50'000) / 100'000;
}

/// A date in the loose form: numbers, words and separators in nearly any order.
class FreeDateReader {
 public:
  explicit FreeDateReader(std::string_view text) : in_(text) {}

  std::optional<DateText> Read() {
    while (!in_.AtEnd()) {
      if (!ReadPart()) return std::nullopt;
    }
    if (!PlaceNumbers()) return std::nullopt;
    auto const instant = parts_.Combine();
    if (!instant) return std::nullopt;
    return DateText{*instant, hasTime_};
  }

 private:
  struct Number {
    int value;
    std::size_t digits;
  };

  bool ReadPart() {
    char const c = in_.Peek();
    if (c == ' ' || c == ',' || c == '.') return in_.Accept(c);
    if (IsDigit(c)) return ReadNumber();
    if (IsLetter(c)) return ReadWord();
    if ((c == '+' || c == '-') && hasTime_) return ReadOffset();
    // "1-May-2012"
    return c == '-' && !numbers_.empty() && in_.Accept('-');
  }

  bool ReadNumber() {
    auto const digits = in_.TakeDigits();
    if (IsDigit(in_.Peek())) return false;
    if (in_.Peek() == ':') return !hasTime_ && ReadTime(ToInt(digits));
    numbers_.push_back({ToInt(digits), digits.size()});
    if (in_.Accept('/')) hasSlashes_ = true;
    return numbers_.size() <= 3;
  }

  bool ReadTime(int hour) {
    hasTime_ = true;
    parts_.hour = hour;
    in_.Skip();
    if (!IsDigit(in_.Peek())) return false;
    parts_.minute = ToInt(in_.TakeDigits(2));
    if (!in_.Accept(':')) return true;
    if (!IsDigit(in_.Peek())) return false;
    parts_.second = ToInt(in_.TakeDigits(2));
    if (in_.Accept('.')) parts_.ticks = ToTicks(in_.TakeDigits());
    return true;
  }

  bool ReadWord() {
    auto const word = FoldCase(in_.TakeLetters());
    if (word == "am" || word == "pm") {
      if (!hasTime_ || parts_.halfDay != Parts::HalfDay::None) return false;
      parts_.halfDay = word == "pm" ? Parts::HalfDay::Afternoon : Parts::HalfDay::Morning;
      return true;
    }
    if (word == "gmt" || word == "utc" || word == "z") return hasTime_;
    if (word == "t") return !numbers_.empty() && !hasTime_;
    if (int const month = FindName(kMonths, word); month != 0) {
      if (month_ != 0) return false;
      month_ = month;
      monthStandsAfter_ = numbers_.size();
      return true;
    }
    return FindName(kWeekdays, word) != 0;
  }

  bool ReadOffset() {
    bool const isEast = in_.Accept('+');
    if (!isEast) in_.Skip();
    auto const digits = in_.TakeDigits(4);
    int minutes = ToInt(digits);
    if (digits.size() == 4) {
      minutes = minutes / 100 * 60 + minutes % 100;
    } else if (digits.size() == 2 && in_.Accept(':')) {
      auto const rest = in_.TakeDigits(2);
      if (rest.size() != 2) return false;
      minutes = minutes * 60 + ToInt(rest);
    } else {
      return false;
    }
    parts_.offsetMinutes = isEast ? minutes : -minutes;
    return true;
  }

  bool PlaceNumbers() {
    if (month_ != 0) return PlaceBesideMonth();
    if (!hasSlashes_ || numbers_.size() != 3) return false;
    // Year first when it is written in full, else month, day, year.
    if (numbers_[0].digits > 2) return Place(numbers_[0], numbers_[1].value, numbers_[2].value);
    return Place(numbers_[2], numbers_[0].value, numbers_[1].value);
  }

  bool PlaceBesideMonth() {
    if (hasSlashes_) return false;
    if (numbers_.size() == 1) return numbers_[0].digits == 4 && Place(numbers_[0], month_, 1);
    if (numbers_.size() != 2) return false;
    // "2012 Jan 31"; else "Jan 31 2012" and "31 Jan 2012".
    if (numbers_[0].digits > 2)
      return monthStandsAfter_ <= 1 && Place(numbers_[0], month_, numbers_[1].value);
    return Place(numbers_[1], month_, numbers_[0].value);
  }

  bool Place(Number year, int month, int day) {
    parts_.year = ExpandYear(year.value, year.digits);
    parts_.month = month;
    parts_.day = day;
    return true;
  }

  Cursor in_;
  Parts parts_;
  std::vector<Number> numbers_;
  int month_ = 0;
  std::size_t monthStandsAfter_ = 0;
  bool hasSlashes_ = false;
  bool hasTime_ = false;
};

/// Reads a text directive by directive; each gives false when the text does not have it.
class PatternReader {
 public:
  explicit PatternReader(std::string_view text) : in_(text) {}

  bool ReadLiteral(char literal) { return in_.Accept(literal); }

  bool ReadDirective(char letter) {
    switch (letter) {
      case 'Y':
        return ReadNumber(4, parts_.year);
      case 'y':
        return ReadShortYear();
      case 'm':
        return ReadNumber(2, parts_.month);
      case 'd':
      case 'e':
        return (in_.Accept(' '), ReadNumber(2, parts_.day));
      case 'j':
        return ReadNumber(3, dayOfYear_) && dayOfYear_ >= 1 && dayOfYear_ <= 366;
      case 'b':
      case 'B':
        return (parts_.month = FindName(kMonths, FoldCase(in_.TakeLetters()))) != 0;
      case 'a':
      case 'A':
        return FindName(kWeekdays, FoldCase(in_.TakeLetters())) != 0;
      case 'H':
      case 'I':
        return ReadTimePart(2, parts_.hour);
      case 'M':
        return ReadTimePart(2, parts_.minute);
      case 'S':
        return ReadTimePart(2, parts_.second);
      case 'L':
        return ReadFraction(3);
      case 'f':
        return ReadFraction(6);
      case 'p':
        return ReadHalfDay();
      case 'Z':
        return ReadOffset();
      default:
        return in_.Accept(letter);
    }
  }

  std::optional<DateText> Finish() {
    if (!in_.AtEnd()) return std::nullopt;
    if (dayOfYear_ != 0) parts_.month = parts_.day = 1;
    auto const instant = parts_.Combine();
    if (!instant) return std::nullopt;
    return DateText{dayOfYear_ == 0 ? *instant : *instant + OrtTimeSpan(dayOfYear_ - 1, 0, 0, 0), hasTime_};
  }

 private:
  bool ReadNumber(std::size_t mostDigits, int& value) {
    auto const digits = in_.TakeDigits(mostDigits);
    value = ToInt(digits);
    return !digits.empty();
  }

  bool ReadTimePart(std::size_t mostDigits, int& value) {
    hasTime_ = true;
    return ReadNumber(mostDigits, value);
  }

  bool ReadShortYear() {
    if (!ReadNumber(2, parts_.year)) return false;
    parts_.year += parts_.year > 68 ? 1900 : 2000;
    return true;
  }

  bool ReadFraction(std::size_t mostDigits) {
    hasTime_ = true;
    auto const digits = in_.TakeDigits(mostDigits);
    parts_.ticks = ToTicks(digits);
    return !digits.empty();
  }

  bool ReadHalfDay() {
    auto const word = FoldCase(in_.TakeLetters());
    parts_.halfDay = word == "pm" ? Parts::HalfDay::Afternoon : Parts::HalfDay::Morning;
    return word == "am" || word == "pm";
  }

  bool ReadOffset() {
    if (in_.Accept('Z')) return true;
    bool const isEast = in_.Accept('+');
    if (!isEast && !in_.Accept('-')) return false;
    auto const hours = in_.TakeDigits(2);
    in_.Accept(':');
    auto const minutes = in_.TakeDigits(2);
    if (hours.size() != 2 || minutes.size() != 2) return false;
    parts_.offsetMinutes = (isEast ? 1 : -1) * (60 * ToInt(hours) + ToInt(minutes));
    return true;
  }

  Cursor in_;
  Parts parts_;
  int dayOfYear_ = 0;
  bool hasTime_ = false;
};

/// "2020/03/01 14:05" is the ISO form with other separators.
std::optional<DateText> ReadSlashedDate(std::string_view text) {
  if (text.size() > kLongestDate) return std::nullopt;
  std::array<char, kLongestDate> iso;
  text.copy(iso.data(), text.size());
  iso[4] = iso[7] = '-';
  DateText date;
  auto const instant = OrtDateTime::FromIsoText(std::string_view(iso.data(), text.size()), &date.hasTime);
  if (!instant) return std::nullopt;
  date.instant = *instant;
  return date;
}

}  // namespace

std::optional<DateText> ReadPlainDate(std::string_view text) {
  bool const mayBeDate = text.size() >= 7 && IsDigit(text[0]) && IsDigit(text[1]) && IsDigit(text[2]) &&
                         IsDigit(text[3]) && (text[4] == '-' || text[4] == '/');
  if (!mayBeDate) return std::nullopt;
  if (text.size() == 7) {
    if (text[4] != '-' || !IsDigit(text[5]) || !IsDigit(text[6])) return std::nullopt;
    Parts parts;
    parts.year = ToInt(text.substr(0, 4));
    parts.month = ToInt(text.substr(5));
    auto const instant = parts.Combine();
    if (!instant) return std::nullopt;
    return DateText{*instant, false};
  }
  if (text[4] == '/') return text.size() >= 10 && text[7] == '/' ? ReadSlashedDate(text) : std::nullopt;
  DateText date;
  auto const instant = OrtDateTime::FromIsoText(text, &date.hasTime);
  if (!instant) return std::nullopt;
  date.instant = *instant;
  return date;
}

std::optional<DateText> ReadFreeDate(std::string_view text) {
  text = TrimBlanks(text);
  if (text.empty() || text.size() > kLongestDate) return std::nullopt;
  if (auto const plain = ReadPlainDate(text)) return plain;
  if (text.size() == 4 && text.find_first_not_of("0123456789") == std::string_view::npos) {
    int const year = ToInt(text);
    if (year >= 1) return DateText{OrtDateTime(year, 1, 1), false};
  }
  return FreeDateReader(text).Read();
}

DatePattern::DatePattern(std::string pattern) : pattern_(std::move(pattern)) {
  for (std::size_t i = 0; i < pattern_.size(); ++i) {
    if (pattern_[i] != '%') continue;
    char const letter = ++i < pattern_.size() ? pattern_[i] : '\0';
    if (letter == '\0' || std::string_view("YymdejbBaAHIpMSLfZ%").find(letter) == std::string_view::npos) {
      throw DataError(fmt::format("date pattern '{}': '%{}' is not supported", pattern_,
                                  letter == '\0' ? std::string() : std::string(1, letter)));
    }
  }
}

std::optional<DateText> DatePattern::Read(std::string_view text) const {
  PatternReader reader(text);
  for (std::size_t i = 0; i < pattern_.size(); ++i) {
    bool const matches =
        pattern_[i] == '%' ? reader.ReadDirective(pattern_[++i]) : reader.ReadLiteral(pattern_[i]);
    if (!matches) return std::nullopt;
  }
  return reader.Finish();
}

}  // namespace ostrel::charts
