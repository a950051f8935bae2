#pragma once

#include "charts/data/DataTable.h"
#include "charts/document/ChartDocument.h"
#include "charts/graph/GraphBuilder.h"

namespace ostrel::charts {

/// What a chart is compiled from and into.
struct Compilation {
  ChartDocument const& document;
  DataTable const& table;
  GraphBuilder graph;
};

/// Throws DocumentError naming the document and the place in it.
[[noreturn]] void ThrowDocumentError(ChartDocument const& document, std::string const& jsonPath,
                                     std::string const& cause);

/// A field's rows as numbers that a continuous scale works on, and how they were made.
struct ScaledField {
  std::string name;  ///< of the channel: "x", "color"
  ScaleType scaleType = ScaleType::Linear;
  NodeId numbers = -1;  ///< Real64: the data's numbers, day numbers of temporal fields
  NodeId scaled = -1;   ///< Real64: the same in the scale's own space: logarithms, square roots
  NodeId minimum = -1;  ///< Real64 scalars: the domain's ends, as data numbers
  NodeId maximum = -1;
  NodeId lower = -1;  ///< Real64 scalars: the domain's ends in the scale's own space
  NodeId upper = -1;
  bool isReversed = false;    ///< the document gives the domain's larger end first
  bool hasNegatives = false;  ///< the data or the domain reach below 0
};

/// How a channel's domain is rounded and widened where the document leaves it open.
struct DomainRules {
  bool includesZero = false;
  bool isNice = false;
};

/// Whether a continuous scale runs from its range's end to its start.
bool IsReversed(Encoding const& encoding, ScaledField const& field);

/// The number, or the day number of an ISO date, that a value of the document stands for. `place` is the JSON
/// path below the encoding: ".axis.values".
double ReadFieldNumber(Compilation const& compilation, Encoding const& encoding, Literal const& literal,
                       std::string const& place);

/// The scale type that an encoding has or gets by its field's type.
ScaleType ResolveScaleType(Encoding const& encoding);

/// Nodes for a quantitative or temporal field up to its domain.
ScaledField ScaleField(Compilation& compilation, Encoding const& encoding, std::string const& name,
                       DomainRules const& rules);

/// Further data numbers in the field's own scale space: ticks, legend values.
NodeId ToScaleSpace(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId numbers);

/// The place of scaled numbers in the domain, from 0 at its minimum to 1 at its maximum.
NodeId ToFraction(GraphBuilder& graph, ScaledField const& field, std::string const& name, NodeId scaled,
                  bool isClamped);

/// start + fraction * (end - start).
NodeId ToRange(GraphBuilder& graph, std::string const& name, NodeId fraction, double start, double end);

}  // namespace ostrel::charts
