// Zip-withs combine two columns of one length, row by row, into a third. Plain ones are not shown rows of
// which an operand is special, which stay special; the special forms say below what they make of them. Empty
// columns give an empty one. NaN runs through arithmetic as usual, and gives the second operand wherever a
// comparison decides.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/zipwith/ColorZips.h"
#include "ostreltransforms/zipwith/NumberZips.h"
#include "ostreltransforms/zipwith/RangeZips.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr Row kRows[] = {
    Binary<Min<int64>>(
        {.name = TransformNames::MIN_ZIPWITH,
         .inputs = {"a", "b"},
         .help = "The smaller of two numbers.",
         .details = R"(- `a`, `b`: numbers in one unit

Where one is NaN the result is `b`.)",
         .example = R"("inputs": [{"Array": {"type": "Int64", "values": [1, 5]}}, {"Int64": 3}])"}),
    Binary<Min<double>>(
        {.name = TransformNames::MIN_ZIPWITH,
         .inputs = {"a", "b"},
         .help = "The smaller of two numbers; the second beside a NaN.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 5, "NaN"]}}, {"Real64": 3}])"}),
    Binary<Max<int64>>(
        {.name = TransformNames::MAX_ZIPWITH,
         .inputs = {"a", "b"},
         .help = "The larger of two numbers.",
         .details = R"(- `a`, `b`: numbers in one unit

Where one is NaN the result is `b`.)",
         .example = R"("inputs": [{"Array": {"type": "Int64", "values": [1, 5]}}, {"Int64": 3}])"}),
    Binary<Max<double>>(
        {.name = TransformNames::MAX_ZIPWITH,
         .inputs = {"a", "b"},
         .help = "The larger of two numbers; the second beside a NaN.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 5, "NaN"]}}, {"Real64": 3}])"}),
    Binary<BitOr<int>>(
        {.name = TransformNames::BITOR_ZIPWITH,
         .inputs = {"a", "b"},
         .help = "The bits that are set in either number.",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1, 6]}}, {"Int32": 3}])"}),
    BinaryOperation<AddToRightFunctor, double>(
        {.name = TransformNames::ADD_TO_RIGHT,
         .inputs = {"positions", "isLeft"},
         .parameters = {"offset"},
         .help = "Adds an amount to the positions on the right side.",
         .details = R"(- `positions`, `offset`: in one unit
- `isLeft`: rows that stay as they are)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2]}}, )"
                    R"({"Array": {"type": "Bool", "values": [true, false]}}], )"
                    R"("parameters": [{"Real64": 0.5}])"}),
    BinaryOperation<ApplySteppingForDivergingPaletteFunctor, double, double>(
        {.name = TransformNames::APPLY_STEPPING_FOR_DIVERGING_PALETTE,
         .inputs = {"positions", "isLeft"},
         .parameters = {"nStepsLeft", "nStepsRight"},
         .help = "The position of the step in which a position on one side of a diverging palette lies.",
         .details = R"(- `positions`: within one side, 0 to 1
- `isLeft`: the side
- `nStepsLeft`, `nStepsRight`: steps of each side; with a fraction beyond a quarter, the step in the middle is shared by
  both sides and counts half

With whole steps n, the result is floor(position * n) / n on the left and floor(position * n + 1) / n on the right. With
half a step more, floor(position * n), on the right of position * n + 0.5, is kept between 0 and the whole steps and
divided by n - 0.5; where that is less than a quarter, the result is 1 on the left and 0 on the right.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0.5, 0.5]}}, )"
                    R"({"Array": {"type": "Bool", "values": [true, false]}}], )"
                    R"("parameters": [{"Real64": 4}, {"Real64": 4.5}])"}),
    BinaryOperation<AdjustTotalColorFunctor, OrtColor>(
        {.name = TransformNames::ADJUST_TOTAL_COLOR,
         .inputs = {"colors", "isTotal"},
         .parameters = {"totalColor"},
         .help = "Gives totals a colour of their own.",
         .details = R"(- `isTotal`: rows that take `totalColor`; the others keep their colour)",
         .example = R"("inputs": [{"Array": {"type": "Color", "values": ["#FF102030", "#FF405060"]}}, )"
                    R"({"Array": {"type": "Bool", "values": [false, true]}}], )"
                    R"("parameters": [{"Color": "#FF808080"}])"}),
    Binary<iif<int>>(
        {.name = TransformNames::IIF,
         .inputs = {"conditions", {"choices", StoreType::Tuple}},
         .help = "The first member of a tuple of two numbers where a condition holds, else the second.",
         .details = R"(- `choices`: tuples whose first two members are Int32)",
         .example = R"("inputs": [{"Array": {"type": "Bool", "values": [true, false]}}, )"
                    R"({"Tuple": [{"Int32": 1}, {"Int32": 2}]}])"}),
    Binary<DivideSpecial>(
        {.name = TransformNames::DIVIDE_SPECIAL,
         .inputs = {"a", "b"},
         .help = "The quotient; special of kind 1 for special rows and a divisor of 0.",
         .details = R"(The special rows hold 0.)",
         .example =
             R"("inputs": [{"Array": {"type": "Real64", "values": [1, 6, null], "specials": [[2, 9]]}}, )"
             R"({"Array": {"type": "Real64", "values": [0, 4, 2]}}])"}),
    BinaryOperation<GroupByRunningSumFunctor<float>>(
        {.name = TransformNames::GROUP_BY_RUNNING_SUM,
         .inputs = {"groups", "amounts"},
         .isOrderDependent = true,
         .help = "A running total to which each run of rows of one group adds its first amount alone.",
         .details =
             R"(- `groups`: any numbers; a group is a run of rows of one number. After a row of -1 the total begins anew
- `amounts`: in one unit; summed in single precision, in order)",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [7, 7, 3, 3, 3, 9]}}, )"
                    R"({"Array": {"type": "Real32", "values": [2, 2, 5, 5, 5, 1]}}])"}),
    SpecialBinaryOperation<InvlerpMultiPaneFunctor, Value, Value>(
        {.name = TransformNames::INVLERP_MULTI_PANE,
         .inputs = {"values", "panes"},
         .parameters = {{"lower", ArrayOf(StoreType::Real64)}, {"upper", ArrayOf(StoreType::Real64)}},
         .help =
             "Where a number lies between the bounds of its pane; special of kind 1 between equal bounds.",
         .details = R"(- `values`, `lower`, `upper`: numbers in one unit; the result has none
- `panes`: for each row the row of `lower` and `upper`, counted from 0; one outside of them throws 55

The result is (value - lower) / (upper - lower). A special row is calculated as 0 and keeps its kind.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 5]}}, )"
                    R"({"Array": {"type": "Int32", "values": [0, 1]}}], )"
                    R"("parameters": [{"Array": {"type": "Real64", "values": [0, 10]}}, )"
                    R"({"Array": {"type": "Real64", "values": [4, 10]}}])"}),
    Binary<ConcatIntegers>(
        {.name = TransformNames::CONCAT_INTEGERS,
         .inputs = {"low", "high"},
         .help = "One number of 64 bits from its low and its high half.",
         .details = R"(- `low`, `high`: by their bits, without a sign)",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [-1, 2]}}, {"Int32": 1}])"}),
    BinaryOperation<CalcMarkHalfSizeFunctor, double>(
        {.name = TransformNames::CALC_MARK_HALF_SIZE,
         .inputs = {"sizes", "marks"},
         .parameters = {"scale"},
         .help = "Half the size of a mark after scaling.",
         .details = R"(- `sizes`: of marks, in any unit
- `marks`: not read
- `scale`: by which all sizes are multiplied

The result is size * scale / 2.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [4, 9]}}, )"
                    R"({"Array": {"type": "Int32", "values": [0, 1]}}], "parameters": [{"Real64": 1.5}])"}),
    BinaryOperation<InterpolateIndexedRangeFunctor, ParameterSpan>(
        {.name = TransformNames::INTERPOLATE_INDEXED_RANGE,
         .inputs = {"fractions", "indices"},
         .parameters = {{"ranges", ArrayOf(StoreType::Tuple)}},
         .help = "The number at a fraction of one of many ranges; 0 for an index outside them.",
         .details = R"(- `fractions`: 0 is a range's minimum and 1 its maximum; it goes on beyond
- `indices`: rows of `ranges`, counted from 0
- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic); a logarithmic one holds natural logarithms, of which the number itself is given

Dates are day numbers. Without a parameter the exception "invalid vector<T> subscript" is thrown.)",
         .example =
             R"("inputs": [{"Array": {"type": "Real64", "values": [0.5, 0.5]}}, )"
             R"({"Array": {"type": "Int32", "values": [0, 1]}}], )"
             R"("parameters": [{"Array": {"type": "Tuple", "values": [{"Tuple": [{"Real64": 0}, )"
             R"({"Real64": 10}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}, {"Tuple": [{"Real64": 0}, )"
             R"({"Real64": 4.605170185988092}, {"Int32": 0}, {"Int32": 4}, {"Bool": true}]}]}}])"}),
    Binary<ExtendRangesToIncludeZero>(
        {.name = TransformNames::EXTEND_RANGES_TO_INCLUDE_ZERO,
         .inputs = {{"ranges", StoreType::Tuple}, "includesZero"},
         .output = StoreType::Tuple,
         .help = "Moves one end of a range of numbers to 0, or of a logarithmic one to 1, to take it in.",
         .details =
             R"(- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic); a special end counts as 0
- `includesZero`: rows that are to take it in

The maximum moves where it is not above 0, else the minimum where it is not below. The new ends are Real64. Ranges of
dates and those of modes 3 and 10, whose ends are fixed, stay as they are.)",
         .example = R"("inputs": [{"Tuple": [{"Real64": 3}, {"Real64": 8}, {"Int32": 0}, {"Int32": 4}, )"
                    R"({"Bool": false}]}, {"Bool": true}])"}),
    BinaryOperation<AdjustLeftWrappedFunctor, double>(
        {.name = TransformNames::ADJUST_LEFT_WRAPPED,
         .inputs = {"positions", "left"},
         .parameters = {"limit"},
         .help = "Moves a left end by half of what its position exceeds a limit.",
         .details = R"(- `positions`, `left`, `limit`: in one unit

The result is left + (position - limit) / 2 for a position above `limit`, else left.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 3]}}, )"
                    R"({"Array": {"type": "Real64", "values": [10, 10]}}], "parameters": [{"Real64": 2}])"}),
    BinaryOperation<AdjustRightWrappedFunctor, double>(
        {.name = TransformNames::ADJUST_RIGHT_WRAPPED,
         .inputs = {"positions", {"ends", StoreType::Tuple}},
         .parameters = {"limit"},
         .help = "The first of two ends plus a limit for positions beyond the limit, else the second end.",
         .details = R"(- `positions`, `limit`: in one unit with the ends
- `ends`: tuples whose first two members are Real64

The position itself does not enter the result. NaN is not beyond the limit.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 3]}}, )"
                    R"({"Tuple": [{"Real64": 10}, {"Real64": 20}]}], "parameters": [{"Real64": 2}])"}),
};

}  // namespace

FamilyTable GetZipWithTable() { return {"zip-with", kRows}; }

void RegisterOstrelZipWithFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetZipWithTable()); }

}  // namespace OstrelTransforms
