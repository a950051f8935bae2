#include "services/FontFace.h"

#include <ft2build.h>
#include <hb-ot.h>

#include <atomic>
#include <stdexcept>

#include FT_FREETYPE_H

namespace ostrel::services {

namespace {

std::uint64_t NextId() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

[[noreturn]] void ThrowUnreadable(std::string const& path) {
  throw std::runtime_error("the font file " + path + " can't be read");
}

FaceHandle OpenFace(std::string const& path, int index) {
  BlobHandle const blob(hb_blob_create_from_file_or_fail(path.c_str()));
  if (!blob) ThrowUnreadable(path);
  FaceHandle face(hb_face_create(blob.get(), static_cast<unsigned>(index) & 0xFFFFU));
  hb_face_make_immutable(face.get());
  return face;
}

// FreeType chooses among a font's three sets of vertical metrics as browsers that draw with it do.
FaceMetrics ReadMetrics(std::string const& path, int index) {
  FT_Library library = nullptr;
  if (FT_Init_FreeType(&library) != 0) throw std::runtime_error("FreeType can't be started");
  std::unique_ptr<FT_LibraryRec_, Freer<FT_Done_FreeType>> const ownedLibrary(library);
  FT_Face face = nullptr;
  if (FT_New_Face(library, path.c_str(), index, &face) != 0) ThrowUnreadable(path);
  std::unique_ptr<FT_FaceRec_, Freer<FT_Done_Face>> const ownedFace(face);
  if (face->units_per_EM == 0) ThrowUnreadable(path);
  auto const em = static_cast<double>(face->units_per_EM);
  double const ascent = face->ascender / em;
  double const descent = -face->descender / em;
  double const lineGap = (face->height - face->ascender + face->descender) / em;
  return {ascent, descent, lineGap > 0 ? lineGap : 0.0};
}

}  // namespace

FontFace::FontFace(std::string const& path, int index)
    : id_(NextId()),
      face_(OpenFace(path, index)),
      instance_(index >> 16),
      unitsPerEm_(static_cast<int>(hb_face_get_upem(face_.get()))),
      metrics_(ReadMetrics(path, index)),
      pairs_(std::make_unique<PairAdvances>(*this, face_.get())) {}

FontHandle FontFace::MakeFont() const {
  FontHandle font(hb_font_create(face_.get()));
  hb_ot_font_set_funcs(font.get());
  hb_font_set_scale(font.get(), unitsPerEm_, unitsPerEm_);
  if (instance_ > 0) hb_font_set_var_named_instance(font.get(), static_cast<unsigned>(instance_) - 1);
  return font;
}

}  // namespace ostrel::services
