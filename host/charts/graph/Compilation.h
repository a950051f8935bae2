#pragma once

#include "charts/data/ImageFile.h"
#include "charts/document/ChartDocument.h"
#include "charts/graph/GraphBuilder.h"

namespace ostrel::charts {

/// What a chart is compiled from and into.
struct Compilation {
  /// Once the chart is planned its channels are over the rows to be drawn, with nothing left to derive.
  ChartDocument document;
  GraphBuilder graph;
  ImageFiles images;
};

/// Throws DocumentError naming the document and the place in it.
[[noreturn]] void ThrowDocumentError(ChartDocument const& document, std::string const& jsonPath,
                                     std::string const& cause);

}  // namespace ostrel::charts
