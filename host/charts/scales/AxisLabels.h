#pragma once

#include <optional>

#include "charts/texts/TextNodes.h"

namespace ostrel::charts {

/// What an axis' labels say, and what room they have.
struct AxisLabelRequest {
  std::string name;  ///< of the axis: "x"
  bool isHorizontal = true;
  bool isFar = true;            ///< right of or below the plotting area
  NodeId texts = -1;            ///< String column
  NodeId positions = -1;        ///< Real64 column: the ticks' pixels
  std::optional<double> step;   ///< pixels from one value of a discrete axis to the next
  std::optional<double> angle;  ///< as the document asks for: degrees, clockwise
  double limit = 0;             ///< of a line's length, pixels
  double fontSize = 10;
  bool isLog = false;
  bool areWhole = false;  ///< labels stay on one line: the ends of an interval
};

/// The labels of an axis as they are set.
struct AxisLabels {
  TextStyle style;
  double slant = 0;  ///< degrees by which the composed texts are turned further
  /// Nodes of composeText; a label stands in one of them and is empty in the others.
  std::vector<NodeId> composed;
  NodeId shown = -1;  ///< Bool column: the labels that clear each other
};

/// Sets the labels of an axis; where room is short on a discrete one, by this rule.
///
/// A horizontal axis whose document asks for no angle has its labels side by side on one line if all of them
/// fit into their steps; else wrapped to at most three lines if all of them fit so with no word broken; else
/// turned to read upwards. Labels that run across their axis, turned or beside a vertical axis, have lines as
/// long as the limit, and as many, up to three, as a step has room for; labels that run along it have a step
/// and three lines. A label that does not fit wraps, unless one of its words is longer than a line, and is
/// then shortened, with ".." in place of what is left out. Of labels that still come too close, every other
/// one is left out.
///
/// Whole labels never wrap: without room they are turned, and left out where an angle of 0 is asked for.
///
/// Angles of 0, 90 and -90 are the composer's own orientations; at others labels are composed on one line,
/// which is then slanted.
AxisLabels PlanAxisLabels(GraphBuilder& graph, AxisLabelRequest const& request);

}  // namespace ostrel::charts
