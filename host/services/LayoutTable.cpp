#include "services/LayoutTable.h"

#include <hb-ot.h>

#include "services/TableBytes.h"

namespace ostrel::services {

namespace {

unsigned ReadLookupType(TableBytes const& bytes, std::size_t lookup, unsigned extension) {
  unsigned const type = bytes.UInt16(lookup);
  return type == extension ? bytes.UInt16(bytes.Follow(lookup, lookup + 6) + 2) : type;
}

}  // namespace

std::vector<unsigned> ReadLookupTypes(hb_face_t* face, hb_tag_t table) {
  TableBytes const bytes(face, table);
  std::vector<unsigned> types;
  if (bytes.IsEmpty()) return types;
  unsigned const extension = table == HB_OT_TAG_GSUB ? 7 : 9;
  try {
    std::size_t const list = bytes.UInt16(8);
    types.resize(bytes.UInt16(list));
    for (std::size_t i = 0; i < types.size(); ++i) {
      types[i] = ReadLookupType(bytes, bytes.Follow(list, list + 2 + 2 * i), extension);
    }
  } catch (TableBytes::OutOfTable const&) {
    // The rest stays 0.
  }
  return types;
}

}  // namespace ostrel::services
