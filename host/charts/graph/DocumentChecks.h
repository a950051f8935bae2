#pragma once

#include "charts/document/ChartDocument.h"

namespace ostrel::charts {

/// Whether symbols are filled rather than outlined.
bool IsFilled(MarkSpec const& mark);

/// Refuses what a mark of its kind would pass over: an order without a line, a second paint. Throws
/// DocumentError.
void CheckDocument(ChartDocument const& document);

}  // namespace ostrel::charts
