#pragma once

#include "charts/scales/ScaleSource.h"

namespace ostrel::charts {

/// The rows of one channel as numbers that a continuous scale works on.
struct ScaledRows {
  NodeId numbers = -1;  ///< Real64: the data's numbers, day numbers of temporal fields
  NodeId scaled = -1;   ///< Real64: the same in the scale's own space: logarithms, square roots
};

/// Fields as numbers of one continuous scale, and the scale's domain.
struct ScaledField {
  std::string name;  ///< of the channel: "x", "color"
  ScaleType scaleType = ScaleType::Linear;
  std::vector<ScaledRows> rows;  ///< one for each use of the scale
  NodeId minimum = -1;           ///< Real64 scalars: the domain's ends, as data numbers
  NodeId maximum = -1;
  NodeId lower = -1;  ///< Real64 scalars: the domain's ends in the scale's own space
  NodeId upper = -1;
  NodeId middle = -1;         ///< Real64 scalar: what lies half way between the ends; -1 for their mean
  NodeId center = -1;         ///< Real64 scalar: the scale goes by the distance from it; -1 for none
  bool isReversed = false;    ///< the document gives the domain's larger end first
  bool hasNegatives = false;  ///< the data or the domain reach below 0
};

/// How a channel's domain is rounded and widened where the document leaves it open, and where it runs.
struct DomainRules {
  bool includesZero = false;
  bool isNice = false;
  double padding = 0;  ///< pixels kept free at either end where the document tells none
  double length = 0;   ///< pixels along which the domain runs, for its padding
  bool isHorizontal = true;
};

/// Whether a continuous scale runs from its range's end to its start.
bool IsReversed(Encoding const& encoding, ScaledField const& field);

/// The number, or the day number of an ISO date, that a value of the document stands for. `place` is the JSON
/// path below the encoding: ".axis.values".
double ReadFieldNumber(Compilation const& compilation, Encoding const& encoding, Literal const& literal,
                       std::string const& place);

/// The scale type that an encoding has or gets by its field's type.
ScaleType ResolveScaleType(Encoding const& encoding);

/// Nodes for quantitative or temporal fields up to their common domain.
ScaledField ScaleField(Compilation& compilation, ScaleSource const& source, DomainRules const& rules);

/// A quantitative or temporal field's rows as Real64 numbers; day numbers of dates.
NodeId FieldNumbers(Compilation& compilation, FieldUse const& use, std::string const& name);

/// Further data numbers in the field's own scale space: ticks, legend values.
NodeId ToScaleSpace(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId numbers);

/// The place of scaled numbers in the domain, from 0 at its minimum to 1 at its maximum.
NodeId ToFraction(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId scaled,
                  bool isClamped);

/// start + fraction * (end - start).
NodeId ToRange(GraphBuilder& graph, std::string const& name, NodeId fraction, double start, double end);

}  // namespace ostrel::charts
