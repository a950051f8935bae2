#pragma once

#include <string>

#include "charts/expressions/Expression.h"
#include "charts/transforms/RowStep.h"

/// Expressions as nodes of the graph: one function of whole columns for each operation, none for what is the
/// same in every row, which is computed when the graph is planned. `path` is the expression's place in the
/// document: both throw DataError with it and a column for operations on values of unsuitable types and
/// fields that the rows do not have.
namespace ostrel::charts {

/// An Int64, Real64, String, Bool, Date or DateTime column of the value in every row; no Real64 row is NaN.
NodeId CompileValue(RowStep& step, Expression const& expression, std::string const& path);

/// A Bool column without special rows: whether the value counts as true.
NodeId CompileTest(RowStep& step, Expression const& expression, std::string const& path);

}  // namespace ostrel::charts
