#include "charts/functions/ChartFamilies.h"
#include "charts/functions/Periods.h"
#include "ostrelrtcore/builtins/Columns.h"

/// Fiscal years and quarters, weeks that begin on a chosen day: units of time that are counted from one of
/// their beginnings. Special rows stay special; months and days of which not just one is above 0 throw 2.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

template <class Change>
Value ChangeDates(Value const& dates, Change const& change) {
  RowKinds const kinds(RequireColumn(*dates, StoreType::DateTime, "dates"));
  auto const& rows = dates->AsTypedArray<OrtDateTime>();
  auto builder = factory::MakeColumnBuilder<OrtDateTime>(StoreTypeInfo::DateTime, rows.GetCount());
  auto const out = builder.GetValues();
  for (int row = 0; row < rows.GetCount(); ++row) {
    bool const isOrdinary = kinds[row] == SpecialKind::None;
    out[static_cast<std::size_t>(row)] = isOrdinary ? change(rows.GetElement(row)) : OrtDateTime();
    if (!isOrdinary) builder.SetSpecial(row, kinds[row]);
  }
  return builder.Finish();
}

OrtDateTime ReadDate(Value const& value) { return FetchStoreValue<OrtDateTime>(value); }
int ReadInt(Value const& value) { return FetchStoreValue<int>(value); }

Periods ReadPeriods(Value const& beginning, Value const& months, Value const& days) {
  return {ReadDate(beginning), ReadInt(months), ReadInt(days)};
}

Value FloorToPeriod(Value const& dates, Value const& beginning, Value const& months, Value const& days) {
  Periods const periods = ReadPeriods(beginning, months, days);
  return ChangeDates(dates, [&](OrtDateTime date) { return periods.Floor(date); });
}

Value NextPeriod(Value const& dates, Value const& beginning, Value const& months, Value const& days) {
  Periods const periods = ReadPeriods(beginning, months, days);
  return ChangeDates(dates, [&](OrtDateTime date) { return periods.After(date); });
}

Value PeriodTicks(Value const& first, Value const& last, Value const& beginning, Value const& months,
                  Value const& days, Value const& number, Value const& step) {
  Periods const periods = ReadPeriods(beginning, months, days);
  return factory::MakeArray<OrtDateTime>(
      StoreTypeInfo::DateTime, std::make_unique<std::vector<OrtDateTime>>(periods.List(
                                   ReadDate(first), ReadDate(last), ReadInt(number), ReadInt(step))));
}

Value MoveToYear(Value const& dates, Value const& beginning, Value const& year) {
  auto const from = ReadDate(beginning).GetOrtDateTimeParts();
  int const years = ReadInt(year) - from.GetYear();
  return ChangeDates(dates, [&](OrtDateTime date) {
    auto const p = date.GetOrtDateTimeParts();
    return OrtDateTime(p.GetYear() + years, p.GetMonth() + 1 - from.GetMonth(), p.GetDay(), p.GetHour(),
                       p.GetMinute(), p.GetSecond(), p.GetFraction());
  });
}

}  // namespace

BuiltinFamily PeriodFamily() {
  using enum StoreType;
  KeySegmentType const dates = ArrayOf(DateTime);
  KeySegmentType const date = Segment(DateTime);
  KeySegmentType const integer = Segment(Int32);
  return {
      "periods",
      {
          {.name = "periodFloor",
           .inputs = {"dates", "beginning", "months", "days"},
           .help = "The beginning of the period that each date lies in, where one period begins at "
                   "`beginning` and each lasts so many months or else so many days.",
           .example =
               R"("inputs": [{"Array": {"type": "DateTime", "values": ["2016-02-29T12:00:00.0000"]}}, )"
               R"({"DateTime": "2010-10-01T00:00:00.0000"}, {"Int32": 12}, {"Int32": 0}])",
           .registrations = {Multinary<FloorToPeriod>({dates, date, integer, integer}, dates)}},
          {.name = "nextPeriod",
           .inputs = {"dates", "beginning", "months", "days"},
           .help = "The beginning of the period behind the one that each date lies in.",
           .example =
               R"("inputs": [{"Array": {"type": "DateTime", "values": ["2016-02-29T12:00:00.0000"]}}, )"
               R"({"DateTime": "2016-01-04T00:00:00.0000"}, {"Int32": 0}, {"Int32": 7}])",
           .registrations = {Multinary<NextPeriod>({dates, date, integer, integer}, dates)}},
          {.name = "periodTicks",
           .inputs = {"first", "last", "beginning", "months", "days", "number", "step"},
           .help =
               "The beginnings of periods from one date to another whose number, counted from `number` at "
               "`beginning`, is a multiple of the step; none for a step below 1, at most 10,000.",
           .example =
               R"("inputs": [{"DateTime": "2006-01-01T00:00:00.0000"}, )"
               R"({"DateTime": "2016-01-01T00:00:00.0000"}, {"DateTime": "2005-10-01T00:00:00.0000"}, )"
               R"({"Int32": 12}, {"Int32": 0}, {"Int32": 2006}, {"Int32": 5}])",
           .registrations = {Multinary<PeriodTicks>({date, date, date, integer, integer, integer, integer},
                                                    dates)}},
          {.name = "moveToYear",
           .inputs = {"dates", "beginning", "year"},
           .help = "Each date moved by the months that bring `beginning` to January of the year: dates of a "
                   "fiscal year as those of the calendar year that it is named after.",
           .example =
               R"("inputs": [{"Array": {"type": "DateTime", "values": ["2016-04-01T00:00:00.0000"]}}, )"
               R"({"DateTime": "2015-10-01T00:00:00.0000"}, {"Int32": 2016}])",
           .registrations = {Multinary<MoveToYear>({dates, date, integer}, dates)}},
      }};
}

}  // namespace ostrel::charts
