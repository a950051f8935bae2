// Maps turn one column into another of the same length, row by row. Plain maps are not shown special rows,
// which stay special; the special forms say below what they make of them. An empty column gives an empty one.
// NaN runs through arithmetic as usual, and falls to the bound or to zero wherever a comparison decides.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/map/ColorMaps.h"
#include "ostreltransforms/map/DateMaps.h"
#include "ostreltransforms/map/InverseInterpolation.h"
#include "ostreltransforms/map/LogarithmMaps.h"
#include "ostreltransforms/map/LookupMaps.h"
#include "ostreltransforms/map/NiceNumbers.h"
#include "ostreltransforms/map/NumberMaps.h"
#include "ostreltransforms/map/RangeMaps.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr char kLookupHelp[] =
    "The payload of each key in a key set, and of each special row's kind; 0 where there is none.";
constexpr char kLookupDetails[] =
    R"(- `keys`: of the key set's type; a Real64 is looked up by its bits in a key set of Int64, so that 0 and -0 differ
- `entries`: the payloads by key, and by the kinds of special rows

Every row of the result is ordinary.)";

// The slots of lookupSpecial differ in nothing but their types.
template <class Functor>
constexpr Row Lookup(wchar_t const* const& name, StoreType key, StoreType keySetKey, StoreType payload,
                     char const* example) {
  return SpecialUnaryOperation<Functor, Value>({.name = name,
                                                .inputs = {{"keys", key}},
                                                .parameters = {{"entries", KeySetOf(keySetKey, payload)}},
                                                .help = kLookupHelp,
                                                .details = kLookupDetails,
                                                .example = example});
}

template <class T>
constexpr Row ArrayLookup(wchar_t const* const& name, char const* example) {
  return UnaryOperation<ArrayLookUpFunctor<T>, Value>(
      {.name = name,
       .inputs = {"indices"},
       .parameters = {{"column", ArrayOf(ElementTraits<T>::kStoreType)}},
       .help = "The element of a column at each index; 0 for an index outside it.",
       .details = R"(- `indices`: rows of the column, counted from 0
- `column`: as long as wanted; its special rows give the 0 that stands in them)",
       .example = example});
}

