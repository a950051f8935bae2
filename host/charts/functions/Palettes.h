#pragma once

#include <string_view>
#include <vector>

namespace ostrel::charts {

/// Whether a ramp's first and last colours are among those taken of it. Discrete values, which lie beside one
/// another, leave them, since the palest and the darkest tell least from their surroundings.
enum class PaletteEnds { Taken, Left };

/// Published palettes by name, letter case apart, as `count` opaque ARGB colours. Those without order
/// ("tableau10", "set2") are used again from their start where there are too few colours; of ramps
/// ("viridis", "redblue") that many are taken at even distances, linearly between stops: from end to end, or,
/// of n colours, from 1 / (n + 1) of the way to n / (n + 1); the middle one where one is asked for. Throws
/// OrtRuntimeException 2 for an unknown name, with the nearest one, and 55 for a count below 0 or above a
/// million.
std::vector<int> MakePaletteColors(std::string_view name, int count, PaletteEnds ends = PaletteEnds::Taken);

/// All names, the palettes without order first.
std::vector<std::string_view> ListPaletteNames();

}  // namespace ostrel::charts
