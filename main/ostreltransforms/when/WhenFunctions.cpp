// Whens are predicates on whole values.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetWhenTable() { return {"when", {}}; }

void RegisterOstrelWhenFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetWhenTable());
}

}  // namespace OstrelTransforms
