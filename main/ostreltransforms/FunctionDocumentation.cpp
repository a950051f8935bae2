#include "ostreltransforms/FunctionDocumentation.h"

#include "ostreltransforms/FamilyTables.h"

namespace OstrelTransforms {
namespace {

std::vector<SlotDocumentation> DocumentSlots(Slots const& slots) {
  std::vector<SlotDocumentation> documentation;
  documentation.reserve(slots.size());
  for (Slot const& slot : slots) documentation.push_back({slot.name, slot.type.MakeSegment()});
  return documentation;
}

FunctionDocumentation Document(char const* family, Row const& row) {
  std::string const name = OStringCore(*row.name, -1).toUtf8();
  return {.family = family,
          .name = name,
          .arity = row.arity,
          .type = row.type,
          .isOrderDependent = row.isOrderDependent,
          .inputs = DocumentSlots(row.inputs),
          .output = row.output.MakeSegment(),
          .parameters = DocumentSlots(row.parameters),
          .help = row.help,
          .example = R"({"function": ")" + name + R"(", )" + row.example + "}"};
}

}  // namespace

std::vector<FunctionDocumentation> GetFunctionDocumentation() {
  std::vector<FunctionDocumentation> documentation;
  for (FamilyTable const& table : GetAllTables()) {
    for (Row const& row : table.rows) documentation.push_back(Document(table.family, row));
  }
  return documentation;
}

}  // namespace OstrelTransforms
