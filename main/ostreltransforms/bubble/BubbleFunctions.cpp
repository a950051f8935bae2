// Packed bubbles: circles laid out so that they touch and do not overlap.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetBubbleTable() { return {"bubble", {}}; }

void RegisterOstrelBubbleFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetBubbleTable());
}

}  // namespace OstrelTransforms
