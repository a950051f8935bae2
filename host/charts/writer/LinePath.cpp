#include "charts/writer/LinePath.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "charts/writer/SvgShapes.h"

namespace ostrel::charts {

namespace {

void WriteLinear(LineStretch stretch, SvgStream& out) {
  bool isFirst = true;
  for (Point const point : stretch.subspan(1)) {
    if (isFirst) {
      out << "L" << point.x;
    } else {
      out << NextNumber{point.x};
    }
    out << NextNumber{point.y};
    isFirst = false;
  }
}

void WriteSteps(LineStretch stretch, LineInterpolation interpolation, SvgStream& out) {
  for (std::size_t i = 1; i < stretch.size(); ++i) {
    Point const from = stretch[i - 1];
    Point const to = stretch[i];
    if (interpolation == LineInterpolation::StepBefore) {
      out << "V" << to.y << "H" << to.x;
    } else if (interpolation == LineInterpolation::StepAfter) {
      out << "H" << to.x << "V" << to.y;
    } else {
      out << "H" << from.x + (to.x - from.x) / 2 << "V" << to.y;
    }
  }
  if (interpolation == LineInterpolation::Step) out << "H" << stretch.back().x;
}

double Slope(Point from, Point to) { return (to.y - from.y) / (to.x - from.x); }

double Sign(double value) { return value < 0 ? -1 : 1; }

double InnerTangent(Point before, Point at, Point after) {
  double const width0 = at.x - before.x;
  double const width1 = after.x - at.x;
  // A vertical piece is endlessly steep in the direction of the other one.
  double const slope0 = (at.y - before.y) / (width0 != 0 ? width0 : std::copysign(0.0, width1));
  double const slope1 = (after.y - at.y) / (width1 != 0 ? width1 : std::copysign(0.0, width0));
  double const parabola = (slope0 * width1 + slope1 * width0) / (width0 + width1);
  if (std::isnan(parabola)) return 0;
  return (Sign(slope0) + Sign(slope1)) *
         std::min({std::fabs(slope0), std::fabs(slope1), std::fabs(parabola) / 2});
}

double EndTangent(Point from, Point to, double otherTangent) {
  return to.x != from.x ? (3 * Slope(from, to) - otherTangent) / 2 : otherTangent;
}

void WriteCurve(Point from, Point to, double tangent0, double tangent1, SvgStream& out) {
  double const third = (to.x - from.x) / 3;
  out << "C" << from.x + third << NextNumber{from.y + third * tangent0} << NextNumber{to.x - third}
      << NextNumber{to.y - third * tangent1} << NextNumber{to.x} << NextNumber{to.y};
}

bool Coincide(Point a, Point b) { return a.x == b.x && a.y == b.y; }

void WriteMonotone(LineStretch stretch, SvgStream& out) {
  std::vector<Point> points;
  std::unique_copy(stretch.begin(), stretch.end(), std::back_inserter(points), Coincide);
  std::size_t const count = points.size();
  if (count < 3) return WriteLinear(points, out);
  double next = InnerTangent(points[0], points[1], points[2]);
  double tangent = EndTangent(points[0], points[1], next);
  for (std::size_t i = 0; i + 1 < count; ++i) {
    WriteCurve(points[i], points[i + 1], tangent, next, out);
    tangent = next;
    if (i + 3 < count) {
      next = InnerTangent(points[i + 1], points[i + 2], points[i + 3]);
    } else if (i + 2 < count) {
      next = EndTangent(points[i + 1], points[i + 2], tangent);
    }
  }
}

}  // namespace

LineStretch NextStretch(std::span<Point const> points, std::size_t& from) {
  while (from < points.size() && !IsFinite(points[from])) ++from;
  std::size_t const start = from;
  while (from < points.size() && IsFinite(points[from])) ++from;
  return points.subspan(start, from - start);
}

void WriteLineStretch(LineStretch stretch, LineInterpolation interpolation, SvgStream& out) {
  out << "M" << stretch.front().x << NextNumber{stretch.front().y};
  if (stretch.size() == 1) {
    out << "h.001";  // with dashes, browsers draw no dot for a line without length
    return;
  }
  WriteFurtherPoints(stretch, interpolation, out);
}

void WriteFurtherPoints(LineStretch stretch, LineInterpolation interpolation, SvgStream& out) {
  switch (interpolation) {
    case LineInterpolation::Linear:
      return WriteLinear(stretch, out);
    case LineInterpolation::StepBefore:
    case LineInterpolation::StepAfter:
    case LineInterpolation::Step:
      return WriteSteps(stretch, interpolation, out);
    case LineInterpolation::Monotone:
      return WriteMonotone(stretch, out);
  }
}

}  // namespace ostrel::charts
