#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// A String column of what the channels tooltip say of each row, "a: 1" in a line for each; -1 without such
/// channels.
NodeId PlanTooltips(MarkContext& context);

/// The tooltips of a mark's rows, once they are known; empty texts without the node.
class TooltipReader {
 public:
  TooltipReader(Results const& results, NodeId node)
      : texts_(node < 0 ? nullptr : &results[node]->AsTypedArray<ort::core::RIndirectString>()) {}
  std::string Read(int row) const { return texts_ == nullptr ? "" : texts_->GetElement(row).Get().toUtf8(); }

 private:
  ort::core::ITypedArray<ort::core::RIndirectString> const* texts_;
};

/// A String column of a field's values by a format. Where none is given, quantities have twelve digits at
/// most and a bin is told by its ends.
NodeId PlanTexts(MarkContext& context, Encoding const& encoding);

}  // namespace ostrel::charts
