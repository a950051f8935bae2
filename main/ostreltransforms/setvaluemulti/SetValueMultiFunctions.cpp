// Functions of whole tables and columns: an ordered list of inputs in, one value out. They work out axes,
// ranges, ticks and dates, and the least and greatest across inputs.

#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/setvaluemulti/TickFunctions.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

constexpr Row kRows[] = {
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
         .example = R"("inputs": [{"Real64": 1}, {"Real64": 1000}, {"Int32": 300}, {"Bool": true}, )"
                    R"({"Int32": 4}, {"Tuple": [{"String": ""}]}, {"Tuple": [{"String": "DejaVu Sans"}, )"
                    R"({"Real64": 10}, {"Int32": 400}, {"Int32": 0}]}, {"Real64": 1}, {"Real64": 10}])"}),
};

}  // namespace

FamilyTable GetSetValueMultiTable() { return {"set-value-multi", kRows}; }

void RegisterOstrelSetValueMultiFunctions(FunctionRegistry& registry) {
  RegisterRows(registry, GetSetValueMultiTable());
}

}  // namespace OstrelTransforms
