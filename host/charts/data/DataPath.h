#pragma once

#include <filesystem>
#include <string>

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

/// The file's content. What is read is the file that was checked, also when links are changed meanwhile.
/// Throws DataError as ResolveDataPath does, and for more than 2 GiB.
std::string ReadDataFile(std::string const& path, DataRoots const& roots);

}  // namespace ostrel::charts
