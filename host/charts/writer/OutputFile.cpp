#include "charts/writer/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace ostrel::charts {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
constexpr unsigned kNewFileMode = 0666;  // less what the umask takes
constexpr unsigned kAccessRights = 0777;
constexpr int kNameAttempts = 100;

// With 64 random bits two writers of one folder practically never meet.
std::string MakeTemporaryName() {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string name = ".ostrel-";
  for (int i = 0; i < 16; ++i) name += kDigits[random() & 15U];
  return name + ".tmp";
}

}  // namespace

OutputFile::OutputFile(fs::path path) : path_(std::move(path)), target_(path_) {
  struct stat status {};
  if (::stat(path_.c_str(), &status) != 0) {
    if (errno != ENOENT) Fail(errno);
    // A link to nothing: what it names is made, and the link stays.
    if (fs::is_symlink(fs::symlink_status(path_))) target_ = path_.parent_path() / fs::read_symlink(path_);
    OpenTemporary(kNewFileMode);
  } else if (S_ISDIR(status.st_mode)) {
    Fail(EISDIR);
  } else if (!S_ISREG(status.st_mode)) {
    descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor_ < 0) Fail(errno);
  } else {
    if (::faccessat(AT_FDCWD, path_.c_str(), W_OK, AT_EACCESS) != 0) Fail(errno);
    target_ = fs::canonical(path_);
    OpenTemporary(kNewFileMode);
    // A file system without access rights refuses, and has none to lose.
    static_cast<void>(::fchmod(descriptor_, status.st_mode & kAccessRights));
  }
  buffer_.reserve(kBufferSize);
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void OutputFile::Fail(int error) const {
  throw std::runtime_error("cannot write " + path_.string() + ": " + std::generic_category().message(error));
}

void OutputFile::OpenTemporary(unsigned mode) {
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    fs::path const candidate = target_.parent_path() / MakeTemporaryName();
    descriptor_ = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor_ >= 0) {
      temporary_ = candidate;
      return;
    }
    if (errno != EEXIST) break;
  }
  Fail(errno);
}

void OutputFile::Write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > kBufferSize) {
    WriteThrough(buffer_);
    buffer_.clear();
  }
  if (bytes.size() >= kBufferSize) {
    WriteThrough(bytes);
  } else {
    buffer_.append(bytes);
  }
}

void OutputFile::WriteThrough(std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t const written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      Fail(errno);
    }
  }
}

void OutputFile::Commit() {
  WriteThrough(buffer_);
  buffer_.clear();
  // Network file systems tell of a full disk only here.
  if (::close(std::exchange(descriptor_, -1)) != 0) Fail(errno);
  if (temporary_.empty()) return;
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) Fail(errno);
  temporary_.clear();
}

}  // namespace ostrel::charts
