// Functions of whole tables and columns: an ordered list of inputs in, one value out. They work out axes,
// ranges, ticks and dates, and the least and greatest across inputs.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/AxisFunctions.h"
#include "ostreltransforms/setvaluemulti/Calendar.h"
#include "ostreltransforms/setvaluemulti/ColumnFunctions.h"
#include "ostreltransforms/setvaluemulti/MapRows.h"
#include "ostreltransforms/setvaluemulti/MarkRows.h"
#include "ostreltransforms/setvaluemulti/RangeRows.h"
#include "ostreltransforms/setvaluemulti/SubscriptedCall.h"
#include "ostreltransforms/setvaluemulti/TickFunctions.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr Slot kDate = {"date", StoreType::DateTime};

constexpr char kDifferenceDetails[] = R"(- `a`, `b`: instants; the later first gives a result above 0

Parts of a unit are cut off, towards 0.)";

// The registrations of each of these differ in nothing but what is named here.
template <auto fn>
constexpr Row Difference(wchar_t const* const& name, char const* help) {
  return Multinary<Subscripted<fn>>({.name = name,
                                     .inputs = {{"a", StoreType::DateTime}, {"b", StoreType::DateTime}},
                                     .help = help,
                                     .details = kDifferenceDetails,
                                     .example = R"("inputs": [{"DateTime": "2020-03-01T12:00:00.0000"}, )"
                                                R"({"DateTime": "2020-02-28T11:59:59.0000"}])"});
}

constexpr char kAccumulateHelp[] = "The total of a column's ordinary rows, in every row.";
constexpr char kAccumulateDetails[] =
    R"(Int64 wraps around; Real64 is added in order. Special rows are passed over; a column without others is special of kind 1
in every row.)";

constexpr char kInterpolateDetails[] = R"(- `fraction`: 0 is `from` and 1 is `to`; it goes on beyond
- `from`, `to`: of one type, else 220 is thrown)";

constexpr Row Interpolated(StoreType type, char const* example) {
  return Multinary<InterpolateValues>({.name = TransformNames::INTERPOLATE,
                                       .inputs = {"fraction", {"from", type}, {"to", type}},
                                       .output = type,
                                       .help = "The value a fraction of the way from one to another.",
                                       .details = kInterpolateDetails,
                                       .example = example});
}

constexpr char kExtremumDetails[] =
    R"(The rows of a column, or the payloads of a key set or key map; special ones are passed over. Of equal values the first is
taken; a NaN only when it comes first. Special of kind 1 where there is none; without inputs the type's zero.)";

template <class T, bool greatest>
constexpr Row Extremum(wchar_t const* const& name, char const* help, char const* example) {
  constexpr StoreType kType = ElementTraits<T>::kStoreType;
  return Multinary<FindExtremum<T, greatest>>({.name = name,
                                               .inputs = {{"values", ArrayOf(kType)}},
                                               .output = kType,
                                               .help = help,
                                               .details = kExtremumDetails,
                                               .example = example});
}

constexpr char kLeastHelp[] = "The least ordinary value of a column, key set or key map.";
constexpr char kGreatestHelp[] = "The greatest ordinary value of a column, key set or key map.";
constexpr char kReal64Extremum[] = R"("inputs": [{"Array": {"type": "Real64", "values": [2.5, -1, 4]}}])";
constexpr char kInt64Extremum[] = R"("inputs": [{"Array": {"type": "Int64", "values": [2, -1, 4]}}])";
constexpr char kDateTimeExtremum[] =
    R"("inputs": [{"Array": {"type": "DateTime", "values": ["2020-03-01T12:00:00.0000", )"
    R"("2019-03-01T00:00:00.0000"]}}])";

