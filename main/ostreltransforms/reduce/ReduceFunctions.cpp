// Reduces are running computations over a column: each row depends on the rows before it.

#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/Registration.h"

namespace OstrelTransforms {

FamilyTable GetReduceTable() { return {"reduce", {}}; }

void RegisterOstrelReduceFunctions(ort::core::FunctionRegistry& registry) {
  RegisterRows(registry, GetReduceTable());
}

}  // namespace OstrelTransforms
