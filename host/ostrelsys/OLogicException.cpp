#include "ostrelsys/OLogicException.h"

namespace {

char const* OrEmpty(char const* text) { return text != nullptr ? text : ""; }

}  // namespace

OLogicException::OLogicException(char const* source, int line, char const* expression)
    : std::logic_error(std::string("logic error in ") + OrEmpty(source) + ", line " + std::to_string(line) +
                       ": " + OrEmpty(expression)),
      m_source(OrEmpty(source)),
      m_line(line),
      m_expression(OrEmpty(expression)) {}

OLogicException::~OLogicException() = default;
