#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "charts/data/DataPath.h"
#include "charts/data/DataTable.h"

namespace ostrel::charts {

/// A picture as its file holds it.
struct ImageFile {
  char const* mediaType;  ///< "image/png", "image/jpeg"
  std::uint32_t width;    ///< pixels
  std::uint32_t height;
  DataText bytes;
};

/// The pictures of one chart, each read once.
class ImageFiles {
 public:
  explicit ImageFiles(DataRoots const& roots) : roots_(roots) {}

  /// A PNG or JPEG file that a chart may read, as ResolveDataPath says; its content tells its kind. Throws
  /// DataError for another kind, and where one picture has more than 16 MiB or 64 million pixels or all have
  /// more than 64 MiB.
  std::shared_ptr<ImageFile const> Get(std::string const& path);

 private:
  DataRoots const& roots_;
  std::map<std::string, std::shared_ptr<ImageFile const>> files_;
  std::size_t byteCount_ = 0;
};

}  // namespace ostrel::charts
