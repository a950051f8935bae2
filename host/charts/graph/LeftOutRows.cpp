#include "charts/graph/LeftOutRows.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostrel::charts {
namespace {

int CountSpecials(Results const& results, NodeId column) {
  return static_cast<int>(results[column]->AsColumn().GetSpecialRows().size());
}

// What the scale looks for in a row.
char const* Wanted(Encoding const& encoding) {
  switch (ResolveScaleType(encoding)) {
    case ScaleType::Time:
      return "date";
    case ScaleType::Ordinal:
      return encoding.scale.domain.empty() ? "value" : "value of the scale's domain";
    default:
      return "finite number";
  }
}

char const* Consequence(ChartPlan const& plan) { return plan.lines ? "the line breaks there" : "not drawn"; }

void DescribePosition(Compilation const& compilation, ChartPlan const& plan, Results const& results,
                      PositionScale const& scale, std::vector<std::string>& sentences) {
  int const rows = compilation.table.rowCount;
  int const missing = CountSpecials(results, scale.unscaled >= 0 ? scale.unscaled : scale.positions);
  int const unplaced = CountSpecials(results, scale.positions) - missing;
  if (unplaced > 0) {
    sentences.push_back(fmt::format("{} of {} rows are not positive on the log {} axis; {}", unplaced, rows,
                                    scale.name, Consequence(plan)));
  }
  if (missing > 0) {
    sentences.push_back(fmt::format("{} of {} rows have no {} in '{}' for the {} axis; {}", missing, rows,
                                    Wanted(*scale.encoding), scale.encoding->field, scale.name,
                                    Consequence(plan)));
  }
}

}  // namespace

std::vector<std::string> DescribeLeftOutRows(Compilation const& compilation, ChartPlan const& plan,
                                             Results const& results) {
  std::vector<std::string> sentences;
  for (auto const* scale : {&plan.x, &plan.y}) {
    if (*scale) DescribePosition(compilation, plan, results, **scale, sentences);
  }
  for (StyleScale const& style : plan.styles) {
    int const missing = CountSpecials(results, style.rows);
    if (missing == 0) continue;
    std::string sentence =
        fmt::format("{} of {} rows have no {} in '{}' that its scale can place; not drawn", missing,
                    compilation.table.rowCount, Wanted(*style.encoding), style.encoding->field);
    // Two channels may show the same field.
    if (std::ranges::find(sentences, sentence) == sentences.end()) sentences.push_back(std::move(sentence));
  }
  return sentences;
}

}  // namespace ostrel::charts
