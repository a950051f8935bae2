#include "charts/expressions/LanguageFunctions.h"

#include <array>
#include <string>
#include <vector>

#include "ostrelrtcore/NearestName.h"

namespace ostrel::charts {

namespace {

std::array<std::span<LanguageFunction const>, 4> AllTables() {
  return {MathFunctions(), TestFunctions(), TextFunctions(), DateFunctions()};
}

}  // namespace

LanguageFunction const* FindLanguageFunction(std::string_view name) {
  for (auto const table : AllTables()) {
    for (LanguageFunction const& function : table) {
      if (name == function.name) return &function;
    }
  }
  return nullptr;
}

std::string NearestLanguageFunction(std::string_view name) {
  std::vector<std::string> names;
  for (auto const table : AllTables()) {
    for (LanguageFunction const& function : table) names.emplace_back(function.name);
  }
  return ort::core::NearestName(name, names);
}

}  // namespace ostrel::charts
