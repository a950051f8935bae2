#include "services/LayoutTable.h"

#include <hb-ot.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "services/FontFace.h"

namespace ostrel::services {

namespace {

using Bytes = std::span<std::uint8_t const>;

std::optional<unsigned> ReadUInt16(Bytes table, std::size_t at) {
  if (at + 2 > table.size()) return std::nullopt;
  return unsigned{table[at]} << 8U | table[at + 1];
}

std::optional<unsigned> ReadLookupType(Bytes table, std::size_t lookup, unsigned extension) {
  auto const type = ReadUInt16(table, lookup);
  if (type != extension) return type;
  auto const subtable = ReadUInt16(table, lookup + 6);
  if (!subtable) return std::nullopt;
  return ReadUInt16(table, lookup + *subtable + 2);
}

}  // namespace

std::vector<unsigned> ReadLookupTypes(hb_face_t* face, hb_tag_t table) {
  BlobHandle const blob(hb_face_reference_table(face, table));
  unsigned length = 0;
  char const* const data = hb_blob_get_data(blob.get(), &length);
  Bytes const bytes(reinterpret_cast<std::uint8_t const*>(data), length);
  auto const list = ReadUInt16(bytes, 8);
  auto const count = list ? ReadUInt16(bytes, *list) : std::nullopt;
  std::vector<unsigned> types(count.value_or(0));
  unsigned const extension = table == HB_OT_TAG_GSUB ? 7 : 9;
  for (std::size_t i = 0; i < types.size(); ++i) {
    auto const lookup = ReadUInt16(bytes, *list + 2 + 2 * i);
    if (lookup) types[i] = ReadLookupType(bytes, *list + std::size_t{*lookup}, extension).value_or(0);
  }
  return types;
}

}  // namespace ostrel::services
