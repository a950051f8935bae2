#pragma once

#include <hb.h>

#include <cstdint>
#include <memory>
#include <string>

#include "services/PairAdvances.h"

namespace ostrel::services {

template <auto Free>
struct Freer {
  template <typename T>
  void operator()(T* object) const noexcept {
    Free(object);
  }
};

using BlobHandle = std::unique_ptr<hb_blob_t, Freer<hb_blob_destroy>>;
using FaceHandle = std::unique_ptr<hb_face_t, Freer<hb_face_destroy>>;
using FontHandle = std::unique_ptr<hb_font_t, Freer<hb_font_destroy>>;

/// Vertical measures in ems.
struct FaceMetrics {
  double ascent;
  double descent;  ///< positive below the baseline
  double lineGap;
};

/// One face of an opened font file; its objects are never changed, so threads share them.
class FontFace {
 public:
  /// `index` counts faces in the low 16 bits and named instances of a variable font, from 1 on, in the high
  /// ones. Throws std::runtime_error, naming the file, when it can't be read as a font.
  FontFace(std::string const& path, int index);

  /// Tells faces apart over the life of the process.
  std::uint64_t GetId() const { return id_; }
  int GetUnitsPerEm() const { return unitsPerEm_; }
  FaceMetrics const& GetMetrics() const { return metrics_; }
  PairAdvances const& GetPairs() const { return *pairs_; }

  /// The face at one unit of the result for each unit of the font, for use by one thread.
  FontHandle MakeFont() const;

 private:
  std::uint64_t id_;
  FaceHandle face_;
  int instance_;
  int unitsPerEm_;
  FaceMetrics metrics_;
  std::unique_ptr<PairAdvances> pairs_;
};

}  // namespace ostrel::services
