#pragma once

#include "ostrelsys/Export.h"
#include "ostrelsys/OLogicException.h"

/// Throws an OLogicException with these three.
[[noreturn]] OSTRELSYS_API void ThrowLogicException(char const* source, int line, char const* expression);
