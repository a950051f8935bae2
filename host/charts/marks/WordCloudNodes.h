#pragma once

#include "charts/marks/MarkContext.h"

namespace ostrel::charts {

/// The words of a cloud, the largest first. Columns with a row a word; -1 everywhere where there is no word.
struct WordCloudNodes {
  NodeId text = -1;     ///< String
  NodeId x = -1;        ///< Real64: the middle of the word, pixels
  NodeId y = -1;        ///< Real64
  NodeId size = -1;     ///< Real64: of the font, pixels
  NodeId angle = -1;    ///< Real64: degrees, clockwise
  NodeId color = -1;    ///< Color; -1 where no field tells it
  NodeId isShown = -1;  ///< Bool: the word lies within the plot; all columns but this one and `words` have
                        ///< rows for these alone
  NodeId words = -1;    ///< String: the words, shown or not
  NodeId hasSize = -1;  ///< Bool column of all rows; -1 without channel size
};

/// The nodes that lay a layer's rows out as a cloud. A word's font grows with the square root of its size, so
/// that its area is in proportion; without channel size all words are equally large. The largest scale is
/// taken, in small steps down from the one of which the words have just the area, at which all find a place.
WordCloudNodes PlanWordCloudNodes(MarkContext& context);

}  // namespace ostrel::charts
