#pragma once

#include "charts/document/ChartDocument.h"
#include "charts/graph/LayerRows.h"

namespace ostrel::charts {

/// Rows to be drawn, and the channels over them: every channel names a column, and nothing is left to derive.
struct DrawnRows {
  std::shared_ptr<LayerRows> rows;
  std::vector<Encoding> encodings;
};

/// Derives what channels ask of their fields: units of time, bins, sort numbers, aggregates, stacks, in this
/// order. Aggregates are of the rows that are equal in all other channels. A channel's path stays, its field
/// becomes the derived column, and its derived title tells what that is: "Sum of people". Throws
/// DocumentError and DataError.
DrawnRows DeriveChannelFields(GraphBuilder& graph, LayerSpec const& layer, std::shared_ptr<LayerRows> rows);

/// Whether bars, areas and the like run along x, away from a base line at the left.
bool IsHorizontal(MarkSpec const& mark, std::vector<Encoding> const& encodings);

/// Whether the rows of a mark have their places on a position channel, x or y, and their size along the other
/// one. A mark between two measures on both has places on neither.
bool IsPlaceOf(MarkSpec const& mark, std::vector<Encoding> const& encodings, Channel channel);

}  // namespace ostrel::charts
