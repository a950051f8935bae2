// Maps turn one column into another of the same length, row by row.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetMapTable() { return {"map", {}}; }

void RegisterOstrelMapFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetMapTable());
}

}  // namespace OstrelTransforms
