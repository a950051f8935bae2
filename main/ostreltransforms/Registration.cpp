#include "ostreltransforms/Registration.h"

#include "ostreltransforms/FamilyTables.h"

namespace OstrelTransforms {

void RegisterAllRuntimeFunctions(ort::core::FunctionRegistry& registry) {
  ort::core::RegisterAllBuiltinFunctions(registry);
  RegisterOstrelTransformFunctions(registry);
}

void RegisterOstrelTransformFunctions(ort::core::FunctionRegistry& registry) {
  RegisterOstrelReduceFunctions(registry);
  RegisterOstrelMapFunctions(registry);
  RegisterOstrelZipWithFunctions(registry);
  RegisterOstrelSetValueMultiFunctions(registry);
  RegisterOstrelWhenFunctions(registry);
  RegisterOstrelBubbleFunctions(registry);
  RegisterOstrelComposerFunctions(registry);
  RegisterOstrelFilterFunctions(registry);
  RegisterOstrelWordleFunctions(registry);
}

bool RegisterFunctionsForTest(ort::core::FunctionRegistry* registry) {
  if (registry == nullptr) return false;
  RegisterOstrelTransformFunctions(*registry);
  return true;
}

}  // namespace OstrelTransforms
