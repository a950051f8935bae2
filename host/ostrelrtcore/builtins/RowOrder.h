#pragma once

#include "ostrelrtcore/builtins/Columns.h"

/// The order of rows: numbers by value with both zeros equal, instants, strings by code unit, false before
/// true, colours by their number. NaN comes after all numbers and special rows last, by ascending kind, also
/// in descending order.
namespace ort::core::builtins {

struct SortColumn {
  Value column;
  bool isDescending;
};

/// The rows in order of the first column, rows that are equal there in order of the next, and so on; rows
/// that are equal in all columns keep their order. Throws 259 for columns of unequal length and 178 for
/// columns of whole values.
ColumnBuilder<int> SortRows(std::span<SortColumn const> columns);

/// Of every ordinary row a word that orders it: ascending words are the order of the rows.
std::vector<uint64> OrderWords(SortColumn const& column);

}  // namespace ort::core::builtins
