#pragma once

#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

/// A nominal or ordinal field: its different values, in order, and of each row the value's place among them.
struct CategoryField {
  std::string name;
  NodeId domain = -1;   ///< String column of the values
  NodeId indices = -1;  ///< Int32 column; special where a row's value is missing or not in the domain
  NodeId count = -1;    ///< Int32 scalar
};

CategoryField IndexCategories(Compilation& compilation, Encoding const& encoding, std::string const& name);

}  // namespace ostrel::charts
