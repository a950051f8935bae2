#include <cairo.h>
#include <fmt/format.h>
#include <glib.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>

#include "ChartDrawing.h"
#include "charts/guides/GuideStyle.h"
#include "charts/writer/PngWriter.h"

namespace ostrel::charts {
namespace {

namespace fs = std::filesystem;
using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

constexpr unsigned kRed = 0xFFFF0000;
constexpr unsigned kBlue = 0xFF0000FF;

/// top/chart is the chart's folder, top/secret.png lies beside it.
class ImageMarks : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "images-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    top_ = name;
    folder_ = top_ / "chart";
    fs::create_directories(folder_ / "sub.png");
    WritePicture(folder_ / "red.png", kRed);
    WritePicture(folder_ / "blue.png", kBlue);
    WritePicture(top_ / "secret.png", kBlue);
  }
  void TearDown() override { fs::remove_all(top_); }

  static void WritePicture(fs::path const& path, unsigned color) {
    Surface const picture(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 2, 3), &cairo_surface_destroy);
    for (int y = 0; y < 3; ++y) {
      auto* const row = reinterpret_cast<unsigned*>(cairo_image_surface_get_data(picture.get()) +
                                                    y * cairo_image_surface_get_stride(picture.get()));
      row[0] = row[1] = color;
    }
    cairo_surface_mark_dirty(picture.get());
    ASSERT_EQ(cairo_surface_write_to_png(picture.get(), path.c_str()), CAIRO_STATUS_SUCCESS);
  }
  void WriteBytes(char const* name, std::string const& bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
  }
  static std::string ReadBytes(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path top_;
  fs::path folder_;
  ChartDrawing drawing_;
};

std::string MakeTile(char const* url, double west, double east) {
  return fmt::format(R"({{"u":"{}","w":{},"e":{},"n":60,"s":-60}})", url, west, east);
}

/// Two worlds and a bit around the middle of the tiles.
std::string MakeMap(std::string const& rows, std::string const& more = "") {
  return R"({"width":800,"height":131,"projection":{"type":"identity"},"layer":[{"data":{"values":[)" + rows +
         R"(]},"mark":"image","encoding":{"url":{"field":"u"},"longitude":{"field":"w"},)"
         R"("longitude2":{"field":"e"},"latitude":{"field":"n"},"latitude2":{"field":"s"}}})" +
         more + "]}";
}

std::string const kTiles =
    MakeTile("red.png", -180, -61) + "," + MakeTile("blue.png", -61, 61) + "," + MakeTile("red.png", 61, 180);

TEST_F(ImageMarks, MeetOnWholePixelsInEveryCopyOfTheWorld) {
  Scene const scene = drawing_.Draw(MakeMap(kTiles), folder_).scene;
  std::map<double, ImageMark const*> byLeft;
  for (ImageMark const* image : FindMarks<ImageMark>(scene, "marks")) {
    EXPECT_TRUE(byLeft.emplace(image->rect.x, image).second);
    EXPECT_EQ(image->file->width, 2U);
    EXPECT_EQ(image->file->height, 3U);
  }
  ASSERT_GT(byLeft.size(), 6U);
  EXPECT_LE(byLeft.begin()->first, 0);
  double left = byLeft.begin()->first;
  for (auto const& [x, image] : byLeft) {
    double const pixel = x + GuideStyle::kPixelShift;
    EXPECT_EQ(pixel, std::round(pixel));
    EXPECT_EQ(x, left);
    left = image->rect.Right();
  }
  EXPECT_GE(left, 800);
}

TEST_F(ImageMarks, StandInThePictureWithoutASeamUnderWhatLiesOverThem) {
  std::string const points =
      R"(,{"data":{"values":[{"x":-170,"y":50},{"x":10,"y":-50}]},"mark":{"type":"circle","size":9,"opacity":1,)"
      R"("color":"#0f0"},"encoding":{"longitude":{"field":"x"},"latitude":{"field":"y"}}})";
  std::string const svg = drawing_.DrawSvg(MakeMap(kTiles, points), folder_);
  for (char const* name : {"red.png", "blue.png"}) {
    std::string const bytes = ReadBytes(folder_ / name);
    std::unique_ptr<gchar, decltype(&g_free)> const text(
        g_base64_encode(reinterpret_cast<guchar const*>(bytes.data()), bytes.size()), &g_free);
    std::string const embedded = std::string("href=\"data:image/png;base64,") + text.get() + "\"";
    std::size_t const at = svg.find(embedded);
    ASSERT_NE(at, std::string::npos) << name;
    EXPECT_EQ(svg.find(embedded, at + 1), std::string::npos) << name;
    EXPECT_LT(at, svg.find("#0f0"));
  }
  WritePng(svg, 1, top_ / "chart.png");
  Surface const picture(cairo_image_surface_create_from_png((top_ / "chart.png").c_str()),
                        &cairo_surface_destroy);
  ASSERT_EQ(cairo_surface_status(picture.get()), CAIRO_STATUS_SUCCESS);
  int const y = cairo_image_surface_get_height(picture.get()) / 2;
  auto const* const row = reinterpret_cast<unsigned const*>(
      cairo_image_surface_get_data(picture.get()) + y * cairo_image_surface_get_stride(picture.get()));
  int changes = 0;
  for (int x = 20; x < 780; ++x) {
    EXPECT_TRUE(row[x] == kRed || row[x] == kBlue) << x;
    if (row[x] != row[x - 1]) ++changes;
  }
  EXPECT_GE(changes, 2);
}

