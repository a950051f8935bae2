// Functions of whole tables and columns: an ordered list of inputs in, one value out. They work out axes,
// ranges, ticks and dates, and the least and greatest across inputs.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetSetValueMultiTable() { return {"set-value-multi", {}}; }

void RegisterOstrelSetValueMultiFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetSetValueMultiTable());
}

}  // namespace OstrelTransforms
