#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// A String column of what the channels tooltip say of each row, "a: 1" in a line for each; -1 without such
/// channels.
NodeId PlanTooltips(MarkContext& context);

/// A String column of a field's values by a format, or each as its shortest text.
NodeId PlanTexts(MarkContext& context, Encoding const& encoding);

}  // namespace ostrel::charts
