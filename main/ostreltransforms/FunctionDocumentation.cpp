#include "ostreltransforms/FunctionDocumentation.h"

#include "ostreltransforms/FamilyTables.h"

namespace OstrelTransforms {
namespace {

std::string MakeRequest(OStringCore const& name, char const* members) {
  std::string request(R"({"function": ")");
  request.append(name.toUtf8()).append(R"(", )").append(members).append("}");
  return request;
}

std::vector<std::string> GetNames(Slots const& slots) {
  std::vector<std::string> names;
  for (Slot const& slot : slots) names.emplace_back(slot.name);
  return names;
}

ort::core::FunctionDocumentation Document(char const* family, Row const& row) {
  OStringCore const name(*row.name, -1);
  return {.name = name,
          .inputs = MakeSegments(row.inputs),
          .inputNames = GetNames(row.inputs),
          .output = row.output.MakeSegment(),
          .parameters = MakeSegments(row.parameters),
          .parameterNames = GetNames(row.parameters),
          .family = family,
          .help = row.help,
          .example = MakeRequest(name, row.example),
          .details = row.details};
}

}  // namespace

std::vector<ort::core::FunctionDocumentation> GetFunctionDocumentation() {
  std::vector<ort::core::FunctionDocumentation> documentation;
  for (FamilyTable const& table : GetAllTables()) {
    for (Row const& row : table.rows) documentation.push_back(Document(table.family, row));
  }
  return documentation;
}

}  // namespace OstrelTransforms
