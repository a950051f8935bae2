#pragma once

#include "charts/functions/Palettes.h"
#include "charts/scales/ScaledField.h"

namespace ostrel::charts {

inline constexpr char const* kSequentialScheme = "blues";
inline constexpr char const* kDivergingScheme = "blueorange";

/// An Int32 column of ARGB values: the colours that the document lists, or `count` (an Int32 scalar) colours
/// of the scheme that it names, or else of the default one, with or without a ramp's ends.
NodeId PlanPalette(Compilation& compilation, Encoding const& encoding, std::string const& name, NodeId count,
                   char const* defaultScheme, PaletteEnds ends, bool isReversed);

}  // namespace ostrel::charts
