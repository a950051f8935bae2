#include "charts/data/ImageFile.h"

#include <fmt/format.h>

#include <optional>
#include <string_view>

namespace ostrel::charts {
namespace {

constexpr std::size_t kMostBytes = 16U << 20U;
constexpr std::size_t kMostBytesOfAll = 64U << 20U;
// A small file may hold a picture that takes gigabytes when it is drawn.
constexpr std::uint64_t kMostPixels = 64'000'000;

struct ImageSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

std::uint32_t ReadBigEndian(std::string_view bytes, std::size_t position, int count) {
  std::uint32_t number = 0;
  for (int i = 0; i < count; ++i)
    number = number << 8U | static_cast<unsigned char>(bytes[position + static_cast<std::size_t>(i)]);
  return number;
}

constexpr std::string_view kPngStart = "\x89PNG\r\n\x1A\n";
constexpr std::string_view kJpegStart = "\xFF\xD8\xFF";

/// The first chunk is the header: length, "IHDR", width, height.
std::optional<ImageSize> FindPngSize(std::string_view bytes) {
  constexpr std::size_t kName = 12;
  constexpr std::size_t kWidth = 16;
  if (bytes.size() < kWidth + 8 || bytes.substr(kName, 4) != "IHDR") return std::nullopt;
  return ImageSize{ReadBigEndian(bytes, kWidth, 4), ReadBigEndian(bytes, kWidth + 4, 4)};
}

/// Segments follow one another, each a marker and its length, up to that of the frame: length, precision,
/// height, width.
std::optional<ImageSize> FindJpegSize(std::string_view bytes) {
  constexpr std::size_t kFrameLength = 9;
  std::size_t position = 2;
  while (position + kFrameLength <= bytes.size()) {
    auto const marker = ReadBigEndian(bytes, position, 2);
    if (marker == 0xFFFF) {  // a filling byte
      ++position;
      continue;
    }
    if (marker < 0xFF00) return std::nullopt;
    auto const kind = marker & 0xFFU;
    bool const isFrame = kind >= 0xC0 && kind <= 0xCF && kind != 0xC4 && kind != 0xC8 && kind != 0xCC;
    if (isFrame)
      return ImageSize{ReadBigEndian(bytes, position + 7, 2), ReadBigEndian(bytes, position + 5, 2)};
    position += 2 + ReadBigEndian(bytes, position + 2, 2);
  }
  return std::nullopt;
}

[[noreturn]] void Fail(std::string const& path, std::string const& cause) {
  throw DataError(fmt::format("{}: {}", path, cause));
}

ImageFile ReadImage(std::string const& path, DataRoots const& roots) {
  DataText content = ReadDataFile(path, roots, kMostBytes);
  std::string_view const bytes = content.Get();
  bool const isPng = bytes.starts_with(kPngStart);
  if (!isPng && !bytes.starts_with(kJpegStart)) Fail(path, "is neither a PNG nor a JPEG picture");
  auto const size = isPng ? FindPngSize(bytes) : FindJpegSize(bytes);
  if (!size || size->width == 0 || size->height == 0)
    Fail(path, "the picture's size can't be read; the file is damaged");
  if (std::uint64_t{size->width} * size->height > kMostPixels) {
    Fail(path,
         fmt::format("has {} by {} pixels; at most {} are drawn", size->width, size->height, kMostPixels));
  }
  return {isPng ? "image/png" : "image/jpeg", size->width, size->height, std::move(content)};
}

}  // namespace

std::shared_ptr<ImageFile const> ImageFiles::Get(std::string const& path) {
  auto& file = files_[path];
  if (file) return file;
  auto const read = std::make_shared<ImageFile>(ReadImage(path, roots_));
  byteCount_ += read->bytes.Get().size();
  if (byteCount_ > kMostBytesOfAll)
    Fail(path, fmt::format("the chart's pictures have more than {} bytes", kMostBytesOfAll));
  file = read;
  return file;
}

}  // namespace ostrel::charts
