#include "charts/graph/LeftOutRows.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/Readers.h"
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
      return "value of the scale's domain";
    default:
      return "finite number";
  }
}

// What a channel of one layer left out in all panes.
struct LeftOut {
  PlacedChannel const* channel;
  LayerSpec const* layer;
  int rows = 0;
  int missing = 0;
  int unplaced = 0;
};

std::vector<LeftOut> CountLeftOut(ChartPlan const& plan, Results const& results) {
  std::vector<LeftOut> counts;
  for (PanePlan const& pane : plan.panes) {
    for (LayerPlan const& layer : pane.layers) {
      for (PlacedChannel const& channel : layer.channels) {
        // An interval's end is missing where its beginning is.
        if (IsSecondPosition(channel.encoding->channel)) continue;
        auto const isSame = [&](LeftOut const& other) {
          return other.channel->encoding == channel.encoding && other.layer == layer.spec;
        };
        auto found = std::ranges::find_if(counts, isSame);
        if (found == counts.end()) found = counts.insert(found, {&channel, layer.spec});
        int const missing = CountSpecials(results, channel.unscaled >= 0 ? channel.unscaled : channel.scaled);
        found->rows += layer.rows->GetRowCount();
        found->missing += missing;
        found->unplaced += CountSpecials(results, channel.scaled) - missing;
      }
    }
  }
  return counts;
}

void DescribePosition(LeftOut const& count, std::vector<std::string>& sentences) {
  PlacedChannel const& channel = *count.channel;
  std::string const& axis = channel.position->name;
  char const* const gap = GetDefinition(count.layer->mark).gap;
  if (count.unplaced > 0) {
    sentences.push_back(fmt::format("{} of {} rows are not positive on the log {} axis; {}", count.unplaced,
                                    count.rows, axis, gap));
  }
  if (count.missing > 0) {
    sentences.push_back(fmt::format("{} of {} rows have no {} in '{}' for the {} axis; {}", count.missing,
                                    count.rows, Wanted(*channel.encoding), DefaultTitle(*channel.encoding),
                                    axis, gap));
  }
}

std::vector<std::string> DescribeAll(ChartPlan const& plan, Results const& results) {
  std::vector<std::string> sentences = plan.leftOut;
  for (MapRows const& rows : plan.map ? plan.map->sources : std::vector<MapRows>()) {
    if (int const missing = CountSpecials(results, rows.degrees); missing > 0) {
      sentences.push_back(fmt::format("{} of {} rows have no finite number in '{}' for the map; not drawn",
                                      missing, rows.rowCount, DefaultTitle(*rows.encoding)));
    }
  }
  for (LeftOut const& count : CountLeftOut(plan, results)) {
    if (count.channel->position != nullptr) {
      DescribePosition(count, sentences);
    } else if (count.missing > 0) {
      Encoding const& encoding = *count.channel->encoding;
      sentences.push_back(fmt::format("{} of {} rows have no {} in '{}' that its scale can place; not drawn",
                                      count.missing, count.rows, Wanted(encoding), DefaultTitle(encoding)));
    }
  }
  for (PanePlan const& pane : plan.panes) {
    for (LayerPlan const& layer : pane.layers) layer.mark->DescribeLeftOut(results, sentences);
  }
  return sentences;
}

}  // namespace

std::vector<std::string> DescribeLeftOutRows(ChartPlan const& plan, Results const& results) {
  std::vector<std::string> different;
  for (std::string& sentence : DescribeAll(plan, results)) {
    // Two channels or layers may show the same field.
    if (std::ranges::find(different, sentence) == different.end()) different.push_back(std::move(sentence));
  }
  return different;
}

}  // namespace ostrel::charts
