#pragma once

#include <array>

#include "ostreltransforms/FamilyRow.h"

// The tables of all families; each stands at the end of its family's file, beside the registrar.
namespace OstrelTransforms {

FamilyTable GetReduceTable();
FamilyTable GetMapTable();
FamilyTable GetZipWithTable();
FamilyTable GetSetValueMultiTable();
FamilyTable GetWhenTable();
FamilyTable GetBubbleTable();
FamilyTable GetComposerTable();
FamilyTable GetFilterTable();
FamilyTable GetWordleTable();

// In the order in which the families are registered.
inline std::array<FamilyTable, 9> GetAllTables() {
  return {GetReduceTable(), GetMapTable(),      GetZipWithTable(), GetSetValueMultiTable(), GetWhenTable(),
          GetBubbleTable(), GetComposerTable(), GetFilterTable(),  GetWordleTable()};
}

// The one registrar that the library keeps to itself.
void RegisterOstrelBubbleFunctions(ort::core::FunctionRegistry& registry);

}  // namespace OstrelTransforms
