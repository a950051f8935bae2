#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Expressions of chart documents, such as "datum.people / 1000": what they are once their grammar was
/// checked. The language is described in docs/expressions.md.
namespace ostrel::charts {

/// What is wrong with an expression: "column 9: expected a value, but found ')'". Columns count characters
/// from 1.
class ExpressionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct LanguageFunction;

enum class ExpressionKind {
  Number,
  Text,
  Boolean,
  Null,
  Datum,        ///< the row itself
  Member,       ///< a named part of its child
  Index,        ///< a part of the first child that the second one tells
  List,         ///< "[1, 2]"
  Operation,    ///< an operator with one or two children
  Conditional,  ///< test, value where it holds, value where it does not
  Call
};

enum class Operator {
  Or,
  And,
  Equal,
  NotEqual,
  StrictlyEqual,
  StrictlyUnequal,
  Less,
  LessOrEqual,
  Greater,
  GreaterOrEqual,
  Add,
  Subtract,
  Multiply,
  Divide,
  Remainder,
  Power,
  Negate,
  ToNumber,
  Not
};

struct ExpressionNode {
  ExpressionKind kind = ExpressionKind::Null;
  std::size_t begin = 0;  ///< bytes of the source
  std::size_t end = 0;
  std::vector<int> children;
  Operator operation = Operator::Or;
  double number = 0;  ///< of a Boolean 0 or 1
  std::string text;   ///< of a Member its name
  LanguageFunction const* function = nullptr;
  int depth = 1;  ///< levels from here down
};

struct Expression {
  static constexpr std::size_t kMostBytes = 10'000;
  static constexpr int kMostLevels = 500;
  static constexpr int kMostBrackets = 100;  ///< one within another

  std::string source;
  std::vector<ExpressionNode> nodes;  ///< children come before their parents
  int root = 0;

  ExpressionNode const& GetNode(int node) const { return nodes[static_cast<std::size_t>(node)]; }
  /// What was written for a node.
  std::string_view GetText(ExpressionNode const& node) const {
    return std::string_view(source).substr(node.begin, node.end - node.begin);
  }
  /// Throws ExpressionError with the column of the byte.
  [[noreturn]] void Fail(std::size_t byte, std::string const& cause) const;
};

/// Reads a whole expression. Throws ExpressionError for what the grammar does not have, for functions and
/// names that it does not know, and beyond the limits.
std::shared_ptr<Expression const> ParseExpression(std::string_view source);

/// The column of a byte, and what is wrong there.
[[noreturn]] void FailAtColumn(std::string_view source, std::size_t byte, std::string const& cause);

}  // namespace ostrel::charts
