#include "charts/data/DataPath.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "charts/data/DataTable.h"

namespace ostrel::charts {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(std::string const& path, std::string_view cause) {
  throw DataError(fmt::format("{}: {}", path.empty() ? "data file" : path, cause));
}

[[noreturn]] void FailWithSystemError(std::string const& path, int error) {
  Fail(path, fmt::format("cannot be read: {}", std::generic_category().message(error)));
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  int Get() const { return descriptor_; }

 private:
  int descriptor_;
};

bool IsUrl(std::string const& path) {
  auto const colon = path.find(':');
  if (colon == std::string::npos || colon < 2) return path.starts_with("//");
  return std::all_of(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(colon), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '+' || c == '-' || c == '.';
  });
}

/// Both paths are absolute and without "..".
bool IsBelow(fs::path const& path, fs::path const& folder) {
  auto const [rest, _] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  // A folder written with a slash at its end has an empty last part.
  return rest == folder.end() || (rest->empty() && std::next(rest) == folder.end());
}

struct ResolvedFile {
  fs::path root;  // canonical
  fs::path file;  // canonical, below root
};

std::vector<fs::path> GetCanonicalRoots(DataRoots const& roots) {
  std::vector<fs::path> folders;
  auto const add = [&folders](fs::path const& folder) {
    std::error_code error;
    auto canonical = fs::canonical(folder, error);
    if (error) Fail(folder.string(), "the data folder cannot be read: " + error.message());
    folders.push_back(std::move(canonical));
  };
  add(roots.chartFolder.empty() ? fs::path(".") : roots.chartFolder);
  if (!roots.dataRoot.empty()) add(roots.dataRoot);
  return folders;
}

ResolvedFile Resolve(std::string const& path, DataRoots const& roots) {
  if (path.empty()) Fail(path, "the path is empty");
  if (path.find('\0') != std::string::npos) Fail("data file", "the path holds a NUL character");
  if (IsUrl(path)) Fail(path, "is a URL; data are read from files only");
  auto const folders = GetCanonicalRoots(roots);
  auto const findRoot = [&folders](fs::path const& file) {
    return std::find_if(folders.begin(), folders.end(),
                        [&file](fs::path const& folder) { return IsBelow(file, folder); });
  };
  std::string const leaves =
      roots.dataRoot.empty() ? "leaves the chart's folder" : "leaves the chart's folder and the data root";

  bool isInside = false;
  std::error_code firstError;
  for (auto const& folder : folders) {
    // What leaves by its spelling is refused without a look at the disk, which would tell what is there.
    auto const spelled = (folder / path).lexically_normal();
    if (findRoot(spelled) == folders.end()) continue;
    isInside = true;
    std::error_code error;
    auto file = fs::canonical(folder / path, error);
    if (error) {
      if (!firstError) firstError = error;
      continue;
    }
    auto const root = findRoot(file);
    if (root == folders.end()) Fail(path, leaves + " through a symbolic link");
    return {*root, std::move(file)};
  }
  if (!isInside) Fail(path, leaves);
  FailWithSystemError(path, firstError.value());
}

/// Opens part by part below the root and follows no link: the canonical path had none, so one that is met was
/// put there after the check.
Descriptor Open(std::string const& path, ResolvedFile const& resolved) {
  Descriptor current(open(resolved.root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  auto const relative = resolved.file.lexically_relative(resolved.root);
  for (auto part = relative.begin(); part != relative.end() && current.Get() >= 0; ++part) {
    bool const isLast = std::next(part) == relative.end();
    // Without O_NONBLOCK the opening of a pipe would wait for its writer.
    int const kind = isLast ? O_NONBLOCK : O_DIRECTORY;
    current =
        Descriptor(openat(current.Get(), part->c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | kind));
  }
  if (current.Get() < 0) FailWithSystemError(path, errno);
  return current;
}

/// The size of a regular file.
std::size_t CheckFile(std::string const& path, int descriptor, std::size_t mostBytes) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) FailWithSystemError(path, errno);
  if (S_ISDIR(status.st_mode)) Fail(path, "is a folder, not a file");
  if (!S_ISREG(status.st_mode)) Fail(path, "is not a regular file");
  auto const size = static_cast<std::size_t>(status.st_size);
  if (size > mostBytes) Fail(path, fmt::format("{} bytes; at most {} are read", size, mostBytes));
  return size;
}

}  // namespace

fs::path ResolveDataPath(std::string const& path, DataRoots const& roots) {
  auto resolved = Resolve(path, roots);
  std::error_code error;
  auto const status = fs::status(resolved.file, error);
  if (fs::is_directory(status)) Fail(path, "is a folder, not a file");
  if (!fs::is_regular_file(status)) Fail(path, "is not a regular file");
  return std::move(resolved.file);
}

DataText ReadDataFile(std::string const& path, DataRoots const& roots, std::size_t mostBytes) {
  auto const descriptor = Open(path, Resolve(path, roots));
  auto const size = CheckFile(path, descriptor.Get(), mostBytes);
  ort::core::PooledBuffer content(size);
  std::size_t done = 0;
  while (done < size) {
    auto const count = read(descriptor.Get(), static_cast<char*>(content.data()) + done, size - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) FailWithSystemError(path, errno);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return {std::move(content), done};
}

}  // namespace ostrel::charts
