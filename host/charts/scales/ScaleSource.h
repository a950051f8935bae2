#pragma once

#include <vector>

#include "charts/graph/Compilation.h"
#include "charts/graph/LayerRows.h"

namespace ostrel::charts {

/// A channel of a layer that a scale serves.
struct FieldUse {
  Encoding const* encoding = nullptr;
  LayerRows* rows = nullptr;
  std::string label;  ///< ends the names of the use's nodes; empty for the only one
};

/// What a scale is made from: the channels that share it.
struct ScaleSource {
  std::string name;   ///< "x", "color"
  Encoding encoding;  ///< what all of them say of scale and guide; field and path are the first one's
  std::vector<FieldUse> uses;
};

/// Joins channels: each property counts that any of them gives, and different titles stand one after the
/// other. Throws DocumentError for channels that contradict each other.
ScaleSource JoinUses(Compilation const& compilation, std::string const& name, std::vector<FieldUse> uses);

/// What guides are called where the document does not say.
std::string DefaultTitle(Encoding const& encoding);

}  // namespace ostrel::charts
