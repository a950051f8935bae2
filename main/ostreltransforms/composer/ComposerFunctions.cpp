// Text composition: texts and shapes in, positioned runs out.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetComposerTable() { return {"composer", {}}; }

void RegisterOstrelComposerFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetComposerTable());
}

}  // namespace OstrelTransforms
