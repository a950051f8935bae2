#include "charts/data/DataTable.h"

#include <fmt/format.h>

#include <algorithm>

#include "ostrelrtcore/NearestName.h"

namespace ostrel::charts {

namespace {

std::string ListNames(std::vector<std::string> const& names) {
  constexpr std::size_t kMostListed = 20;
  auto const listed = std::min(names.size(), kMostListed);
  auto const end = names.begin() + static_cast<std::ptrdiff_t>(listed);
  auto const list = fmt::format("{}", fmt::join(names.begin(), end, ", "));
  return listed < names.size() ? fmt::format("{} and {} more", list, names.size() - listed) : list;
}

}  // namespace

DataColumn const* DataTable::Find(std::string_view name) const {
  auto const found = std::find_if(columns.begin(), columns.end(),
                                  [name](DataColumn const& column) { return column.name == name; });
  return found != columns.end() ? &*found : nullptr;
}

DataColumn const& DataTable::Get(std::string_view name) const {
  if (auto const* column = Find(name)) return *column;
  std::vector<std::string> names;
  for (auto const& column : columns) names.push_back(column.name);
  auto const nearest = ort::core::NearestName(name, names);
  auto const hint = nearest.empty() ? std::string() : fmt::format("; did you mean '{}'?", nearest);
  auto const fields = names.empty() ? "It has no fields" : "Its fields are " + ListNames(names);
  throw DataError(
      fmt::format("no field '{}' in {}{} {}", name, sourceName, hint.empty() ? "." : hint, fields));
}

void RequireValues(DataTable const& table, DataColumn const& column) {
  auto const& rows = column.values->AsColumn();
  bool const onlySpecials = rows.GetUniformSpecialKind() != ort::core::SpecialKind::None ||
                            rows.GetSpecialRows().size() == static_cast<std::size_t>(rows.GetCount());
  if (!onlySpecials) return;
  throw DataError(fmt::format("{}: field '{}' holds only missing values", table.sourceName, column.name));
}

}  // namespace ostrel::charts
