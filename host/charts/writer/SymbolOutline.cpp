#include "charts/writer/SymbolOutline.h"

#include <cmath>

#include "charts/writer/SvgStream.h"

namespace ostrel::charts {

namespace {

constexpr double kArm = 0.4;
constexpr double kHeight = 0.8660254037844386;  // sqrt(3)/2

constexpr Point kSquare[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
constexpr Point kCross[] = {{-1, -kArm}, {-kArm, -kArm}, {-kArm, -1}, {kArm, -1}, {kArm, -kArm}, {1, -kArm},
                            {1, kArm},   {kArm, kArm},   {kArm, 1},   {-kArm, 1}, {-kArm, kArm}, {-1, kArm}};
constexpr Point kDiamond[] = {{-1, 0}, {0, -1}, {1, 0}, {0, 1}};
constexpr Point kTriangleUp[] = {{0, -kHeight}, {1, kHeight}, {-1, kHeight}};
constexpr Point kTriangleDown[] = {{0, kHeight}, {-1, -kHeight}, {1, -kHeight}};
constexpr Point kTriangleRight[] = {{kHeight, 0}, {-kHeight, 1}, {-kHeight, -1}};
constexpr Point kTriangleLeft[] = {{-kHeight, 0}, {kHeight, -1}, {kHeight, 1}};

double RoundToThousandth(double value) { return std::round(value * 1000) / 1000; }

}  // namespace

std::span<Point const> GetSymbolCorners(SymbolShape shape) {
  switch (shape) {
    case SymbolShape::Circle:
      return {};
    case SymbolShape::Square:
      return kSquare;
    case SymbolShape::Cross:
      return kCross;
    case SymbolShape::Diamond:
      return kDiamond;
    case SymbolShape::TriangleUp:
      return kTriangleUp;
    case SymbolShape::TriangleDown:
      return kTriangleDown;
    case SymbolShape::TriangleRight:
      return kTriangleRight;
    case SymbolShape::TriangleLeft:
      return kTriangleLeft;
  }
  return {};
}

SymbolOutline MakeSymbolOutline(SymbolShape shape, double size) {
  double const half = std::sqrt(size) / 2;
  std::span<Point const> const corners = GetSymbolCorners(shape);
  StringSink sink;
  SvgStream out(sink);
  if (corners.empty()) {
    out << "\" r=\"" << half << "\"";
    out.Flush();
    return {"circle", "<circle cx=\"", "\" cy=\"", 0, 0, sink.GetText()};
  }
  auto const place = [&](Point corner) {
    return Point{RoundToThousandth(corner.x * half), RoundToThousandth(corner.y * half)};
  };
  Point const first = place(corners.front());
  Point last = first;
  for (Point const corner : corners.subspan(1)) {
    Point const next = place(corner);
    if (next.y == last.y) {
      out << "h" << next.x - last.x;
    } else if (next.x == last.x) {
      out << "v" << next.y - last.y;
    } else {
      out << "l" << next.x - last.x << NextNumber{next.y - last.y};
    }
    last = next;
  }
  out << "z\"";
  out.Flush();
  return {"path", "<path d=\"M", " ", first.x, first.y, sink.GetText()};
}

}  // namespace ostrel::charts
