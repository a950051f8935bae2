// Whens are predicates on whole values. Another number of inputs than a predicate takes throws 219.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/when/ColumnPredicates.h"
#include "ostreltransforms/when/RangePredicates.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

// Values of any type that compare are taken, too.
constexpr Slot kMinimum = {"minimum", StoreType::Real64};
constexpr Slot kMaximum = {"maximum", StoreType::Real64};
constexpr Slot kCentre = {"centre", StoreType::Real64};

constexpr Row kRows[] = {
    Multinary<IsDivergingAuto>(
        {.name = TransformNames::IS_DIVERGING_AUTO,
         .inputs = {kMinimum, kMaximum, kCentre},
         .help = "Whether a palette's centre lies inside a range; if special, 0.",
         .details = R"(- `minimum`, `maximum`, `centre`: numbers, dates or texts that compare with each other

Ends that are the centre do not count as beyond it. With a special centre, a minimum that is no number gives false.)",
         .example = R"("inputs": [{"Real64": -5}, {"Real64": 5}, {"Real64": 1}])"}),
    Multinary<IsReversedAuto>(
        {.name = TransformNames::IS_REVERSED_AUTO,
         .inputs = {kMinimum, kMaximum, kCentre},
         .help = "Whether a range begins below a palette's centre, if special 0, and does not pass it.",
         .details = R"(- `minimum`, `maximum`, `centre`: numbers, dates or texts that compare with each other

The maximum may be the centre, the minimum not. With a special centre, a minimum that is no number gives false.)",
         .example = R"("inputs": [{"Real64": -5}, {"Real64": 0}, )"
                    R"({"Special": {"type": "Real64", "kind": 1}}])"}),
    Multinary<StraddlesZero>(
        {.name = TransformNames::STRADDLES_ZERO,
         .inputs = {kMinimum, kMaximum},
         .help = "Whether a range of numbers begins below 0 and ends above.",
         .details = R"(A minimum of any other type gives false, as 0 at either end does.)",
         .example = R"("inputs": [{"Real64": -1}, {"Real64": 1}])"}),
    Multinary<ArrayContains>({.name = TransformNames::ARRAY_CONTAINS,
                              .inputs = {{"column", ArrayOf(StoreType::Int32)}, "value"},
                              .help = "Whether a column holds a number.",
                              .details = R"(Special rows hold no number.)",
                              .example = R"("inputs": [{"Array": {"type": "Int32", "values": [4, 7]}}, )"
                                         R"({"Int32": 7}])"}),
    Multinary<ShouldAdjustFontSize>(
        {.name = TransformNames::SHOULD_ADJUST_FONT_SIZE,
         .inputs = {"widthFactor", "heightFactor", {"sizes", ArrayOf(StoreType::Real64)}},
         .help = "Whether a text must be scaled, or is written in different sizes.",
         .details = R"(- `widthFactor`, `heightFactor`: of the scaling; both exactly 1 is none
- `sizes`: of the text's fonts, in pixels)",
         .example = R"("inputs": [{"Real64": 1}, {"Real64": 1}, )"
                    R"({"Array": {"type": "Real64", "values": [12, 14]}}])"}),
    Multinary<AreRowsDistinct>(
        {.name = TransformNames::ARE_ROWS_DISTINCT,
         .inputs = {{"table", StoreType::Table}},
         .help = "Whether every row of a table differs from the row before it.",
         .details = R"(- `table`: columns of one length, of any types

Cells compare by value, NaN equal to NaN, special cells by their kinds. Only neighbours are compared.)",
         .example =
             R"("inputs": [{"Table": {"name": {"Array": {"type": "String", "values": ["a", "b", "a"]}}}}])"}),
};

}  // namespace

FamilyTable GetWhenTable() { return {"when", kRows}; }

void RegisterOstrelWhenFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetWhenTable()); }

}  // namespace OstrelTransforms
