#include "ostreltransforms/FamilyRow.h"

#include "ostreltransforms/RegistrationChecks.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

bool IsScalar(SlotType const& type) { return IsPrimitiveStoreType(type.main) && !type.IsContainer(); }

void RegisterUnary(RegistryOfUnaryFunctions& functions, Row const& row) {
  OStringCore const name(*row.name, -1);
  auto const type = static_cast<UnaryFunctionType>(row.type);
  if (!row.isOperation && IsScalar(row.inputs[0].type) && IsScalar(row.output)) {
    functions.Register(name, row.inputs[0].type.main, row.output.main, type, row.make);
    return;
  }
  FunctionKey const key(name, row.inputs[0].type.MakeSegment());
  KeySegmentType const output = row.output.MakeSegment();
  RegistrationChecks::RequireUnary(key, output, row.requiredInputs[0]);
  if (row.isOperation) {
    functions.Register(key, output, MakeSegments(row.parameters), type, row.isOrderDependent, row.make);
  } else {
    functions.Register(key, output, type, row.make);
  }
}

void RegisterBinary(RegistryOfBinaryFunctions& functions, Row const& row) {
  OStringCore const name(*row.name, -1);
  auto const type = static_cast<BinaryFunctionType>(row.type);
  if (!row.isOperation && IsScalar(row.inputs[0].type) && IsScalar(row.inputs[1].type) &&
      IsScalar(row.output)) {
    functions.Register(name, row.inputs[0].type.main, row.inputs[1].type.main, row.output.main, type,
                       row.make);
    return;
  }
  FunctionKey const key(name, row.inputs[0].type.MakeSegment(), row.inputs[1].type.MakeSegment());
  KeySegmentType const output = row.output.MakeSegment();
  RegistrationChecks::RequireBinary(key, output, row.requiredInputs[0], row.requiredInputs[1]);
  if (row.isOperation) {
    functions.Register(key, output, MakeSegments(row.parameters), type, row.isOrderDependent, row.make);
  } else {
    functions.Register(key, output, type, row.make);
  }
}

void RegisterMultinary(RegistryOfMultinaryFunctions& functions, Row const& row) {
  FunctionKey const key(OStringCore(*row.name, -1), MakeSegments(row.inputs));
  KeySegmentType const output = row.output.MakeSegment();
  RegistrationChecks::RequireMultinary(key, output);
  functions.Register(key, output, row.make);
}

}  // namespace

KeySegmentType SlotType::MakeSegment() const {
  if (!IsContainer()) return {main, false};
  return {{main, false}, {key, false}, {element, false}, StoreTypeInfo()};
}

std::vector<KeySegmentType> MakeSegments(Slots const& slots) {
  std::vector<KeySegmentType> segments;
  segments.reserve(slots.size());
  for (Slot const& slot : slots) segments.push_back(slot.type.MakeSegment());
  return segments;
}

void RegisterRows(FunctionRegistry& registry, FamilyTable const& table) {
  RegistryOfUnaryFunctions& unary = registry.GetUnaryFunctions();
  RegistryOfBinaryFunctions& binary = registry.GetBinaryFunctions();
  RegistryOfMultinaryFunctions& multinary = registry.GetMultinaryFunctions();
  for (Row const& row : table.rows) {
    switch (row.arity) {
      case Arity::Unary:
        RegisterUnary(unary, row);
        break;
      case Arity::Binary:
        RegisterBinary(binary, row);
        break;
      case Arity::Multinary:
        RegisterMultinary(multinary, row);
        break;
    }
  }
}

}  // namespace OstrelTransforms
