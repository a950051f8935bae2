// Reduces are running computations over a column: each row depends on the rows before it. Plain ones are not
// shown special rows, which stay special and leave the computation as it is; the special forms say below what
// they make of them. An empty column gives an empty one, or folded the initial value.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/reduce/RunningValues.h"
#include "ostreltransforms/reduce/StackedValues.h"
#include "ostreltransforms/zipwith/NumberZips.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// The registrations of these names differ in nothing but the type of the second input.
template <class T>
constexpr Row IsDistinctPrev(char const* example) {
  return BinaryOperation<IsDistinctPrevFunctor<T>>(
      {.name = TransformNames::IS_DISTINCT_PREV,
       .inputs = {"running", "values"},
       .isOrderDependent = true,
       .help = "Marks the first row and every row that differs from the one before.",
       .details = R"(- `running`: not read
- `values`: texts differ also by case; NaN differs from everything, itself included)",
       .example = example});
}

template <class T>
constexpr Row IsPreviousValueNull(char const* example) {
  return SpecialBinaryOperation<IsPreviousValueNullSpecialFunctor<T>>(
      {.name = TransformNames::IS_PREV_VALUE_NULL_OR_MISSING,
       .inputs = {"running", "values"},
       .isOrderDependent = true,
       .help = "Marks the first row and every row after a missing or null one (kinds 1 and 9).",
       .details = R"(- `running`: not read
- `values`: only the kinds of their rows count

Every row of the result is ordinary.)",
       .example = example});
}

