#include <fmt/format.h>

#include "charts/expressions/ExpressionCompiler.h"
#include "charts/transforms/RowTransforms.h"

namespace ostrel::charts {

std::shared_ptr<LayerRows> CalculateRows(GraphBuilder& graph, CalculateSpec const& calculate,
                                         LayerRows& rows) {
  RowStep step(graph, rows, calculate.path);
  step.Set(calculate.as, CompileValue(step, *calculate.expression, calculate.path));
  try {
    return step.Extend();
  } catch (ort::core::EvaluationError const& error) {
    throw DataError(fmt::format("{}: {}", calculate.path, error.what()));
  }
}

}  // namespace ostrel::charts
