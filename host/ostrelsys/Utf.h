#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ostrelsys/Export.h"

/// Conversion between UTF-8 and UTF-16. What is ill-formed becomes U+FFFD.
namespace Utf {

/// Writes the UTF-16 form and gives its length in units. `units` has room for as many units as `utf8` has
/// bytes, which is always enough. More than 2^31-1 bytes throw std::length_error.
OSTRELSYS_API std::size_t Utf8ToUtf16(std::string_view utf8, char16_t* units);
OSTRELSYS_API std::string Utf16ToUtf8(std::u16string_view units);

}  // namespace Utf
