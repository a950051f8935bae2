#pragma once

#include <string_view>
#include <vector>

namespace ostrel::charts {

/// Published palettes by name, letter case apart, as `count` opaque ARGB colours. Those without order
/// ("tableau10", "set2") are used again from their start where there are too few colours; of ramps
/// ("viridis", "redblue") that many are taken at even distances from end to end, linearly between stops, the
/// middle one where one is asked for. Throws OrtRuntimeException 2 for an unknown name, with the nearest one,
/// and 55 for a count below 0 or above a million.
std::vector<int> MakePaletteColors(std::string_view name, int count);

/// All names, the palettes without order first.
std::vector<std::string_view> ListPaletteNames();

}  // namespace ostrel::charts
