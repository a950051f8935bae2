#include <algorithm>
#include <vector>

#include "charts/writer/LinePath.h"
#include "charts/writer/SvgPaint.h"
#include "charts/writer/SvgShapes.h"

namespace ostrel::charts {

namespace {

// Of a line that is run through from its end.
LineInterpolation Backwards(LineInterpolation interpolation) {
  if (interpolation == LineInterpolation::StepBefore) return LineInterpolation::StepAfter;
  if (interpolation == LineInterpolation::StepAfter) return LineInterpolation::StepBefore;
  return interpolation;
}

}  // namespace

void WriteArea(AreaMark const& area, SvgStream& out) {
  double const opacity = GetPaintOpacity(area.fill, area.opacity);
  bool const isSeen = opacity > 0 || IsPainted(area.stroke, area.strokeOpacity);
  auto const count = std::min(area.points.size(), area.basePoints.size());
  auto const isPlaced = [&](std::size_t i) {
    return IsFinite(area.points[i]) && IsFinite(area.basePoints[i]);
  };
  bool isBegun = false;
  for (std::size_t from = 0; isSeen && from < count;) {
    std::size_t end = from;
    while (end < count && isPlaced(end)) ++end;
    // A single point has no extent.
    if (end - from > 1) {
      LineStretch const line(area.points.data() + from, end - from);
      std::vector<Point> back(area.basePoints.begin() + static_cast<std::ptrdiff_t>(from),
                              area.basePoints.begin() + static_cast<std::ptrdiff_t>(end));
      std::ranges::reverse(back);
      if (!isBegun) out << "<path d=\"";
      isBegun = true;
      WriteLineStretch(line, area.interpolation, out);
      out << "L" << back.front().x << NextNumber{back.front().y};
      WriteFurtherPoints(back, Backwards(area.interpolation), out);
      out << "Z";
    }
    from = end + 1;
  }
  if (!isBegun) return;
  out << "\"";
  if (opacity > 0) {
    out << " fill=\"" << area.fill << "\"";
    WriteOpacity("fill-opacity", opacity, out);
  } else {
    out << " fill=\"none\"";
  }
  WriteStroke(area.stroke, area.strokeOpacity, out);
  if (area.tooltip.empty()) {
    out << "/>\n";
  } else {
    out << "><title>" << Escaped{area.tooltip} << "</title></path>\n";
  }
}

void WriteShape(ShapeMark const& shape, SvgStream& out) {
  double const opacity = GetPaintOpacity(shape.fill, shape.opacity);
  if (opacity <= 0 && !IsPainted(shape.stroke, shape.strokeOpacity)) return;
  bool isBegun = false;
  for (auto const& ring : shape.rings) {
    if (ring.size() < 2 || !std::ranges::all_of(ring, [](Point point) { return IsFinite(point); })) continue;
    if (!isBegun) out << "<path d=\"";
    isBegun = true;
    out << "M" << ring.front().x << NextNumber{ring.front().y} << "L";
    for (std::size_t i = 1; i < ring.size(); ++i) {
      if (i > 1) {
        out << NextNumber{ring[i].x};
      } else {
        out << ring[i].x;
      }
      out << NextNumber{ring[i].y};
    }
    out << "Z";
  }
  if (!isBegun) return;
  out << "\" fill-rule=\"evenodd\" fill=\"";
  if (opacity > 0) {
    out << shape.fill << "\"";
    WriteOpacity("fill-opacity", opacity, out);
  } else {
    out << "none\"";
  }
  WriteStroke(shape.stroke, shape.strokeOpacity, out);
  out << "/>\n";
}

}  // namespace ostrel::charts
