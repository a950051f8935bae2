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
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2]}}, )"
                    R"({"Array": {"type": "Bool", "values": [true, false]}}], )"
                    R"("parameters": [{"Real64": 0.5}])"}),
    BinaryOperation<ApplySteppingForDivergingPaletteFunctor, double, double>(
        {.name = TransformNames::APPLY_STEPPING_FOR_DIVERGING_PALETTE,
         .inputs = {"positions", "isLeft"},
         .parameters = {"nStepsLeft", "nStepsRight"},
         .help = "The position of the step in which a position on one side of a diverging palette lies.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0.5, 0.5]}}, )"
                    R"({"Array": {"type": "Bool", "values": [true, false]}}], )"
                    R"("parameters": [{"Real64": 4}, {"Real64": 4.5}])"}),
    BinaryOperation<AdjustTotalColorFunctor, OrtColor>(
        {.name = TransformNames::ADJUST_TOTAL_COLOR,
         .inputs = {"colors", "isTotal"},
         .parameters = {"totalColor"},
         .help = "Gives totals a colour of their own.",
         .example = R"("inputs": [{"Array": {"type": "Color", "values": ["#FF102030", "#FF405060"]}}, )"
                    R"({"Array": {"type": "Bool", "values": [false, true]}}], )"
                    R"("parameters": [{"Color": "#FF808080"}])"}),
    Binary<iif<int>>(
        {.name = TransformNames::IIF,
         .inputs = {"conditions", {"choices", StoreType::Tuple}},
         .help = "The first member of a tuple of two numbers where a condition holds, else the second.",
         .example = R"("inputs": [{"Array": {"type": "Bool", "values": [true, false]}}, )"
                    R"({"Tuple": [{"Int32": 1}, {"Int32": 2}]}])"}),
    Binary<DivideSpecial>(
        {.name = TransformNames::DIVIDE_SPECIAL,
         .inputs = {"a", "b"},
         .help = "The quotient; special of kind 1 for special rows and a divisor of 0.",
         .example =
             R"("inputs": [{"Array": {"type": "Real64", "values": [1, 6, null], "specials": [[2, 9]]}}, )"
             R"({"Array": {"type": "Real64", "values": [0, 4, 2]}}])"}),
    BinaryOperation<GroupByRunningSumFunctor<float>>(
        {.name = TransformNames::GROUP_BY_RUNNING_SUM,
         .inputs = {"groups", "amounts"},
         .isOrderDependent = true,
         .help = "A running total to which each run of rows of one group adds its first amount alone.",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [7, 7, 3, 3, 3, 9]}}, )"
                    R"({"Array": {"type": "Real32", "values": [2, 2, 5, 5, 5, 1]}}])"}),
    SpecialBinaryOperation<InvlerpMultiPaneFunctor, Value, Value>(
        {.name = TransformNames::INVLERP_MULTI_PANE,
         .inputs = {"values", "panes"},
         .parameters = {{"lower", ArrayOf(StoreType::Real64)}, {"upper", ArrayOf(StoreType::Real64)}},
         .help =
             "Where a number lies between the bounds of its pane; special of kind 1 between equal bounds.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 5]}}, )"
                    R"({"Array": {"type": "Int32", "values": [0, 1]}}], )"
                    R"("parameters": [{"Array": {"type": "Real64", "values": [0, 10]}}, )"
                    R"({"Array": {"type": "Real64", "values": [4, 10]}}])"}),
    Binary<ConcatIntegers>(
        {.name = TransformNames::CONCAT_INTEGERS,
         .inputs = {"low", "high"},
         .help = "One number of 64 bits from its low and its high half.",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [-1, 2]}}, {"Int32": 1}])"}),
    BinaryOperation<CalcMarkHalfSizeFunctor, double>(
        {.name = TransformNames::CALC_MARK_HALF_SIZE,
         .inputs = {"sizes", "marks"},
         .parameters = {"scale"},
         .help = "Half the size of a mark after scaling.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [4, 9]}}, )"
                    R"({"Array": {"type": "Int32", "values": [0, 1]}}], "parameters": [{"Real64": 1.5}])"}),
    BinaryOperation<InterpolateIndexedRangeFunctor, ParameterSpan>(
        {.name = TransformNames::INTERPOLATE_INDEXED_RANGE,
         .inputs = {"fractions", "indices"},
         .parameters = {{"ranges", ArrayOf(StoreType::Tuple)}},
         .help = "The number at a fraction of one of many ranges; 0 for an index outside them.",
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
         .example = R"("inputs": [{"Tuple": [{"Real64": 3}, {"Real64": 8}, {"Int32": 0}, {"Int32": 4}, )"
                    R"({"Bool": false}]}, {"Bool": true}])"}),
    BinaryOperation<AdjustLeftWrappedFunctor, double>(
        {.name = TransformNames::ADJUST_LEFT_WRAPPED,
         .inputs = {"positions", "left"},
         .parameters = {"limit"},
         .help = "Moves a left end by half of what its position exceeds a limit.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 3]}}, )"
                    R"({"Array": {"type": "Real64", "values": [10, 10]}}], "parameters": [{"Real64": 2}])"}),
    BinaryOperation<AdjustRightWrappedFunctor, double>(
        {.name = TransformNames::ADJUST_RIGHT_WRAPPED,
         .inputs = {"positions", {"ends", StoreType::Tuple}},
         .parameters = {"limit"},
         .help = "The first of two ends plus a limit for positions beyond the limit, else the second end.",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 3]}}, )"
                    R"({"Tuple": [{"Real64": 10}, {"Real64": 20}]}], "parameters": [{"Real64": 2}])"}),
};

}  // namespace

FamilyTable GetZipWithTable() { return {"zip-with", kRows}; }

void RegisterOstrelZipWithFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetZipWithTable()); }

}  // namespace OstrelTransforms
