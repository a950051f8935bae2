#include <cairo.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

#include "charts/writer/PngWriter.h"

namespace {

namespace fs = std::filesystem;
using ostrel::charts::WritePng;

constexpr char kSquares[] =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"6.2\" viewBox=\"0 0 10 6.2\">"
    "<rect fill=\"#f00\" width=\"5\" height=\"3\"/><rect fill=\"#00f\" x=\"5\" y=\"3\" width=\"5\" "
    "height=\"4\"/>"
    "<text y=\"6\" font-size=\"2\">a</text></svg>";

class PngWriter : public testing::Test {
 protected:
  PngWriter()
      : path_(fs::temp_directory_path() / ("ostrel-" + std::to_string(std::random_device()()) + ".png")) {}
  ~PngWriter() override { fs::remove(path_); }

  std::string Read() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string GetError(std::string_view svg, double scale, fs::path const& path) const {
    try {
      WritePng(svg, scale, path);
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "no error";
  }

  fs::path path_;
};

TEST_F(PngWriter, DrawsTheDocumentInItsScale) {
  for (int const scale : {1, 2, 3}) {
    WritePng(kSquares, scale, path_);
    auto const close = [](cairo_surface_t* surface) { cairo_surface_destroy(surface); };
    std::unique_ptr<cairo_surface_t, decltype(close)> const picture(
        cairo_image_surface_create_from_png(path_.c_str()), close);
    ASSERT_EQ(cairo_surface_status(picture.get()), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(picture.get()), 10 * scale);
    EXPECT_EQ(cairo_image_surface_get_height(picture.get()), scale == 1 ? 7 : scale == 2 ? 13 : 19);
    auto const pixel = [&](int x, int y) {
      unsigned char const* const row = cairo_image_surface_get_data(picture.get()) +
                                       y * scale * cairo_image_surface_get_stride(picture.get());
      return reinterpret_cast<std::uint32_t const*>(row)[x * scale];
    };
    EXPECT_EQ(pixel(1, 1), 0xFFFF0000);
    EXPECT_EQ(pixel(8, 4), 0xFF0000FF);
    EXPECT_EQ(pixel(8, 1), 0U);
  }
}

TEST_F(PngWriter, GivesTheSameBytesEveryTime) {
  WritePng(kSquares, 2, path_);
  std::string const first = Read();
  WritePng(kSquares, 2, path_);
  EXPECT_EQ(Read(), first);
}

TEST_F(PngWriter, SaysWhatIsWrongAndLeavesNoFile) {
  std::string const cannotDraw = "cannot draw " + path_.string() + ": ";
  std::string const wide = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40000\" height=\"1\"/>";
  std::string const empty = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"0\" height=\"1\"/>";
  EXPECT_EQ(GetError(kSquares, 0, path_), cannotDraw + "the scale must be above 0");
  EXPECT_EQ(GetError(wide, 1, path_), cannotDraw + "the picture would have more than 32767 pixels a side");
  EXPECT_EQ(GetError(empty, 1, path_), cannotDraw + "the picture would be empty");
  EXPECT_EQ(GetError("<svg", 1, path_).find(cannotDraw + "XML parse error"), 0U)
      << GetError("<svg", 1, path_);
  EXPECT_FALSE(fs::exists(path_));
  EXPECT_EQ(GetError(kSquares, 1, "/dev/full"), "cannot write /dev/full: No space left on device");
  EXPECT_EQ(GetError(kSquares, 1, path_ / "a.png"),
            "cannot write " + (path_ / "a.png").string() + ": No such file or directory");
}

TEST_F(PngWriter, RefusesAFontFolderThatIsNotThere) {
  try {
    ostrel::charts::UsePngFonts({path_.string()});
    FAIL() << "no error";
  } catch (std::runtime_error const& error) {
    EXPECT_EQ(error.what(),
              "the font folder " + path_.string() + " can't be read: No such file or directory");
  }
}

}  // namespace
