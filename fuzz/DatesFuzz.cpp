#include <cmath>
#include <optional>

#include "Bytes.h"
#include "charts/data/DataTable.h"
#include "charts/data/DateText.h"

using namespace ort::core;
using namespace ostrel::charts;

namespace {

constexpr auto kLast = OrtDateTime::FromValue(std::numeric_limits<std::uint64_t>::max());

// What is read is written as a text that reads back.
void CheckInstant(OrtDateTime date) {
  int const year = date.GetOrtDateTimeParts().GetYear();
  auto const back = OrtDateTime::FromIsoText(date.ToIsoText());
  Check(back.has_value() == (year >= 1 && year <= 9999));
  Check(!back || *back == date);
}

void CheckText(std::string const& text) {
  auto const iso = OrtDateTime::FromIsoText(text);
  auto const plain = ReadPlainDate(text);
  auto const free = ReadFreeDate(text);
  if (iso) CheckInstant(*iso);
  if (free) CheckInstant(free->instant);
  Check(!plain || (free && free->instant == plain->instant && free->hasTime == plain->hasTime));
}

void CheckPattern(std::string const& pattern, std::string const& text) {
  try {
    if (auto const date = DatePattern(pattern).Read(text)) CheckInstant(date->instant);
  } catch (DataError const&) {
    // The pattern is bad and said to be.
  }
}

void CheckParts(OrtDateTime date) {
  auto const parts = date.GetOrtDateTimeParts();
  OrtDateTime const rebuilt(parts.GetYear(), parts.GetMonth(), parts.GetDay(), parts.GetHour(),
                            parts.GetMinute(), parts.GetSecond(), parts.GetFraction());
  Check(rebuilt == date);
  Check(date.TruncateTime() <= date && date.TruncateTime().GetDayCount() == date.GetDayCount());
  // Far from today a double holds neither every tick nor every quotient.
  double const days = date.ToDouble();
  double const again = OrtDateTime::FromDouble(days).ToDouble();
  Check(std::abs(again - days) <= std::abs(days) * 0x1p-51);
}

// Sums end at the ends of time and are exact before them.
void CheckSums(OrtDateTime date, OrtTimeSpan span, OrtDateTime other) {
  OrtDateTime const later = date + span, earlier = date - span;
  OrtTimeSpan const zero;
  Check(span < zero ? later <= date : later >= date);
  Check(span < zero ? earlier >= date : earlier <= date);
  if (later != kLast && later != OrtDateTime()) Check(later - date == span && later - span == date);
  if (earlier != kLast && earlier != OrtDateTime()) Check(earlier + span == date);
  OrtTimeSpan const difference = date - other;
  Check((difference < zero) == (date < other) && (difference == zero) == (date == other));
}

}  // namespace

/// Texts as dates, with patterns of any kind, and the arithmetic of any two dates and spans.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Bytes bytes(data, size);
  switch (bytes.Next() % 4) {
    case 0:
      CheckText(bytes.NextText());
      break;
    case 1: {
      std::string const pattern = bytes.NextText();
      CheckPattern(pattern, bytes.NextText());
      break;
    }
    case 2: {
      int parts[7];
      for (int& part : parts) part = bytes.NextInteger<int>();
      OrtDateTime const date(parts[0], parts[1], parts[2], parts[3], parts[4], parts[5], parts[6]);
      CheckParts(date);
      CheckParts(OrtDateTime::FromDouble(bytes.NextReal()));
      break;
    }
    default: {
      auto const date = OrtDateTime::FromValue(bytes.NextBits<std::uint64_t>());
      CheckParts(date);
      auto const span = OrtTimeSpan(bytes.NextInteger<std::int64_t>(), bytes.NextInteger<std::int64_t>(),
                                    bytes.NextInteger<std::int64_t>(), bytes.NextInteger<std::int64_t>(),
                                    bytes.NextInteger<std::int64_t>());
      CheckSums(date, span, OrtDateTime::FromValue(bytes.NextBits<std::uint64_t>()));
      break;
    }
  }
  return 0;
}
