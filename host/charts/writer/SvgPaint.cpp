#include "charts/writer/SvgPaint.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ostrel::charts {

namespace {

// SVG takes a list with a negative number, or one without a length, for an error or for a solid line.
bool IsDash(std::vector<double> const& dash) {
  bool const isValid =
      std::all_of(dash.begin(), dash.end(), [](double part) { return std::isfinite(part) && part >= 0; });
  return isValid && std::accumulate(dash.begin(), dash.end(), 0.0) > 0;
}

}  // namespace

double GetPaintOpacity(ort::core::OrtColor color, double opacity) {
  if (!(opacity > 0)) return 0;
  return std::min(opacity, 1.0) * color.GetA() / 255;
}

void WriteOpacity(std::string_view name, double opacity, SvgStream& out) {
  if (opacity != 1) out << " " << name << "=\"" << opacity << "\"";
}

void WriteFill(ort::core::OrtColor color, SvgStream& out) {
  double const opacity = GetPaintOpacity(color);
  if (opacity == 0) {
    out << " fill=\"none\"";
    return;
  }
  out << " fill=\"" << color << "\"";
  WriteOpacity("fill-opacity", opacity, out);
}

bool IsPainted(Stroke const& stroke, double opacity) {
  return std::isfinite(stroke.width) && stroke.width > 0 && GetPaintOpacity(stroke.color, opacity) > 0;
}

bool IsSame(Stroke const& left, Stroke const& right) {
  return left.color == right.color && left.width == right.width && left.dash == right.dash;
}

void WriteStrokeShape(Stroke const& stroke, SvgStream& out) {
  if (stroke.width != 1) out << " stroke-width=\"" << stroke.width << "\"";
  if (!IsDash(stroke.dash)) return;
  out << " stroke-dasharray=\"";
  bool isFirst = true;
  for (double const part : stroke.dash) {
    out << (isFirst ? "" : ",") << part;
    isFirst = false;
  }
  out << "\"";
}

void WriteStroke(Stroke const& stroke, double opacity, SvgStream& out) {
  if (!IsPainted(stroke, opacity)) return;
  out << " stroke=\"" << stroke.color << "\"";
  WriteOpacity("stroke-opacity", GetPaintOpacity(stroke.color, opacity), out);
  WriteStrokeShape(stroke, out);
}

}  // namespace ostrel::charts
