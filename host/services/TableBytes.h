#pragma once

#include <hb.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "services/FontFace.h"

namespace ostrel::services {

/// Reading a table of a font; places are counted from its beginning.
class TableBytes {
 public:
  struct OutOfTable {};

  TableBytes(hb_face_t* face, hb_tag_t table) : blob_(hb_face_reference_table(face, table)) {
    unsigned length = 0;
    char const* const data = hb_blob_get_data(blob_.get(), &length);
    bytes_ = {reinterpret_cast<std::uint8_t const*>(data), length};
  }

  /// Throws OutOfTable.
  unsigned UInt16(std::size_t at) const {
    if (at + 2 > bytes_.size()) throw OutOfTable();
    return unsigned{bytes_[at]} << 8U | bytes_[at + 1];
  }
  std::size_t UInt32(std::size_t at) const { return std::size_t{UInt16(at)} << 16U | UInt16(at + 2); }
  /// The place that an offset counted from `base` names.
  std::size_t Follow(std::size_t base, std::size_t offsetAt) const { return base + UInt16(offsetAt); }
  bool IsEmpty() const { return bytes_.empty(); }

 private:
  BlobHandle blob_;
  std::span<std::uint8_t const> bytes_;
};

}  // namespace ostrel::services
