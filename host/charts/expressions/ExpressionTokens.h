#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrel::charts {

/// A word, a sign or a literal of an expression.
struct ExpressionToken {
  enum class Kind { Number, Text, Name, Sign, End };
  Kind kind = Kind::End;
  std::size_t begin = 0;  ///< bytes of the source
  std::size_t end = 0;
  double number = 0;
  std::string text;  ///< of a Text what it says, else what was written

  bool Is(std::string_view sign) const { return kind == Kind::Sign && text == sign; }
  /// As messages show it: "')'", "a text", "the end".
  std::string Describe() const;
};

/// All tokens, End last. Throws ExpressionError for a character that begins none, a text without end and a
/// number or escape that is ill-formed.
std::vector<ExpressionToken> SplitExpression(std::string_view source);

}  // namespace ostrel::charts
