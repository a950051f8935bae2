#include "charts/expressions/ExpressionCompiler.h"

#include <fmt/format.h>

#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

template <class Compile>
NodeId NamePlace(std::string const& path, Compile const& compile) {
  try {
    return compile();
  } catch (ExpressionError const& error) {
    throw DataError(fmt::format("{}: {}", path, error.what()));
  }
}

}  // namespace

NodeId CompileValue(RowStep& step, Expression const& expression, std::string const& path) {
  return NamePlace(path, [&] {
    OperandCompiler compiler(step, expression);
    return compiler.MakeColumn(compiler.Compile(expression.root));
  });
}

NodeId CompileTest(RowStep& step, Expression const& expression, std::string const& path) {
  return NamePlace(path, [&] {
    OperandCompiler compiler(step, expression);
    return compiler.MakeColumn(compiler.CompileTruth(expression.root));
  });
}

}  // namespace ostrel::charts
