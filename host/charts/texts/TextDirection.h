#pragma once

#include <string>

#include "ostrelsys/OStringCore.h"

namespace ostrel::charts {

/// Whether a text is read from the right: by its first character of a strong direction (rules P2 and P3 of
/// Unicode Standard Annex 9).
bool ReadsFromRight(OStringCore const& text);
bool ReadsFromRight(std::string const& text);

}  // namespace ostrel::charts
