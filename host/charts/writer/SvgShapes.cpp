#include "charts/writer/SvgShapes.h"

#include <algorithm>
#include <cmath>

#include "charts/writer/LinePath.h"
#include "charts/writer/SvgPaint.h"

namespace ostrel::charts {

bool IsFinite(Point point) { return std::isfinite(point.x) && std::isfinite(point.y); }

bool IsFinite(Rect const& rect) {
  return IsFinite(Point{rect.x, rect.y}) && IsFinite(Point{rect.width, rect.height});
}

void WriteRectGeometry(Rect const& rect, SvgStream& out) {
  out << " x=\"" << std::min(rect.x, rect.Right()) << "\" y=\"" << std::min(rect.y, rect.Bottom())
      << "\" width=\"" << std::fabs(rect.width) << "\" height=\"" << std::fabs(rect.height) << "\"";
}

void WriteRoundedRect(Rect const& rect, CornerRadii const& radii, SvgStream& out) {
  double const left = std::min(rect.x, rect.Right());
  double const top = std::min(rect.y, rect.Bottom());
  double const width = std::fabs(rect.width);
  double const height = std::fabs(rect.height);
  auto const& [topLeft, topRight, bottomRight, bottomLeft] = radii;
  double const across = std::max(topLeft + topRight, bottomLeft + bottomRight);
  double const down = std::max(topLeft + bottomLeft, topRight + bottomRight);
  double const fit = std::min({1.0, width / across, height / down});
  auto const turn = [&](double radius, double x, double y) {
    if (radius > 0)
      out << "a" << radius * fit << NextNumber{radius * fit} << " 0 0 1" << NextNumber{x * radius * fit}
          << NextNumber{y * radius * fit};
  };
  out << "M" << left + topLeft * fit << NextNumber{top} << "H" << left + width - topRight * fit;
  turn(topRight, 1, 1);
  out << "V" << top + height - bottomRight * fit;
  turn(bottomRight, -1, 1);
  out << "H" << left + bottomLeft * fit;
  turn(bottomLeft, -1, -1);
  out << "V" << top + topLeft * fit;
  turn(topLeft, 1, -1);
  out << "Z";
}

bool IsDrawn(RectMark const& mark) {
  return IsFinite(mark.rect) && (mark.fill.GetA() != 0 || IsPainted(mark.stroke));
}

bool IsSameStyle(RectMark const& left, RectMark const& right) {
  return left.fill == right.fill && IsSame(left.stroke, right.stroke);
}

void WriteRectStyle(RectMark const& mark, SvgStream& out) {
  WriteFill(mark.fill, out);
  WriteStroke(mark.stroke, 1, out);
}

void WriteLine(LineMark const& line, SvgStream& out) {
  if (!IsPainted(line.stroke, line.opacity)) return;
  std::size_t position = 0;
  LineStretch stretch = NextStretch(line.points, position);
  if (stretch.empty()) return;
  bool hasLonePoint = false;
  out << "<path d=\"";
  for (; !stretch.empty(); stretch = NextStretch(line.points, position)) {
    hasLonePoint = hasLonePoint || stretch.size() == 1;
    WriteLineStretch(stretch, line.interpolation, out);
  }
  out << "\" fill=\"none\"";
  WriteStroke(line.stroke, line.opacity, out);
  if (hasLonePoint) out << " stroke-linecap=\"round\"";
  if (line.tooltip.empty()) {
    out << "/>\n";
  } else {
    out << "><title>" << Escaped{line.tooltip} << "</title></path>\n";
  }
}

void WriteRules(RuleMarks const& rules, SvgStream& out) {
  auto const isDrawn = [](RuleMarks::Rule const& rule) { return IsFinite(rule.from) && IsFinite(rule.to); };
  if (!IsPainted(rules.stroke) || std::none_of(rules.rules.begin(), rules.rules.end(), isDrawn)) return;
  // In one path translucent rules would not show through where they cross.
  bool const isOnePath = rules.stroke.color.GetA() == 255 && rules.tooltips.empty();
  out << (isOnePath ? "<path" : "<g");
  WriteStroke(rules.stroke, 1, out);
  out << (isOnePath ? " d=\"" : ">\n");
  for (std::size_t i = 0; i < rules.rules.size(); ++i) {
    RuleMarks::Rule const& rule = rules.rules[i];
    if (!isDrawn(rule)) continue;
    out << (isOnePath ? "M" : "<path d=\"M") << rule.from.x << NextNumber{rule.from.y};
    if (rule.from.y == rule.to.y) {
      out << "H" << rule.to.x;
    } else if (rule.from.x == rule.to.x) {
      out << "V" << rule.to.y;
    } else {
      out << "L" << rule.to.x << NextNumber{rule.to.y};
    }
    if (isOnePath) continue;
    if (rules.tooltips.empty()) {
      out << "\"/>\n";
    } else {
      out << "\"><title>" << Escaped{rules.tooltips[i]} << "</title></path>\n";
    }
  }
  out << (isOnePath ? "\"/>\n" : "</g>\n");
}

void WriteGradient(GradientMark const& gradient, int id, SvgStream& out) {
  if (!IsFinite(gradient.rect) || gradient.colors.empty()) return;
  double const last = std::max(1.0, static_cast<double>(gradient.colors.size() - 1));
  double position = 0;
  // SVG's own direction is from left to right.
  char const* const direction = gradient.isHorizontal ? "" : " x1=\"0\" y1=\"1\" x2=\"0\" y2=\"0\"";
  out << "<linearGradient id=\"gradient" << id << "\"" << direction << ">\n";
  for (ort::core::OrtColor const color : gradient.colors) {
    out << "<stop offset=\"" << position / last << "\" stop-color=\"" << color << "\"";
    WriteOpacity("stop-opacity", GetPaintOpacity(color), out);
    out << "/>\n";
    position += 1;
  }
  out << "</linearGradient>\n<rect fill=\"url(#gradient" << id << ")\"";
  WriteRectGeometry(gradient.rect, out);
  out << "/>\n";
}

}  // namespace ostrel::charts
