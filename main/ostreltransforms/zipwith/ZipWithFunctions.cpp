// Zip-withs combine two columns of one length, row by row, into a third.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetZipWithTable() { return {"zip-with", {}}; }

void RegisterOstrelZipWithFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetZipWithTable());
}

}  // namespace OstrelTransforms
