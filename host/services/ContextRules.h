#pragma once

#include <hb.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

#include "services/PairAdvances.h"

namespace ostrel::services {

using SlotGlyphs = std::array<hb_codepoint_t, PairSlots::kCount>;  ///< 0 for a slot without a glyph

/// The slots whose glyphs begin the input of a contextual rule of a lookup that can match where a text has
/// glyphs of slots alone. Most such rules ask for a mark somewhere and never do. Nothing when the lookup has
/// other than contextual rules or can't be read (OpenType 1.9, "Sequence context" and "Chained sequence
/// context").
std::optional<std::bitset<PairSlots::kCount>> FindContextStarts(hb_face_t* face, hb_tag_t table,
                                                                unsigned lookup, SlotGlyphs const& glyphs);

}  // namespace ostrel::services