TEST_F(ImageMarks, TellOfRowsWithoutAPicture) {
  DrawnChart const drawn = drawing_.Draw(
      MakeMap(MakeTile("red.png", 10, 20) + R"(,{"u":null,"w":20,"e":30,"n":1,"s":0})"), folder_);
  EXPECT_EQ(FindMarks<ImageMark>(drawn.scene, "marks").size(), 3U);
  EXPECT_EQ(drawn.warnings,
            std::vector<std::string>{"1 of 2 rows have no value in 'u' for the image; not drawn"});
}

TEST_F(ImageMarks, RefuseFilesThatAreNoPicturesOrLieElsewhere) {
  WriteBytes("text.png", "no picture");
  WriteBytes("short.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0", 18));
  WriteBytes("flat.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\0\0\0\0\1", 24));
  WriteBytes("bomb.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\1\0\0\0\1\0\0", 24));
  WriteBytes("frame.jpg", std::string("\xFF\xD8\xFF\xE0\0\4ab\xFF\xFF\xC2\0\x0B\x08\0\2\0\3\1", 19));
  WriteBytes("noframe.jpg", std::string("\xFF\xD8\xFF\xE0\0\4ab\xFF\xDA\0\2some scan", 19));
  WriteBytes("large.png", "");
  fs::resize_file(folder_ / "large.png", (16U << 20U) + 1);
  fs::create_symlink("../secret.png", folder_ / "leak.png");
  ASSERT_EQ(mkfifo((folder_ / "pipe.png").c_str(), 0600), 0);
  struct Case {
    char const* path;
    std::string cause;
  };
  Case const cases[] = {
      {"text.png", "is neither a PNG nor a JPEG picture"},
      {"short.png", "the picture's size can't be read; the file is damaged"},
      {"flat.png", "the picture's size can't be read; the file is damaged"},
      {"noframe.jpg", "the picture's size can't be read; the file is damaged"},
      {"bomb.png", "has 65536 by 65536 pixels; at most 64000000 are drawn"},
      {"large.png", "16777217 bytes; at most 16777216 are read"},
      {"gone.png", "cannot be read: No such file or directory"},
      {"sub.png", "is a folder, not a file"},
      {"pipe.png", "is not a regular file"},
      {"../secret.png", "leaves the chart's folder and the data root"},
      {"/etc/passwd", "leaves the chart's folder and the data root"},
      {"leak.png", "leaves the chart's folder and the data root through a symbolic link"},
      {"https://example.com/a.png", "is a URL; data are read from files only"},
      {"data:image/png;base64,AAAA", "is a URL; data are read from files only"},
  };
  auto const describe = [&](std::string const& document) -> std::string {
    try {
      drawing_.Draw(document, folder_);
    } catch (DocumentError const& error) {
      return error.what();
    }
    return "accepted";
  };
  for (Case const& c : cases) {
    EXPECT_EQ(describe(MakeMap(MakeTile(c.path, 0, 90))),
              std::string("chart.vl.json: $.layer[0].encoding.url: ") + c.path + ": " + c.cause);
  }
  EXPECT_EQ(describe(MakeMap(MakeTile("frame.jpg", 0, 90))), "accepted");
}

TEST_F(ImageMarks, RefuseWhatTheyCannotShow) {
  auto const image = [](char const* encoding) {
    return std::string(R"({"data":{"values":[{"a":1}]},"mark":"image","encoding":{)") + encoding + "}}";
  };
  std::string const places =
      R"("longitude":{"field":"a"},"longitude2":{"field":"a"},"latitude":{"field":"a"},"latitude2":{"field":"a"})";
  std::pair<std::string, char const*> const cases[] = {
      {image(R"("x":{"field":"a"})"),
       "$.encoding.x: is for the marks point, circle, square, line, bar, area, rect, rule, tick, text and "
       "textTable only; leave it out"},
      {image(""), "$.encoding: longitude is missing, which a map needs"},
      {image(R"("longitude":{"field":"a"},"latitude":{"field":"a"})"),
       "$.encoding: longitude2 is missing, which an image needs"},
      {image(places.c_str()), "$.encoding: url is missing, which an image needs"},
      {image((places + R"(,"url":{"value":""})").c_str()), "$.encoding.url: data file: the path is empty"},
      {R"({"data":{"values":[]},"mark":{"type":"image","url":"a.png"}})",
       "$.mark.url: is not supported; use the channel url"},
      {R"({"data":{"values":[]},"mark":"point","encoding":{"longitude2":{"field":"a"}}})",
       "$.encoding.longitude2: is for the mark image only; leave it out"},
  };
  for (auto const& [document, expected] : cases)
    EXPECT_EQ(drawing_.DescribeError(document), std::string("chart.vl.json: ") + expected) << document;
}

}  // namespace
}  // namespace ostrel::charts
