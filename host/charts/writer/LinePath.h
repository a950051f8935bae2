#pragma once

#include <span>

#include "charts/scene/Scene.h"
#include "charts/writer/SvgStream.h"

namespace ostrel::charts {

/// A stretch of a line between two gaps: finite points, at least one.
using LineStretch = std::span<Point const>;

/// The next stretch at or behind `from`, which moves to its end; empty when there is none.
LineStretch NextStretch(std::span<Point const> points, std::size_t& from);

/// Writes path data. A stretch of one point is a line of next to no length,
/// seen with round caps only.
///
/// Monotone keeps the points' extrema and never swings beyond them where x is monotone: M. Steffen, "A simple
/// method for monotonic interpolation in one dimension", Astronomy and Astrophysics 239 (1990). A point equal
/// to the one before it is passed over.
void WriteLineStretch(LineStretch stretch, LineInterpolation interpolation, SvgStream& out);

/// The path data behind a stretch's first point, to which a path has come already.
void WriteFurtherPoints(LineStretch stretch, LineInterpolation interpolation, SvgStream& out);

}  // namespace ostrel::charts