constexpr Row kRows[] = {
    UnaryOperation<InvlerpFunctor<float>, float, float>(
        {.name = TransformNames::INVLERP,
         .inputs = {"values"},
         .parameters = {"lower", "upper"},
         .help = "Where a number lies between two bounds: 0 at the lower, 1 at the upper.",
         .details = R"(- `values`, `lower`, `upper`: numbers in one unit; the result has none

The result is (value - lower) / (upper - lower), calculated in the column's own width, and goes on beyond 0 and 1
outside of the bounds. Equal bounds give the infinity or NaN of that division.)",
         .example = R"("inputs": [{"Array": {"type": "Real32", "values": [2, 3, 6]}}], )"
                    R"("parameters": [{"Real32": 2}, {"Real32": 4}])"}),
    UnaryOperation<InvlerpFunctor<double>, double, double>(
        {.name = TransformNames::INVLERP,
         .inputs = {"values"},
         .parameters = {"lower", "upper"},
         .help = "Where a number lies between two bounds: 0 at the lower, 1 at the upper.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [2, 3, 6]}}], )"
                    R"("parameters": [{"Real64": 2}, {"Real64": 4}])"}),
    SpecialUnaryOperation<InvlerpFunctor<double>, double, double>(
        {.name = TransformNames::INVLERP_SPECIAL,
         .inputs = {"values"},
         .parameters = {"lower", "upper"},
         .help = "Like invlerp, but between equal bounds every row is special of kind 1.",
         .details = R"(- `values`, `lower`, `upper`: numbers in one unit; the result has none

The result is (value - lower) / (upper - lower). A special row is calculated as 0 and keeps its kind.)",
         .example =
             R"("inputs": [{"Array": {"type": "Real64", "values": [2, null, 6], "specials": [[1, 9]]}}], )"
             R"("parameters": [{"Real64": 2}, {"Real64": 4}])"}),
    Unary<LnSpecial<double, double>>(
        {.name = TransformNames::LN_SPECIAL,
         .inputs = {"values"},
         .help = "The natural logarithm; special of kind 1 for special rows and numbers not above 0.",
         .details =
             R"(Special rows and numbers not above 0 become 0, special of kind 1 whatever the row's kind was. NaN stays NaN, in an
ordinary row. The result is within one unit in the last place, with the same bits on every processor.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 10, 0, -3]}}])"}),
    Unary<LnSpecial<int64, double>>(
        {.name = TransformNames::LN_SPECIAL,
         .inputs = {"values"},
         .help = "The natural logarithm; special of kind 1 for special rows and numbers not above 0.",
         .example = R"("inputs": [{"Array": {"type": "Int64", "values": [1, 10, 0, -3]}}])"}),
    Unary<ExpSpecial<double, double>>(
        {.name = TransformNames::EXP_SPECIAL,
         .inputs = {"values"},
         .help = "The exponential; special of kind 1 for special rows.",
         .details =
             R"(Special rows become 0, special of kind 1 whatever their kind was. Numbers above 709.78 give an infinity. The result is
within one unit in the last place, with the same bits on every processor.)",
         .example =
             R"("inputs": [{"Array": {"type": "Real64", "values": [0, 1, null], "specials": [[2, 9]]}}])"}),
    Unary<ConvertDateToReal64>(
        {.name = TransformNames::TO_REAL64,
         .inputs = {"dates"},
         .help = "The day number: days since 1899-12-30, with the time of day as fraction.",
         .details = R"(- `dates`: instants, to a ten-thousandth of a second
- The result is in days.

A column with special rows goes to the special form, in which they become 0, special of kind 1.)",
         .example = R"("inputs": [{"DateTime": "1900-01-01T12:00:00.0000"}])"}),
    Unary<ConvertDateToReal64Special>(
        {.name = TransformNames::TO_REAL64,
         .inputs = {"dates"},
         .help = "The day number; special of kind 1 for special rows.",
         .example =
             R"("inputs": [{"Array": {"type": "DateTime", "values": ["2020-03-01T12:00:00.0000", null], )"
             R"("specials": [[1, 9]]}}])"}),
    UnaryOperation<ColorInterpolateFunctor, Value>(
        {.name = TransformNames::CINTERP,
         .inputs = {"positions"},
         .parameters = {{"palette", ArrayOf(StoreType::Int32)}},
         .help = "The colour at a position in a palette of at least one colour, from 0 to 1.",
         .details =
             R"(- `positions`: 0 is the palette's first colour, 1 its last, and its colours stand at equal distances between; outside
  counts the nearer end, and NaN as 0
- `palette`: colours by their bits, 0xAARRGGBB

Alpha, red, green and blue each run straight from colour to colour, by the difference cut to a whole number; positions
are narrowed to single precision. A palette without colours throws 55.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [-1, 0.5, 2]}}], )"
                    R"("parameters": [{"Array": {"type": "Int32", "values": [-16777216, -1]}}])"}),
    UnaryOperation<ThreeInvlerpFunctor<double>, double, double, double>(
        {.name = TransformNames::INVLERP3,
         .inputs = {"values"},
         .parameters = {"low", "mid", "high"},
         .help = "Where a number lies in its half of a range with a middle; both halves go from 0 to 1.",
         .details = R"(- `values`, `low`, `mid`, `high`: numbers in one unit; the result has none

Below `mid` the result is (value - low) / (mid - low), or 0 where `low` equals `mid`; from `mid` on, and for NaN, it is
(value - mid) / (high - mid), or 1 where `mid` equals `high`. Numbers outside go on beyond 0 and 1.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [5, 10, 15, 20]}}], )"
                    R"("parameters": [{"Real64": 0}, {"Real64": 10}, {"Real64": 20}])"}),
    Lookup<KeySetLookupFunctor<RIndirectString, double>>(
        TransformNames::LOOKUP_REAL64_SPECIAL, StoreType::String, StoreType::String, StoreType::Real64,
        R"("inputs": [{"Array": {"type": "String", "values": ["a", "b", null], "specials": [[2, 9]]}}], )"
        R"("parameters": [{"KeySet": {"key": "String", "value": "Real64", "entries": [["a", 1.5]], )"
        R"("specials": [[9, -1]]}}])"),
    Lookup<KeySetLookupFunctor<int64, double>>(
        TransformNames::LOOKUP_REAL64_SPECIAL, StoreType::Int64, StoreType::Int64, StoreType::Real64,
        R"("inputs": [{"Array": {"type": "Int64", "values": [7, 8]}}], )"
        R"("parameters": [{"KeySet": {"key": "Int64", "value": "Real64", "entries": [[7, 1.5]]}}])"),
    Lookup<Real64KeySetLookupFunctor<double>>(
        TransformNames::LOOKUP_REAL64_SPECIAL, StoreType::Real64, StoreType::Int64, StoreType::Real64,
        R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2]}}], )"
        R"("parameters": [{"KeySet": {"key": "Int64", "value": "Real64", )"
        R"("entries": [["4607182418800017408", 1.5]]}}])"),
    Lookup<KeySetLookupFunctor<bool, double>>(
        TransformNames::LOOKUP_REAL64_SPECIAL, StoreType::Bool, StoreType::Bool, StoreType::Real64,
        R"("inputs": [{"Array": {"type": "Bool", "values": [true, false]}}], )"
        R"("parameters": [{"KeySet": {"key": "Bool", "value": "Real64", "entries": [[true, 1.5]]}}])"),
    Lookup<KeySetLookupFunctor<Value, double>>(
        TransformNames::LOOKUP_REAL64_SPECIAL, StoreType::Tuple, StoreType::Tuple, StoreType::Real64,
        R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Int32": 1}, {"String": "a"}]}]}}], )"
        R"("parameters": [{"KeySet": {"key": "Tuple", "value": "Real64", )"
        R"("entries": [[{"Tuple": [{"Int32": 1}, {"String": "a"}]}, 1.5]]}}])"),
    Lookup<KeySetLookupFunctor<OrtDateTime, double>>(
        TransformNames::LOOKUP_REAL64_SPECIAL, StoreType::DateTime, StoreType::DateTime, StoreType::Real64,
        R"("inputs": [{"Array": {"type": "DateTime", "values": ["2020-03-01T00:00:00.0000"]}}], )"
        R"("parameters": [{"KeySet": {"key": "DateTime", "value": "Real64", )"
        R"("entries": [["2020-03-01T00:00:00.0000", 1.5]]}}])"),
    Lookup<KeySetLookupFunctor<RIndirectString, int64>>(
        TransformNames::LOOKUP_INT64_SPECIAL, StoreType::String, StoreType::String, StoreType::Int64,
        R"("inputs": [{"Array": {"type": "String", "values": ["a", "b", null], "specials": [[2, 9]]}}], )"
        R"("parameters": [{"KeySet": {"key": "String", "value": "Int64", "entries": [["a", 15]], )"
        R"("specials": [[9, -1]]}}])"),
    Lookup<KeySetLookupFunctor<int64, int64>>(
        TransformNames::LOOKUP_INT64_SPECIAL, StoreType::Int64, StoreType::Int64, StoreType::Int64,
        R"("inputs": [{"Array": {"type": "Int64", "values": [7, 8]}}], )"
        R"("parameters": [{"KeySet": {"key": "Int64", "value": "Int64", "entries": [[7, 15]]}}])"),
    Lookup<Real64KeySetLookupFunctor<int64>>(
        TransformNames::LOOKUP_INT64_SPECIAL, StoreType::Real64, StoreType::Int64, StoreType::Int64,
        R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2]}}], )"
        R"("parameters": [{"KeySet": {"key": "Int64", "value": "Int64", )"
        R"("entries": [["4607182418800017408", 15]]}}])"),
    Lookup<KeySetLookupFunctor<bool, int64>>(
        TransformNames::LOOKUP_INT64_SPECIAL, StoreType::Bool, StoreType::Bool, StoreType::Int64,
        R"("inputs": [{"Array": {"type": "Bool", "values": [true, false]}}], )"
        R"("parameters": [{"KeySet": {"key": "Bool", "value": "Int64", "entries": [[true, 15]]}}])"),
    Lookup<KeySetLookupFunctor<Value, int64>>(
        TransformNames::LOOKUP_INT64_SPECIAL, StoreType::Tuple, StoreType::Tuple, StoreType::Int64,
        R"("inputs": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Int32": 1}, {"String": "a"}]}]}}], )"
        R"("parameters": [{"KeySet": {"key": "Tuple", "value": "Int64", )"
        R"("entries": [[{"Tuple": [{"Int32": 1}, {"String": "a"}]}, 15]]}}])"),
    Lookup<KeySetLookupFunctor<OrtDateTime, int64>>(
        TransformNames::LOOKUP_INT64_SPECIAL, StoreType::DateTime, StoreType::DateTime, StoreType::Int64,
        R"("inputs": [{"Array": {"type": "DateTime", "values": ["2020-03-01T00:00:00.0000"]}}], )"
        R"("parameters": [{"KeySet": {"key": "DateTime", "value": "Int64", )"
        R"("entries": [["2020-03-01T00:00:00.0000", 15]]}}])"),
    ArrayLookup<float>(TransformNames::ARRAY_LOOKUP_REAL32,
                       R"("inputs": [{"Array": {"type": "Int32", "values": [-1, 0, 2, 3]}}], )"
                       R"("parameters": [{"Array": {"type": "Real32", "values": [1.5, 2.5, 3.5]}}])"),
    ArrayLookup<double>(TransformNames::ARRAY_LOOKUP_REAL64,
                        R"("inputs": [{"Array": {"type": "Int32", "values": [-1, 0, 2, 3]}}], )"
                        R"("parameters": [{"Array": {"type": "Real64", "values": [1.5, 2.5, 3.5]}}])"),
    ArrayLookup<int64>(TransformNames::ARRAY_LOOKUP_INT64,
                       R"("inputs": [{"Array": {"type": "Int32", "values": [-1, 0, 2, 3]}}], )"
                       R"("parameters": [{"Array": {"type": "Int64", "values": [15, 25, 35]}}])"),
    Unary<ExtendPointRanges>(
        {.name = TransformNames::EXTEND_POINT_RANGES,
         .inputs = {{"ranges", StoreType::Tuple}},
         .output = StoreType::Tuple,
         .help = "Opens ranges of one point around it; logarithmic ranges become ranges of logarithms.",
         .details = R"(- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic)

A range whose ends are equal becomes [0, 2v] for a number v above 0, [2v, 0] below 0 and [-1, 1] at 0; a date goes a day
to either side; a field of another type stays. The ends of a logarithmic range are replaced by their natural logarithms
before that, and stay logarithms.)",
         .example = R"("inputs": [{"Tuple": [{"Real64": 5}, {"Real64": 5}, {"Int32": 0}, {"Int32": 4}, )"
                    R"({"Bool": false}]}])"}),
    Unary<ClearRanges>(
        {.name = TransformNames::CLEAR_RANGES,
         .inputs = {{"ranges", StoreType::Tuple}},
         .output = StoreType::Tuple,
         .help = "Makes the ends special that a range's mode code does not fix.",
         .details = R"(- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic)

An end is cleared to a special value of kind 1 of its own type: the minimum in modes 5, 8 and 9, the maximum in 4, 6 and
7, none in 3 and 10, and both in any other.)",
         .example = R"("inputs": [{"Tuple": [{"Real64": 1}, {"Real64": 9}, {"Int32": 5}, {"Int32": 4}, )"
                    R"({"Bool": false}]}])"}),
    UnaryOperation<PadRangeTableFunctor, double, double>(
        {.name = TransformNames::PAD_RANGE_TABLE,
         .inputs = {{"ranges", StoreType::Tuple}},
         .output = StoreType::Tuple,
         .parameters = {"below", "above"},
         .help = "Takes one amount off each minimum and puts another on each maximum, days for dates.",
         .details =
             R"(- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic); the ends of a logarithmic one are moved as they stand
- `below`, `above`: in the range's own units, or days; below 0 they narrow the range

An end keeps its type: an integer moves by the nearest whole number, halves away from zero, and stops at the ends of its
type. Special ends stay.)",
         .example = R"("inputs": [{"Tuple": [{"Int32": 1}, {"Int32": 9}, {"Int32": 0}, {"Int32": 1}, )"
                    R"({"Bool": false}]}], "parameters": [{"Real64": 0.5}, {"Real64": 2}])"}),
    Unary<ConvertInt64ToColor>({.name = TransformNames::TO_COLOR,
                                .inputs = {"values"},
                                .help = "The colour whose value is the low 32 bits of a number.",
                                .details = R"(- `values`: 0xAARRGGBB; the high 32 bits count for nothing)",
                                .example = R"("inputs": [{"Int64": 4278190335}])"}),
    UnaryOperation<ClampMinFunctor<double>, double>(
        {.name = TransformNames::CLAMP_MIN,
         .inputs = {"values"},
         .parameters = {"minimum"},
         .help = "The number, or the bound where the number is not above it.",
         .details = R"(NaN gives the bound as well.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 3, "NaN"]}}], )"
                    R"("parameters": [{"Real64": 2}])"}),
    UnaryOperation<ClampMaxFunctor<double>, double>(
        {.name = TransformNames::CLAMP_MAX,
         .inputs = {"values"},
         .parameters = {"maximum"},
         .help = "The number, or the bound where the number is not below it.",
         .details = R"(NaN gives the bound as well.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 3, "NaN"]}}], )"
                    R"("parameters": [{"Real64": 2}])"}),
    Unary<AbsoluteValue>({.name = TransformNames::ABS,
                          .inputs = {"values"},
                          .help = "The absolute value.",
                          .example = R"("inputs": [{"Real64": -2.5}])"}),
    UnaryOperation<CombineAlphaFunctor, int>(
        {.name = TransformNames::COMBINE_ALPHA,
         .inputs = {"colors"},
         .parameters = {"alpha"},
         .help = "Replaces the alpha of every colour that is not fully transparent.",
         .details = R"(- `alpha`: 0, transparent, to 255, opaque; of other numbers the low 8 bits count

A colour of alpha 0 stays as it is.)",
         .example = R"("inputs": [{"Array": {"type": "Color", "values": ["#FF102030", "#00102030"]}}], )"
                    R"("parameters": [{"Int32": 128}])"}),
    Unary<Round>({.name = TransformNames::ROUND,
                  .inputs = {"values"},
                  .help = "The nearest integer, halves away from zero.",
                  .details = R"(Numbers beyond the ends of Int64 become those ends, NaN becomes 0.)",
                  .example = R"("inputs": [{"Array": {"type": "Real64", "values": [2.5, -2.5, 2.4]}}])"}),
    Unary<RoundingNiceNum>(
        {.name = TransformNames::NICE_NUM_ROUND,
         .inputs = {"values"},
         .help = "The nearest number that is 1, 2 or 5 times a power of ten.",
         .details =
             R"(Of the number's first digits, below 1.5 becomes 1, below 3 becomes 2, below 7 becomes 5, and else 10; the sign is kept.
0, NaN and infinities stay.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [2.5, 3.2, 7, 0.0042, -1.4]}}])"}),
    Unary<RoundingUpNiceNum>(
        {.name = TransformNames::NICE_NUM_ROUND_UP,
         .inputs = {"values"},
         .help = "The least number of this magnitude or more that is 1, 2 or 5 times a power of ten.",
         .details =
             R"(Of the number's first digits, up to 1 becomes 1, up to 2 becomes 2, up to 5 becomes 5, and else 10; the sign is kept, so
that numbers below 0 go away from it. 0, NaN and infinities stay.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 1.01, 5, 5.1, 120]}}])"}),
    Unary<GetMonth>({.name = TransformNames::GET_MONTH,
                     .inputs = {"dates"},
                     .help = "The month, 1 to 12.",
                     .details = R"(- `dates`: in the proleptic Gregorian calendar, without a time zone)",
                     .example = R"("inputs": [{"DateTime": "2020-03-01T12:00:00.0000"}])"}),
    Unary<GetYear>({.name = TransformNames::GET_YEAR,
                    .inputs = {"dates"},
                    .help = "The year.",
                    .details = R"(- `dates`: in the proleptic Gregorian calendar, without a time zone)",
                    .example = R"("inputs": [{"DateTime": "2020-03-01T12:00:00.0000"}])"}),
    UnaryOperation<MapRangeIndicesFunctor<int, int>, Value>(
        {.name = TransformNames::MAP_RANGE_INDICES,
         .inputs = {"indices"},
         .parameters = {{"entries", ArrayOf(StoreType::Int32)}},
         .help = "The entry of a column at each index; 0 for an index outside it.",
         .details = R"(- `indices`: rows of the column, counted from 0
- `entries`: as many as wanted)",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [2, 0, 5]}}], )"
                    R"("parameters": [{"Array": {"type": "Int32", "values": [10, 20, 30]}}])"}),
    UnaryOperation<ExpandMinAndMaxFunctor, Value, Value>(
        {.name = TransformNames::EXPAND_MIN_AND_MAX,
         .inputs = {{"ranges", StoreType::Tuple}},
         .output = StoreType::Tuple,
         .parameters = {{"minimum", StoreType::Real64}, {"maximum", StoreType::Real64}},
         .help = "Gives a range new ends when they contain the old ones; never narrows it.",
         .details = R"(- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic)
- `minimum`, `maximum`: in the units of the ranges

Compared as Real64. Unless `minimum` is at or below the range's and `maximum` at or above, the range stays as it is.)",
         .example = R"("inputs": [{"Tuple": [{"Real64": 10}, {"Real64": 20}, {"Int32": 0}, {"Int32": 4}, )"
                    R"({"Bool": false}]}], "parameters": [{"Real64": 0}, {"Real64": 100}])"}),
    UnaryOperation<ExpandAroundPointFunctor, Value, Value, double, int, double, bool>(
        {.name = TransformNames::EXPAND_AROUND_POINT,
         .inputs = {{"ranges", StoreType::Tuple}},
         .output = StoreType::Tuple,
         .parameters = {{"zeroMinimum", StoreType::Real64},
                        {"zeroMaximum", StoreType::Real64},
                        "halfSize",
                        "projectorKind",
                        "eccentricity",
                        "isX"},
         .help = "Opens a range around the projected point where it begins, half a size in degrees each way.",
         .details = R"(- `ranges`: range tuples in projected units; they begin at the point
- `zeroMinimum`, `zeroMaximum`: the ends given to a range that begins at exactly 0
- `halfSize`: in degrees
- `projectorKind`, `eccentricity`: 0 is Mercator with an eccentricity, 1 takes degrees as they are
- `isX`: the range is one of longitudes, else of latitudes

The range goes from the projection of the point's degrees less `halfSize` to that of the degrees plus it. Where a
longitude so moved wraps around, its end is put on the other's side: at the mirror of the upper end where the lower one
wraps, and upon the lower end where the upper one does.)",
         .example =
             R"("inputs": [{"Tuple": [{"Real64": 1113194.9}, {"Real64": 1113194.9}, {"Int32": 0}, {"Int32": 4}, )"
             R"({"Bool": false}]}], "parameters": [{"Real64": -1}, {"Real64": 1}, {"Real64": 2}, {"Int32": 0}, )"
             R"({"Real64": 0}, {"Bool": true}])"}),
    UnaryOperation<AddIfLessThanFunctor<double>, double, double>(
        {.name = TransformNames::ADD_IF_LESS_THAN,
         .inputs = {"values"},
         .parameters = {"threshold", "addend"},
         .help = "Adds an amount to the numbers below a threshold.",
         .details = R"(- `values`, `threshold`, `addend`: numbers in one unit

Numbers at or above the threshold and NaN stay.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [-170, 10]}}], )"
                    R"("parameters": [{"Real64": 0}, {"Real64": 360}])"}),
};

}  // namespace

FamilyTable GetMapTable() { return {"map", kRows}; }

void RegisterOstrelMapFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetMapTable()); }

}  // namespace OstrelTransforms
