#pragma once

#include "ostrelsys/OStringCore.h"

namespace ostrel::services {

/// The text with a break hint, U+000C, after each character at which a line may end by the rules of Unicode
/// (Unicode Standard Annex 14, with dictionaries for scripts without blanks); none after the last character.
/// Safe from many threads.
OStringCore InsertBreakHints(OStringCore const& text);

/// The text with U+200B where a line may end between two characters neither of which is a blank and which the
/// plain rules would not part, as in scripts without blanks. Latin text comes back as it is.
OStringCore InsertZeroWidthSpaces(OStringCore const& text);

}  // namespace ostrel::services
