#include <glib.h>

#include "charts/writer/SvgPaint.h"
#include "charts/writer/SvgShapes.h"

namespace ostrel::charts {

bool IsDrawn(ImageMark const& image) {
  return image.file != nullptr && IsFinite(image.rect) && image.rect.width != 0 && image.rect.height != 0 &&
         image.opacity > 0;
}

// Nothing outside of the document is referred to, so that it can be sent on alone.
void WriteImageSymbol(ImageFile const& file, int id, SvgStream& out) {
  std::string_view const bytes = file.bytes.Get();
  std::unique_ptr<gchar, decltype(&g_free)> const text(
      g_base64_encode(reinterpret_cast<guchar const*>(bytes.data()), bytes.size()), &g_free);
  double const width = file.width;
  double const height = file.height;
  out << "<symbol id=\"image" << id << "\" viewBox=\"0 0 " << width << " " << height
      << "\" preserveAspectRatio=\"none\"><image width=\"" << width << "\" height=\"" << height
      << "\" preserveAspectRatio=\"none\" href=\"data:" << file.mediaType << ";base64," << text.get()
      << "\"/></symbol>\n";
}

void WriteImage(ImageMark const& image, int id, SvgStream& out) {
  out << "<use href=\"#image" << id << "\"";
  WriteRectGeometry(image.rect, out);
  WriteOpacity("opacity", image.opacity, out);
  if (image.tooltip.empty()) {
    out << "/>\n";
  } else {
    out << "><title>" << Escaped{image.tooltip} << "</title></use>\n";
  }
}

}  // namespace ostrel::charts
