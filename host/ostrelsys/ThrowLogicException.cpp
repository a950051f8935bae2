#include "ostrelsys/ThrowLogicException.h"

void ThrowLogicException(char const* source, int line, char const* expression) {
  throw OLogicException(source, line, expression);
}
