// Zip-withs combine two columns of one length, row by row, into a third.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/zipwith/RangeZips.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr Row kRows[] = {
    Binary<ExtendRangesToIncludeZero>(
        {.name = TransformNames::EXTEND_RANGES_TO_INCLUDE_ZERO,
         .inputs = {{"ranges", StoreType::Tuple}, "includesZero"},
         .output = StoreType::Tuple,
         .help = "Moves one end of a range of numbers to 0, or of a logarithmic one to 1, to take it in.",
         .example = R"("inputs": [{"Tuple": [{"Real64": 3}, {"Real64": 8}, {"Int32": 0}, {"Int32": 4}, )"
                    R"({"Bool": false}]}, {"Bool": true}])"}),
};

}  // namespace

FamilyTable GetZipWithTable() { return {"zip-with", kRows}; }

void RegisterOstrelZipWithFunctions(FunctionRegistry& registry) { RegisterRows(registry, GetZipWithTable()); }

}  // namespace OstrelTransforms
