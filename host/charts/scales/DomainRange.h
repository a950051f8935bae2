#pragma once

#include "charts/scales/PositionScale.h"

/// A scale's domain as the range tuple that functions of axes take, and back.
namespace ostrel::charts {

/// Minimum, maximum, mode, field type and log flag. The mode tells which ends the document fixes.
NodeId MakeDomainRange(GraphBuilder& graph, ScaledField const& field, ScaleSpec const& spec);
/// The same, with both ends free to move.
NodeId MakeFreeRange(GraphBuilder& graph, ScaledField const& field);
void SetDomain(GraphBuilder& graph, ScaledField& field, std::string const& name, NodeId range);

/// Whether the minimum is at the pane's right, or at its upper end.
bool IsTurned(PositionScale const& scale);

/// A column of so many equal values.
NodeId MakeColumn(GraphBuilder& graph, std::string const& name, NodeId value, NodeId count);
/// One column out of columns, or the one.
NodeId Concatenate(GraphBuilder& graph, std::string const& name, std::vector<NodeId> const& columns);

}  // namespace ostrel::charts
