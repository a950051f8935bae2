#pragma once

#include <optional>

#include "charts/scales/CategoryField.h"
#include "charts/scales/ScaledField.h"
#include "charts/texts/TextNodes.h"

namespace ostrel::charts {

/// The nodes of a colour, size, opacity or shape scale: what each row gets, and what its legend shows.
struct StyleScale {
  /// Whether its legend is a strip of colours, else a list of entries.
  bool IsRamp() const { return palette >= 0 || steps >= 0; }
  /// How its legend's labels are set: from the middle of their left end, below a strip from their top.
  TextStyle GetLabelStyle() const;

  Channel channel = Channel::Color;
  Encoding encoding;  ///< what all channels of the scale say
  bool isCategorical = false;
  std::vector<NodeId> rows =
      {};                   ///< for each use a style for each row: Color, Real64 or Int32 (shape) column
  NodeId entryLabels = -1;  ///< String column, one for each entry of the legend
  NodeId entryTexts = -1;   ///< the labels as composeText sets them
  TitleText title = {};
  NodeId entries = -1;        ///< the entries' styles
  NodeId hiddenEntries = -1;  ///< Bool column: entries whose rows are not drawn; -1 for none
  NodeId entryPlaces = -1;    ///< of a continuous legend: the entries' places; outside of 0 to 1 not shown
  NodeId shownEntries = -1;   ///< Bool column: entries with something to see in the domain; -1: all
  NodeId moreEntries = -1;    ///< String column of one text: how many entries have no room; -1 for none
  NodeId palette = -1;        ///< of a continuous colour legend: Int32 column of its stops
  NodeId steps = -1;  ///< of a legend of colours in steps: Color column, from the lowest step up; its entries
                      ///< are the numbers between the steps
  NodeId entryRooms = -1;  ///< of a list along the chart's width: composeShapes' table of one list; else -1
};

/// The area of the largest symbol, as of a step of 20 pixels, in square pixels.
inline constexpr double kLargestSymbol = 361;

/// The area of the smallest one: none where the field's 0 has it.
double FindSmallestSymbol(Encoding const& encoding);

/// Whether a legend shows an entry.
bool IsEntryShown(StyleScale const& scale, Results const& results, int row);

/// The scale of a channel of styles.
StyleScale PlanStyleScale(Compilation& compilation, ScaleSource const& source);

}  // namespace ostrel::charts
