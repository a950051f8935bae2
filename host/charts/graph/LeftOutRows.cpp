#include "charts/graph/LeftOutRows.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/marks/MarkTable.h"

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

void DescribePosition(PlacedChannel const& channel, Results const& results, int rows, char const* gap,
                      std::vector<std::string>& sentences) {
  std::string const& axis = channel.position->name;
  int const missing = CountSpecials(results, channel.unscaled >= 0 ? channel.unscaled : channel.scaled);
  int const unplaced = CountSpecials(results, channel.scaled) - missing;
  if (unplaced > 0) {
    sentences.push_back(
        fmt::format("{} of {} rows are not positive on the log {} axis; {}", unplaced, rows, axis, gap));
  }
  if (missing > 0) {
    sentences.push_back(fmt::format("{} of {} rows have no {} in '{}' for the {} axis; {}", missing, rows,
                                    Wanted(*channel.encoding), channel.encoding->field, axis, gap));
  }
}

std::vector<std::string> DescribeLayer(LayerPlan const& layer, Results const& results) {
  std::vector<std::string> sentences;
  int const rows = layer.rows->GetRowCount();
  for (PlacedChannel const& channel : layer.channels) {
    if (channel.position != nullptr) {
      DescribePosition(channel, results, rows, GetDefinition(layer.spec->mark).gap, sentences);
    } else if (int const missing = CountSpecials(results, channel.scaled); missing > 0) {
      sentences.push_back(fmt::format("{} of {} rows have no {} in '{}' that its scale can place; not drawn",
                                      missing, rows, Wanted(*channel.encoding), channel.encoding->field));
    }
  }
  layer.mark->DescribeLeftOut(results, sentences);
  return sentences;
}

}  // namespace

std::vector<std::string> DescribeLeftOutRows(ChartPlan const& plan, Results const& results) {
  std::vector<std::string> sentences;
  for (PanePlan const& pane : plan.panes) {
    for (LayerPlan const& layer : pane.layers) {
      for (std::string& sentence : DescribeLayer(layer, results)) {
        // Two channels or layers may show the same field.
        if (std::ranges::find(sentences, sentence) == sentences.end())
          sentences.push_back(std::move(sentence));
      }
    }
  }
  return sentences;
}

}  // namespace ostrel::charts
