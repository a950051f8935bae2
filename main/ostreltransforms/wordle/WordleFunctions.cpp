// Word clouds: words placed along a spiral so that they do not overlap.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetWordleTable() { return {"wordle", {}}; }

void RegisterOstrelWordleFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetWordleTable());
}

}  // namespace OstrelTransforms