constexpr Row kRows[] = {
    Binary<BitOr<int>>({.name = TransformNames::BITOR_REDUCE,
                        .inputs = {"running", "values"},
                        .help = "The bits that are set in any of the numbers so far.",
                        .details = R"(- `running`: the bits so far; first the initial value, else 0)",
                        .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1, 4, 2]}}])"}),
    Binary<BitOr<int64>>({.name = TransformNames::BITOR_REDUCE,
                          .inputs = {"running", "values"},
                          .help = "The bits that are set in any of the numbers so far.",
                          .example = R"("inputs": [{"Array": {"type": "Int64", "values": [1, 4, 2]}}])"}),
    BinaryOperation<ToUniformValueFunctor>(
        {.name = TransformNames::TO_UNIFORM_VALUE,
         .inputs = {"running", "values"},
         .isOrderDependent = true,
         .help = "The number as long as all are one, from then on the first running value.",
         .details =
             R"(- `running`: only that of the first row counts, which is the initial value: what is to be shown where numbers differ)",
         .example =
             R"("inputs": [{"Array": {"type": "Int32", "values": [5, 5, 7]}}], "initial": {"Int32": -1})"}),
    IsDistinctPrev<RIndirectString>(
        R"("inputs": [{"Array": {"type": "String", "values": ["a", "a", "A"]}}])"),
    IsDistinctPrev<int>(R"("inputs": [{"Array": {"type": "Int32", "values": [1, 1, 2, 2, 1]}}])"),
    IsDistinctPrev<int64>(R"("inputs": [{"Array": {"type": "Int64", "values": [1, 1, 2, 2, 1]}}])"),
    IsDistinctPrev<float>(R"("inputs": [{"Array": {"type": "Real32", "values": [1, 1, 2, 2, 1]}}])"),
    IsDistinctPrev<double>(R"("inputs": [{"Array": {"type": "Real64", "values": [1, 1, 2, 2, 1]}}])"),
    IsPreviousValueNull<RIndirectString>(
        R"("inputs": [{"Array": {"type": "String", "values": ["a", null, "b"], )"
        R"("specials": [[1, 9]]}}])"),
    IsPreviousValueNull<int>(R"("inputs": [{"Array": {"type": "Int32", "values": [1, null, 3], )"
                             R"("specials": [[1, 9]]}}])"),
    IsPreviousValueNull<int64>(R"("inputs": [{"Array": {"type": "Int64", "values": [1, null, 3], )"
                               R"("specials": [[1, 9]]}}])"),
    IsPreviousValueNull<float>(R"("inputs": [{"Array": {"type": "Real32", "values": [1, null, 3], )"
                               R"("specials": [[1, 9]]}}])"),
    IsPreviousValueNull<double>(R"("inputs": [{"Array": {"type": "Real64", "values": [1, null, 3], )"
                                R"("specials": [[1, 9]]}}])"),
    IsPreviousValueNull<OrtDateTime>(
        R"("inputs": [{"Array": {"type": "DateTime", "values": ["2020-03-01T12:00:00.0000", null, )"
        R"("2020-03-02T12:00:00.0000"], "specials": [[1, 9]]}}])"),
    SpecialBinaryOperation<StackValuesTCFunctor<double, true>>(
        {.name = TransformNames::CURR_STACK_VALUE,
         .inputs = {"running", "values"},
         .isOrderDependent = true,
         .help = "The top of each row's segment when numbers are stacked, those below 0 apart.",
         .details = R"(- `running`: not read
- `values`: lengths of segments, in one unit, from the origin outwards

A number below 0 goes onto the lower pile, any other onto the upper; a special row goes with what stands in it, usually 0,
onto the upper pile, or onto the lower one as long as the upper is at 0. Every row of the result is ordinary.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [3, -2, 4, -1]}}])"}),
    SpecialBinaryOperation<StackValuesTCFunctor<double, false>>(
        {.name = TransformNames::PREV_STACK_VALUE,
         .inputs = {"running", "values"},
         .isOrderDependent = true,
         .help = "The bottom of each row's segment when numbers are stacked, those below 0 apart.",
         .details = R"(- `running`: not read
- `values`: lengths of segments, in one unit, from the origin outwards

A number below 0 goes onto the lower pile, any other onto the upper; a special row goes with what stands in it, usually 0,
onto the upper pile, or onto the lower one as long as the upper is at 0. Every row of the result is ordinary.)",
         .example = R"("inputs": [{"Array": {"type": "Real64", "values": [3, -2, 4, -1]}}])"}),
    Binary<WrapXPositionForMaps>(
        {.name = TransformNames::WRAP_X_FOR_MAPS,
         .inputs = {"reference", "positions"},
         .help = "A map position shifted by a whole number to the copy nearest to the position before.",
         .details = R"(- `reference`: the position before; first the initial value
- `positions`: in widths of the world

The result is position - floor(position - reference + 0.5).)",
         .example =
             R"("inputs": [{"Array": {"type": "Real64", "values": [0.9, 0.2, 0.7]}}], "initial": {"Real64": 0.1})"}),
    Binary<End<float>>({.name = TransformNames::END,
                        .inputs = {"running", "values"},
                        .help = "The row's own number: the last one, folded.",
                        .example = R"("inputs": [{"Array": {"type": "Real32", "values": [1, 2, 3]}}])"}),
    Binary<End<int>>({.name = TransformNames::END,
                      .inputs = {"running", "values"},
                      .help = "The row's own number: the last one, folded.",
                      .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1, 2, 3]}}])"}),
    BinaryOperation<IncOnNewFunctor>(
        {.name = TransformNames::INC_ON_NEW,
         .inputs = {"running", "values"},
         .isOrderDependent = true,
         .help = "Numbers different values 0, 1, 2, ... in the order of their first appearance.",
         .details = R"(- `running`: not read)",
         .example = R"("inputs": [{"Array": {"type": "Int32", "values": [5, 5, 9, 5, 2]}}])"}),
    Binary<GetMaxSizeForAxis>(
        {.name = TransformNames::MAX_AXIS_SIZE,
         .inputs = {"running", {"ranges", StoreType::Tuple}},
         .help = "The largest length of the axes' ranges so far.",
         .details = R"(- `running`: the largest so far; first the initial value, else 0
- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic); a special end counts as 0

The length is |maximum - minimum|, of dates in days. NaN on either side gives the row's own length.)",
         .example =
             R"("inputs": [{"Array": {"type": "Tuple", "values": [)"
             R"({"Tuple": [{"Real64": 2}, {"Real64": 5}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}, )"
             R"({"Tuple": [{"Real64": -10}, {"Real64": -4}, {"Int32": 0}, {"Int32": 4}, )"
             R"({"Bool": false}]}]}}])"}),
    Binary<IsAxisLocked>(
        {.name = TransformNames::IS_AXIS_LOCKED,
         .inputs = {"running", {"ranges", StoreType::Tuple}},
         .help = "Whether any of the axes so far has a locked range (mode 3).",
         .details = R"(- `running`: what held so far; first the initial value, else false
- `ranges`: range tuples (minimum, maximum, mode, type code, is logarithmic))",
         .example =
             R"("inputs": [{"Array": {"type": "Tuple", "values": [)"
             R"({"Tuple": [{"Real64": 2}, {"Real64": 5}, {"Int32": 0}, {"Int32": 4}, {"Bool": false}]}, )"
             R"({"Tuple": [{"Real64": 2}, {"Real64": 5}, {"Int32": 3}, {"Int32": 4}, )"
             R"({"Bool": false}]}]}}])"}),
};

}  // namespace

FamilyTable GetReduceTable() { return {"reduce", kRows}; }

void RegisterOstrelReduceFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetReduceTable()); }

}  // namespace OstrelTransforms
