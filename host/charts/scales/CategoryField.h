#pragma once

#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

/// Listed values as a String column, as the values of discrete fields are compared: those of a unit of time
/// as dates.
Value MakeTextColumn(std::vector<Literal> const& literals, TimeUnitSpec const& unit = {});

/// Nominal or ordinal fields: their different values, in order, and of each row the value's place among them.
struct CategoryField {
  std::string name;
  NodeId domain = -1;  ///< String column of the values
  NodeId labels = -1;  ///< String column: the values as guides show them
  /// Int32 column for each use of the scale; special where a row's value is missing or not in the domain
  std::vector<NodeId> indices;
  NodeId count = -1;  ///< Int32 scalar
};

/// The values come in the order of the scale's domain, of the encoding's sort or of its sort numbers:
/// ascending where it has none, and behind those that a list names.
CategoryField IndexCategories(Compilation& compilation, ScaleSource const& source);

/// What a guide shows of the values: all of them, or those that the document lists.
struct CategoryEntries {
  NodeId labels = -1;   ///< String column
  NodeId indices = -1;  ///< Int32 column; special where a listed value is not in the domain
};
CategoryEntries ListEntries(GraphBuilder& graph, CategoryField const& field, Encoding const& encoding,
                            std::vector<Literal> const& listed);

/// Which texts the document lists: a Bool column.
NodeId FindListed(GraphBuilder& graph, std::string const& name, NodeId texts,
                  std::vector<Literal> const& listed);

}  // namespace ostrel::charts
