#pragma once

#include <stdexcept>
#include <string>

#include "ostrelsys/Export.h"

/// A fault of a program, not of its input: a condition that should always hold did not.
class OSTRELSYS_API OLogicException : public std::logic_error {
 public:
  /// `source` and `line` tell where the condition stands, `expression` is its text; null counts as empty.
  OLogicException(char const* source, int line, char const* expression);
  ~OLogicException() override;

  std::string const& GetSource() const noexcept { return m_source; }
  int GetLine() const noexcept { return m_line; }
  std::string const& GetExpression() const noexcept { return m_expression; }

 private:
  std::string m_source;
  int m_line;
  std::string m_expression;
};
