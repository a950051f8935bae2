#pragma once

#include <span>

#include "charts/scales/DomainRoom.h"

/// Domains made wider because scales belong together. No domain is cut, and ends that the document gives stay
/// where they are.
namespace ostrel::charts {

/// Widens the domains of linear scales so that their zeros stand at one height and the least room is wasted.
/// Throws DocumentError for scales of another type.
void AlignZeros(Compilation& compilation, std::span<PositionScale* const> scales);

/// A scale, and what its layer draws around its rows where the scale is to have room for it.
struct SharedScale {
  PositionScale* scale = nullptr;
  std::optional<RowReach> reach;
};
/// Gives continuous scales one domain, with room for what all layers draw. Throws DocumentError for discrete
/// scales and for scales of different types.
void ShareDomain(Compilation& compilation, std::span<SharedScale const> scales);

/// Widens the domains of continuous scales of one type, horizontal and vertical ones, so that a pixel is one
/// amount on all of them. `path` names the request: "$.resolve.unit". Throws DocumentError for fewer than two
/// scales, discrete ones and scales of different types.
void ShareUnit(Compilation& compilation, std::string const& path, std::span<PositionScale* const> scales);

}  // namespace ostrel::charts
