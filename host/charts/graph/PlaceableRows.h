#pragma once

#include "charts/graph/Compilation.h"
#include "charts/graph/LayerRows.h"

namespace ostrel::charts {

/// The rows of a layer that have numbers and dates for all of its continuous scales. Others are not drawn, so
/// that they count for no scale's domain either; of each channel whose rows they are a sentence is added. All
/// rows stay for marks that break where a row has no place, and for maps.
std::shared_ptr<LayerRows> KeepPlaceable(GraphBuilder& graph, LayerSpec const& layer,
                                         std::shared_ptr<LayerRows> rows,
                                         std::vector<std::string>& sentences);

}  // namespace ostrel::charts
