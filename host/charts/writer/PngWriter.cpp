#include "charts/writer/PngWriter.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <librsvg/rsvg.h>

#include <cmath>
#include <exception>
#include <memory>
#include <stdexcept>

#include "charts/writer/OutputFile.h"
#include "services/FontFolders.h"

namespace ostrel::charts {

namespace {

namespace fs = std::filesystem;

constexpr double kMaxSide = 32767;  // of a cairo surface

template <auto Free>
struct Freer {
  template <typename T>
  void operator()(T* object) const noexcept {
    Free(object);
  }
};

// The machine's folders and caches without its rules; a slant that a family has not is made, as browsers do.
constexpr char kFontRules[] = R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>
<match target="font">
  <test name="slant"><const>roman</const></test>
  <test target="pattern" name="slant" compare="not_eq"><const>roman</const></test>
  <edit name="matrix" mode="assign"><times><name>matrix</name>
    <matrix><double>1</double><double>0.2</double><double>0</double><double>1</double></matrix></times></edit>
</match>
<cachedir>/var/cache/fontconfig</cachedir><cachedir prefix="xdg">fontconfig</cachedir></fontconfig>)";

FcChar8 const* ToFcText(char const* text) { return reinterpret_cast<FcChar8 const*>(text); }

class Drawing {
 public:
  Drawing(std::string_view svg, double scale, fs::path const& path) : path_(path) {
    if (!std::isfinite(scale) || scale <= 0) Fail("the scale must be above 0");
    OpenDocument(svg);
    double width = 0;
    double height = 0;
    if (!rsvg_handle_get_intrinsic_size_in_pixels(document_.get(), &width, &height))
      Fail("the document has no size in pixels");
    width = std::ceil(width * scale);
    height = std::ceil(height * scale);
    if (!(width >= 1 && height >= 1)) Fail("the picture would be empty");
    if (width > kMaxSide || height > kMaxSide) Fail("the picture would have more than 32767 pixels a side");
    Draw(width, height);
  }

  void Save() {
    Saving saving{OutputFile(path_), nullptr};
    cairo_status_t const status = cairo_surface_write_to_png_stream(surface_.get(), WriteBytes, &saving);
    if (saving.failure) std::rethrow_exception(saving.failure);
    Check(status);
    saving.file.Commit();
  }

 private:
  struct Saving {
    OutputFile file;
    std::exception_ptr failure;
  };

  [[noreturn]] void Fail(std::string const& cause) const {
    throw std::runtime_error("cannot draw " + path_.string() + ": " + cause);
  }

  void Check(cairo_status_t status) const {
    if (status != CAIRO_STATUS_SUCCESS) Fail(cairo_status_to_string(status));
  }

  [[noreturn]] void FailWith(GError* error) const {
    std::unique_ptr<GError, Freer<g_error_free>> const owner(error);
    Fail(error != nullptr ? error->message : "unknown error");
  }

  void OpenDocument(std::string_view svg) {
    std::unique_ptr<GInputStream, Freer<g_object_unref>> const stream(
        g_memory_input_stream_new_from_data(svg.data(), static_cast<gssize>(svg.size()), nullptr));
    GError* error = nullptr;
    document_.reset(
        rsvg_handle_new_from_stream_sync(stream.get(), nullptr, RSVG_HANDLE_FLAG_UNLIMITED, nullptr, &error));
    if (document_ == nullptr) FailWith(error);
  }

  void Draw(double width, double height) {
    surface_.reset(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height)));
    Check(cairo_surface_status(surface_.get()));
    std::unique_ptr<cairo_t, Freer<cairo_destroy>> const context(cairo_create(surface_.get()));
    RsvgRectangle const area{0, 0, width, height};
    GError* error = nullptr;
    if (!rsvg_handle_render_document(document_.get(), context.get(), &area, &error)) FailWith(error);
    Check(cairo_status(context.get()));
  }

  // No exception may pass through cairo.
  static cairo_status_t WriteBytes(void* closure, unsigned char const* bytes, unsigned count) {
    auto& saving = *static_cast<Saving*>(closure);
    try {
      saving.file.Write({reinterpret_cast<char const*>(bytes), count});
      return CAIRO_STATUS_SUCCESS;
    } catch (...) {
      saving.failure = std::current_exception();
      return CAIRO_STATUS_WRITE_ERROR;
    }
  }

  fs::path const& path_;
  std::unique_ptr<RsvgHandle, Freer<g_object_unref>> document_;
  std::unique_ptr<cairo_surface_t, Freer<cairo_surface_destroy>> surface_;
};

}  // namespace

void UsePngFonts(std::vector<std::string> const& directories) {
  std::unique_ptr<FcConfig, Freer<FcConfigDestroy>> const config(FcConfigCreate());
  bool isReady = FcConfigParseAndLoadFromMemory(config.get(), ToFcText(kFontRules), FcTrue) == FcTrue;
  if (directories.empty()) {
    auto const folders =
        std::string(R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>)") +
        services::kMachineFontFolders + "</fontconfig>";
    isReady = isReady && FcConfigParseAndLoadFromMemory(config.get(), ToFcText(folders.c_str()), FcTrue);
  }
  for (std::string const& directory : directories) {
    std::error_code error;
    fs::directory_iterator const entries(directory, error);
    if (error)
      throw std::runtime_error("the font folder " + directory + " can't be read: " + error.message());
    isReady = isReady && FcConfigAppFontAddDir(config.get(), ToFcText(directory.c_str()));
  }
  if (!isReady || !FcConfigBuildFonts(config.get()) || !FcConfigSetCurrent(config.get()))
    throw std::runtime_error("the fonts for pictures can't be set up");
}

void WritePng(std::string_view svg, double scale, std::filesystem::path const& path) {
  Drawing(svg, scale, path).Save();
}

}  // namespace ostrel::charts