constexpr Row kRows[] = {
    Multinary<ComputeAxisExtents>(
        {.name = TransformNames::COMPUTE_AXIS_EXTENTS,
         .inputs = {{"domains", ArrayOf(StoreType::Tuple)},
                    {"ranges", ArrayOf(StoreType::Tuple)},
                    {"reversed", ArrayOf(StoreType::Bool)},
                    {"axes", ArrayOf(StoreType::Int32)},
                    {"fallsBackUpright", StoreType::Bool}},
         .output = StoreType::KeyMap,
         .help = "Where the ends and the zero of each row's axis lie, and its domain as numbers.",
         .details =
             "- `domains`: a range tuple for each axis, in the field's own units; dates are day "
             "numbers in the result.\n"
             "- `ranges`: for each axis a tuple whose first two members are the values of which the "
             "positions are wanted; logarithms on a logarithmic axis. Special ends count as 0.\n"
             "- `axes`: for each row of the result the position of its axis. A row that names none "
             "goes from 0 to 1, or from 1 to 0 without `fallsBackUpright`.\n"
             "- The result has the Real64 columns \"minResult\", \"maxResult\" and \"zeroResult\", positions "
             "from 0 at the domain's minimum to 1 at its maximum, and \"minRangeResult\" and "
             "\"maxRangeResult\", the domain itself.\n"
             "- Errors: 55 for inputs of another kind and for fewer ranges or flags than domains, 219 "
             "for another number of inputs.",
         .example = R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Int64": -5}, )"
                    R"({"Int64": 15}, {"Int32": 0}, {"Int32": 2}, {"Bool": false}]}]}}, )"
                    R"({"Array": {"type": "Tuple", "values": [{"Tuple": [{"Int64": 0}, {"Int64": 10}]}]}}, )"
                    R"({"Array": {"type": "Bool", "values": [false]}}, )"
                    R"({"Array": {"type": "Int32", "values": [0, 0, 1]}}, {"Bool": true}])"}),
    kExtendRangeColumn,
    kExtendRangeWithOverflow,
    kCalcPixelOverflow,
    kCalcReflineOverflow,
    kExtendXRangesByDegree,
    kExtendYRangesByDegree,
    kZeroAlignFoldedAxes,
    kSyncFoldedAxes,
    kAdjustAxesForLockedScales,
    kAdjustDomainForStepping,
    kRangeUnitsPerPixel,
    kResolveMinMaxDataTypeMismatch,
    Multinary<CalcLogTicks>(
        {.name = TransformNames::CALC_LOG_TICKS,
         .inputs = {{"minimum", StoreType::Real64},
                    {"maximum", StoreType::Real64},
                    {"length", StoreType::Int32},
                    {"isHorizontal", StoreType::Bool},
                    {"gap", StoreType::Int32},
                    {"format", StoreType::Tuple},
                    {"font", StoreType::Tuple},
                    {"scale", StoreType::Real64},
                    {"base", StoreType::Real64}},
         .output = ArrayOf(StoreType::Real64),
         .help = "Where the ticks of a logarithmic axis stand, 0 at its minimum and 1 at its maximum: the "
                 "densest of six sets whose labels fit into the length in pixels.",
         .details = "- `length` and `gap` are in pixels: no two labels may come closer than `gap`. Across a "
                    "vertical axis a label is as high as its font.\n"
                    "- `format` and `font` are handed to the host, which formats and measures the labels.\n"
                    "- Decades begin at `scale` times the powers of `base`. Without a length or a format "
                    "ticks stand at the decades alone.\n"
                    "- Errors: 2 for a bound, scale or base that is not finite, a scale not above 0, a base "
                    "not above 1 and more than 10,000 ticks; 55 for inputs of another kind; the exception "
                    "\"invalid vector<T> subscript\" for too few inputs.",
         .example = R"("inputs": [{"Real64": 1}, {"Real64": 1000}, {"Int32": 300}, {"Bool": true}, )"
                    R"({"Int32": 4}, {"Tuple": [{"String": ""}]}, {"Tuple": [{"String": "DejaVu Sans"}, )"
                    R"({"Real64": 10}, {"Int32": 400}, {"Int32": 0}]}, {"Real64": 1}, {"Real64": 10}])"}),
    Multinary<Subscripted<TemporalTickFrequency>>(
        {.name = TransformNames::TEMPORAL_TICK_FREQUENCY,
         .inputs = {{"a", StoreType::Int32},
                    {"factor", StoreType::Real32},
                    {"b", StoreType::Int32},
                    {"candidates", ArrayOf(StoreType::Int32)}},
         .help = "The first candidate that times a factor exceeds the larger of two counts; 0 if none does.",
         .details = R"(- `a`, `b`, `candidates`: counts of one unit of time
- `factor`: what a count is multiplied by before it is compared, in single precision

Special rows are no candidates.)",
         .example = R"("inputs": [{"Int32": 3}, {"Real32": 2}, {"Int32": 7}, )"
                    R"({"Array": {"type": "Int32", "values": [1, 3, 4, 6]}}])"}),
    Multinary<FindLargestGap>(
        {.name = TransformNames::FIND_LARGEST_GAP,
         .inputs = {{"slots", ArrayOf(StoreType::Int32)}},
         .output = StoreType::Tuple,
         .help = "The first and last slot of the largest gap in a circle of slots, of which 0 are empty.",
         .details = R"(- `slots`: 0 for an empty slot; the last one is followed by the first

The result is a tuple of two Int32, counted from 0; (0, 0) where no slot is empty, or all are. The length of a gap across
the end is not corrected for that, so that any later gap replaces it; of gaps equally long the last is taken.)",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0, 0, 1, 0, 0, 0, 1]}}])"}),
    Difference<Calendar::DaysDifference>(TransformNames::DAYS_DIFFERENCE,
                                         "The whole days between two dates."),
    Difference<Calendar::HoursDifference>(TransformNames::HOURS_DIFFERENCE,
                                          "The whole hours between two dates."),
    Difference<Calendar::MinutesDifference>(TransformNames::MINUTES_DIFFERENCE,
                                            "The whole minutes between two dates."),
    Difference<Calendar::SecondsDifference>(TransformNames::SECONDS_DIFFERENCE,
                                            "The whole seconds between two dates."),
    Multinary<Subscripted<Calendar::DaysToWeekStart>>(
        {.name = TransformNames::DAYS_TO_WEEK_START,
         .inputs = {kDate, {"weekStart", StoreType::Int32}},
         .help = "The days since the week began, on day 1 (Sunday) to 7; below 0 where it begins later.",
         .details = R"(- `weekStart`: the first day of weeks, 1 (Sunday) to 7

The result is the weekday, 0 to 6, less `weekStart` plus 1; it is not brought back above 0.)",
         .example = R"("inputs": [{"DateTime": "2020-03-01T12:00:00.0000"}, {"Int32": 1}])"}),
    Multinary<Subscripted<Calendar::FiscalYear>>(
        {.name = TransformNames::FISCAL_YEAR,
         .inputs = {{"startMonth", StoreType::Int32}, kDate},
         .help = "The fiscal year of a date, named after the calendar year in which it ends.",
         .details =
             R"(- `startMonth`: the first month of fiscal years, 1 to 12, else 0 is thrown; with 1 they are calendar years)",
         .example = R"("inputs": [{"Int32": 7}, {"DateTime": "2020-07-01T00:00:00.0000"}])"}),
    Multinary<Subscripted<Calendar::HasTime>>(
        {.name = TransformNames::HAS_TIME,
         .inputs = {kDate,
                    {"checksHour", StoreType::Bool},
                    {"checksMinute", StoreType::Bool},
                    {"checksSecond", StoreType::Bool},
                    {"checksFraction", StoreType::Bool}},
         .help = "Whether one of the named parts of the time of day is not 0.",
         .details =
             R"(- `checksHour`, `checksMinute`, `checksSecond`, `checksFraction`: the parts that are looked at)",
         .example = R"("inputs": [{"DateTime": "2020-03-01T12:00:00.0000"}, {"Bool": true}, )"
                    R"({"Bool": false}, {"Bool": false}, {"Bool": false}])"}),
    Multinary<Subscripted<Calendar::StartOfPeriod>>(
        {.name = TransformNames::START_OF_PERIOD,
         .inputs = {{"period", StoreType::Int32},
                    kDate,
                    {"startMonth", StoreType::Int32},
                    {"weekStart", StoreType::Int32}},
         .help =
             "The start of the fiscal year (0), fiscal quarter, month, week, day, hour, minute or second (7) "
             "that holds a date; in a month after its first day that of the next one.",
         .details =
             R"(- `period`: 0 fiscal year, 1 fiscal quarter, 2 month, 3 week, 4 day, 5 hour, 6 minute, 7 second; any other gives the
  default instant
- `startMonth`: the first month of fiscal years, 1 to 12
- `weekStart`: the first day of weeks, 1 (Sunday) to 7; a week that begins later than the date's day gives a later date)",
         .example = R"("inputs": [{"Int32": 1}, {"DateTime": "2021-02-10T12:00:00.0000"}, {"Int32": 4}, )"
                    R"({"Int32": 1}])"}),
    Multinary<Accumulate<int64>>({.name = TransformNames::ACCUMULATE,
                                  .inputs = {{"column", ArrayOf(StoreType::Int64)}},
                                  .output = ArrayOf(StoreType::Int64),
                                  .help = kAccumulateHelp,
                                  .details = kAccumulateDetails,
                                  .example = R"("inputs": [{"Array": {"type": "Int64", )"
                                             R"("values": [1, null, 2], "specials": [[1, 9]]}}])"}),
    Multinary<Accumulate<double>>({.name = TransformNames::ACCUMULATE,
                                   .inputs = {{"column", ArrayOf(StoreType::Real64)}},
                                   .output = ArrayOf(StoreType::Real64),
                                   .help = kAccumulateHelp,
                                   .details = kAccumulateDetails,
                                   .example = R"("inputs": [{"Array": {"type": "Real64", )"
                                              R"("values": [1.5, null, 2], "specials": [[1, 9]]}}])"}),
    Interpolated(StoreType::Int32, R"("inputs": [{"Real64": 0.25}, {"Int32": 0}, {"Int32": 10}])"),
    Interpolated(StoreType::Int64, R"("inputs": [{"Real64": 0.25}, {"Int64": 0}, {"Int64": 10}])"),
    Interpolated(StoreType::Real32, R"("inputs": [{"Real64": 0.25}, {"Real32": 0}, {"Real32": 10}])"),
    Interpolated(StoreType::Real64, R"("inputs": [{"Real64": 0.25}, {"Real64": 0}, {"Real64": 10}])"),
    Interpolated(StoreType::DateTime,
                 R"("inputs": [{"Real64": 0.25}, {"DateTime": "2020-03-01T00:00:00.0000"}, )"
                 R"({"DateTime": "2020-03-03T00:00:00.0000"}])"),
    kResolveSizeEncodingParameters,
    Extremum<double, false>(TransformNames::MIN_MULTI_R64, kLeastHelp, kReal64Extremum),
    Extremum<double, true>(TransformNames::MAX_MULTI_R64, kGreatestHelp, kReal64Extremum),
    Extremum<int64, false>(TransformNames::MIN_MULTI_I64, kLeastHelp, kInt64Extremum),
    Extremum<int64, true>(TransformNames::MAX_MULTI_I64, kGreatestHelp, kInt64Extremum),
    Extremum<OrtDateTime, false>(TransformNames::MIN_MULTI_DATETIME, kLeastHelp, kDateTimeExtremum),
    Extremum<OrtDateTime, true>(TransformNames::MAX_MULTI_DATETIME, kGreatestHelp, kDateTimeExtremum),
    Multinary<ColumnNotEmpty>({.name = TransformNames::COLUMN_NOT_EMPTY,
                               .inputs = {{"column", StoreType::Array}, "countsAsFilled"},
                               .help = "Whether a column has rows, or a flag is set.",
                               .details = R"(- `column`: of any type; special rows are rows)",
                               .example = R"("inputs": [{"Array": {"type": "Int32", "values": []}}, )"
                                          R"({"Bool": false}])"}),
    kExcludeHiddenMarks,
    kWrapMaps,
    kUpdateToSizeForMappedImages,
    kToKeyMap,
    kComputeTreemapNodesLayout,
};

}  // namespace

FamilyTable GetSetValueMultiTable() { return {"set-value-multi", kRows}; }

void RegisterOstrelSetValueMultiFunctions(FunctionRegistry& registry) {
  RegisterRows(registry, GetSetValueMultiTable());
}

}  // namespace OstrelTransforms
