#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "ostrelrtcore/BufferPool.h"

namespace ostrel::charts {

/// The folders below which a chart may read: its own, and the one that --data-root names (empty when none).
struct DataRoots {
  std::filesystem::path chartFolder;
  std::filesystem::path dataRoot;
};

/// The canonical path of the file that a chart names: relative to the chart's folder, or, where that has no
/// such file, to the data root; an absolute path must lie below one of them. Throws DataError for a URL, for
/// a path that leaves both folders (by "..", as an absolute path, or through a symbolic link), and for what
/// is not a regular file.
std::filesystem::path ResolveDataPath(std::string const& path, DataRoots const& roots);

inline constexpr std::size_t kMostDataBytes = 0x7FFF'FFFF;

/// A file's content in memory.
class DataText {
 public:
  DataText(ort::core::PooledBuffer buffer, std::size_t size) : buffer_(std::move(buffer)), size_(size) {}
  std::string_view Get() const { return {static_cast<char const*>(buffer_.data()), size_}; }

 private:
  ort::core::PooledBuffer buffer_;
  std::size_t size_;
};

/// The file's content. What is read is the file that was checked, also when links are changed meanwhile.
/// Throws DataError as ResolveDataPath does, and for more bytes than are to be read.
DataText ReadDataFile(std::string const& path, DataRoots const& roots,
                      std::size_t mostBytes = kMostDataBytes);

}  // namespace ostrel::charts
