#include "charts/graph/PeriodNodes.h"

#include <algorithm>
#include <span>

#include "charts/functions/TimeUnits.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::OrtDateTime;
using ort::core::StoreTypeInfo;

constexpr int kYearSteps[] = {1, 2, 5, 10, 20, 50, 100, 200, 500, 1'000, 2'000, 5'000, 10'000};
constexpr int kQuarterSteps[] = {1, 2, 4, 8, 20, 40, 80, 200, 400, 800, 2'000, 4'000, 8'000, 20'000, 40'000};
constexpr int kMonthSteps[] = {1,   2,     3,     6,     12,     24,     60,     120,    240,
                               600, 1'200, 2'400, 6'000, 12'000, 24'000, 60'000, 120'000};
constexpr int kWeekSteps[] = {1,   2,     4,     13,    26,     52,     104,    260,
                              520, 1'040, 2'600, 5'200, 10'400, 52'000, 520'000};
constexpr int kDaySteps[] = {1, 2, 7, 14, 28, 91, 182, 364, 728, 1'820, 3'640, 36'400, 364'000, 3'640'000};

/// How a unit is counted.
struct Measure {
  char const* name;
  int code;  // of startOfPeriod, for a beginning to count from
  int months;
  int days;
  double averageDays;
  std::span<int const> steps;
};
constexpr int kFiscalYear = 0;
constexpr int kWeek = 3;
constexpr int kDay = 4;
constexpr double kDaysPerYear = 365.2425;
constexpr Measure kMeasures[] = {{"year", kFiscalYear, 12, 0, kDaysPerYear, kYearSteps},
                                 {"yearquarter", kFiscalYear, 3, 0, kDaysPerYear / 4, kQuarterSteps},
                                 {"yearmonth", kFiscalYear, 1, 0, kDaysPerYear / 12, kMonthSteps},
                                 {"yearweek", kWeek, 0, 7, 7, kWeekSteps},
                                 {"yearmonthdate", kDay, 0, 1, 1, kDaySteps}};

Measure const& MeasureOf(TimeUnitSpec const& unit) {
  return *std::ranges::find(kMeasures, unit.name, [](Measure const& measure) { return measure.name; });
}

/// A period that some date lies in, and the name of its year.
struct Anchor {
  NodeId beginning = -1;  // DateTime scalar
  NodeId year = -1;       // Int32 scalar
};

Anchor FindAnchor(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId date) {
  NodeId const firstMonth = graph.Int(unit.fiscalStart.value_or(1));
  return {graph.Call(name + " period", "startOfPeriod",
                     {graph.Int(MeasureOf(unit).code), date, firstMonth, graph.Int(unit.weekStart)}),
          unit.IsWeek() ? -1 : graph.Call(name + " fiscal year", "fiscalYear", {firstMonth, date})};
}

Anchor AnchorOf(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates) {
  NodeId const any = graph.Constant("any date", factory::MakeDateTime(OrtDateTime(2000, 1, 1)));
  NodeId const first = graph.Call(name + " first date", "min_multi_datetime", {dates});
  // There is none in a column of special rows.
  return FindAnchor(graph, name, unit,
                    graph.Map(name + " first or any date", "replaceSpecial", first, {any}));
}

constexpr char kFiscalYearPattern[] = "FY %Y";

/// The parts of a period's name, as patterns: its own, and that of its year, empty where it is one.
struct Patterns {
  std::string unit;
  std::string year;
};

Patterns PatternsOf(TimeUnitSpec const& unit) {
  constexpr int kSunday = 1;
  constexpr int kMonday = 2;
  if (unit.name == "year") return {kFiscalYearPattern, ""};
  if (!unit.IsWeek()) return {"Q%q", std::string(" ") + kFiscalYearPattern};
  if (unit.weekStart == kMonday) return {"W %-V", " %G"};
  if (unit.weekStart == kSunday) return {"W %-U", " %Y"};
  // The other weeks have no numbers that anyone knows.
  return {"%b %-d", " %Y"};
}

NodeId Format(GraphBuilder& graph, std::string const& name, NodeId dates, std::string const& pattern) {
  return graph.Call(name, "formatDates", {dates, graph.Text(pattern)});
}

/// Dates of a fiscal year as those of the calendar year that it is named after, so that patterns read it.
NodeId NameFiscalDates(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates) {
  if (!unit.fiscalStart) return dates;
  Anchor const anchor = AnchorOf(graph, name, unit, dates);
  return graph.Call(name + " in named years", "moveToYear", {dates, anchor.beginning, anchor.year});
}

}  // namespace

NodeId FloorDates(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates) {
  if (!unit.IsPeriod()) return graph.Call(name, "timeUnitFloor", {dates, graph.Text(unit.name)});
  Measure const& measure = MeasureOf(unit);
  return graph.Call(name, "periodFloor",
                    {dates, AnchorOf(graph, name, unit, dates).beginning, graph.Int(measure.months),
                     graph.Int(measure.days)});
}

NodeId FollowDates(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates) {
  if (!unit.IsPeriod()) return graph.Call(name, "nextTimeUnit", {dates, graph.Text(unit.name)});
  Measure const& measure = MeasureOf(unit);
  return graph.Call(name, "nextPeriod",
                    {dates, AnchorOf(graph, name, unit, dates).beginning, graph.Int(measure.months),
                     graph.Int(measure.days)});
}

NodeId FormatUnits(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates,
                   std::string const& pattern) {
  if (!pattern.empty() || unit.IsPeriod()) {
    Patterns const own = unit.IsPeriod() ? PatternsOf(unit) : Patterns{};
    return Format(graph, name, NameFiscalDates(graph, name, unit, dates),
                  pattern.empty() ? own.unit + own.year : pattern);
  }
  auto const known = TimeUnit::FromName(unit.name);
  return Format(graph, name, dates, std::string(known ? known->GetLabelPattern() : ""));
}

NodeId FormatUnitTicks(GraphBuilder& graph, std::string const& name, TimeUnitSpec const& unit, NodeId dates,
                       std::string const& pattern) {
  // Units of the calendar are told as other dates are.
  if (!unit.IsPeriod()) return Format(graph, name, dates, pattern);
  Patterns const own = PatternsOf(unit);
  if (!pattern.empty() || own.year.empty()) return FormatUnits(graph, name, unit, dates, pattern);
  NodeId const named = NameFiscalDates(graph, name, unit, dates);
  if (unit.fiscalStart) {
    NodeId const start = graph.Map(name + " year floor", "yearFloor", named);
    NodeId const isFirst = graph.Zip(name + " begins a year", "equal", named, start);
    return graph.Call(name, "choose",
                      {isFirst, Format(graph, name + " years", named, kFiscalYearPattern),
                       Format(graph, name + " quarters", named, own.unit)});
  }
  NodeId const years = Format(graph, name + " years", named, own.year);
  NodeId const isNew = graph.Scan(name + " begins a year", "isDistinctPrev", years);
  return graph.Call(name, "joinTexts",
                    {Format(graph, name + " units", named, own.unit),
                     graph.Call(name + " new years", "choose", {isNew, years, graph.Text("")})});
}

NodeId PlanUnitTicks(GraphBuilder& graph, std::string const& name, UnitTicks const& ticks, NodeId low,
                     NodeId high) {
  Measure const& measure = MeasureOf(ticks.unit);
  NodeId const first = graph.Map(name + " from date", "toDateTime", low);
  NodeId const last = graph.Map(name + " to date", "toDateTime", high);
  NodeId step = -1;
  if (ticks.step) {
    step = graph.Int(*ticks.step);
  } else {
    auto steps = std::make_unique<std::vector<int>>(measure.steps.begin(), measure.steps.end());
    NodeId const days = graph.Map(name + " days", "asReal64",
                                  graph.Call(name + " whole days", "daysDifference", {last, first}));
    NodeId const units = graph.Zip(name + " units", "divide", days, graph.Real(measure.averageDays));
    NodeId const count =
        graph.Constant(name + " count", factory::MakeReal32(static_cast<float>(ticks.count)));
    step = graph.Call(
        name + " frequency", "temporalTickFrequency",
        {graph.Map(name + " whole units", "toInt32", units), count, graph.Int(0),
         graph.Constant(name + " steps", factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(steps)))});
  }
  Anchor const anchor = FindAnchor(graph, name, ticks.unit, first);
  // Fiscal years, and the parts of them, keep their places however the axis is moved.
  NodeId const number = measure.months == 0 ? graph.Int(0)
                                            : graph.Zip(name + " number", "multiply", anchor.year,
                                                        graph.Int(12 / measure.months));
  return graph.Call(
      name + " dates", "periodTicks",
      {first, last, anchor.beginning, graph.Int(measure.months), graph.Int(measure.days), number, step});
}

}  // namespace ostrel::charts
