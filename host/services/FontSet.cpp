#include "services/FontSet.h"

#include <unicode/utf16.h>

#include "services/FontCatalog.h"

namespace ostrel::services {

FontFace const& FontSet::GetFace(std::size_t position) const { return files_[position]->Open(); }

std::size_t FontSet::FindFaceWith(std::u16string_view text, std::size_t from) const {
  for (std::size_t position = from; position < files_.size(); ++position) {
    for (std::size_t at = 0; at < text.size();) {
      UChar32 character = 0;
      U16_NEXT(text.data(), at, text.size(), character);
      if (files_[position]->HasCharacter(static_cast<char32_t>(character))) return position;
    }
  }
  return files_.size();
}

}  // namespace ostrel::services
