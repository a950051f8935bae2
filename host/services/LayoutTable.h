#pragma once

#include <hb.h>

#include <vector>

namespace ostrel::services {

/// The types of the lookups of a font's GSUB or GPOS table by number, extensions replaced by what they hold
/// (OpenType 1.9, "Common table formats"). A lookup that lies outside of the table has type 0; without the
/// table there are none.
std::vector<unsigned> ReadLookupTypes(hb_face_t* face, hb_tag_t table);

}  // namespace ostrel::services
